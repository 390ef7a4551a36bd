#include "Options.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <ostream>

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
    testing::Values(RefusedRow{"nothing", {}, "no XPATH given"}, RefusedRow{"flags_only", {"-c"}, "no XPATH given"},
                    RefusedRow{"unknown_long", {"--bogus", "a"}, "no such option: --bogus"},
                    RefusedRow{"unknown_short", {"a", "-x"}, "no such option: -x"},
                    RefusedRow{"unknown_joined", {"a", "-cx"}, "no such option: -x"},
                    RefusedRow{"e_without_value", {"-e"}, "-e"},
                    RefusedRow{"plugin_without_value", {"a", "--plugin"}, "--plugin"},
                    RefusedRow{"trace_level", {"--trace=loud", "a"}, "no such trace level: loud"},
                    RefusedRow{"trace_number", {"--trace=4", "a"}, "no such trace level: 4"},
                    RefusedRow{"not_utf8", {"a\xFF"}, "not valid UTF-8"},
                    RefusedRow{"not_utf8_in_second", {"-e", "a", "-e", "\xC3"}, "not valid UTF-8"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST(Options, FileGivenFirstIsNoticed)
{
    const TemporaryFolder folder;
    const std::string file = folder.write("a.xml", "<a/>");
    const CommandLine line = parseCommandLine({file, "//a"});
    EXPECT_EQ(line.action, Action::Refuse);
    EXPECT_EQ(line.text, "'" + file + "' is a file and '//a' is none: the expression comes first, then the files");
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
    EXPECT_EQ(parseCommandLine({"a", "f", "--help"}).action, Action::PrintText);
    EXPECT_EQ(parseCommandLine({"--version", "--plugin=p.so"}).options.pluginPath, "p.so");
}

TEST(Options, HelpNamesEveryOption)
{
    const std::string help = parseCommandLine({"--help"}).text;
    EXPECT_TRUE(help.starts_with("Usage: xmlvalue [OPTION]... XPATH [FILE]...\n"));
    EXPECT_TRUE(help.ends_with("books.xml\n")) << help;
    for (const char* pOption : {"--help", "-e,--expression XPATH", "--one", "--must-exist", "-c,--count", "-q,--quiet",
                                "-0,--null", "--json", "-H,--with-filename", "-h,--no-filename", "--trace[=LEVEL]",
                                "--plugin PATH", "--list-errors", "--version", "Exit status"})
    {
        EXPECT_NE(help.find(pOption), std::string::npos) << pOption;
    }
}
