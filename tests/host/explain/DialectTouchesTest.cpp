#include "docs/DocumentExamples.h"
#include "explain/Explainer.h"
#include "plugin/PluginLibrary.h"
#include "plugin/TraceLog.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>

// Every example of docs/dialect.md that shows a difference: the tool must name the difference when it explains the
// expression, or when it tells why it is refused.

namespace
{

class DialectTouches : public testing::Test
{
protected:
    bool isNamed(const std::string& i_Expression, const std::string& i_Path, int i_Difference)
    {
        const ExpressionFacts facts = m_Explainer.explain(i_Expression, i_Path);
        return std::any_of(facts.differences.begin(), facts.differences.end(),
                           [&](const Hint& i_Hint) { return i_Hint.difference == i_Difference; });
    }

    std::string namesOf(const std::string& i_Expression, const std::string& i_Path = "")
    {
        std::string names;
        for (const Hint& hint : m_Explainer.explain(i_Expression, i_Path).differences)
        {
            names += (names.empty() ? "" : " ") + differenceName(hint.difference);
        }
        return names;
    }

    TraceLog m_Trace{TraceOff};
    PluginLibrary m_Library{PLUGIN_MODULE};
    Evaluator m_Evaluator{m_Library, m_Trace, {}};
    Explainer m_Explainer{m_Evaluator};
};

/// The number of a heading "D-nn ...", or 0.
int differenceOf(const std::string& i_Heading)
{
    return i_Heading.starts_with("D-") ? std::atoi(i_Heading.c_str() + 2) : 0;
}

/// The document writes what the standard answers in one line, and no node in other words.
bool isDifferent(const DocumentExample& i_Example)
{
    std::string answer = i_Example.m_Answer == "(no value)\n" ? "no node\n" : i_Example.m_Answer;
    std::replace(answer.begin(), answer.end(), '\n', ' ');
    return !i_Example.m_Standard.empty() && answer != i_Example.m_Standard + " ";
}

} // namespace

TEST_F(DialectTouches, EveryExampleThatDiffersIsToldItsDifference)
{
    const DocumentExamples dialect = DocumentExamples::ofFile("dialect.md");
    int count = 0;
    for (const DocumentExample& example : dialect.examples())
    {
        const int difference = differenceOf(example.m_Heading);
        if (difference > 0 && isDifferent(example))
        {
            ++count;
            EXPECT_TRUE(isNamed(example.m_Expression, dialect.path(example), difference))
                << example.m_Heading << ": " << example.m_Expression
                << "\ntold: " << namesOf(example.m_Expression, dialect.path(example));
        }
    }
    EXPECT_GT(count, 150);
}

namespace
{

struct PlainRow
{
    const char* expression;
};

} // namespace

TEST_F(DialectTouches, PlainExpressionsTouchNothing)
{
    constexpr PlainRow rows[] = {{"library/shelf/book/@id"},
                                 {"/library/shelf/book[2]/@title"},
                                 {"//book[@lent='yes']/@id"},
                                 {"count(//book)"},
                                 {"count(//book) * 2 + 1"},
                                 {"1 + 2 * 3 = 7 and 2 > 1"},
                                 {"concat('a', 'b')"},
                                 {"library/shelf/*[name()='book']/@id"},
                                 {"library/shelf/book[last()]/@id"},
                                 {"//book[contains(@title, 'x')]/@id"},
                                 {"string-length('harbour')"},
                                 {"sum(//port/@number)"},
                                 {"not(//nothing)"},
                                 {"-(2 + 3) * 2"},
                                 {"//atlas/ancestor::shelf/@topic"},
                                 {"library/shelf/@topic | library/@name"},
                                 {"\"it's\""},
                                 {"round(2.6)"}};
    for (const PlainRow& row : rows)
    {
        EXPECT_EQ(namesOf(row.expression), "") << row.expression;
        EXPECT_EQ(namesOf(row.expression, SOURCE_FOLDER "/examples/library.xml"), "") << row.expression;
    }
}
