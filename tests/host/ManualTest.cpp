#include "input/Options.h"
#include "support/Process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <vector>

// The man page and the completion of bash: both know the options that --help lists, and the page's examples run.

namespace
{

using Texts = std::vector<std::string>;

constexpr const char* s_Page = SOURCE_FOLDER "/docs/man/xmlvalue.1";
constexpr const char* s_Completion = SOURCE_FOLDER "/src/host/completion/xmlvalue.bash";

std::string readFile(const char* i_pPath)
{
    std::ifstream stream(i_pPath, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

Texts linesOf(const std::string& i_Text)
{
    Texts lines;
    std::istringstream stream(i_Text);
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

std::string replaced(std::string i_Text, const std::map<std::string, std::string>& i_Pairs)
{
    for (const auto& [from, to] : i_Pairs)
    {
        for (std::size_t place = i_Text.find(from); place != std::string::npos; place = i_Text.find(from, place))
        {
            i_Text.replace(place, from.size(), to);
            place += to.size();
        }
    }
    return i_Text;
}

std::string withoutEscapes(const std::string& i_Line)
{
    return replaced(i_Line, {{"\\-", "-"},
                             {"\\&", ""},
                             {"\\fI", ""},
                             {"\\fR", ""},
                             {"\\[u251C]", "\xE2\x94\x9C"},
                             {"\\[u2514]", "\xE2\x94\x94"},
                             {"\\[u2500]", "\xE2\x94\x80"}});
}

/// `-e, --expression=XPATH` for each option, in the order of the text.
Texts optionsOfHelp()
{
    Texts options;
    for (const std::string& line : linesOf(parseCommandLine({"--help"}).text))
    {
        const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
        if (begin > 0 && line.substr(begin).starts_with('-'))
        {
            options.push_back(line.substr(begin, line.find("  ", begin) - begin));
        }
    }
    return options;
}

Texts optionsOfPage()
{
    Texts options;
    const Texts lines = linesOf(readFile(s_Page));
    for (std::size_t i = 1; i < lines.size(); ++i)
    {
        const std::size_t begin = lines[i].find(" \\-");
        if (lines[i - 1] == ".TP" && begin != std::string::npos)
        {
            options.push_back(replaced(withoutEscapes(lines[i].substr(begin + 1)), {{" \", \" ", ", "}}));
        }
    }
    return options;
}

struct Example
{
    std::string command;
    std::string output;
};

std::vector<Example> examplesOfPage()
{
    std::vector<Example> examples;
    bool isInside = false;
    for (const std::string& line : linesOf(readFile(s_Page)))
    {
        if (line == ".EX" || line == ".EE")
        {
            isInside = line == ".EX";
        }
        else if (isInside && line.starts_with("$ "))
        {
            examples.push_back({withoutEscapes(line.substr(2)), ""});
        }
        else if (isInside)
        {
            examples.back().output += withoutEscapes(line) + '\n';
        }
    }
    return examples;
}

/// What the completion offers behind \p i_Words, sorted.
Texts complete(const Texts& i_Words)
{
    Texts arguments{"bash",
                    "-c",
                    "source \"$1\"; shift; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _xmlvalue 2>/dev/null; "
                    "printf '%s\\n' \"${COMPREPLY[@]}\"",
                    "bash",
                    s_Completion,
                    "xmlvalue"};
    arguments.insert(arguments.end(), i_Words.begin(), i_Words.end());
    Texts offers = linesOf(runProcess(arguments).out);
    std::sort(offers.begin(), offers.end());
    return offers;
}

} // namespace

TEST(Manual, HasTheOptionsOfTheHelp)
{
    const Texts help = optionsOfHelp();
    EXPECT_EQ(help.size(), 22U);
    Texts page = optionsOfPage();
    EXPECT_EQ(page, help);
}

TEST(Manual, ExamplesRun)
{
    const std::string folder = std::filesystem::path(HOST_PROGRAM).parent_path().string();
    const std::vector<Example> examples = examplesOfPage();
    EXPECT_GE(examples.size(), 7U);
    for (const Example& example : examples)
    {
        const ProcessResult result =
            runProcess({"/bin/sh", "-c", "cd \"$1\" && PATH=\"$2:$PATH\" && { " + example.command + "; } 2>&1", "sh",
                        SOURCE_FOLDER "/examples", folder});
        EXPECT_EQ(result.out, example.output) << example.command;
    }
}

TEST(Manual, IsFormattedWithoutWarnings)
{
    ProcessSettings settings;
    settings.environment = {{"MANWIDTH", "80"}, {"LC_ALL", "C.UTF-8"}};
    const ProcessResult result = runProcess({"man", "-E", "UTF-8", "-l", "--warnings", s_Page}, settings);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_NE(result.out.find("EXIT STATUS"), std::string::npos);
}

TEST(Completion, KnowsTheOptionsOfTheHelp)
{
    Texts expected;
    for (const std::string& option : optionsOfHelp())
    {
        const std::size_t begin = option.find("--");
        const std::size_t end = option.find_first_of("=[", begin);
        const bool needsValue = end != std::string::npos && option[end] == '=';
        expected.push_back(option.substr(begin, end - begin) + (needsValue ? "=" : ""));
    }
    std::sort(expected.begin(), expected.end());
    EXPECT_EQ(complete({"--"}), expected);
    EXPECT_EQ(complete({"a", "--list"}), (Texts{"--list-errors", "--list-functions"}));
    EXPECT_EQ(complete({"-"}).size(), expected.size() + 7);
}

TEST(Completion, KnowsTheValues)
{
    EXPECT_EQ(complete({"--color", "=", ""}), (Texts{"always", "auto", "never"}));
    EXPECT_EQ(complete({"--color", "="}), (Texts{"always", "auto", "never"}));
    EXPECT_EQ(complete({"--explain", "=", "d"}), Texts{"dot"});
    EXPECT_EQ(complete({"--trace", "=", ""}), (Texts{"error", "info", "warning"}));
    EXPECT_EQ(complete({"--trace", "=", "w"}), Texts{"warning"});
    EXPECT_EQ(complete({"-e", ""}), Texts{""}) << "an expression is not guessed";
}

TEST(Completion, OffersFiles)
{
    const std::string examples = SOURCE_FOLDER "/examples/";
    EXPECT_EQ(complete({"//a", examples + "libr"}), Texts{examples + "library.xml"});
    EXPECT_EQ(complete({"--files-from", "=", examples + "libr"}), Texts{examples + "library.xml"});
    EXPECT_EQ(complete({"//a", "--", "-"}), Texts{""}) << "no option";
    EXPECT_EQ(complete({"--color", "=", "always", "--", examples + "libr"}), Texts{examples + "library.xml"});
    EXPECT_EQ(complete({"--plugin", examples + "libr"}), Texts{examples + "library.xml"});
}
