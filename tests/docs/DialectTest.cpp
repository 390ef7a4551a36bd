#include "DocumentExamples.h"

#include "base/String.h"
#include "functions/XPathFunction.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <set>
#include <string>

using ::testing::HasSubstr;
using ::testing::IsEmpty;

namespace
{

/// Read once; documents of its own live as long as the program.
const DocumentExamples& dialect()
{
    static const DocumentExamples s_Dialect = DocumentExamples::ofFile("dialect.md");
    return s_Dialect;
}

/// The number of a heading "D-nn ...", or 0.
int differenceOf(const std::string& i_Heading)
{
    return i_Heading.starts_with("D-") ? std::atoi(i_Heading.c_str() + 2) : 0;
}

} // namespace

TEST(Dialect, IsWellFormed)
{
    EXPECT_THAT(dialect().problems(), IsEmpty());
    EXPECT_GT(dialect().examples().size(), 200U);
}

TEST(Dialect, EveryExampleAnswersAsWritten)
{
    for (const DocumentExample& example : dialect().examples())
    {
        EXPECT_EQ(example.m_Answer, dialect().run(example))
            << "docs/dialect.md:" << example.m_Line << ": " << example.m_Expression;
    }
}

TEST(Dialect, DifferencesAreNumberedWithoutGaps)
{
    int last = 0;
    for (const std::string& heading : dialect().headings())
    {
        if (!heading.starts_with("D-"))
        {
            continue;
        }
        EXPECT_EQ(last + 1, differenceOf(heading)) << heading;
        last = differenceOf(heading);
    }
    EXPECT_GT(last, 50);
}

TEST(Dialect, EveryDifferenceHasAnExampleThatDiffers)
{
    std::set<std::string> shown;
    for (const DocumentExample& example : dialect().examples())
    {
        const bool isDifferent = example.m_Answer != example.m_Standard + "\n";
        if (!example.m_Standard.empty() && isDifferent)
        {
            shown.insert(example.m_Heading);
        }
    }
    for (const std::string& heading : dialect().headings())
    {
        if (differenceOf(heading) > 0)
        {
            EXPECT_TRUE(shown.contains(heading)) << heading;
        }
    }
}

TEST(Dialect, ExamplesOfDifferencesSayWhatTheStandardAnswers)
{
    for (const DocumentExample& example : dialect().examples())
    {
        if (differenceOf(example.m_Heading) > 0)
        {
            EXPECT_NE("", example.m_Standard) << "docs/dialect.md:" << example.m_Line;
        }
    }
}

TEST(Dialect, ReferencesLeadToDifferences)
{
    int last = 0;
    for (const std::string& heading : dialect().headings())
    {
        last = std::max(last, differenceOf(heading));
    }
    const std::string& text = dialect().text();
    for (std::size_t place = text.find("D-"); place != std::string::npos; place = text.find("D-", place + 1))
    {
        const int number = std::atoi(text.c_str() + place + 2);
        EXPECT_LE(number, last) << text.substr(place, 20);
    }
}

TEST(Dialect, EveryFunctionHasARowAndAnExample)
{
    for (const XmlPlugin::XPathFunctionRow& row : XmlPlugin::XPathFunctionFactory::functions())
    {
        const std::string call = String(row.name.data()).toNarrow() + "(";
        EXPECT_THAT(dialect().text(), HasSubstr("\n| `" + call));
        bool isShown = false;
        for (const DocumentExample& example : dialect().examples())
        {
            isShown =
                isShown || (example.m_Heading == "Functions" && example.m_Expression.find(call) != std::string::npos);
        }
        EXPECT_TRUE(isShown) << call;
    }
}

TEST(Dialect, RowsOfFunctionsHoldTheirPriorities)
{
    for (const XmlPlugin::XPathFunctionRow& row : XmlPlugin::XPathFunctionFactory::functions())
    {
        const std::string& text = dialect().text();
        const std::size_t begin = text.find("\n| `" + String(row.name.data()).toNarrow() + "(");
        ASSERT_NE(std::string::npos, begin);
        const std::string line = text.substr(begin + 1, text.find('\n', begin + 1) - begin - 1);
        EXPECT_THAT(line, HasSubstr(" | " + std::to_string(row.priority) + " | "));
    }
}

// --- The reader of examples itself --------------------------------------------------------------

namespace
{

struct MalformedRow
{
    const char* name;
    const char* text;
    const char* problem;
};

class MalformedBlock : public ::testing::TestWithParam<MalformedRow>
{
};

} // namespace

// clang-format off
constexpr MalformedRow s_MalformedRows[] = {
    {"no_document",      "```xpath\n> 1\n1\n```\n",                            "line 2: an example without a document"},
    {"unknown_document", "```xpath\ndocument: x.xml\n> 1\n1\n```\n",           "line 3: there is no document x.xml"},
    {"no_answer",        "```xpath\ndocument: library.xml\n> 1\n```\n",        "line 3: an example without an answer"},
    {"no_first_answer",  "```xpath\ndocument: library.xml\n> 1\n> 2\n2\n```\n", "line 3: an example without an answer"},
    {"no_expression",    "```xpath\ndocument: library.xml\n```\n",             "line 2: a block without an expression"},
    {"stray_line",       "```xpath\nx\n> 1\n1\n```\n",                         "line 2: neither a setting nor an expression: x"},
    {"blank_line",       "```xpath\ndocument: library.xml\n> 1\n1\n\n```\n",   "line 5: no answer can stand here"},
    {"late_answer",      "```xpath\ndocument: library.xml\n> 1\n1\nXPath 1.0: 1\n2\n```\n", "line 6: no answer can stand here"},
    {"not_closed",       "```xpath\ndocument: library.xml\n> 1\n1\n",          "line 1: a block is not closed"},
    {"unknown_kind",     "```xpaht\n> 1\n1\n```\n",                            "line 1: a block of an unknown kind: xpaht"},
    {"second_document",  "```xml a.xml\n<a/>\n```\n```xml a.xml\n<a/>\n```\n", "line 4: a second document of this name"},
};
// clang-format on

TEST_P(MalformedBlock, IsReported)
{
    const DocumentExamples examples(GetParam().text);
    EXPECT_THAT(examples.problems(), ::testing::Contains(GetParam().problem));
}

INSTANTIATE_TEST_SUITE_P(Rows, MalformedBlock, ::testing::ValuesIn(s_MalformedRows),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });
