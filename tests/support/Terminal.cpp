#include "support/Terminal.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace
{

constexpr char s_CtrlC = '\x03';

[[noreturn]] void fail(const char* i_What)
{
    throw std::runtime_error(std::string(i_What) + ": " + std::generic_category().message(errno));
}

int openTerminal()
{
    const int master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0)
    {
        fail("cannot open a terminal");
    }
    return master;
}

/// Line feeds stay what they are, and what is typed is not shown.
void configure(int i_Terminal)
{
    termios settings{};
    tcgetattr(i_Terminal, &settings);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    tcsetattr(i_Terminal, TCSANOW, &settings);
    const winsize size{24, 80, 0, 0};
    ioctl(i_Terminal, TIOCSWINSZ, &size);
}

/// In the child: does not come back.
[[noreturn]] void becomeProgram(const std::vector<std::string>& i_Arguments, const TerminalSettings& i_Settings,
                                const char* i_pTerminal, int i_Pipe)
{
    setsid();
    const int terminal = open(i_pTerminal, O_RDWR); // is the controlling one from now on
    configure(terminal);
    dup2(terminal, STDIN_FILENO);
    dup2(i_Settings.isOutput ? terminal : i_Pipe, STDOUT_FILENO);
    dup2(i_Settings.isError ? terminal : i_Pipe, STDERR_FILENO);
    for (const auto& [name, value] : i_Settings.environment)
    {
        setenv(name.c_str(), value.c_str(), 1);
    }
    for (const int number : {SIGINT, SIGPIPE})
    {
        signal(number, SIG_DFL);
    }
    std::vector<char*> arguments;
    for (const std::string& argument : i_Arguments)
    {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
}

/// False at the end: a terminal that nobody has open any more gives an error.
bool readSome(int i_From, std::string& io_Text)
{
    std::array<char, 4096> block{};
    const ssize_t count = read(i_From, block.data(), block.size());
    if (count > 0)
    {
        io_Text.append(block.data(), static_cast<std::size_t>(count));
    }
    return count > 0 || (count < 0 && errno == EINTR);
}

void readAll(int i_Terminal, int i_Pipe, const TerminalSettings& i_Settings, std::string& o_Shown, std::string& o_Piped)
{
    std::array<pollfd, 2> polled{{{i_Terminal, POLLIN, 0}, {i_Pipe, POLLIN, 0}}};
    bool isInterrupted = i_Settings.interruptAt.empty();
    while (polled[0].fd >= 0 || polled[1].fd >= 0)
    {
        if (poll(polled.data(), polled.size(), -1) < 0)
        {
            continue;
        }
        if (polled[0].revents != 0 && !readSome(i_Terminal, o_Shown))
        {
            polled[0].fd = -1;
        }
        if (polled[1].revents != 0 && !readSome(i_Pipe, o_Piped))
        {
            polled[1].fd = -1;
        }
        if (!isInterrupted && o_Shown.find(i_Settings.interruptAt) != std::string::npos)
        {
            isInterrupted = write(i_Terminal, &s_CtrlC, 1) == 1;
        }
    }
}

} // namespace

ProcessResult runOnTerminal(const std::vector<std::string>& i_Arguments, const TerminalSettings& i_Settings)
{
    const int terminal = openTerminal();
    const std::string name = ptsname(terminal);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
    {
        fail("cannot make a pipe");
    }
    const pid_t process = fork();
    if (process < 0)
    {
        fail("cannot start a process");
    }
    if (process == 0)
    {
        becomeProgram(i_Arguments, i_Settings, name.c_str(), ends[1]);
    }
    close(ends[1]);
    ProcessResult result;
    std::string shown;
    std::string piped;
    readAll(terminal, ends[0], i_Settings, shown, piped);
    (i_Settings.isOutput ? result.out : result.err) = shown;
    (i_Settings.isOutput ? result.err : result.out) = piped;
    int status = 0;
    while (waitpid(process, &status, 0) < 0 && errno == EINTR)
    {
    }
    close(terminal);
    close(ends[0]);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    return result;
}
