#include "functions/XPathLogicalEvaluator.h"

#include "ValueSupport.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>
#include <string>
#include <utility>

using namespace XmlPlugin;

namespace
{

constexpr const char* s_Operators[] = {"=", "!=", "<", ">", "<=", ">=", "and", "or"};
constexpr std::size_t s_OperatorCount = std::size(s_Operators);

/// left operator right for each operator, in the order = != < > <= >= and or.
struct CellRow
{
    const char* left;
    const char* right;
    const char* answers;
};

// Grouped by the type of the right operand, then of the left: number, not-a-number, Infinity,
// -Infinity, boolean, string, node set.
const CellRow s_Cells[] = {
    // --- number on the right
    {"3", "5", "01101011"},
    {"7", "2", "01010111"},
    {"0", "0", "10001100"},
    {"0", "2", "01101001"},
    {"raw nan", "1", "01000011"},
    {"raw nan", "0", "01000001"},
    {"nan", "5", "00000001"},
    {"nan", "0", "00000000"},
    {"inf", "5", "01010111"},
    {"inf", "0", "01010101"},
    {"-inf", "5", "01101011"},
    {"-inf", "0", "01101001"},
    {"true", "5", "10101011"},
    {"true", "0", "01010101"},
    {"true", "-3", "10010111"},
    {"true", "'0'", "10010101"},
    {"false", "5", "01101001"},
    {"false", "0", "10001100"},
    {"false", "-3", "01010101"},
    {"'abc'", "0", "10001101"},
    {"'abc'", "5", "01101011"},
    {"text 7", "5", "01010111"},
    {"text 7", "1e10", "01000011"},
    {"'abc'", "raw nan", "01000011"},
    {"''", "0", "10001100"},
    {"nodes 3|7", "5", "01111111"},
    {"nodes 5", "5", "10001111"},
    {"nodes x", "5", "01000011"},
    {"nodes 5", "0", "01010101"},
    {"nodes", "5", "00000001"},
    {"nodes", "0", "00000000"},
    // --- not-a-number on the right
    {"5", "nan", "00000001"},
    {"0", "nan", "00000000"},
    {"nan", "nan", "01000000"},
    {"inf", "nan", "00000001"},
    {"-inf", "nan", "00000001"},
    {"true", "nan", "01000001"},
    {"false", "nan", "10000000"},
    {"'abc'", "nan", "00000001"},
    {"''", "nan", "00000000"},
    {"nodes 3", "nan", "00000001"},
    {"nodes", "nan", "00000000"},
    // --- Infinity on the right
    {"5", "inf", "01101011"},
    {"0", "inf", "01101001"},
    {"nan", "inf", "00000001"},
    {"inf", "inf", "10001111"},
    {"-inf", "inf", "01101011"},
    {"true", "inf", "10101011"},
    {"false", "inf", "01101001"},
    {"'abc'", "inf", "01000011"},
    {"''", "inf", "01000001"},
    {"nodes 3", "inf", "01101011"},
    {"nodes x", "inf", "01101011"},
    {"nodes", "inf", "00000001"},
    // --- -Infinity on the right
    {"5", "-inf", "01010111"},
    {"0", "-inf", "01010101"},
    {"nan", "-inf", "00000001"},
    {"inf", "-inf", "01010111"},
    {"-inf", "-inf", "10001111"},
    {"true", "-inf", "10010111"},
    {"false", "-inf", "01010101"},
    {"'abc'", "-inf", "01000011"},
    {"''", "-inf", "01000001"},
    {"nodes 3", "-inf", "01010111"},
    {"nodes x", "-inf", "01010111"},
    {"nodes", "-inf", "00000001"},
    // --- boolean on the right
    {"5", "true", "10010111"},
    {"0", "true", "01101001"},
    {"0.5", "true", "10101011"},
    {"5", "false", "01010101"},
    {"0", "false", "10001100"},
    {"-3", "false", "01101001"},
    {"nan", "true", "01000001"},
    {"nan", "false", "10000000"},
    {"inf", "true", "10010111"},
    {"inf", "false", "01010101"},
    {"-inf", "true", "10101011"},
    {"-inf", "false", "01101001"},
    {"true", "true", "10001111"},
    {"true", "false", "01010101"},
    {"false", "true", "01101001"},
    {"false", "false", "10001100"},
    {"'abc'", "true", "10000011"},
    {"'abc'", "false", "01000001"},
    {"''", "false", "10000000"},
    {"text 5", "true", "10010111"},
    {"text 0", "true", "10101011"},
    {"text 0", "false", "01001101"},
    {"nodes 0", "true", "10001111"},
    {"nodes 0", "false", "01010101"},
    {"nodes", "true", "01101001"},
    {"nodes", "false", "10001100"},
    // --- string on the right
    {"5", "'abc'", "01010111"},
    {"0", "'abc'", "10001101"},
    {"5", "text 7", "01101011"},
    {"1e10", "text 7", "01000011"},
    {"0", "''", "10001100"},
    {"nan", "'abc'", "00000001"},
    {"nan", "''", "00000000"},
    {"inf", "'abc'", "01000011"},
    {"inf", "''", "01000001"},
    {"-inf", "'abc'", "01000011"},
    {"-inf", "''", "01000001"},
    {"true", "'abc'", "10000011"},
    {"false", "'abc'", "01000001"},
    {"false", "''", "10000000"},
    {"true", "text 5", "10010111"},
    {"true", "text 0", "10101011"},
    {"false", "text 3", "01010101"},
    {"false", "text 0", "01001101"},
    {"'abc'", "'abc'", "10000011"},
    {"'abc'", "'abd'", "01000011"},
    {"'abc'", "''", "01000001"},
    {"''", "''", "10000000"},
    {"text 1.0", "text 1", "11001111"},
    {"text 3", "text 5", "01101011"},
    {"text 5", "text 3", "01010111"},
    {"text 5", "text 5", "10001111"},
    {"text 5", "'abc'", "01000011"},
    {"nodes a|b", "'a'", "11101011"},
    {"nodes a", "'a'", "10101011"},
    {"nodes b", "'a'", "01101011"},
    {"nodes A", "'a'", "01101011"},
    {"nodes 05", "text 5", "01101011"},
    {"nodes a", "''", "01101001"},
    {"nodes", "'a'", "00000001"},
    {"nodes", "''", "00000000"},
    // --- node set on the right
    {"5", "nodes 3|7", "01111111"},
    {"5", "nodes 5", "10001111"},
    {"5", "nodes x", "01000011"},
    {"5", "nodes x|9", "01101011"},
    {"0", "nodes 5", "01101001"},
    {"5", "nodes", "00000001"},
    {"0", "nodes", "00000000"},
    {"nan", "nodes 3", "01000001"},
    {"nan", "nodes", "00000000"},
    {"inf", "nodes 3", "01010111"},
    {"inf", "nodes x", "01010111"},
    {"inf", "nodes", "00000001"},
    {"-inf", "nodes 3", "01101011"},
    {"-inf", "nodes x", "01101011"},
    {"-inf", "nodes", "00000001"},
    {"true", "nodes 0", "10001111"},
    {"true", "nodes", "01010101"},
    {"false", "nodes 0", "01101001"},
    {"false", "nodes", "10001100"},
    {"'a'", "nodes a|b", "11000011"},
    {"'a'", "nodes a", "10000011"},
    {"'a'", "nodes b", "01000011"},
    {"''", "nodes a", "01000001"},
    {"'a'", "nodes", "00000001"},
    {"''", "nodes", "00000000"},
    {"nodes 3|7", "nodes 5", "01111111"},
    {"nodes a", "nodes a", "10000011"},
    {"nodes a|a", "nodes a", "10000011"},
    {"nodes a|b", "nodes a", "11000011"},
    {"nodes a", "nodes a|b", "11000011"},
    {"nodes a|b", "nodes b|c", "11000011"},
    {"nodes 2", "nodes 2", "10001111"},
    {"nodes 1", "nodes 2|x", "01101011"},
    {"nodes x|9", "nodes 2", "01010111"},
    {"nodes 5.0", "nodes 5", "01001111"},
    {"nodes '5'", "nodes 4", "01010111"},
    {"nodes a", "nodes", "00000001"},
    {"nodes", "nodes a", "00000001"},
    {"nodes", "nodes", "00000000"},
    // --- a value of no type, and the zero that is no number of the table
    {"none", "none", "00000000"},
    {"none", "5", "00000000"},
    {"5", "none", "00000000"},
    {"none", "true", "00000000"},
    {"'abc'", "none", "00000000"},
    {"nodes 3", "none", "00000000"},
    {"zero", "0", "00000000"},
    {"0", "zero", "00000000"},
    {"zero", "nodes 0", "00000000"},
};

std::string answersOf(const CellRow& i_Row)
{
    Values values;
    const XPathExpression* pLeft = values(i_Row.left);
    const XPathExpression* pRight = values(i_Row.right);
    std::string answers;
    for (const char* pOperator : s_Operators)
    {
        answers += static_cast<char>('0' + XPathLogicalEvaluator::evaluate(pRight, pLeft, String(pOperator)));
    }
    return answers;
}

TEST(XPathLogicalEvaluator, DecidesEveryCell)
{
    for (const CellRow& row : s_Cells)
    {
        EXPECT_EQ(answersOf(row), row.answers) << row.left << " (= != < > <= >= and or) " << row.right;
    }
}

TEST(XPathLogicalEvaluator, RowsReachEveryCell)
{
    std::set<std::pair<int, int>> cells;
    for (const CellRow& row : s_Cells)
    {
        Values values;
        const int right = XPathLogicalEvaluator::getTypeIndex(values(row.right));
        const int left = XPathLogicalEvaluator::getTypeIndex(values(row.left));
        if (right >= 0 && left >= 0)
        {
            cells.emplace(right, left);
        }
        ASSERT_EQ(std::string(row.answers).size(), s_OperatorCount);
    }
    EXPECT_EQ(cells.size() * s_OperatorCount, 392u);
}

TEST(XPathLogicalEvaluator, KnowsTypes)
{
    struct Row
    {
        const char* operand;
        int index;
    };
    const Row rows[] = {{"5", 0},     {"'5'", 0},   {"nan", 1},   {"inf", 2},   {"-inf", 3},   {"true", 4},
                        {"'abc'", 5}, {"nodes", 6}, {"zero", -1}, {"none", -1}, {"raw nan", 0}};
    for (const Row& row : rows)
    {
        Values values;
        EXPECT_EQ(XPathLogicalEvaluator::getTypeIndex(values(row.operand)), row.index) << row.operand;
    }
}

TEST(XPathLogicalEvaluator, KnowsOperators)
{
    for (std::size_t i = 0; i < s_OperatorCount; ++i)
    {
        EXPECT_EQ(XPathLogicalEvaluator::getOperIndex(String(s_Operators[i])), static_cast<int>(i)) << s_Operators[i];
    }
    for (const char* pUnknown : {"<>", "", "==", "OR", "not", "(", " ="})
    {
        EXPECT_EQ(XPathLogicalEvaluator::getOperIndex(String(pUnknown)), 0) << pUnknown;
    }
}

TEST(XPathLogicalEvaluator, UnknownOperatorIsEquality)
{
    for (const CellRow& row : s_Cells)
    {
        Values values;
        const XPathExpression* pLeft = values(row.left);
        const XPathExpression* pRight = values(row.right);
        EXPECT_EQ(XPathLogicalEvaluator::evaluate(pRight, pLeft, String(L"<>")),
                  static_cast<unsigned>(row.answers[0] - '0'))
            << row.left << " <> " << row.right;
    }
}

TEST(XPathLogicalEvaluator, ComparesNumbers)
{
    struct Row
    {
        const char* left;
        const char* right;
        const char* answers;
    };
    const Row rows[] = {
        {"1", "2", "01101011"},       {"2", "1", "01010111"},
        {"2", "2", "10001111"},       {"0", "0", "10001100"},
        {"0", "raw -0", "10001100"},  {"raw nan", "1", "01000011"},
        {"1", "raw nan", "01000011"}, {"raw nan", "raw nan", "01000011"},
        {"raw nan", "0", "01000001"}, {"raw inf", "1", "01010111"},
    };
    for (const Row& row : rows)
    {
        Values values;
        const double left = values(row.left)->GetExpressionNumb();
        const double right = values(row.right)->GetExpressionNumb();
        std::string answers;
        for (const char* pOperator : s_Operators)
        {
            answers += static_cast<char>(
                '0' + XPathLogicalEvaluator::evaluateLogicalOperation(left, right, String(pOperator)));
        }
        EXPECT_EQ(answers, row.answers) << row.left << ' ' << row.right;
        EXPECT_EQ(XPathLogicalEvaluator::evaluateLogicalOperation(left, right, String(L"<>")), 0u);
    }
}

// What the table never asks of a handler.
TEST(XPathLogicalEvaluator, HandlersAnswerOnTheirOwn)
{
    using Handler = unsigned (*)(const XPathExpression*, const XPathExpression*, const String&);
    struct Row
    {
        const char* name;
        Handler handler;
        const char* left;
        const char* right;
        const char* answers;
    };
    const Row rows[] = {
        {"string_nodes_orderings", &XPathLogicalEvaluator::evaluateNodeString, "'a'", "nodes b", "01101011"},
        {"string_no_nodes", &XPathLogicalEvaluator::evaluateNodeString, "'a'", "nodes", "00000001"},
        {"nodes_string", &XPathLogicalEvaluator::evaluateStringNode, "nodes b", "'a'", "01101011"},
        {"inf_right", &XPathLogicalEvaluator::evaluateInfNode, "nodes 3", "inf", "01101000"},
        {"inf_left", &XPathLogicalEvaluator::evaluateNodeInf, "inf", "nodes 3", "01010100"},
        {"ninf_right", &XPathLogicalEvaluator::evaluateNInfNode, "nodes 3", "-inf", "01010100"},
        {"ninf_left", &XPathLogicalEvaluator::evaluateNodeNInf, "-inf", "nodes 3", "01101000"},
        {"inf_no_nodes", &XPathLogicalEvaluator::evaluateInfNode, "nodes", "inf", "00000000"},
        {"nan_right", &XPathLogicalEvaluator::evaluateNaNNode, "nodes 3", "nan", "00000001"},
        {"nan_left", &XPathLogicalEvaluator::evaluateNodeNaN, "nan", "nodes 3", "00000000"},
        {"negative_and_boolean", &XPathLogicalEvaluator::evaluateBoolNumber, "-1", "-2", "10010011"},
    };
    for (const Row& row : rows)
    {
        Values values;
        const XPathExpression* pLeft = values(row.left);
        const XPathExpression* pRight = values(row.right);
        std::string answers;
        for (const char* pOperator : s_Operators)
        {
            answers += static_cast<char>('0' + row.handler(pLeft, pRight, String(pOperator)));
        }
        EXPECT_EQ(answers, row.answers) << row.name;
    }
}

// A record without a value is compared by the text of its node, except with a number.
class NodeTexts : public testing::Test
{
protected:
    NodeTexts()
    {
        Node* pA = m_Tree.element(m_Tree.root(), "a");
        m_Tree.text(pA, "x");
        Node* pInner = m_Tree.element(pA, "i");
        m_Tree.text(pInner, "y");
        Node* pEmpty = m_Tree.element(m_Tree.root(), "e");
        m_pEmptyChild = m_Tree.element(pEmpty, "e");
        m_pNumber = m_Tree.element(m_Tree.root(), "n");
        m_Tree.text(m_pNumber, "7");
        m_pText = pA;
        m_pEmpty = pEmpty;
    }

