#include "values/XPathArgument.h"

#include "ValueSupport.h"
#include "values/XPathNumberText.h"

#include <gtest/gtest.h>

#include <string>

using namespace XmlPlugin;

namespace
{

TEST(XPathArgument, TakesItsTypeFromTheText)
{
    struct Row
    {
        const char* text;
        DataType type;
        double number;
    };
    const Row rows[] = {
        {"'5'", NumberType, 5.0},     {"\"5\"", NumberType, 5.0},
        {"' 5 '", NumberType, 5.0},   {"5", NumberType, 5.0},
        {" 5", NumberType, 5.0},      {"12", NumberType, 12.0},
        {"-3.5", NumberType, -3.5},   {".5", NumberType, 0.5},
        {"5.", NumberType, 5.0},      {"- 5", NumberType, 0.0},
        {"-1 2", NumberType, -1.0},   {"'.'", NumberType, 0.0},
        {"'-'", NumberType, 0.0},     {"'-.'", NumberType, 0.0},
        {"-", NumberType, 0.0},       {"00012", NumberType, 12.0},
        {"'abc'", StringType, 0.0},   {"\"abc\"", StringType, 0.0},
        {"''", StringType, 0.0},      {"\"\"", StringType, 0.0},
        {"' '", StringType, 0.0},     {"\"'5'\"", StringType, 0.0},
        {"'1e3'", StringType, 0.0},   {"'+1'", StringType, 0.0},
        {"'1.2.3'", StringType, 0.0}, {"abc", NodeSetType, 0.0},
        {"1e3", NodeSetType, 0.0},    {"+1", NodeSetType, 0.0},
        {"1.2.3", NodeSetType, 0.0},  {"", NodeSetType, 0.0},
        {"\"abc'", NodeSetType, 0.0}, {"'", NodeSetType, 0.0},
        {"\"", NodeSetType, 0.0},     {"a/b[@x='1']", NodeSetType, 0.0},
        {"5 5", NodeSetType, 0.0},
    };
    for (const Row& row : rows)
    {
        const XPathArgument operand{String(row.text)};
        EXPECT_EQ(operand.GetDataType(), row.type) << row.text;
        EXPECT_EQ(operand.GetExpressionNumb(), row.number) << row.text;
        EXPECT_EQ(operand.getLimitType(), NumbType) << row.text;
        EXPECT_EQ(operand.text().toNarrow(), row.text);
        EXPECT_FALSE(operand.isOperator());
    }
}

TEST(XPathArgument, IsNumberAsItsTextSays)
{
    EXPECT_TRUE(XPathArgument::isNumber(String(L"-3.5")));
    EXPECT_FALSE(XPathArgument::isNumber(String(L"1e3")));
}

TEST(XPathArgument, NumberHasItsPrintedText)
{
    for (const double number : {0.5, 3.0, 1234567.0, -0.0})
    {
        const XPathArgument operand(number);
        EXPECT_EQ(operand.text(), XPathNumberText::print(number));
        EXPECT_EQ(operand.GetDataType(), NumberType);
        EXPECT_EQ(operand.getLimitType(), NumbType);
        EXPECT_EQ(operand.GetExpressionNumb(), number);
    }
}

TEST(XPathArgument, TextOfANumberSurvivesCopying)
{
    const XPathArgument operand(1234567.0);
    const String first = operand.text();
    EXPECT_EQ(operand.text(), first);
    EXPECT_EQ(operand.GetExpressionString().toNarrow(), "1.23457e+06");
}

TEST(XPathArgument, PutsThePathOfANodeInFront)
{
    Tree tree("p");
    Node* pA = tree.element(tree.root(), "a");
    struct Row
    {
        const char* expression;
        long position;
        const Node* node;
        const char* expected;
    };
    const Row rows[] = {
        {"b", 3, pA, "p/a[position()=3]/b"},
        {"b", 1, pA, "p/a[position()=1]/b"},
        {"b", 0, pA, "p/b"},
        {"b", -1, pA, "p/b"},
        {"//b", 2, pA, "p/a[position()=2]///b"},
        {"/x", 3, pA, "p//x"},
        {"/", 3, pA, "p//"},
        {"", 3, pA, "p/"},
        {"@id", 2, tree.root(), "p[position()=2]/@id"},
        {"b", 0, tree.root(), "b"},
        {"/x", 2, tree.root(), "/x"},
        {"b", 3, nullptr, "b"},
        {"/x", 3, nullptr, "/x"},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(XPathArgument::addPrefixToXPath(String(row.expression), row.position, row.node).toNarrow(),
                  row.expected);
    }
}

TEST(XPathArgument, FindsTheRoot)
{
    Tree tree("p");
    Node* pA = tree.element(tree.root(), "a");
    Node* pB = tree.element(pA, "b");
    EXPECT_EQ(XPathArgument::getXMLRootNode(pB), tree.root());
    EXPECT_EQ(XPathArgument::getXMLRootNode(tree.root()), tree.root());
    EXPECT_EQ(XPathArgument::getXMLRootNode(nullptr), nullptr);
}

TEST(XPathArgument, OnlyPathsAreEvaluated)
{
    for (const char* pText : {"5", "'abc'", "''"})
    {
        Tree tree("p");
        XPathArgument operand{String(pText)};
        operand.setStartNode(tree.root());
        operand.EvaluateXPath();
        EXPECT_TRUE(operand.getNodes().empty()) << pText;
    }
}

} // namespace
