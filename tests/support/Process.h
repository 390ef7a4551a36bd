#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// What a process that has ended left behind.
struct ProcessResult
{
    int status = -1; ///< exit status; -1 when a signal ended it
    int signal = 0;  ///< the signal that ended it, else 0
    std::string out; ///< all that it wrote to the standard output
    std::string err; ///< all that it wrote to the standard error
};

struct ProcessSettings
{
    std::string input;                              ///< given on the standard input, then its end
    std::map<std::string, std::string> environment; ///< variables set beside those of this process
    /// The standard output is closed after this many bytes, as `head` does.
    std::size_t outputLimit = SIZE_MAX;
};

/// Runs a program to its end. Texts are UTF-8; the first argument is the program's path. Neither
/// much input nor much output makes it stand still.
/// Throws std::runtime_error when the program cannot be started.
ProcessResult runProcess(const std::vector<std::string>& i_Arguments, const ProcessSettings& i_Settings = {});
