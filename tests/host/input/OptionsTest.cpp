#include "input/Options.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>

namespace
{

using Action = CommandLine::Action;
using Texts = std::vector<std::string>;

Options parse(const Texts& i_Arguments)
{
    const CommandLine line = parseCommandLine(i_Arguments);
    EXPECT_EQ(line.action, Action::Evaluate) << line.text;
    return line.options;
}

} // namespace

namespace
{

struct OperandRow
{
    const char* name;
    Texts arguments;
    Texts expressions;
    Texts files;
};

void PrintTo(const OperandRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class OptionsOperands : public testing::TestWithParam<OperandRow>
{
};

} // namespace

TEST_P(OptionsOperands, AreTakenAs)
{
    const Options options = parse(GetParam().arguments);
    EXPECT_EQ(options.expressions, GetParam().expressions);
    EXPECT_EQ(options.files, GetParam().files);
}

INSTANTIATE_TEST_SUITE_P(
    All, OptionsOperands,
    testing::Values(OperandRow{"expression_only", {"//a"}, {"//a"}, {"-"}},
                    OperandRow{"file", {"//a", "f"}, {"//a"}, {"f"}},
                    OperandRow{"several_files", {"//a", "f", "-", "g"}, {"//a"}, {"f", "-", "g"}},
                    OperandRow{"options_between", {"//a", "--one", "f", "-c"}, {"//a"}, {"f"}},
                    OperandRow{"absolute_path_is_no_option", {"/a/@b", "/c/d"}, {"/a/@b"}, {"/c/d"}},
                    OperandRow{"empty_expression", {"", "f"}, {""}, {"f"}},
                    OperandRow{"brackets_stay_whole", {"[a,b]", "[c,d]", "{e}"}, {"[a,b]"}, {"[c,d]", "{e}"}},
                    OperandRow{"e_takes_one", {"-e", "//a", "f", "g"}, {"//a"}, {"f", "g"}},
                    OperandRow{"e_twice", {"-e", "a", "f", "-e", "b", "g"}, {"a", "b"}, {"f", "g"}},
                    OperandRow{"e_joined", {"-e//a", "f"}, {"//a"}, {"f"}},
                    OperandRow{"e_long", {"--expression=//a", "--expression", "b"}, {"//a", "b"}, {"-"}},
                    OperandRow{"e_with_dash", {"-e", "-1", "f"}, {"-1"}, {"f"}},
                    OperandRow{"e_with_brackets", {"-e", "[a,b]"}, {"[a,b]"}, {"-"}},
                    OperandRow{"e_with_comma", {"-e", "concat('a','b')"}, {"concat('a','b')"}, {"-"}},
                    OperandRow{"e_empty", {"-e", "", "f"}, {""}, {"f"}},
                    OperandRow{"behind_two_dashes", {"--", "-1", "--one"}, {"-1"}, {"--one"}},
                    OperandRow{"second_two_dashes", {"a", "--", "--"}, {"a"}, {"--"}},
                    OperandRow{"trace_takes_no_operand", {"--trace", "a", "f"}, {"a"}, {"f"}},
                    OperandRow{"non_ascii", {"//\xC3\xA9", "\xF0\x9F\x98\x80"}, {"//\xC3\xA9"}, {"\xF0\x9F\x98\x80"}}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST(Options, Defaults)
{
    const Options options = parse({"a"});
    EXPECT_FALSE(options.one);
    EXPECT_FALSE(options.mustExist);
    EXPECT_FALSE(options.quiet);
    EXPECT_FALSE(options.count);
    EXPECT_FALSE(options.json);
    EXPECT_FALSE(options.nullEnded);
    EXPECT_EQ(options.fileNames, FileNames::WhenSeveral);
    EXPECT_EQ(options.traceLevel, static_cast<int>(TraceOff));
    EXPECT_EQ(options.pluginPath, "");
    EXPECT_EQ(options.filesFrom, "");
    EXPECT_FALSE(options.recursive);
    EXPECT_FALSE(options.nullValue.has_value());
    EXPECT_EQ(options.color, ColorChoice::Auto);
    EXPECT_EQ(options.explain, ExplainForm::None);
    EXPECT_FALSE(options.time);
    EXPECT_EQ(options.traceFile, "");
}

TEST(Options, Flags)
{
    EXPECT_TRUE(parse({"--one", "a"}).one);
    EXPECT_TRUE(parse({"--must-exist", "a"}).mustExist);
    EXPECT_TRUE(parse({"-q", "a"}).quiet);
    EXPECT_TRUE(parse({"--quiet", "a"}).quiet);
    EXPECT_TRUE(parse({"-c", "a"}).count);
    EXPECT_TRUE(parse({"--count", "a"}).count);
    EXPECT_TRUE(parse({"--json", "a"}).json);
    EXPECT_TRUE(parse({"-0", "a"}).nullEnded);
    EXPECT_TRUE(parse({"--null", "a"}).nullEnded);
    const Options joined = parse({"-c0Hq", "a"});
    EXPECT_TRUE(joined.count && joined.nullEnded && joined.quiet);
    EXPECT_EQ(joined.fileNames, FileNames::Always);
    EXPECT_EQ(parse({"--plugin=p.so", "a"}).pluginPath, "p.so");
    EXPECT_EQ(parse({"--plugin", "p.so", "a"}).pluginPath, "p.so");
}

TEST(Options, WhereTheFilesAre)
{
    EXPECT_EQ(parse({"--files-from=list", "a"}).filesFrom, "list");
    EXPECT_EQ(parse({"--files-from", "-", "a"}).filesFrom, "-");
    EXPECT_EQ(parse({"--files-from=list", "a"}).files, Texts());
    EXPECT_EQ(parse({"--files-from=list", "a", "f"}).files, Texts{"f"});
    EXPECT_TRUE(parse({"-r", "a"}).recursive);
    EXPECT_TRUE(parse({"--recursive", "a"}).recursive);
    EXPECT_EQ(parse({"-r", "a"}).files, Texts());
    EXPECT_EQ(parse({"--explain", "a"}).files, Texts());
    EXPECT_EQ(parse({"--explain", "a", "-"}).files, Texts{"-"});
}

TEST(Options, NullValue)
{
    EXPECT_EQ(parse({"--null-value=none", "a"}).nullValue, "none");
    EXPECT_EQ(parse({"--null-value", "none", "a"}).nullValue, "none");
    EXPECT_EQ(parse({"--null-value=", "a"}).nullValue, "");
    EXPECT_EQ(parse({"--null-value=[a,b]", "a"}).nullValue, "[a,b]");
    EXPECT_EQ(parse({"--null-value=a", "--null-value=b", "a"}).nullValue, "b");
}

TEST(Options, Choices)
{
    EXPECT_EQ(parse({"--color", "a"}).color, ColorChoice::Always);
    EXPECT_EQ(parse({"--color=auto", "a"}).color, ColorChoice::Auto);
    EXPECT_EQ(parse({"--color=always", "a"}).color, ColorChoice::Always);
    EXPECT_EQ(parse({"--color=always", "--color=never", "a"}).color, ColorChoice::Never);
    EXPECT_EQ(parse({"--explain", "a"}).explain, ExplainForm::Text);
    EXPECT_EQ(parse({"--explain=text", "a"}).explain, ExplainForm::Text);
    EXPECT_EQ(parse({"--explain=dot", "a"}).explain, ExplainForm::Dot);
    EXPECT_TRUE(parse({"--time", "a"}).time);
}

TEST(Options, TraceFileAsksForAllRecords)
{
    EXPECT_EQ(parse({"--trace-file=t", "a"}).traceFile, "t");
    EXPECT_EQ(parse({"--trace-file=t", "a"}).traceLevel, static_cast<int>(TraceInformation));
    EXPECT_EQ(parse({"--trace-file=t", "--trace=error", "a"}).traceLevel, static_cast<int>(TraceError));
}

TEST(Options, LastOfTheFileNameOptionsCounts)
{
    EXPECT_EQ(parse({"-H", "a"}).fileNames, FileNames::Always);
    EXPECT_EQ(parse({"-h", "a"}).fileNames, FileNames::Never);
    EXPECT_EQ(parse({"-H", "-h", "a"}).fileNames, FileNames::Never);
    EXPECT_EQ(parse({"-h", "a", "-H"}).fileNames, FileNames::Always);
    EXPECT_EQ(parse({"-hH", "a"}).fileNames, FileNames::Always);
}

TEST(Options, TraceLevels)
{
    EXPECT_EQ(parse({"--trace", "a"}).traceLevel, static_cast<int>(TraceInformation));
    EXPECT_EQ(parse({"--trace=error", "a"}).traceLevel, static_cast<int>(TraceError));
    EXPECT_EQ(parse({"--trace=warning", "a"}).traceLevel, static_cast<int>(TraceWarning));
    EXPECT_EQ(parse({"--trace=info", "a"}).traceLevel, static_cast<int>(TraceInformation));
    EXPECT_EQ(parse({"--trace=1", "a"}).traceLevel, static_cast<int>(TraceError));
    EXPECT_EQ(parse({"--trace=2", "a"}).traceLevel, static_cast<int>(TraceWarning));
    EXPECT_EQ(parse({"--trace=3", "a"}).traceLevel, static_cast<int>(TraceInformation));
    EXPECT_EQ(parse({"--trace", "--trace=error", "a"}).traceLevel, static_cast<int>(TraceError));
}

namespace
{

struct RefusedRow
{
    const char* name;
    Texts arguments;
    const char* text;
};

void PrintTo(const RefusedRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class OptionsRefused : public testing::TestWithParam<RefusedRow>
{
};

} // namespace

TEST_P(OptionsRefused, WithAReason)
{
    const CommandLine line = parseCommandLine(GetParam().arguments);
    EXPECT_EQ(line.action, Action::Refuse);
    EXPECT_NE(line.text.find(GetParam().text), std::string::npos) << line.text;
}

INSTANTIATE_TEST_SUITE_P(
    All, OptionsRefused,
    testing::Values(
        RefusedRow{"nothing", {}, "no XPATH given"}, RefusedRow{"flags_only", {"-c"}, "no XPATH given"},
        RefusedRow{"unknown_long", {"--bogus", "a"}, "no such option: --bogus"},
        RefusedRow{"unknown_short", {"a", "-x"}, "no such option: -x"},
        RefusedRow{"unknown_joined", {"a", "-cx"}, "no such option: -x"}, RefusedRow{"e_without_value", {"-e"}, "-e"},
        RefusedRow{"plugin_without_value", {"a", "--plugin"}, "--plugin"},
        RefusedRow{"trace_level", {"--trace=loud", "a"}, "no such trace level: loud"},
        RefusedRow{"trace_number", {"--trace=4", "a"}, "no such trace level: 4"},
        RefusedRow{"color", {"--color=blue", "a"}, "--color takes auto, always or never, not blue"},
        RefusedRow{"explain", {"--explain=loud", "a"}, "--explain takes text or dot, not loud"},
        RefusedRow{"explain_of_files", {"--explain", "a", "f", "g"}, "--explain takes at most one FILE"},
        RefusedRow{"explain_of_a_list", {"--explain", "--files-from=f", "a"}, "at most one FILE"},
        RefusedRow{"explain_of_folders", {"--explain", "-r", "a"}, "at most one FILE"},
        RefusedRow{"files_from_without_value", {"a", "--files-from"}, "--files-from"},
        RefusedRow{"null_value_without_value", {"a", "--null-value"}, "--null-value"},
        RefusedRow{"explain_in_json", {"--explain", "--json", "a"}, "--explain cannot be combined with --json"},
        RefusedRow{"explain_and_count", {"-c", "--explain=dot", "a"}, "--explain cannot be combined with -c"},
        RefusedRow{"explain_quietly", {"-q", "--explain", "a"}, "--explain cannot be combined with -q"},
        RefusedRow{"explain_and_time", {"--time", "--explain", "a"}, "--explain cannot be combined with --time"},
        RefusedRow{"flag_with_value", {"--count=3", "a"}, "--count takes no value"},
        RefusedRow{"help_with_value", {"--help=count"}, "--help takes no value"},
        RefusedRow{"plugin_empty", {"--plugin=", "a", "f"}, "--plugin: an empty name"},
        RefusedRow{"plugin_empty_apart", {"--plugin", "", "a", "f"}, "--plugin: an empty name"},
        RefusedRow{"list_empty", {"--files-from=", "a"}, "--files-from: an empty name"},
        RefusedRow{"trace_file_empty", {"--trace-file=", "a"}, "--trace-file: an empty name"},
        RefusedRow{"not_utf8", {"a\xFF"}, "not valid UTF-8"},
        RefusedRow{"not_utf8_in_second", {"-e", "a", "-e", "\xC3"}, "not valid UTF-8"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST(Options, FileGivenFirstIsNoticed)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("a.xml", "<a/>");
    const CommandLine line = parseCommandLine({file, "//a"});
    EXPECT_EQ(line.action, Action::Refuse);
    EXPECT_EQ(line.text, "'" + file + "' is a file and '//a' is not: the expression comes first, then the files");
    const std::string here = folder.file("");
    EXPECT_EQ(parseCommandLine({"-r", here, "//a"}).text,
              "'" + here + "' is a folder and '//a' is not: the expression comes first, then the files");
    EXPECT_EQ(parseCommandLine({here, "//a"}).action, Action::Evaluate);
    EXPECT_EQ(parseCommandLine({file, file}).action, Action::Evaluate);
    EXPECT_EQ(parseCommandLine({file, "-"}).action, Action::Evaluate);
    EXPECT_EQ(parseCommandLine({file}).action, Action::Evaluate);
    EXPECT_EQ(parseCommandLine({"//a", folder.file("missing")}).action, Action::Evaluate);
    EXPECT_EQ(parseCommandLine({"-e", "//a", file, folder.file("missing")}).action, Action::Evaluate);
}

TEST(Options, QuestionsNeedNoExpression)
{
    EXPECT_EQ(parseCommandLine({"--help"}).action, Action::PrintText);
    EXPECT_EQ(parseCommandLine({"--version"}).action, Action::PrintVersion);
    EXPECT_EQ(parseCommandLine({"--list-errors"}).action, Action::ListErrors);
    EXPECT_EQ(parseCommandLine({"--list-functions"}).action, Action::ListFunctions);
    EXPECT_EQ(parseCommandLine({"a", "f", "--help"}).action, Action::PrintText);
    EXPECT_EQ(parseCommandLine({"--version", "--plugin=p.so"}).options.pluginPath, "p.so");
}

TEST(Options, HelpFitsATerminal)
{
    std::istringstream help(parseCommandLine({"--help"}).text);
    for (std::string line; std::getline(help, line);)
    {
        EXPECT_LE(line.size(), 80U) << line;
    }
}

TEST(Options, HelpNamesEveryOption)
{
    const std::string help = parseCommandLine({"--help"}).text;
    EXPECT_TRUE(help.starts_with("Usage: xmlvalue [OPTION]... XPATH [FILE]...\n"));
    EXPECT_TRUE(help.ends_with("books.xml\n")) << help;
    for (const char* pOption : {"\n      --help  ",
                                "\n  -e, --expression=XPATH  ",
                                "\n      --one  ",
                                "\n      --must-exist  ",
                                "\n      --files-from=LIST  ",
                                "\n  -r, --recursive  ",
                                "\n  -c, --count  ",
                                "\n  -q, --quiet  ",
                                "\n  -0, --null  ",
                                "\n      --json  ",
                                "\n      --null-value=TEXT  ",
                                "\n  -H, --with-filename  ",
                                "\n  -h, --no-filename  ",
                                "\n      --color[=WHEN]  ",
                                "\n      --explain[=FORM]  ",
                                "\n      --time  ",
                                "\n      --trace[=LEVEL]  ",
                                "\n      --trace-file=PATH  ",
                                "\n      --plugin=PATH  ",
                                "\n      --list-errors  ",
                                "\n      --list-functions  ",
                                "\n      --version  ",
                                "\nExit status"})
    {
        EXPECT_NE(help.find(pOption), std::string::npos) << pOption;
    }
}
