#include "values/XPathExpression.h"

#include "ValueSupport.h"
#include "values/XPathArgument.h"
#include "values/XPathText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

using namespace XmlPlugin;

namespace
{

TEST(XPathExpression, RemovesOnePairOfQuotes)
{
    struct Row
    {
        const char* text;
        const char* expected;
    };
    const Row rows[] = {
        {"\"abc\"", "abc"}, {"'abc'", "abc"}, {"\"abc'", "\"abc'"},   {"'abc\"", "'abc\""},
        {"\"\"", ""},       {"''", ""},       {"\"", "\""},           {"'", "'"},
        {"", ""},           {"abc", "abc"},   {"\"'abc'\"", "'abc'"}, {"'\"5\"'", "\"5\""},
        {"'a'b'", "a'b"},   {" 'a'", " 'a'"}, {"\"a\"b\"", "a\"b"},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(copyOf(removeQuotes(viewOf(String(row.text)))).toNarrow(), row.expected) << row.text;
    }
}

TEST(XPathExpression, TextConvertsByType)
{
    struct Row
    {
        const char* operand;
        const char* text;
    };
    const Row rows[] = {
        {"'abc'", "abc"}, {"\"abc\"", "abc"},    {"'5'", "5"},          {"5", "5"},           {"0.5", "0.5"},
        {"nan", "NaN"},   {"inf", "Infinity"},   {"-inf", "-Infinity"}, {"zero", "0"},        {"-0", "0"},
        {"raw -0", "-0"}, {"raw nan", "nan"},    {"raw inf", "inf"},    {"raw -inf", "-inf"}, {"true", "1"},
        {"false", "0"},   {"nodes 3|7", "a/@b"}, {"text abc", "abc"},   {"none", ""},
    };
    for (const Row& row : rows)
    {
        Values values;
        EXPECT_EQ(values(row.operand)->GetExpressionString().toNarrow(), row.text) << row.operand;
    }
}

TEST(XPathExpression, NumberConvertsByType)
{
    struct Row
    {
        const char* operand;
        double number;
    };
    const Row rows[] = {
        {"nodes", 0.0}, {"nodes 7", 1.0}, {"nodes 7|8|9", 3.0}, {"5", 5.0},      {"'5'", 5.0},
        {"'abc'", 0.0}, {"nan", 0.0},     {"inf", 0.0},         {"-inf", 0.0},   {"zero", 0.0},
        {"inf:3", 3.0}, {"true", 1.0},    {"false", 0.0},       {"text 7", 7.0}, {"text x", 0.0},
    };
    for (const Row& row : rows)
    {
        Values values;
        EXPECT_EQ(values(row.operand)->GetExpressionNumb(), row.number) << row.operand;
    }
    Values values;
    EXPECT_TRUE(std::isnan(values("none")->GetExpressionNumb()));
}

TEST(XPathExpression, BooleanConvertsByType)
{
    struct Row
    {
        const char* operand;
        bool truth;
    };
    const Row rows[] = {
        {"'abc'", true},   {"''", false},     {"\"\"", false}, {"text abc", true}, {"text ", false}, {"nodes", false},
        {"nodes x", true}, {"nodes |", true}, {"5", true},     {"0", false},       {"-0", false},    {"raw -0", false},
        {"'0'", true},     {"'5'", true},     {"\"0\"", true}, {"inf", true},      {"-inf", true},   {"nan", false},
        {"raw nan", true}, {"zero", false},   {"true", true},  {"false", false},   {"none", false},
    };
    for (const Row& row : rows)
    {
        Values values;
        EXPECT_EQ(values(row.operand)->GetExpressionBool(), row.truth) << row.operand;
    }
}

TEST(XPathExpression, QuotesAroundNothingAreTrueForNumbersAndBooleans)
{
    struct Row
    {
        DataType type;
        bool truth;
    };
    for (const Row& row : {Row{StringType, false}, Row{NumberType, true}, Row{BooleanType, true}, Row{NoType, false}})
    {
        XPathArgument operand(String(L"\"\""));
        operand.SetDataType(row.type);
        EXPECT_EQ(operand.GetExpressionBool(), row.truth) << row.type;
        EXPECT_TRUE(operand.GetExpressionString().isEmpty()) << row.type;
    }
}

TEST(XPathExpression, BaseIsNoOperator)
{
    XPathExpression element{String(L"x")};
    EXPECT_FALSE(element.isOperator());
    EXPECT_EQ(element.getPriority(), 0);
    EXPECT_FALSE(element.isInfix());
    EXPECT_EQ(element.getArgumentsCount(), 0);
    EXPECT_EQ(element.evaluate({}), -102);
    EXPECT_EQ(element.getOutputArgument(), nullptr);
    element.EvaluateXPath();
    EXPECT_TRUE(element.getNodes().empty());
}

TEST(XPathExpression, StartsEmpty)
{
    const XPathExpression element{String(L"x")};
    EXPECT_EQ(element.text(), String(L"x"));
    EXPECT_EQ(element.GetDataType(), NoType);
    EXPECT_EQ(element.getLimitType(), NumbType);
    EXPECT_FALSE(element.isNegativeZero());
    EXPECT_EQ(element.getStartNode(), nullptr);
    EXPECT_EQ(element.getRootPosition(), 0);
    EXPECT_EQ(element.getEvalContext(), nullptr);

    const XPathExpression number{2.5};
    EXPECT_TRUE(number.text().isEmpty());
    EXPECT_EQ(number.GetExpressionNumb(), 2.5);
}

TEST(XPathExpression, KeepsWhatItIsTold)
{
    Tree tree("a");
    const XPathEvalContext context;
    XPathExpression element{7.0};
    element.SetDataType(NumberType);
    element.setLimitType(PosInfType);
    element.setNegativeZero(true);
    element.setStartNode(tree.root());
    element.setRootPosition(4);
    element.setEvalContext(&context);
    EXPECT_EQ(element.GetDataType(), NumberType);
    EXPECT_EQ(element.getLimitType(), PosInfType);
    EXPECT_TRUE(element.isNegativeZero());
    EXPECT_EQ(element.getStartNode(), tree.root());
    EXPECT_EQ(element.getRootPosition(), 4);
    EXPECT_EQ(element.getEvalContext(), &context);
    EXPECT_EQ(element.GetExpressionNumb(), 7.0);
}

TEST(XPathExpression, ReplacedTextLeavesTheNumberAlone)
{
    XPathArgument number(5.0);
    number.setExpression(String(L"'7'"));
    EXPECT_EQ(number.text(), String(L"'7'"));
    EXPECT_EQ(number.GetExpressionString(), String(L"7"));
    EXPECT_EQ(number.GetExpressionNumb(), 5.0);
}

TEST(XPathExpression, HandsOverItsNodes)
{
    Values values;
    XPathExpression* pNodes = values("nodes 3|7");
    const XPathOutputList records = pNodes->takeNodes();
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(records[1]->m_Value, String(L"7"));
    EXPECT_TRUE(pNodes->getNodes().empty());
    EXPECT_EQ(pNodes->GetExpressionNumb(), 0.0);
}

TEST(XPathExpression, CreatesOperatorsAndOperands)
{
    struct Row
    {
        const char* token;
        const char* next;
        bool isOperator;
    };
    const Row rows[] = {
        {"+", "", true},        {"div", "", true},    {"and", "", true},     {"(", "", true},
        {"count", "(", true},   {"count", "", false}, {"count", ")", false}, {"Count", "(", false},
        {"nosuch", "(", false}, {"AND", "", false},   {"'a'", "", false},    {"a/b", "", false},
        {"5", "", false},       {"|", "", false},     {"", "(", false},
    };
    for (const Row& row : rows)
    {
        const std::unique_ptr<XPathExpression> pElement(
            XPathExpression::create(String(row.token), String(row.next), nullptr));
        EXPECT_EQ(pElement->isOperator(), row.isOperator) << row.token << ' ' << row.next;
        EXPECT_EQ(pElement->text().toNarrow(), row.token);
    }
}

} // namespace
