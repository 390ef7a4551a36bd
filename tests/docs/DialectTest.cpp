#include "DocumentExamples.h"

#include "xpathlanguage/XPathAxisTable.h"
#include "xpathlanguage/XPathFunctionTable.h"
#include "xpathlanguage/XPathOperatorTable.h"

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

TEST(Dialect, EveryFunctionHasItsRowInTheTable)
{
    std::string table = "|---|---|---|---|\n";
    for (const XPathLanguage::Function& function : XPathLanguage::s_Functions)
    {
        table += "| `" + function.call() + "` | " + function.arguments() + " | " + std::to_string(function.priority) +
                 " | " + std::string(function.answer) + " |\n";
    }
    EXPECT_THAT(dialect().text(), HasSubstr("| function | arguments | priority | answers |\n" + table));
}

TEST(Dialect, EveryFunctionHasAnExample)
{
    for (const XPathLanguage::Function& function : XPathLanguage::s_Functions)
    {
        const std::string call = std::string(function.name.text()) + "(";
        const auto isShown = [&](const DocumentExample& i_Example)
        { return i_Example.m_Heading == "Functions" && i_Example.m_Expression.find(call) != std::string::npos; };
        EXPECT_TRUE(std::any_of(dialect().examples().begin(), dialect().examples().end(), isShown)) << call;
    }
}

TEST(Dialect, GrammarHasEveryAxisAndOperator)
{
    const std::string& text = dialect().text();
    const std::string grammar = text.substr(text.find("Expr             ::="), text.find("## Functions"));
    for (const XPathLanguage::Axis& axis : XPathLanguage::s_Axes)
    {
        EXPECT_THAT(grammar, HasSubstr('"' + std::string(axis.name.text()) + '"'));
    }
    for (const XPathLanguage::Operator& row : XPathLanguage::s_Operators)
    {
        EXPECT_THAT(grammar, HasSubstr('"' + std::string(row.text.text()) + '"'));
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
