#include "xpathlanguage/XPathAxisTable.h"
#include "xpathlanguage/XPathFunctionTable.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using namespace XPathLanguage;
using ::testing::ElementsAre;

namespace
{

std::vector<std::string> textsOf(Level i_Level)
{
    std::vector<std::string> texts;
    for (const Operator& row : operatorsOf(i_Level))
    {
        texts.emplace_back(row.text.text());
    }
    return texts;
}

} // namespace

TEST(XPathWord, IsNarrowAndWide)
{
    constexpr Word word("local-name");
    EXPECT_EQ(word.text(), "local-name");
    EXPECT_EQ(word.wide(), L"local-name");
    EXPECT_EQ(word.text().data()[word.text().size()], '\0');
    EXPECT_EQ(word.wide().data()[word.wide().size()], L'\0');
    EXPECT_TRUE(word == "local-name");
    EXPECT_TRUE(word == L"local-name");
    EXPECT_FALSE(word == "local-nam");
    EXPECT_FALSE(word == L"local-name-");
}

// --- Axes ---------------------------------------------------------------------------------------

/// The axes, told independently of the table.
struct AxisRow
{
    const char* name;
    unsigned code;
    const char* hidden; ///< by this one
};

constexpr AxisRow s_ExpectedAxes[] = {
    {"ancestor-or-self", 8, ""},
    {"ancestor", 7, ""},
    {"attribute", 0, ""},
    {"child", 1, ""},
    {"descendant", 2, ""},
    {"descendant-or-self", 4, "descendant"},
    {"following", 5, ""},
    {"following-sibling", 9, "following"},
    {"namespace", 1, ""},
    {"parent", 11, ""},
    {"preceding-sibling", 10, ""},
    {"preceding", 6, ""},
    {"self", 3, ""},
};

TEST(XPathAxisTable, HoldsEveryAxis)
{
    ASSERT_EQ(std::size(s_Axes), std::size(s_ExpectedAxes));
    for (std::size_t i = 0; i < std::size(s_Axes); ++i)
    {
        const AxisRow& expected = s_ExpectedAxes[i];
        EXPECT_EQ(s_Axes[i].name.text(), expected.name);
        EXPECT_EQ(s_Axes[i].code, expected.code) << expected.name;
        EXPECT_EQ(hidingAxis(expected.name), expected.hidden) << expected.name;
        EXPECT_EQ(axisCode(s_Axes[i].name.text()), expected.code) << expected.name;
        EXPECT_EQ(axisCode(s_Axes[i].name.wide()), expected.code) << expected.name;
        EXPECT_EQ(axisName(expected.code), expected.name == std::string("namespace") ? "child" : expected.name);
    }
}

TEST(XPathAxisTable, KnowsNoOtherName)
{
    for (const std::string_view name : {"", "cousin", "Child", "childs", "chil", "descendant-or"})
    {
        EXPECT_EQ(axisCode(name), ChildAxis) << name;
    }
    EXPECT_EQ(axisName(12), "");
    EXPECT_EQ(hidingAxis("cousin"), "");
}

// --- Operators ----------------------------------------------------------------------------------

TEST(XPathOperatorTable, LevelsHoldTheirOperatorsInTheOrderInWhichTheyAreTried)
{
    EXPECT_THAT(textsOf(Level::Or), ElementsAre("or"));
    EXPECT_THAT(textsOf(Level::And), ElementsAre("and"));
    EXPECT_THAT(textsOf(Level::Equality), ElementsAre("!=", "="));
    EXPECT_THAT(textsOf(Level::Relational), ElementsAre("<=", ">=", "<", ">"));
    EXPECT_THAT(textsOf(Level::Additive), ElementsAre("+", "-"));
    EXPECT_THAT(textsOf(Level::Multiplicative), ElementsAre("*", "div", "mod"));
    EXPECT_THAT(textsOf(Level::None), ElementsAre("(", ")", ","));
}

TEST(XPathOperatorTable, EveryOperatorIsOfItsLevelAndHidesNone)
{
    for (const Operator& row : s_Operators)
    {
        EXPECT_EQ(levelOf(row.text.text()), row.level) << row.text.text();
        for (const Operator* pLater = &row + 1; pLater != std::end(s_Operators); ++pLater)
        {
            EXPECT_FALSE(pLater->text.text().starts_with(row.text.text())) << row.text.text();
        }
    }
    EXPECT_EQ(levelOf("|"), Level::None);
    EXPECT_EQ(levelOf(""), Level::None);
}

// --- Functions ----------------------------------------------------------------------------------

TEST(XPathFunctionTable, EveryNameIsFoundOnce)
{
    std::set<std::string_view> names;
    for (const Function& function : s_Functions)
    {
        EXPECT_EQ(findFunction(function.name.text()), &function);
        EXPECT_TRUE(names.insert(function.name.text()).second) << function.name.text();
        EXPECT_NE(function.answer, "") << function.name.text();
    }
    EXPECT_EQ(findFunction("id"), nullptr);
    EXPECT_EQ(findFunction(""), nullptr);
}

TEST(XPathFunctionTable, TellsHowAFunctionIsCalled)
{
    struct Row
    {
        const char* name;
        const char* call;
        const char* arguments;
        std::size_t required;
        std::size_t optional;
    };
    const Row rows[] = {
        {"position", "position()", "none; any number", 0, 0},
        {"count", "count(nodes)", "1; any number", 1, 0},
        {"name", "name(nodes?)", "0 or 1", 0, 1},
        {"concat", "concat(string, string, ...)", "2 or more", 2, 0},
        {"contains", "contains(string, string)", "2; any number", 2, 0},
        {"substring", "substring(string, number, number?)", "2 or 3", 2, 1},
        {"translate", "translate(string, string, string)", "3", 3, 0},
        {"floor", "floor(number)", "1", 1, 0},
    };
    for (const Row& row : rows)
    {
        const Function* pFunction = findFunction(row.name);
        ASSERT_NE(pFunction, nullptr) << row.name;
        EXPECT_EQ(pFunction->call(), row.call);
        EXPECT_EQ(pFunction->arguments(), row.arguments);
        EXPECT_EQ(pFunction->required(), row.required) << row.name;
        EXPECT_EQ(pFunction->optional(), row.optional) << row.name;
    }
}

TEST(XPathFunctionTable, LimitsFitTheParameters)
{
    for (const Function& function : s_Functions)
    {
        const auto most = static_cast<int>(function.required() + function.optional());
        const int expected = function.mayGoOn() ? NoLimit : most;
        EXPECT_TRUE(function.takesAnyNumber() || function.maximum == expected) << function.call();
    }
}
