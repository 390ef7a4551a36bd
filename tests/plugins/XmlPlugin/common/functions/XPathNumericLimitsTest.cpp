#include "functions/XPathNumericLimits.h"

#include "ValueSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace XmlPlugin;

namespace
{

int limitOf(const char* i_Left, const char* i_Operator, const char* i_Right)
{
    Values values;
    return XPathNumericLimits::evaluate(values(i_Left), values(i_Right), String(i_Operator));
}

// Every kind against every kind: the left operand down, the right one across, both in this order.
// The number is 5, the others store 0, as those do that an expression computes.
constexpr const char* s_Kinds[] = {"5", "nan", "inf", "-inf", "zero"};

struct Grid
{
    const char* oper;
    const char* rows[5]; ///< 0 compute, 1 not a number, 2 Infinity, 3 -Infinity, 4 zero
};

const Grid s_Grids[] = {
    {"+", {"00230", "00000", "20210", "30100", "00000"}},   {"-", {"00320", "00000", "30120", "20310", "00000"}},
    {"*", {"00030", "00110", "21111", "31111", "00110"}},   {"div", {"02442", "01111", "01111", "01111", "01111"}},
    {"mod", {"01111", "01111", "01111", "01111", "01111"}},
};

TEST(XPathNumericLimits, EveryKindWithEveryKind)
{
    for (const Grid& grid : s_Grids)
    {
        for (std::size_t left = 0; left < std::size(s_Kinds); ++left)
        {
            for (std::size_t right = 0; right < std::size(s_Kinds); ++right)
            {
                EXPECT_EQ(limitOf(s_Kinds[left], grid.oper, s_Kinds[right]), grid.rows[left][right] - '0')
                    << s_Kinds[left] << ' ' << grid.oper << ' ' << s_Kinds[right];
            }
        }
    }
}

struct Row
{
    const char* left;
    const char* oper;
    const char* right;
    int expected;
};

// Signs, zeros, the flag and the stored numbers of infinities.
const Row s_Rows[] = {
    // "+" and "-" look at the kinds only
    {"-5", "+", "inf", PosInfType},
    {"inf", "+", "-5", PosInfType},
    {"0", "+", "-inf", NegInfType},
    {"-0", "+", "inf", PosInfType},
    {"inf:3", "+", "-inf:3", NaNType},
    {"-inf:3", "+", "-inf:3", NumbType},
    {"-0", "+", "-0", NumbType},
    {"raw nan", "+", "5", NumbType},
    {"raw nan", "+", "inf", PosInfType},
    {"-5", "-", "inf", NegInfType},
    {"inf", "-", "-5", NegInfType},
    {"-inf", "-", "0", PosInfType},
    {"0", "-", "-inf", PosInfType},
    {"-0", "-", "0", NumbType},
    {"inf:3", "-", "inf:3", NaNType},
    // "*": the sign is that of the right operand's stored number
    {"inf", "*", "-5", NegInfType},
    {"inf", "*", "0", NaNType},
    {"inf", "*", "-0", NaNType},
    {"5", "*", "inf:3", PosInfType},
    {"-5", "*", "inf:3", PosInfType},
    {"5", "*", "inf:-3", NegInfType},
    {"-5", "*", "inf", NumbType},
    {"0", "*", "inf", NaNType},
    {"0", "*", "inf:3", PosInfType},
    {"0", "*", "inf:-3", NegInfType},
    {"-inf", "*", "-5", NegInfType},
    {"-inf", "*", "0", NegInfType},
    {"-5", "*", "-inf", NegInfType},
    {"0", "*", "-inf", NegInfType},
    {"inf:3", "*", "inf:3", NumbType},
    {"inf:3", "*", "-inf:3", NumbType},
    {"-inf:3", "*", "-inf:3", NumbType},
    {"-inf:3", "*", "inf:3", NumbType},
    {"inf:3", "*", "nan", NaNType},
    {"inf:3", "*", "nan:3", NumbType},
    {"nan:3", "*", "-inf:3", NumbType},
    {"zero", "*", "inf:3", NaNType},
    {"inf", "*", "raw nan", NumbType},
    {"raw nan", "*", "inf", NumbType},
    {"raw nan", "*", "-inf", NegInfType},
    // "div": zero by zero, then a number by zero with both signs and the flag, then infinities
    {"0", "div", "0", NaNType},
    {"-0", "div", "0", NaNType},
    {"0", "div", "-0", NaNType},
    {"1", "div", "0", PosInfType},
    {"-1", "div", "-0", PosInfType},
    {"-1", "div", "0", NegInfType},
    {"1", "div", "-0", NegInfType},
    {"1", "div", "2", NumbType},
    {"0", "div", "5", NumbType},
    {"raw nan", "div", "0", NumbType},
    {"5", "div", "raw nan", NumbType},
    {"-5", "div", "nan", NegInfType},
    {"-5", "div", "zero", NegInfType},
    {"5", "div", "inf", ZeroType},
    {"-5", "div", "inf", ZeroType},
    {"5", "div", "-inf", ZeroType},
    {"5", "div", "inf:3", ZeroType},
    {"0", "div", "inf", NaNType},
    {"0", "div", "inf:3", ZeroType},
    {"inf:3", "div", "inf", NaNType},
    {"inf:3", "div", "-inf:3", NaNType},
    {"-inf:3", "div", "inf:3", NaNType},
    {"-inf:3", "div", "-inf", NaNType},
    {"inf", "div", "5", NumbType},
    {"-inf", "div", "-5", NumbType},
    {"inf:3", "div", "0", NumbType},
    {"nan:3", "div", "0", NumbType},
    {"nan:3", "div", "inf", NumbType},
    {"zero:3", "div", "inf", NumbType},
    // "mod": the right operand's stored number only
    {"5", "mod", "0", NaNType},
    {"5", "mod", "-0", NaNType},
    {"5", "mod", "raw -0", NaNType},
    {"5", "mod", "0.5", NumbType},
    {"5", "mod", "-3", NumbType},
    {"inf", "mod", "3", NumbType},
    {"nan", "mod", "3", NumbType},
    {"5", "mod", "inf:3", NumbType},
    {"5", "mod", "raw nan", NumbType},
    // what is no arithmetic operator
    {"1", "or", "0", NumbType},
    {"inf", "", "inf", NumbType},
    // a node set counts its nodes
    {"nodes", "div", "nodes", NaNType},
    {"nodes x|y", "div", "nodes", PosInfType},
    {"nodes x", "mod", "nodes", NaNType},
};

TEST(XPathNumericLimits, SignsZerosAndStoredNumbers)
{
    for (const Row& row : s_Rows)
    {
        EXPECT_EQ(limitOf(row.left, row.oper, row.right), row.expected)
            << row.left << ' ' << row.oper << ' ' << row.right;
    }
}

TEST(XPathNumericLimits, OperationsAnswerAsTheDispatchDoes)
{
    const XPathNumber infinity = XPathNumber::special(PosInfType);
    const XPathNumber five{5.0};
    const XPathNumber zero{0.0};
    EXPECT_EQ(XPathNumericLimits::evaluatePlus(five, infinity), PosInfType);
    EXPECT_EQ(XPathNumericLimits::evaluateMinus(infinity, five), NegInfType);
    EXPECT_EQ(XPathNumericLimits::evaluateMulti(infinity, five), PosInfType);
    EXPECT_EQ(XPathNumericLimits::evaluateDiv(five, infinity), ZeroType);
    EXPECT_EQ(XPathNumericLimits::evaluateMod(five, zero), NaNType);
}

} // namespace
