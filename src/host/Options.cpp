#include "Options.h"

#include "FileSystem.h"
#include "base/String.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>

namespace
{

constexpr const char* s_Program = "xmlvalue";

constexpr const char* s_Description = "Prints the values that XPATH selects in each FILE, one a line.\n"
                                      "A FILE is an XML document, or a ZIP archive whose first entry is one.\n"
                                      "With no FILE, or when FILE is -, the standard input is read.";

constexpr const char* s_Footer = "Exit status: 0 when something was found, 1 when nothing was, 2 after an error.\n"
                                 "Example: xmlvalue '//book/@id' books.xml";

constexpr const char* s_LevelName = "LEVEL";

/// The help in the shape that people know.
class HelpFormatter final : public CLI::Formatter
{
public:
    std::string make_help(const CLI::App* i_pApp, std::string i_Name, CLI::AppFormatMode i_Mode) const override
    {
        return make_usage(i_pApp, i_Name) + make_description(i_pApp) + make_groups(i_pApp, i_Mode) + '\n' +
               make_footer(i_pApp);
    }

    std::string make_usage(const CLI::App*, std::string) const override
    {
        return "Usage: xmlvalue [OPTION]... XPATH [FILE]...\n"
               "  or:  xmlvalue [OPTION]... -e XPATH [-e XPATH]... [FILE]...\n";
    }

    /// The library shows a value that may be left out by its default, in braces.
    std::string make_option_name(const CLI::Option* i_pOption, bool i_IsPositional) const override
    {
        const std::string name = CLI::Formatter::make_option_name(i_pOption, i_IsPositional);
        const std::size_t brace = name.find('{');
        return brace == std::string::npos ? name : name.substr(0, brace) + "[=" + s_LevelName + ']';
    }

