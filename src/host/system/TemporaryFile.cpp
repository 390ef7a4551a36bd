#include "system/TemporaryFile.h"

#include "system/FileSystem.h"

#include <cerrno>
#include <filesystem>
#include <stdexcept>
#include <system_error>

#if defined(_WIN32)
#include <windows.h>
#else
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include <unistd.h>
#endif

namespace
{

[[noreturn]] void fail(const char* i_What, const std::string& i_Reason)
{
    throw std::runtime_error(std::string(i_What) + ": " + i_Reason);
}

[[noreturn]] void failToWrite()
{
    fail("cannot write a temporary file", std::generic_category().message(errno));
}

#if defined(_WIN32)
using PathCharacter = wchar_t;
constexpr std::size_t s_PathSize = MAX_PATH + 1;
#else
using PathCharacter = char;
constexpr std::size_t s_PathSize = PATH_MAX;
#endif

/// The paths of the files, in a form that a signal handler can read; "" marks a free entry.
PathCharacter s_Paths[TemporaryFile::s_Maximum][s_PathSize];

std::size_t freePlace()
{
    for (std::size_t i = 0; i < TemporaryFile::s_Maximum; ++i)
    {
        if (s_Paths[i][0] == 0)
        {
            return i;
        }
    }
    fail("cannot create a temporary file", "there are too many");
}

bool isAnyUsed()
{
    for (const auto& path : s_Paths)
    {
        if (path[0] != 0)
        {
            return true;
        }
    }
    return false;
}

#if defined(_WIN32)

BOOL WINAPI removeAtInterrupt(DWORD)
{
    for (const auto& path : s_Paths)
    {
        if (path[0] != 0)
        {
            DeleteFileW(path);
        }
    }
    return FALSE;
}

void catchSignals()
{
    SetConsoleCtrlHandler(removeAtInterrupt, TRUE);
}

void releaseSignals()
{
    SetConsoleCtrlHandler(removeAtInterrupt, FALSE);
}

std::FILE* createFile(wchar_t* io_pPath)
{
    const std::wstring folder = std::filesystem::temp_directory_path().wstring();
    if (GetTempFileNameW(folder.c_str(), L"xml", 0, io_pPath) == 0)
    {
        io_pPath[0] = 0;
        fail("cannot create a temporary file", std::system_category().message(static_cast<int>(GetLastError())));
    }
    return _wfopen(io_pPath, L"wb");
}

void removeFile(const wchar_t* i_pPath)
{
    DeleteFileW(i_pPath);
}

#else

constexpr int s_Signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGPIPE, SIGTERM};
struct sigaction s_Former[std::size(s_Signals)];

extern "C" void removeAtSignal(int i_Signal)
{
    for (const auto& path : s_Paths)
    {
        if (path[0] != 0)
        {
            unlink(path);
        }
    }
    // Handles only one signal: a second one has its default effect.
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

void releaseSignals()
{
    for (std::size_t i = 0; i < std::size(s_Signals); ++i)
    {
        sigaction(s_Signals[i], &s_Former[i], nullptr);
    }
}

/// Until the file exists, \p io_pPath is a pattern that matches no file.
std::FILE* createFile(char* io_pPath)
{
    const std::string pattern = (std::filesystem::temp_directory_path() / "xmlvalue-XXXXXX").string();
    if (pattern.size() >= s_PathSize)
    {
        fail("cannot create a temporary file", std::generic_category().message(ENAMETOOLONG));
    }
    std::memcpy(io_pPath, pattern.c_str(), pattern.size() + 1);
    const int file = mkstemp(io_pPath);
    return file < 0 ? nullptr : fdopen(file, "wb");
}

void removeFile(const char* i_pPath)
{
    unlink(i_pPath);
}

#endif

void release(std::size_t i_Place)
{
    removeFile(s_Paths[i_Place]);
    s_Paths[i_Place][0] = 0;
    if (!isAnyUsed())
    {
        releaseSignals();
    }
}

} // namespace

TemporaryFile::TemporaryFile() : m_Place(freePlace())
{
    if (!isAnyUsed())
    {
        catchSignals();
    }
    try
    {
        m_pStream = createFile(s_Paths[m_Place]);
        if (m_pStream == nullptr)
        {
            fail("cannot create a temporary file", std::generic_category().message(errno));
        }
    }
    catch (...)
    {
        release(m_Place);
        throw;
    }
}

TemporaryFile::~TemporaryFile()
{
    if (m_pStream != nullptr)
    {
        std::fclose(m_pStream);
    }
    release(m_Place);
}

void TemporaryFile::append(std::string_view i_Bytes)
{
    if (std::fwrite(i_Bytes.data(), 1, i_Bytes.size(), m_pStream) != i_Bytes.size())
    {
        failToWrite();
    }
}

void TemporaryFile::close()
{
    std::FILE* const pStream = m_pStream;
    m_pStream = nullptr;
    if (std::fclose(pStream) != 0)
    {
        failToWrite();
    }
}

std::string TemporaryFile::path() const
{
    return FileSystem::toUtf8(s_Paths[m_Place]);
}
