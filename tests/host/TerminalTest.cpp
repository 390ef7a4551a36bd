#include "support/Terminal.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <ostream>
#include <regex>

// The tool on a terminal: colours and the progress line, and Ctrl-C. With a plug-in that answers what it is asked to.

namespace
{

using Texts = std::vector<std::string>;
using Environment = std::map<std::string, std::string>;

constexpr const char* s_Erase = "\r\x1B[K";

/// With "TIME" in the place of what depends on how busy the machine is.
std::string withoutTimes(const std::string& i_Text)
{
    static const std::regex s_Times("[0-9]+ a second, [^\r]* left");
    return std::regex_replace(i_Text, s_Times, "TIME");
}

ProcessResult runHost(Texts i_Arguments, TerminalSettings i_Settings)
{
    i_Arguments.insert(i_Arguments.begin(), {HOST_PROGRAM, std::string("--plugin=") + FAKE_MODULE});
    i_Settings.environment.try_emplace("NO_COLOR", "");
    i_Settings.environment.try_emplace("TERM", "xterm");
    return runOnTerminal(i_Arguments, i_Settings);
}

class TerminalTest : public testing::Test
{
protected:
    const TemporaryFolder m_Folder;
    const std::string m_File = m_Folder.write("a.xml", "<a/>");
    const std::string m_Other = m_Folder.write("b.xml", "<b/>");
};

} // namespace

// Colours

