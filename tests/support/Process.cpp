#include "support/Process.h"

#include <algorithm>
#include <stdexcept>
#include <system_error>
#include <utility>

#if defined(_WIN32)
#include <filesystem>
#include <thread>

#include <windows.h>
#else
#include <array>
#include <cerrno>
#include <csignal>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;
#endif

namespace
{

constexpr std::size_t s_BlockSize = 65536;

[[noreturn]] void fail(const std::string& i_What, int i_SystemCode)
{
    throw std::runtime_error(i_What + ": " + std::system_category().message(i_SystemCode));
}

} // namespace

#if defined(_WIN32)

namespace
{

std::wstring toWide(const std::string& i_Text)
{
    return std::filesystem::path(std::u8string(i_Text.begin(), i_Text.end())).wstring();
}

/// A system handle, closed with the object.
class Handle
{
public:
    Handle() = default;
    explicit Handle(HANDLE i_Handle) : m_Handle(i_Handle) {}
    Handle(Handle&& io_Other) noexcept : m_Handle(std::exchange(io_Other.m_Handle, nullptr)) {}
    Handle& operator=(Handle&& io_Other) noexcept
    {
        std::swap(m_Handle, io_Other.m_Handle);
        return *this;
    }
    ~Handle() { close(); }

    HANDLE get() const { return m_Handle; }
    void close()
    {
        if (m_Handle != nullptr)
        {
            CloseHandle(std::exchange(m_Handle, nullptr));
        }
    }

private:
    HANDLE m_Handle = nullptr;
};

struct Pipe
{
    Handle readEnd;
    Handle writeEnd;
};

/// A pipe of which the child inherits one end.
Pipe makePipe(bool i_ChildReads)
{
    SECURITY_ATTRIBUTES attributes{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (CreatePipe(&readEnd, &writeEnd, &attributes, 0) == 0)
    {
        fail("cannot make a pipe", static_cast<int>(GetLastError()));
    }
    SetHandleInformation(i_ChildReads ? writeEnd : readEnd, HANDLE_FLAG_INHERIT, 0);
    return {Handle(readEnd), Handle(writeEnd)};
}

/// The quoting that the C runtime's start-up code undoes.
std::wstring quote(const std::wstring& i_Argument)
{
    std::wstring result = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : i_Argument)
    {
        if (unit == L'\\')
        {
            ++backslashes;
            continue;
        }
        result.append(unit == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
        backslashes = 0;
        result += unit;
    }
    result.append(2 * backslashes, L'\\');
    return result + L'"';
}

std::wstring commandLine(const std::vector<std::string>& i_Arguments)
{
    std::wstring result;
    for (const std::string& argument : i_Arguments)
    {
        result += (result.empty() ? L"" : L" ") + quote(toWide(argument));
    }
    return result;
}

/// This process's environment with the variables added, as CreateProcess takes it.
std::vector<wchar_t> environmentBlock(const std::map<std::string, std::string>& i_Added)
{
    std::map<std::wstring, std::wstring> variables;
    wchar_t* const pBlock = GetEnvironmentStringsW();
    for (const wchar_t* pEntry = pBlock; *pEntry != L'\0'; pEntry += std::wstring_view(pEntry).size() + 1)
    {
        const std::wstring entry(pEntry);
        const std::size_t equals = entry.find(L'=', 1);
        if (equals != std::wstring::npos)
        {
            variables[entry.substr(0, equals)] = entry.substr(equals + 1);
        }
    }
    FreeEnvironmentStringsW(pBlock);
    for (const auto& [name, value] : i_Added)
    {
        variables[toWide(name)] = toWide(value);
    }
    std::vector<wchar_t> result;
    for (const auto& [name, value] : variables)
    {
        const std::wstring entry = name + L'=' + value;
        result.insert(result.end(), entry.begin(), entry.end());
        result.push_back(L'\0');
    }
    result.push_back(L'\0');
    return result;
}

Handle startChild(const std::vector<std::string>& i_Arguments, const ProcessSettings& i_Settings, Pipe& io_In,
                  Pipe& io_Out, Pipe& io_Err)
{
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = io_In.readEnd.get();
    startup.hStdOutput = io_Out.writeEnd.get();
    startup.hStdError = io_Err.writeEnd.get();
    PROCESS_INFORMATION information{};
    std::wstring command = commandLine(i_Arguments);
    std::vector<wchar_t> environment = environmentBlock(i_Settings.environment);
    const auto start = [&]
    {
        return CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_UNICODE_ENVIRONMENT,
                              environment.data(), nullptr, &startup, &information) != 0;
    };
    // Wine was seen to report an internal error, once in several thousand starts on a busy machine. A call that failed
    // has started nothing, so it may be made again.
    if (!start() && (GetLastError() != ERROR_INTERNAL_ERROR || !start()))
    {
        fail("cannot start " + i_Arguments.at(0), static_cast<int>(GetLastError()));
    }
    CloseHandle(information.hThread);
    io_In.readEnd.close();
    io_Out.writeEnd.close();
    io_Err.writeEnd.close();
    return Handle(information.hProcess);
}

void writeAll(Handle i_Pipe, const std::string& i_Text)
{
    std::size_t done = 0;
    while (done < i_Text.size())
    {
        const auto block = static_cast<DWORD>(std::min(s_BlockSize, i_Text.size() - done));
        DWORD written = 0;
        if (WriteFile(i_Pipe.get(), i_Text.data() + done, block, &written, nullptr) == 0)
        {
            return;
        }
        done += written;
    }
}

void readAll(Handle i_Pipe, std::size_t i_Limit, std::string& o_Text)
{
    std::vector<char> block(s_BlockSize);
    while (o_Text.size() < i_Limit)
    {
        const std::size_t wanted = std::min(block.size(), i_Limit - o_Text.size());
        DWORD count = 0;
        if (ReadFile(i_Pipe.get(), block.data(), static_cast<DWORD>(wanted), &count, nullptr) == 0 || count == 0)
        {
            return;
        }
        o_Text.append(block.data(), count);
    }
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& i_Arguments, const ProcessSettings& i_Settings)
{
    Pipe in = makePipe(true);
    Pipe out = makePipe(false);
    Pipe err = makePipe(false);
    const Handle process = startChild(i_Arguments, i_Settings, in, out, err);
    ProcessResult result;
    std::thread writer([&] { writeAll(std::move(in.writeEnd), i_Settings.input); });
    std::thread outReader([&] { readAll(std::move(out.readEnd), i_Settings.outputLimit, result.out); });
    std::thread errReader([&] { readAll(std::move(err.readEnd), SIZE_MAX, result.err); });
    writer.join();
    outReader.join();
    errReader.join();
    WaitForSingleObject(process.get(), INFINITE);
    DWORD status = 0;
    GetExitCodeProcess(process.get(), &status);
    result.status = static_cast<int>(status);
    return result;
}

#else

namespace
{

/// A file descriptor, closed with the object.
class Descriptor
{
public:
    explicit Descriptor(int i_Number = -1) : m_Number(i_Number) {}
    Descriptor(Descriptor&& io_Other) noexcept : m_Number(std::exchange(io_Other.m_Number, -1)) {}
    Descriptor& operator=(Descriptor&& io_Other) noexcept
    {
        std::swap(m_Number, io_Other.m_Number);
        return *this;
    }
    ~Descriptor() { close(); }

