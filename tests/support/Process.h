#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The result of a process that has ended.
struct ProcessResult
{
    int status = -1; ///< exit status; -1 if a signal ended it
    int signal = 0;  ///< the signal that ended it, or 0
    std::string out; ///< everything that it wrote to standard output
    std::string err; ///< everything that it wrote to standard error
};

struct ProcessSettings
{
    std::string input;                              ///< the contents of its standard input
    std::map<std::string, std::string> environment; ///< variables set in addition to those of this process
    /// Standard output is closed after this number of bytes, as `head` does.
    std::size_t outputLimit = SIZE_MAX;
};

/// Runs a program to its end. Texts are UTF-8; the first argument is the path of the program. Large input or output
/// does not block it. Throws std::runtime_error if the program cannot be started.
ProcessResult runProcess(const std::vector<std::string>& i_Arguments, const ProcessSettings& i_Settings = {});