namespace
{

struct ColourRow
{
    const char* name;
    Texts arguments;
    bool isTerminal;
    Environment environment;
    bool isColoured;
};

void PrintTo(const ColourRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class TerminalColours : public testing::TestWithParam<ColourRow>
{
protected:
    const TemporaryFolder m_Folder;
};

} // namespace

TEST_P(TerminalColours, MarkTheNamesOfFiles)
{
    const ColourRow& row = GetParam();
    const std::string file = m_Folder.write("a.xml", "<a/>");
    Texts arguments = row.arguments;
    arguments.insert(arguments.end(), {"-H", "values:x,y", file});
    TerminalSettings settings{row.isTerminal, false, row.environment, {}};
    const ProcessResult result = runHost(arguments, settings);
    const std::string name = row.isColoured ? "\x1B[35m" + file + "\x1B[m\x1B[36m:\x1B[m" : file + ":";
    EXPECT_EQ(row.isTerminal ? result.out : result.out + result.err, name + "x\n" + name + "y\n");
    EXPECT_EQ(result.status, 0);
}

INSTANTIATE_TEST_SUITE_P(
    All, TerminalColours,
    testing::Values(ColourRow{"terminal", {}, true, {}, true}, ColourRow{"automatic", {"--color=auto"}, true, {}, true},
                    ColourRow{"always_on_a_terminal", {"--color=always"}, true, {}, true},
                    ColourRow{"always_without_value", {"--color"}, true, {{"NO_COLOR", "1"}}, true},
                    ColourRow{"never", {"--color=never"}, true, {}, false},
                    ColourRow{"variable_against_it", {}, true, {{"NO_COLOR", "1"}}, false},
                    ColourRow{"empty_variable", {}, true, {{"NO_COLOR", ""}}, true},
                    ColourRow{"terminal_that_only_prints", {}, true, {{"TERM", "dumb"}}, false},
                    ColourRow{"pipe", {}, false, {}, false},
                    ColourRow{"always_in_a_pipe", {"--color=always"}, false, {}, true}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST_F(TerminalTest, CountsHaveColouredNames)
{
    const ProcessResult result = runHost({"-Hc", "values:x", m_File}, {});
    EXPECT_EQ(result.out, "\x1B[35m" + m_File + "\x1B[m\x1B[36m:\x1B[m1\n");
}

TEST_F(TerminalTest, JsonAndValuesHaveNoColours)
{
    EXPECT_EQ(runHost({"--color=always", "values:x", m_File}, {}).out, "x\n");
    EXPECT_EQ(runHost({"--color=always", "--json", "values:x", "-H", m_File}, {}).out,
              "{\"file\":\"" + m_File + "\",\"xpath\":\"values:x\",\"values\":[\"x\"]}\n");
}

TEST_F(TerminalTest, PlaceOfAnErrorIsColoured)
{
    const std::string start = "xmlvalue: error -15105: the expression is not recognised: refused:3\nrefused:3\n   ";
    TerminalSettings settings;
    settings.isOutput = false;
    EXPECT_EQ(runHost({"refused:3", m_File}, settings).err, start + "\x1B[1;31m^\x1B[m\n");
    settings.environment["NO_COLOR"] = "yes";
    EXPECT_EQ(runHost({"refused:3", m_File}, settings).err, start + "^\n");
}

// Progress

TEST_F(TerminalTest, ProgressIsShownAfterASecondAndGoes)
{
    TerminalSettings settings;
    settings.isOutput = false;
    const ProcessResult result = runHost({"-h", "slow:600", m_File, m_Other, m_File, m_Other}, settings);
    EXPECT_EQ(result.out, "value\nvalue\nvalue\nvalue\n");
    const std::string end = std::string("3 of 4 files, TIME") + s_Erase + "4 of 4 files, TIME" + s_Erase;
    EXPECT_TRUE(withoutTimes(result.err).ends_with(end)) << result.err;
}

TEST_F(TerminalTest, ValuesStandInThePlaceOfTheProgress)
{
    const ProcessResult result = runHost({"-h", "slow:1100", m_File, m_Other}, {});
    EXPECT_EQ(withoutTimes(result.out),
              std::string("value\n1 of 2 files, TIME") + s_Erase + "value\n2 of 2 files, TIME" + s_Erase);
    EXPECT_EQ(result.err, "");
}

TEST_F(TerminalTest, ErrorsStandInThePlaceOfTheProgress)
{
    const std::string missing = m_Folder.file("missing.xml");
    const ProcessResult result = runHost({"-c", "-h", "slow:1100", m_File, missing}, {});
    EXPECT_EQ(withoutTimes(result.out),
              std::string("1\n1 of 2 files, TIME") + s_Erase +
                  "xmlvalue: error -15103: the document could not be read as XML: " + missing + " (no such file)\n");
}

TEST_F(TerminalTest, ShortWorkShowsNoProgress)
{
    EXPECT_EQ(runHost({"-h", "slow:300", m_File, m_Other}, {}).out, "value\nvalue\n");
}

TEST_F(TerminalTest, NoProgressInAPipeOrOnATerminalThatOnlyPrints)
{
    TerminalSettings settings;
    settings.isError = false;
    EXPECT_EQ(runHost({"-q", "-e", "none", "-e", "slow:1100", m_File}, settings).err, "");
    settings.isError = true;
    settings.environment["TERM"] = "dumb";
    EXPECT_EQ(runHost({"-h", "slow:1100", m_File}, settings).out, "value\n");
}

// Input

TEST_F(TerminalTest, FileWithoutAnExpressionIsNotWaitedFor)
{
    const std::string reason = "xmlvalue: '" + m_File + "' is a file: the expression, which comes first, is missing\n";
    const ProcessResult result = runHost({m_File}, {});
    EXPECT_EQ(result.out, reason + "Try 'xmlvalue --help' for more information.\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(runHost({"--explain", "1", m_File}, {}).out.find(reason), std::string::npos);
}

// Interrupts

TEST_F(TerminalTest, CtrlCEndsTheWorkAndLeavesNoFile)
{
    const TemporaryFolder temporary;
    TerminalSettings settings;
    settings.interruptAt = "1 of 2 files";
    settings.environment["TMPDIR"] = temporary.path().string();
    // Timing keeps a temporary file open all the time.
    const ProcessResult result = runHost({"--time", "-c", "slow:300", m_File, m_Other}, settings);
    EXPECT_EQ(result.signal, SIGINT);
    EXPECT_TRUE(std::filesystem::is_empty(temporary.path()));
}