    std::string make_option_opts(const CLI::Option* i_pOption) const override
    {
        const std::string type = i_pOption->get_type_name();
        return type.empty() ? type : ' ' + type;
    }
};

/// What the parser fills in beside the options proper.
struct RawCommandLine
{
    Options options;
    std::string trace;
    bool version = false;
    bool listErrors = false;
};

void declareSelection(CLI::App& io_App, RawCommandLine& o_Raw)
{
    Options& options = o_Raw.options;
    io_App.add_option("-e,--expression", options.expressions, "Evaluate XPATH; may be given several times")
        ->type_name("XPATH")
        ->allow_extra_args(false);
    io_App.add_flag("--one", options.one, "More than one value is an error");
    io_App.add_flag("--must-exist", options.mustExist, "No value is an error");
}

void declareOutput(CLI::App& io_App, RawCommandLine& o_Raw)
{
    Options& options = o_Raw.options;
    io_App.add_flag("-c,--count", options.count, "Print only how many values each file has");
    io_App.add_flag("-q,--quiet", options.quiet, "Print no values; stop at the first one found");
    io_App.add_flag("-0,--null", options.nullEnded, "End each value with a null character, not a line feed");
    io_App.add_flag("--json", options.json, "Print one JSON object for each file and expression");
    io_App
        .add_flag_callback(
            "-H,--with-filename", [&options] { options.fileNames = FileNames::Always; },
            "Print the file's name before each value")
        ->trigger_on_parse();
    io_App
        .add_flag_callback(
            "-h,--no-filename", [&options] { options.fileNames = FileNames::Never; },
            "Print no file names, even with several files")
        ->trigger_on_parse();
}

void declareOthers(CLI::App& io_App, RawCommandLine& o_Raw)
{
    io_App
        .add_flag("--trace{info}", o_Raw.trace, "Print trace records up to LEVEL: error, warning or info (the default)")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    io_App.add_option("--plugin", o_Raw.options.pluginPath, "Load the plug-in at PATH")->type_name("PATH");
    io_App.add_flag("--list-errors", o_Raw.listErrors, "Print every error code with its meaning");
    io_App.add_flag("--version", o_Raw.version, "Print the versions of this program and of the plug-in");
}

CommandLine refuse(const std::string& i_Reason)
{
    CommandLine result;
    result.action = CommandLine::Action::Refuse;
    result.text = i_Reason;
    return result;
}

std::optional<int> traceLevel(const std::string& i_Text)
{
    struct Row
    {
        const char* name;
        const char* number;
        int level;
    };
    static constexpr Row s_Rows[] = {
        {"error", "1", TraceError}, {"warning", "2", TraceWarning}, {"info", "3", TraceInformation}};
    if (i_Text.empty())
    {
        return TraceOff;
    }
    for (const Row& row : s_Rows)
    {
        if (i_Text == row.name || i_Text == row.number)
        {
            return row.level;
        }
    }
    return std::nullopt;
}

bool looksLikeOption(const std::string& i_Argument)
{
    return i_Argument.size() > 1 && i_Argument.front() == '-';
}

/// Gives the operands their meaning. Result: what is wrong, or "".
std::string placeOperands(Options& io_Options, std::vector<std::string> i_Operands)
{
    if (io_Options.expressions.empty())
    {
        if (i_Operands.empty())
        {
            return "no XPATH given";
        }
        if (i_Operands.size() > 1 && FileSystem::isFile(i_Operands[0]) && i_Operands[1] != "-" &&
            !FileSystem::isFile(i_Operands[1]))
        {
            return "'" + i_Operands[0] + "' is a file and '" + i_Operands[1] +
                   "' is none: the expression comes first, then the files";
        }
        io_Options.expressions.push_back(i_Operands.front());
        i_Operands.erase(i_Operands.begin());
    }
    io_Options.files = std::move(i_Operands);
    if (io_Options.files.empty())
    {
        io_Options.files.emplace_back("-");
    }
    return "";
}

/// True for text that the plug-in, which takes wide text, can be told without a change.
bool isUtf8(const std::string& i_Text)
{
    return String(i_Text.data(), i_Text.size()).toNarrow() == i_Text;
}

/// The command line without its question for help, version or errors. Result: as placeOperands.
std::string completeOptions(RawCommandLine& io_Raw, const std::vector<std::string>& i_Operands)
{
    const std::optional<int> level = traceLevel(io_Raw.trace);
    if (!level)
    {
        return "no such trace level: " + io_Raw.trace;
    }
    io_Raw.options.traceLevel = *level;
    std::string wrong = placeOperands(io_Raw.options, i_Operands);
    const auto& expressions = io_Raw.options.expressions;
    if (wrong.empty() && !std::all_of(expressions.begin(), expressions.end(), isUtf8))
    {
        wrong = "an expression is not valid UTF-8";
    }
    return wrong;
}

CommandLine interpret(RawCommandLine& io_Raw, const std::vector<std::string>& i_Operands)
{
    CommandLine result;
    if (io_Raw.listErrors || io_Raw.version)
    {
        result.action = io_Raw.version ? CommandLine::Action::PrintVersion : CommandLine::Action::ListErrors;
    }
    else if (const std::string wrong = completeOptions(io_Raw, i_Operands); !wrong.empty())
    {
        return refuse(wrong);
    }
    result.options = std::move(io_Raw.options);
    return result;
}

void declare(CLI::App& io_App, RawCommandLine& o_Raw)
{
    io_App.formatter(std::make_shared<HelpFormatter>());
    io_App.footer(s_Footer);
    // A path such as /a/b is no option, on no system, and -h is not the help.
    io_App.allow_windows_style_options(false);
    io_App.set_help_flag("--help", "Print this help");
    // Operands are sorted out here: the library would split one in brackets at its commas.
    io_App.allow_extras();
    declareSelection(io_App, o_Raw);
    declareOutput(io_App, o_Raw);
    declareOthers(io_App, o_Raw);
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& i_Arguments)
{
    const auto endOfOptions = std::find(i_Arguments.begin(), i_Arguments.end(), "--");
    // The library wants the first argument last.
    std::vector<std::string> reversed(std::make_reverse_iterator(endOfOptions), i_Arguments.rend());
    RawCommandLine raw;
    CLI::App app(s_Description, s_Program);
    declare(app, raw);
    try
    {
        app.parse(reversed);
    }
    catch (const CLI::CallForHelp&)
    {
        CommandLine result;
        result.action = CommandLine::Action::PrintText;
        result.text = app.help();
        return result;
    }
    catch (const CLI::ParseError& error)
    {
        return refuse(error.what());
    }
    std::vector<std::string> operands = app.remaining();
    const auto unknown = std::find_if(operands.begin(), operands.end(), looksLikeOption);
    if (unknown != operands.end())
    {
        return refuse("no such option: " + *unknown);
    }
    if (endOfOptions != i_Arguments.end())
    {
        operands.insert(operands.end(), std::next(endOfOptions), i_Arguments.end());
    }
    return interpret(raw, operands);
}
