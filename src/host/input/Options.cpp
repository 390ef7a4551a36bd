#include "input/Options.h"

#include "base/String.h"
#include "system/Console.h"
#include "system/FileSystem.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>

namespace
{

constexpr const char* s_Program = "xmlvalue";

constexpr const char* s_Description = "Prints the values that XPATH selects in each FILE, one per line.\n"
                                      "A FILE is an XML document, or a ZIP archive whose first entry is one.\n"
                                      "With no FILE, or when FILE is -, reads standard input.";

constexpr const char* s_Footer = "Exit status: 0 if something was found, 1 if nothing was found, 2 after an error.\n"
                                 "Example: xmlvalue '//book/@id' books.xml";

constexpr const char* s_Selection = "Selection";
constexpr const char* s_Output = "Output";
constexpr const char* s_Files = "Files";
constexpr const char* s_Insight = "What happens inside";
constexpr const char* s_Others = "Others";

/// How the help shows the value of an option whose value is optional.
constexpr std::pair<const char*, const char*> s_OptionalValues[] = {
    {"color", "WHEN"}, {"explain", "FORM"}, {"trace", "LEVEL"}};

/// Whether the option is one of these.
bool takesValue(const std::string& i_Name)
{
    return std::any_of(std::begin(s_OptionalValues), std::end(s_OptionalValues),
                       [&](const auto& i_Row) { return i_Name == i_Row.first; });
}

/// Prints the help in the usual layout.
class HelpFormatter final : public CLI::Formatter
{
public:
    std::string make_help(const CLI::App* i_pApp, std::string, CLI::AppFormatMode) const override
    {
        std::string help = "Usage: xmlvalue [OPTION]... XPATH [FILE]...\n"
                           "  or:  xmlvalue [OPTION]... -e XPATH [-e XPATH]... [FILE]...\n";
        help += std::string(s_Description) + '\n';
        for (const char* const pGroup : {s_Selection, s_Files, s_Output, s_Insight, s_Others})
        {
            help += std::string("\n") + pGroup + ":\n";
            for (const CLI::Option* pOption : i_pApp->get_options())
            {
                help += pOption->get_group() == pGroup ? describe(*pOption) : std::string();
            }
        }
        return help + '\n' + s_Footer + '\n';
    }

private:
    static constexpr std::size_t s_Column = 29;
    static constexpr std::size_t s_Width = 80;

    /// `-e, --expression=XPATH`, and its description in a second column.
    static std::string describe(const CLI::Option& i_Option)
    {
        const bool isShort = !i_Option.get_snames().empty();
        std::string line = isShort ? "  -" + i_Option.get_snames().front() + ", " : "      ";
        const std::string& name = i_Option.get_lnames().front();
        line += "--" + name + valueOf(i_Option, name);
        return inColumn(line, i_Option.get_description());
    }

    static std::string valueOf(const CLI::Option& i_Option, const std::string& i_Name)
    {
        for (const auto& [pName, pValue] : s_OptionalValues)
        {
            if (i_Name == pName)
            {
                return std::string("[=") + pValue + ']';
            }
        }
        const std::string type = i_Option.get_type_name();
        return type.empty() ? type : '=' + type;
    }

