#pragma once

#include "trace/Trace.h"

#include <string>
#include <vector>

/// Whether a value is printed with the name of its file in front.
enum class FileNames
{
    WhenSeveral,
    Always,
    Never
};

/// What the tool is asked to do. All texts are UTF-8.
struct Options
{
    std::vector<std::string> expressions; ///< at least one
    std::vector<std::string> files;       ///< at least one; "-" is the standard input
    bool one = false;                     ///< each expression must yield one value at most
    bool mustExist = false;               ///< no value is an error
    bool quiet = false;                   ///< print no values, stop at the first
    bool count = false;                   ///< print how many values there are
    bool json = false;
    bool nullEnded = false; ///< a null character ends each value
    FileNames fileNames = FileNames::WhenSeveral;
    int traceLevel = TraceOff; ///< records up to this level are printed
    std::string pluginPath;    ///< empty: the plug-in that belongs to this program
};

/// A command line that was read.
struct CommandLine
{
    enum class Action
    {
        Evaluate,
        PrintText, ///< `text` answers: the help
        PrintVersion,
        ListErrors,
        Refuse ///< `text` says what is wrong with the command line
    };

    Action action = Action::Evaluate;
    Options options;
    std::string text;
};

/// Reads the arguments behind the program's name.
/// Tested by: tests/host/OptionsTest.cpp
CommandLine parseCommandLine(const std::vector<std::string>& i_Arguments);