    int get() const { return m_Number; }
    bool isOpen() const { return m_Number >= 0; }
    void close()
    {
        if (m_Number >= 0)
        {
            ::close(std::exchange(m_Number, -1));
        }
    }

private:
    int m_Number;
};

struct Pipe
{
    Descriptor readEnd;
    Descriptor writeEnd;
};

/// A pipe that no child inherits unless it is given an end on purpose.
Pipe makePipe()
{
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
    {
        fail("cannot make a pipe", errno);
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

/// Writing to a child that has ended must not end this process.
class IgnoredPipeSignal
{
public:
    IgnoredPipeSignal()
    {
        struct sigaction ignore
        {
        };
        ignore.sa_handler = SIG_IGN;
        sigaction(SIGPIPE, &ignore, &m_Former);
    }
    ~IgnoredPipeSignal() { sigaction(SIGPIPE, &m_Former, nullptr); }
    IgnoredPipeSignal(const IgnoredPipeSignal&) = delete;
    IgnoredPipeSignal& operator=(const IgnoredPipeSignal&) = delete;

private:
    struct sigaction m_Former
    {
    };
};

std::vector<std::string> environmentEntries(const std::map<std::string, std::string>& i_Added)
{
    std::vector<std::string> entries;
    for (char** ppEntry = environ; *ppEntry != nullptr; ++ppEntry)
    {
        const std::string entry(*ppEntry);
        if (!i_Added.contains(entry.substr(0, entry.find('='))))
        {
            entries.push_back(entry);
        }
    }
    for (const auto& [name, value] : i_Added)
    {
        entries.push_back(name + '=' + value);
    }
    return entries;
}

std::vector<char*> toPointers(std::vector<std::string>& io_Texts)
{
    std::vector<char*> pointers;
    for (std::string& text : io_Texts)
    {
        pointers.push_back(text.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

pid_t startChild(std::vector<std::string> i_Arguments, const ProcessSettings& i_Settings, const Pipe& i_In,
                 const Pipe& i_Out, const Pipe& i_Err)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, i_In.readEnd.get(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, i_Out.writeEnd.get(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, i_Err.writeEnd.get(), STDERR_FILENO);
    sigset_t defaults;
    sigemptyset(&defaults);
    sigaddset(&defaults, SIGPIPE);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setsigdefault(&attributes, &defaults);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);

    const std::string program = i_Arguments.at(0);
    std::vector<std::string> entries = environmentEntries(i_Settings.environment);
    pid_t process = 0;
    const int error = posix_spawnp(&process, program.c_str(), &actions, &attributes, toPointers(i_Arguments).data(),
                                   toPointers(entries).data());
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
    {
        fail("cannot start " + program, error);
    }
    return process;
}

/// Reads what is there; closes the descriptor at its end and at the limit.
void readSome(Descriptor& io_Descriptor, std::size_t i_Limit, std::string& io_Text)
{
    std::array<char, s_BlockSize> block;
    const std::size_t wanted = std::min(block.size(), i_Limit - io_Text.size());
    const ssize_t count = ::read(io_Descriptor.get(), block.data(), wanted);
    if (count > 0)
    {
        io_Text.append(block.data(), static_cast<std::size_t>(count));
    }
    else if (count == 0 || (errno != EINTR && errno != EAGAIN))
    {
        io_Descriptor.close();
    }
    if (io_Text.size() >= i_Limit)
    {
        io_Descriptor.close();
    }
}

/// Writes what the pipe takes; closes it when all is written or nobody reads.
void writeSome(Descriptor& io_Descriptor, const std::string& i_Text, std::size_t& io_Done)
{
    const ssize_t count = ::write(io_Descriptor.get(), i_Text.data() + io_Done, i_Text.size() - io_Done);
    if (count > 0)
    {
        io_Done += static_cast<std::size_t>(count);
    }
    const bool isBroken = count < 0 && errno != EINTR && errno != EAGAIN;
    if (isBroken || io_Done == i_Text.size())
    {
        io_Descriptor.close();
    }
}

void exchangeData(Descriptor& io_In, Descriptor& io_Out, Descriptor& io_Err, const ProcessSettings& i_Settings,
                  ProcessResult& o_Result)
{
    std::size_t written = 0;
    while (io_In.isOpen() || io_Out.isOpen() || io_Err.isOpen())
    {
        // A closed descriptor is -1, which poll passes over.
        std::array<pollfd, 3> polled{{{io_In.get(), POLLOUT, 0}, {io_Out.get(), POLLIN, 0}, {io_Err.get(), POLLIN, 0}}};
        if (poll(polled.data(), polled.size(), -1) < 0)
        {
            continue;
        }
        if (polled[0].revents != 0)
        {
            writeSome(io_In, i_Settings.input, written);
        }
        if (polled[1].revents != 0)
        {
            readSome(io_Out, i_Settings.outputLimit, o_Result.out);
        }
        if (polled[2].revents != 0)
        {
            readSome(io_Err, SIZE_MAX, o_Result.err);
        }
    }
}

} // namespace

ProcessResult runProcess(const std::vector<std::string>& i_Arguments, const ProcessSettings& i_Settings)
{
    Pipe in = makePipe();
    Pipe out = makePipe();
    Pipe err = makePipe();
    const IgnoredPipeSignal ignoredPipeSignal;
    const pid_t process = startChild(i_Arguments, i_Settings, in, out, err);
    in.readEnd.close();
    out.writeEnd.close();
    err.writeEnd.close();
    fcntl(in.writeEnd.get(), F_SETFL, O_NONBLOCK);

    ProcessResult result;
    exchangeData(in.writeEnd, out.readEnd, err.readEnd, i_Settings, result);
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR)
    {
    }
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return result;
}

#endif