    static std::string inColumn(const std::string& i_Start, const std::string& i_Text)
    {
        std::string result = i_Start;
        std::size_t column = i_Start.size();
        for (std::size_t begin = 0; begin < i_Text.size();)
        {
            const std::size_t end = std::min(i_Text.find(' ', begin), i_Text.size());
            const bool isFirst = begin == 0;
            if (!isFirst && column + 1 + (end - begin) > s_Width)
            {
                result += '\n';
                column = 0;
            }
            const std::size_t spaces = column < s_Column && (isFirst || column == 0) ? s_Column - column : 1;
            result.append(spaces, ' ').append(i_Text, begin, end - begin);
            column += spaces + (end - begin);
            begin = end + 1;
        }
        return result + '\n';
    }
};

/// What the parser fills in: the options, and texts that are interpreted later.
struct RawCommandLine
{
    Options options;
    std::string trace;
    std::string color;
    std::string explain;
    bool version = false;
    bool listErrors = false;
    bool listFunctions = false;
};

/// What is wrong with the name of a file, or "". An empty name would look like an option that was not given.
std::string refuseEmpty(const std::string& i_Name)
{
    return i_Name.empty() ? "an empty name" : "";
}

void declareSelection(CLI::App& io_App, RawCommandLine& o_Raw)
{
    Options& options = o_Raw.options;
    io_App.add_option("-e,--expression", options.expressions, "Evaluate XPATH; may be given more than once")
        ->type_name("XPATH")
        ->allow_extra_args(false)
        ->group(s_Selection);
    io_App.add_flag("--one", options.one, "Fail if there is more than one value")->group(s_Selection);
    io_App.add_flag("--must-exist", options.mustExist, "Fail if there is no value")->group(s_Selection);
}

void declareFiles(CLI::App& io_App, RawCommandLine& o_Raw)
{
    Options& options = o_Raw.options;
    io_App
        .add_option("--files-from", options.filesFrom,
                    "Read more file names from LIST, one per line, or each ended by a null character with -0; - is the "
                    "standard input")
        ->type_name("LIST")
        ->check(refuseEmpty)
        ->group(s_Files);
    io_App
        .add_flag("-r,--recursive", options.recursive,
                  "Read the *.xml and *.zip files in each folder and below it; without FILE, in the working folder")
        ->group(s_Files);
}

void declareForms(CLI::App& io_App, RawCommandLine& o_Raw)
{
    Options& options = o_Raw.options;
    io_App.add_flag("-c,--count", options.count, "Print only the number of values in each file")->group(s_Output);
    io_App.add_flag("-q,--quiet", options.quiet, "Print no values; stop at the first one found")->group(s_Output);
    io_App
        .add_flag("-0,--null", options.nullEnded,
                  "End each value with a null character, not a line feed; the names in a LIST end the same way")
        ->group(s_Output);
    io_App.add_flag("--json", options.json, "Print one JSON object per file and expression")->group(s_Output);
    io_App
        .add_option_function<std::string>(
            "--null-value", [&options](const std::string& i_Text) { options.nullValue = i_Text; },
            "Print TEXT where an expression has no value")
        ->type_name("TEXT")
        ->take_last()
        ->group(s_Output);
}

void declareMarks(CLI::App& io_App, RawCommandLine& o_Raw)
{
    Options& options = o_Raw.options;
    io_App
        .add_flag_callback(
            "-H,--with-filename", [&options] { options.fileNames = FileNames::Always; },
            "Print the file's name before each value")
        ->trigger_on_parse()
        ->group(s_Output);
    io_App
        .add_flag_callback(
            "-h,--no-filename", [&options] { options.fileNames = FileNames::Never; },
            "Print no file names, even with several files")
        ->trigger_on_parse()
        ->group(s_Output);
    io_App
        .add_flag("--color{always}", o_Raw.color,
                  "Show file names and error positions in colour; WHEN is auto (on a terminal), always or never")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->group(s_Output);
}

void declareInsight(CLI::App& io_App, RawCommandLine& o_Raw)
{
    io_App
        .add_flag("--explain{text}", o_Raw.explain,
                  "Show how each expression is understood; FORM is text or dot (for Graphviz)")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->group(s_Insight);
    io_App.add_flag("--time", o_Raw.options.time, "Report how long parsing, compiling and walking took")
        ->group(s_Insight);
    io_App
        .add_flag("--trace{info}", o_Raw.trace, "Print trace records up to LEVEL: error, warning or info (the default)")
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeLast)
        ->group(s_Insight);
    io_App.add_option("--trace-file", o_Raw.options.traceFile, "Write the trace records to PATH")
        ->type_name("PATH")
        ->check(refuseEmpty)
        ->group(s_Insight);
}

