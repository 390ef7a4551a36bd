#pragma once

#include "support/Process.h"

#include <map>
#include <string>
#include <vector>

/// How a process sees its terminal. Only where there are POSIX terminals.
struct TerminalSettings
{
    bool isOutput = true;                                ///< the standard output is the terminal, else a pipe
    bool isError = true;                                 ///< the same of the standard error
    std::map<std::string, std::string> environment = {}; ///< variables set beside those of this process
    std::string interruptAt = {}; ///< Ctrl-C is pressed when this has been written to the terminal; empty: never
};

/// Runs a program to its end on a terminal of its own, whose size is 80 by 24. What the program writes to the terminal
/// is in `out` of the result when the standard output is it, else in `err`; what it writes to the pipe in the other
/// one. Texts are as written, without the terminal's line ends. Throws std::runtime_error when the program cannot be
/// started.
ProcessResult runOnTerminal(const std::vector<std::string>& i_Arguments, const TerminalSettings& i_Settings = {});
