#include "Process.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <poll.h>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

using Clock = std::chrono::steady_clock;

[[noreturn]] void becomeProgram(const std::vector<std::string>& i_Command, int i_Output)
{
    dup2(i_Output, STDOUT_FILENO);
    std::vector<char*> arguments;
    for (const std::string& argument : i_Command)
    {
        arguments.push_back(const_cast<char*>(argument.c_str()));
    }
    arguments.push_back(nullptr);
    execvp(arguments.front(), arguments.data());
    _exit(127);
}

/// False when the other end is still open at the deadline.
bool readAll(int i_Input, Clock::time_point i_Deadline, std::string& o_Text)
{
    std::array<char, 4096> buffer{};
    for (;;)
    {
        const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(i_Deadline - Clock::now()).count();
        pollfd input{i_Input, POLLIN, 0};
        if (left <= 0 || poll(&input, 1, static_cast<int>(left)) == 0)
        {
            return false;
        }
        const ssize_t count = read(i_Input, buffer.data(), buffer.size());
        if (count <= 0)
        {
            return true;
        }
        o_Text.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

} // namespace

std::vector<std::string> runProgram(const std::vector<std::string>& i_Command, int i_Seconds)
{
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
    {
        throw std::runtime_error("no pipe");
    }
    const pid_t child = fork();
    if (child < 0)
    {
        throw std::runtime_error("no process");
    }
    if (child == 0)
    {
        becomeProgram(i_Command, ends[1]);
    }
    close(ends[1]);
    std::string output;
    const bool isInTime = readAll(ends[0], Clock::now() + std::chrono::seconds(i_Seconds), output);
    close(ends[0]);
    if (!isInTime)
    {
        kill(child, SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (!isInTime)
    {
        return {};
    }
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
    {
        throw std::runtime_error("failed: " + i_Command.front() + ' ' + (i_Command.size() > 2 ? i_Command[2] : ""));
    }
    std::vector<std::string> lines;
    std::istringstream stream(output);
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}