void declareOthers(CLI::App& io_App, RawCommandLine& o_Raw)
{
    io_App.add_option("--plugin", o_Raw.options.pluginPath, "Load the plug-in at PATH")
        ->type_name("PATH")
        ->check(refuseEmpty)
        ->group(s_Others);
    io_App.add_flag("--list-errors", o_Raw.listErrors, "Print every error code with its meaning")->group(s_Others);
    io_App.add_flag("--list-functions", o_Raw.listFunctions, "Print every function with its arguments and answer")
        ->group(s_Others);
    io_App.add_flag("--version", o_Raw.version, "Print the versions of this program and of the plug-in")
        ->group(s_Others);
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

template <class Choice>
struct ChoiceRow
{
    const char* name; ///< "" for an option that was not given
    Choice choice;
};

constexpr ChoiceRow<ColorChoice> s_Colors[] = {{"", ColorChoice::Auto},
                                               {"auto", ColorChoice::Auto},
                                               {"always", ColorChoice::Always},
                                               {"never", ColorChoice::Never}};

constexpr ChoiceRow<ExplainForm> s_ExplainForms[] = {
    {"", ExplainForm::None}, {"text", ExplainForm::Text}, {"dot", ExplainForm::Dot}};

/// False when no row has the name.
template <class Choice, std::size_t t_Count>
bool choose(const ChoiceRow<Choice> (&i_Rows)[t_Count], const std::string& i_Name, Choice& o_Choice)
{
    for (const auto& row : i_Rows)
    {
        if (i_Name == row.name)
        {
            o_Choice = row.choice;
            return true;
        }
    }
    return false;
}

bool looksLikeOption(const std::string& i_Argument)
{
    return i_Argument.size() > 1 && i_Argument.front() == '-';
}

/// Whether \p i_Operand, which may be meant as an expression, is the name of an input.
bool namesInput(const Options& i_Options, const std::string& i_Operand)
{
    return FileSystem::isFile(i_Operand) || (i_Options.recursive && FileSystem::isFolder(i_Operand));
}

/// Whether \p i_Operand, the only one, is a file that somebody at a terminal wants to read: the
/// program would wait for input that never comes.
bool isFileAlone(const Options& i_Options, const std::string& i_Operand)
{
    const bool isInputRead =
        i_Options.filesFrom.empty() && !i_Options.recursive && i_Options.explain == ExplainForm::None;
    return isInputRead && FileSystem::isFile(i_Operand) && Console::isInputTerminal();
}

/// Chooses the input if no file is named.
void chooseDefaultFile(Options& io_Options)
{
    const bool isElsewhere = !io_Options.filesFrom.empty() || io_Options.recursive;
    if (io_Options.files.empty() && !isElsewhere && io_Options.explain == ExplainForm::None)
    {
        io_Options.files.emplace_back("-");
    }
}

/// Sorts the operands into expressions and files. Result: what is wrong, or "".
std::string placeOperands(Options& io_Options, std::vector<std::string> i_Operands)
{
    if (io_Options.expressions.empty())
    {
        if (i_Operands.empty())
        {
            return "no XPATH given";
        }
        if (i_Operands.size() == 1 && isFileAlone(io_Options, i_Operands[0]))
        {
            return "'" + i_Operands[0] + "' is a file: the expression, which comes first, is missing";
        }
        if (i_Operands.size() > 1 && namesInput(io_Options, i_Operands[0]) && i_Operands[1] != "-" &&
            !namesInput(io_Options, i_Operands[1]))
        {
            return "'" + i_Operands[0] + "' is a " + (FileSystem::isFile(i_Operands[0]) ? "file" : "folder") +
                   " and '" + i_Operands[1] + "' is not: the expression comes first, then the files";
        }
        io_Options.expressions.push_back(i_Operands.front());
        i_Operands.erase(i_Operands.begin());
    }
    io_Options.files = std::move(i_Operands);
    chooseDefaultFile(io_Options);
    return "";
}

/// Whether the text survives the conversion to the plug-in's wide text unchanged.
bool isUtf8(const std::string& i_Text)
{
    return String(i_Text.data(), i_Text.size()).toNarrow() == i_Text;
}

/// Interprets the options that take one of a few words. Result: as placeOperands.
std::string readChoices(RawCommandLine& io_Raw)
{
    Options& options = io_Raw.options;
    const std::optional<int> level = traceLevel(io_Raw.trace);
    if (!level)
    {
        return "no such trace level: " + io_Raw.trace;
    }
    if (!choose(s_Colors, io_Raw.color, options.color))
    {
        return "--color takes auto, always or never, not " + io_Raw.color;
    }
    if (!choose(s_ExplainForms, io_Raw.explain, options.explain))
    {
        return "--explain takes text or dot, not " + io_Raw.explain;
    }
    const bool isFileOnly = io_Raw.trace.empty() && !options.traceFile.empty();
    options.traceLevel = isFileOnly ? static_cast<int>(TraceInformation) : *level;
    return "";
}

/// Which options cannot be combined. Result: as placeOperands.
std::string findConflict(const Options& i_Options)
{
    const auto& expressions = i_Options.expressions;
    if (!std::all_of(expressions.begin(), expressions.end(), isUtf8))
    {
        return "an expression is not valid UTF-8";
    }
    const bool isMany = i_Options.files.size() > 1 || !i_Options.filesFrom.empty() || i_Options.recursive;
    if (i_Options.explain != ExplainForm::None && isMany)
    {
        return "--explain takes at most one FILE";
    }
    const std::pair<bool, const char*> others[] = {
        {i_Options.json, "--json"}, {i_Options.count, "-c"}, {i_Options.quiet, "-q"}, {i_Options.time, "--time"}};
    for (const auto& [isGiven, pName] : others)
    {
        if (i_Options.explain != ExplainForm::None && isGiven)
        {
            return std::string("--explain cannot be combined with ") + pName;
        }
    }
    return "";
}

/// Interprets a command line that asks for an evaluation. Result: as placeOperands.
std::string completeOptions(RawCommandLine& io_Raw, const std::vector<std::string>& i_Operands)
{
    std::string wrong = readChoices(io_Raw);
    if (wrong.empty())
    {
        wrong = placeOperands(io_Raw.options, i_Operands);
    }
    return wrong.empty() ? findConflict(io_Raw.options) : wrong;
}

/// The action that needs neither an expression nor a file; Evaluate if there is none.
CommandLine::Action questionOf(const RawCommandLine& i_Raw)
{
    using Action = CommandLine::Action;
    if (i_Raw.version)
    {
        return Action::PrintVersion;
    }
    if (i_Raw.listErrors)
    {
        return Action::ListErrors;
    }
    return i_Raw.listFunctions ? Action::ListFunctions : Action::Evaluate;
}

CommandLine interpret(RawCommandLine& io_Raw, const std::vector<std::string>& i_Operands)
{
    CommandLine result;
    result.action = questionOf(io_Raw);
    if (result.action != CommandLine::Action::Evaluate)
    {
        result.options = std::move(io_Raw.options);
        return result;
    }
    if (const std::string wrong = completeOptions(io_Raw, i_Operands); !wrong.empty())
    {
        return refuse(wrong);
    }
    result.options = std::move(io_Raw.options);
    return result;
}

void declare(CLI::App& io_App, RawCommandLine& o_Raw)
{
    io_App.formatter(std::make_shared<HelpFormatter>());
    // A path such as /a/b is not an option on any system, and -h is not the help.
    io_App.allow_windows_style_options(false);
    io_App.set_help_flag("--help", "Print this help")->group(s_Others);
    // Operands are handled here: the library would split an operand in brackets at its commas.
    io_App.allow_extras();
    declareSelection(io_App, o_Raw);
    declareFiles(io_App, o_Raw);
    declareForms(io_App, o_Raw);
    declareMarks(io_App, o_Raw);
    declareInsight(io_App, o_Raw);
    declareOthers(io_App, o_Raw);
    for (CLI::Option* pOption : io_App.get_options())
    {
        pOption->disable_flag_override(!takesValue(pOption->get_lnames().front()));
    }
}

/// The library's error message, worded like the other messages.
std::string wordingOf(const CLI::ParseError& i_Error)
{
    const std::string text = i_Error.what();
    const std::size_t override = text.find(" was given a disallowed flag override");
    return override == std::string::npos ? text
                                         : (override == 1 ? "-" : "--") + text.substr(0, override) + " takes no value";
}

/// Whether the argument is `--option=` for an option that must have a value.
bool isEmptyValue(const CLI::App& i_App, const std::string& i_Argument)
{
    if (!i_Argument.starts_with("--") || !i_Argument.ends_with('='))
    {
        return false;
    }
    const CLI::Option* pOption = i_App.get_option_no_throw(i_Argument.substr(0, i_Argument.size() - 1));
    return pOption != nullptr && pOption->get_items_expected_min() > 0;
}

/// Splits each `--option=` into the option and an empty value: the library would take the next argument as its value.
std::vector<std::string> withEmptyValues(const CLI::App& i_App, const std::vector<std::string>& i_Arguments)
{
    std::vector<std::string> result;
    for (const std::string& argument : i_Arguments)
    {
        const bool isEmpty = isEmptyValue(i_App, argument);
        result.push_back(isEmpty ? argument.substr(0, argument.size() - 1) : argument);
        if (isEmpty)
        {
            result.emplace_back();
        }
    }
    return result;
}

} // namespace

CommandLine parseCommandLine(const std::vector<std::string>& i_Arguments)
{
    const auto endOfOptions = std::find(i_Arguments.begin(), i_Arguments.end(), "--");
    RawCommandLine raw;
    CLI::App app("", s_Program);
    declare(app, raw);
    // The library expects the arguments in reverse order.
    std::vector<std::string> reversed = withEmptyValues(app, {i_Arguments.begin(), endOfOptions});
    std::reverse(reversed.begin(), reversed.end());
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
        return refuse(wordingOf(error));
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