    XPathExpression* nodes(std::initializer_list<const Node*> i_Nodes)
    {
        XPathExpression* pNodes = m_Values("nodes");
        for (const Node* pNode : i_Nodes)
        {
            m_Values.addRecord(*pNodes, "", pNode);
        }
        return pNodes;
    }

    std::string answers(const XPathExpression* i_pLeft, const XPathExpression* i_pRight)
    {
        std::string text;
        for (const char* pOperator : s_Operators)
        {
            text += static_cast<char>('0' + XPathLogicalEvaluator::evaluate(i_pRight, i_pLeft, String(pOperator)));
        }
        return text;
    }

    Tree m_Tree{"r"};
    Node* m_pText = nullptr;
    Node* m_pEmpty = nullptr;
    Node* m_pEmptyChild = nullptr;
    Node* m_pNumber = nullptr;
    Values m_Values;
};

TEST_F(NodeTexts, AgainstStrings)
{
    EXPECT_EQ(answers(nodes({m_pText}), m_Values("'xy'")), "10101011");
    EXPECT_EQ(answers(nodes({m_pText}), m_Values("'x'")), "01101011");
    EXPECT_EQ(answers(nodes({m_pEmpty, m_pEmptyChild, m_pText}), m_Values("'xy'")), "11101011");
    EXPECT_EQ(answers(nodes({m_pEmpty, m_pEmptyChild}), m_Values("''")), "10101001");
    EXPECT_EQ(answers(nodes({nullptr}), m_Values("''")), "10101001");
    EXPECT_EQ(answers(m_Values("'xy'"), nodes({m_pText})), "10000011");
}

TEST_F(NodeTexts, AgainstNodes)
{
    EXPECT_EQ(answers(nodes({m_pText}), m_Values("nodes xy")), "10000011");
    EXPECT_EQ(answers(m_Values("nodes q|xy"), nodes({m_pText})), "11000011");
    EXPECT_EQ(answers(nodes({m_pNumber}), m_Values("nodes 8")), "01101011");
    EXPECT_EQ(answers(nodes({m_pText, m_pNumber}), nodes({m_pNumber, m_pText})), "11001111");
    EXPECT_EQ(answers(nodes({m_pEmpty, m_pEmptyChild}), nodes({m_pEmptyChild})), "10000011");
}

TEST_F(NodeTexts, NumbersReadTheValueOnly)
{
    EXPECT_EQ(answers(nodes({m_pNumber}), m_Values("7")), "01000011");
    EXPECT_EQ(answers(m_Values("7"), nodes({m_pNumber})), "01000011");
}

TEST(XPathLogicalEvaluator, LargeNodeSetsAreComparedQuickly)
{
    constexpr int count = 10000;
    Values values;
    XPathExpression* pLeft = values("nodes");
    XPathExpression* pRight = values("nodes");
    XPathExpression* pSame = values("nodes");
    for (int i = 0; i < count; ++i)
    {
        values.addRecord(*pLeft, std::to_string(i));
        values.addRecord(*pRight, std::to_string(count + i));
        values.addRecord(*pSame, "7");
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(XPathLogicalEvaluator::evaluate(pRight, pLeft, String(L"=")), 0u);
    EXPECT_EQ(XPathLogicalEvaluator::evaluate(pRight, pLeft, String(L">")), 0u);
    EXPECT_EQ(XPathLogicalEvaluator::evaluate(pRight, pLeft, String(L"<")), 1u);
    EXPECT_EQ(XPathLogicalEvaluator::evaluate(pSame, pSame, String(L"!=")), 0u);
    EXPECT_EQ(XPathLogicalEvaluator::evaluate(pSame, pSame, String(L"<")), 0u);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

TEST(XPathLogicalEvaluator, NestedNodesWithoutTextAreWalkedOnce)
{
    constexpr int depth = 50000;
    Tree tree("a");
    Values values;
    XPathExpression* pNodes = values("nodes");
    Node* pNode = tree.root();
    for (int i = 0; i < depth; ++i)
    {
        pNode = tree.element(pNode, "a");
        values.addRecord(*pNodes, "", pNode);
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(XPathLogicalEvaluator::evaluate(values("'x'"), pNodes, String(L"=")), 0u);
    EXPECT_EQ(XPathLogicalEvaluator::evaluate(values("''"), pNodes, String(L"!=")), 0u);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
}

} // namespace
