#pragma once

#include "support/Process.h"

#include <map>
#include <string>
#include <vector>

/// How a process is connected to its terminal. Only on systems with POSIX terminals.
struct TerminalSettings
{
    bool isOutput = true;                                ///< standard output is the terminal, otherwise a pipe
    bool isError = true;                                 ///< same for standard error
    std::map<std::string, std::string> environment = {}; ///< variables set in addition to those of this process
    std::string interruptAt = {}; ///< presses Ctrl-C when this text has been written to the terminal; empty: never
};

/// Runs a program to its end on a terminal of its own, with 80 columns and 24 lines. If standard output is the
/// terminal, `out` of the result holds what the program writes to the terminal, and `err` what it writes to the pipe;
/// otherwise the reverse. Texts are as the program wrote them, without the terminal's line ends. Throws
/// std::runtime_error if the program cannot be started.
ProcessResult runOnTerminal(const std::vector<std::string>& i_Arguments, const TerminalSettings& i_Settings = {});
