#pragma once

#include "trace/Trace.h"

#include <optional>
#include <string>
#include <vector>

/// Whether a value is printed with the name of its file in front.
enum class FileNames
{
    WhenSeveral,
    Always,
    Never
};

/// Whether colours mark what is no value.
enum class ColorChoice
{
    Auto, ///< on a terminal, unless the environment speaks against it
    Always,
    Never
};

/// Whether expressions are explained instead of answered, and how.
enum class ExplainForm
{
    None,
    Text,
    Dot ///< a graph in the language of Graphviz
};

/// What the tool is asked to do. All texts are UTF-8.
struct Options
{
    std::vector<std::string> expressions; ///< at least one
    std::vector<std::string> files;       ///< as named; "-" is the standard input
    std::string filesFrom;                ///< file that names more files, "-" for the standard input; empty: none
    bool recursive = false;               ///< folders stand for the documents in them
    bool one = false;                     ///< each expression must yield one value at most
    bool mustExist = false;               ///< no value is an error
    bool quiet = false;                   ///< print no values, stop at the first
    bool count = false;                   ///< print how many values there are
    bool json = false;
    bool nullEnded = false;               ///< a null character ends each value, and each name in a list of files
    std::optional<std::string> nullValue; ///< printed where an expression has no value
    FileNames fileNames = FileNames::WhenSeveral;
    ColorChoice color = ColorChoice::Auto;
    ExplainForm explain = ExplainForm::None;
    bool time = false;         ///< tell how long the parts of the work took
    int traceLevel = TraceOff; ///< records up to this level are printed
    std::string traceFile;     ///< they go to this file; empty: to the standard error
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
        ListFunctions,
        Refuse ///< `text` says what is wrong with the command line
    };

    Action action = Action::Evaluate;
    Options options;
    std::string text;
};

/// Reads the arguments behind the program's name.
/// Tested by: tests/host/input/OptionsTest.cpp
CommandLine parseCommandLine(const std::vector<std::string>& i_Arguments);
