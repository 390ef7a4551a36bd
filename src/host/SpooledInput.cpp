#include "SpooledInput.h"

#include "FileSystem.h"

#include <array>
#include <stdexcept>
#include <system_error>

#if defined(_WIN32)
#include <windows.h>
#else
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>

#include <unistd.h>
#endif

namespace
{

constexpr std::size_t s_BlockSize = 65536;

[[noreturn]] void fail(const char* i_What, int i_SystemCode)
{
    throw std::runtime_error(std::string(i_What) + ": " + std::system_category().message(i_SystemCode));
}

} // namespace

#if defined(_WIN32)

namespace
{

/// Path of the file, for the one that is told of Ctrl-C; "" when there is none.
wchar_t s_Path[MAX_PATH + 1];

BOOL WINAPI removeAtInterrupt(DWORD)
{
    DeleteFileW(s_Path);
    return FALSE;
}

HANDLE createFile()
{
    const std::wstring folder = std::filesystem::temp_directory_path().wstring();
    if (GetTempFileNameW(folder.c_str(), L"xml", 0, s_Path) == 0)
    {
        s_Path[0] = L'\0';
        fail("cannot create a temporary file", static_cast<int>(GetLastError()));
    }
    const HANDLE file =
        CreateFileW(s_Path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        const auto code = static_cast<int>(GetLastError());
        DeleteFileW(s_Path);
        fail("cannot create a temporary file", code);
    }
    return file;
}

/// 0, or the system's code with what failed in \p o_pWhat.
DWORD copyInput(HANDLE i_File, const char*& o_pWhat)
{
    const HANDLE input = GetStdHandle(STD_INPUT_HANDLE);
    std::array<char, s_BlockSize> block;
    for (;;)
    {
        DWORD count = 0;
        if (ReadFile(input, block.data(), static_cast<DWORD>(block.size()), &count, nullptr) == 0)
        {
            o_pWhat = "cannot read the standard input";
            const DWORD code = GetLastError();
            return code == ERROR_BROKEN_PIPE ? 0 : code;
        }
        if (count == 0)
        {
            return 0;
        }
        DWORD written = 0;
        if (WriteFile(i_File, block.data(), count, &written, nullptr) == 0 || written != count)
        {
            o_pWhat = "cannot write the temporary file";
            return GetLastError();
        }
    }
}

void removeFile()
{
    DeleteFileW(s_Path);
    SetConsoleCtrlHandler(removeAtInterrupt, FALSE);
}

} // namespace

SpooledInput::SpooledInput()
{
    const HANDLE file = createFile();
    SetConsoleCtrlHandler(removeAtInterrupt, TRUE);
    const char* pWhat = nullptr;
    const DWORD code = copyInput(file, pWhat);
    CloseHandle(file);
    if (code != 0)
    {
        removeFile();
        fail(pWhat, static_cast<int>(code));
    }
}

SpooledInput::~SpooledInput()
{
    removeFile();
}

std::string SpooledInput::path() const
{
    return FileSystem::toUtf8(s_Path);
}

#else

namespace
{

constexpr int s_Signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM};

/// Path of the file, where a signal handler can read it. Before the file exists it is a pattern
/// that no file has.
char s_Path[PATH_MAX];
struct sigaction s_Former[std::size(s_Signals)];

extern "C" void removeAtSignal(int i_Signal)
{
    unlink(s_Path);
    // Installed for one signal only: the second one does what it would have done without us.
    raise(i_Signal);
}

/// A signal that the program was started to ignore stays ignored.
void catchSignals()
{
    struct sigaction action
    {
    };
    action.sa_handler = removeAtSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_NODEFER;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < std::size(s_Signals); ++i)
    {
        sigaction(s_Signals[i], nullptr, &s_Former[i]);
        if (s_Former[i].sa_handler != SIG_IGN)
        {
            sigaction(s_Signals[i], &action, nullptr);
        }
    }
}

void removeFile()
{
    unlink(s_Path);
    for (std::size_t i = 0; i < std::size(s_Signals); ++i)
    {
        sigaction(s_Signals[i], &s_Former[i], nullptr);
    }
}

bool writeAll(int i_File, const char* i_pBytes, std::size_t i_Count)
{
    while (i_Count > 0)
    {
        const ssize_t written = ::write(i_File, i_pBytes, i_Count);
        if (written < 0 && errno != EINTR)
        {
            return false;
        }
        if (written > 0)
        {
            i_pBytes += written;
            i_Count -= static_cast<std::size_t>(written);
        }
    }
    return true;
}

/// 0, or the system's code with what failed in \p o_pWhat.
int copyInput(int i_File, const char*& o_pWhat)
{
    std::array<char, s_BlockSize> block;
    for (;;)
    {
        const ssize_t count = ::read(STDIN_FILENO, block.data(), block.size());
        if (count == 0)
        {
            return 0;
        }
        if (count < 0 && errno != EINTR)
        {
            o_pWhat = "cannot read the standard input";
            return errno;
        }
        if (count > 0 && !writeAll(i_File, block.data(), static_cast<std::size_t>(count)))
        {
            o_pWhat = "cannot write the temporary file";
            return errno;
        }
    }
}

void preparePattern()
{
    const std::string pattern = (std::filesystem::temp_directory_path() / "xmlvalue-XXXXXX").string();
    if (pattern.size() >= sizeof s_Path)
    {
        fail("cannot create a temporary file", ENAMETOOLONG);
    }
    std::memcpy(s_Path, pattern.c_str(), pattern.size() + 1);
}

} // namespace

SpooledInput::SpooledInput()
{
    preparePattern();
    catchSignals();
    const int file = mkstemp(s_Path);
    if (file < 0)
    {
        const int code = errno;
        removeFile();
        fail("cannot create a temporary file", code);
    }
    const char* pWhat = nullptr;
    const int code = copyInput(file, pWhat);
    ::close(file);
    if (code != 0)
    {
        removeFile();
        fail(pWhat, code);
    }
}

SpooledInput::~SpooledInput()
{
    removeFile();
}

std::string SpooledInput::path() const
{
    return s_Path;
}

#endif
