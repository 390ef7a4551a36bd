#pragma once

#include "trace/Trace.h"

#include <optional>
#include <string>
#include <vector>

/// Whether the name of the file is printed before each value.
enum class FileNames
{
    WhenSeveral,
    Always,
    Never
};

/// Whether everything that is not a value is printed in colour.
enum class ColorChoice
{
    Auto, ///< on a terminal, unless the environment forbids it
    Always,
    Never
};

/// Whether expressions are explained instead of answered, and how.
enum class ExplainForm
{
    None,
    Text,
    Dot ///< a graph in the Graphviz language
};

/// What the tool is asked to do. All texts are UTF-8.
struct Options
{
    std::vector<std::string> expressions; ///< at least one
    std::vector<std::string> files;       ///< as named; "-" is standard input
    std::string filesFrom;                ///< file with the names of more files, "-" for standard input; empty: none
    bool recursive = false;               ///< folders stand for the documents in them
    bool one = false;                     ///< more than one value is an error
    bool mustExist = false;               ///< no value is an error
    bool quiet = false;                   ///< print no values, stop at the first
    bool count = false;                   ///< print the number of values
    bool json = false;
    bool nullEnded = false;               ///< a null character ends each value, and each name in a list of files
    std::optional<std::string> nullValue; ///< printed if an expression has no value
    FileNames fileNames = FileNames::WhenSeveral;
    ColorChoice color = ColorChoice::Auto;
    ExplainForm explain = ExplainForm::None;
    bool time = false;         ///< report how long the stages took
    int traceLevel = TraceOff; ///< records up to this level are printed
    std::string traceFile;     ///< the file to print them to; empty: standard error
    std::string pluginPath;    ///< empty: the plug-in installed with this program
};

/// A command line after parsing.
struct CommandLine
{
    enum class Action
    {
        Evaluate,
        PrintText, ///< print `text`, which is the help
        PrintVersion,
        ListErrors,
        ListFunctions,
        Refuse ///< `text` says what is wrong with the command line
    };

    Action action = Action::Evaluate;
    Options options;
    std::string text;
};

/// Parses the arguments after the program's name (UTF-8). Does not throw on a wrong command line.
/// Tested by: tests/host/input/OptionsTest.cpp
CommandLine parseCommandLine(const std::vector<std::string>& i_Arguments);
