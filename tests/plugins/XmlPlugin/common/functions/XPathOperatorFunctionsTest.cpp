#include "functions/XPathOperatorFunctions.h"

#include "ValueSupport.h"

#include <gtest/gtest.h>

#include <memory>

using namespace XmlPlugin;

namespace
{

struct OperationRow
{
    const char* left;
    const char* oper;
    const char* right;
    const char* expected;
};

const OperationRow s_Rows[] = {
    // sums
    {"1", "+", "2", "number 3"},
    {"1234567", "+", "0", "number 1.23457e+06"},
    {"1", "-", "2", "number -1"},
    {"'5'", "+", "nodes 7|8", "number 12"},
    {"true", "+", "true", "number 2"},
    {"0", "-", "0", "number 0"},
    {"-0", "-", "0", "number 0 (-0)"},
    {"-0", "-", "-0", "number 0 (-0)"},
    {"0", "-", "-0", "number 0"},
    {"-0", "-", "5", "number -5"},
    {"0", "+", "0", "number 0"},
    {"-0", "+", "-0", "number 0"},
    {"-0", "+", "0", "number 0"},
    {"nan", "+", "5", "number 5"},
    {"'x'", "+", "5", "number 5"},
    {"none", "+", "5", "number 5"},
    {"nodes", "-", "5", "number -5"},
    {"inf", "+", "inf", "number Infinity"},
    {"-inf", "+", "-inf", "number 0"},
    {"inf", "+", "-inf", "number NaN"},
    {"inf", "-", "5", "number -Infinity"},
    {"-inf", "-", "5", "number Infinity"},
    {"5", "-", "inf", "number -Infinity"},
    {"zero", "+", "2", "number 2"},
    {"raw nan", "+", "1", "number nan"},
    {"raw inf", "-", "raw inf", "number nan"},
    // products
    {"2", "*", "3", "number 6"},
    {"0", "*", "-1", "number -0"},
    {"2", "*", "inf", "number 0"},
    {"inf", "*", "2", "number Infinity"},
    {"inf", "*", "-2", "number -Infinity"},
    {"-inf", "*", "-2", "number -Infinity"},
    {"0", "*", "inf", "number NaN"},
    {"inf", "*", "inf", "number NaN"},
    {"nan", "*", "5", "number 0"},
    {"none", "*", "5", "number 0"},
    {"1e200", "*", "1e200", "number inf"},
    // divisions
    {"7", "div", "2", "number 3.5"},
    {"1", "div", "0", "number Infinity"},
    {"-1", "div", "0", "number -Infinity"},
    {"1", "div", "-0", "number -Infinity"},
    {"-1", "div", "-0", "number Infinity"},
    {"0", "div", "0", "number NaN"},
    {"5", "div", "inf", "number 0 (zero)"},
    {"-5", "div", "inf", "number 0 (zero)"},
    {"5", "div", "-inf", "number 0 (zero)"},
    {"0", "div", "inf", "number NaN"},
    {"inf", "div", "2", "number 0"},
    {"inf", "div", "inf", "number NaN"},
    {"5", "div", "nan", "number Infinity"},
    {"5", "div", "'x'", "number Infinity"},
    {"nan", "div", "5", "number 0"},
    {"0", "div", "-5", "number -0"},
    // remainders
    {"7", "mod", "3", "number 1"},
    {"-7", "mod", "3", "number -1"},
    {"7", "mod", "-3", "number 1"},
    {"5.9", "mod", "2", "number 1"},
    {"5.5", "mod", "2", "number 1"},
    {"-6", "mod", "3", "number 0"},
    {"5", "mod", "0", "number NaN"},
    {"5", "mod", "0.5", "number NaN"},
    {"5", "mod", "-0.9", "number NaN"},
    {"5", "mod", "inf", "number NaN"},
    {"inf", "mod", "5", "number 0"},
    {"nan", "mod", "5", "number 0"},
    {"2147483647", "mod", "2147483647", "number 0"},
    {"2147483647", "mod", "10", "number 7"},
    {"2147483648", "mod", "10", "number -8"},
    {"-2147483648", "mod", "10", "number -8"},
    {"-2147483649", "mod", "10", "number -8"},
    {"-2147483648", "mod", "-1", "number 0"},
    {"-2147483648.5", "mod", "10", "number -8"},
    {"1e300", "mod", "10", "number -8"},
    {"5", "mod", "1e300", "number 5"},
    {"raw nan", "mod", "10", "number -8"},
    {"5", "mod", "raw inf", "number 5"},
    // comparisons and logic
    {"1", "=", "1", "boolean 1"},
    {"1", "!=", "1", "boolean 0"},
    {"1", "<", "2", "boolean 1"},
    {"1", "<=", "0", "boolean 0"},
    {"inf", ">", "5", "boolean 1"},
    {"inf", "<", "5", "boolean 0"},
    {"5", ">=", "5", "boolean 1"},
    {"5", "and", "inf", "boolean 1"},
    {"nan", "=", "nan", "boolean 0"},
    {"nan", "!=", "nan", "boolean 1"},
    {"0", "=", "'abc'", "boolean 1"},
    {"true", "and", "false", "boolean 0"},
    {"false", "or", "nodes x", "boolean 1"},
    {"none", "=", "none", "boolean 0"},
    {"none", "or", "true", "boolean 0"},
    // parentheses and the comma are decided as "=" when a list hands them two operands
    {"1", "(", "1", "boolean 1"},
    {"1", ")", "2", "boolean 0"},
    {"1", ",", "1", "boolean 1"},
};

TEST(XPathOperatorFunctions, Answer)
{
    for (const OperationRow& row : s_Rows)
    {
        EXPECT_EQ(call(row.oper, {row.left, row.right}), row.expected)
            << row.left << ' ' << row.oper << ' ' << row.right;
    }
}

TEST(XPathOperatorFunctions, EveryOperatorTakesEveryType)
{
    const char* const operands[] = {"5",    "-0",  "nan", "inf",  "-inf",  "zero",     "raw nan", "raw -inf",  "1e300",
                                    "none", "'5'", "'a'", "true", "false", "text abc", "nodes",   "nodes 3|x", "''"};
    for (const char* pOperator : {"+", "-", "*", "div", "mod"})
    {
        for (const char* pLeft : operands)
        {
            for (const char* pRight : operands)
            {
                EXPECT_TRUE(call(pOperator, {pLeft, pRight}).starts_with("number ")) << pLeft << pOperator << pRight;
            }
        }
    }
    for (const char* pOperator : {"=", "!=", "<", ">", "<=", ">=", "and", "or"})
    {
        for (const char* pLeft : operands)
        {
            for (const char* pRight : operands)
            {
                EXPECT_TRUE(call(pOperator, {pLeft, pRight}).starts_with("boolean ")) << pLeft << pOperator << pRight;
            }
        }
    }
}

TEST(XPathOperatorFunctions, MissingOperands)
{
    const CallRow rows[] = {
        {"+", {"1"}, "number NaN"}, {"-", {"1"}, "number NaN"}, {"+", {}, "-15005"},    {"*", {"1"}, "-15005"},
        {"div", {}, "-15005"},      {"mod", {"1"}, "-15005"},   {"=", {"1"}, "-15005"}, {"and", {}, "-15005"},
    };
    for (const CallRow& row : rows)
    {
        EXPECT_EQ(call(row.name, row.arguments), row.expected) << print(row.name, row.arguments);
    }

    // The functions themselves, without an operator that counts for them.
    for (const char* pOperator : {"*", "div", "mod", "=", "or", "("})
    {
        const std::unique_ptr<XPathFunction> pFunction(
            XPathFunctionFactory::selectOperator(String(pOperator), String(), nullptr));
        EXPECT_EQ(pFunction->evaluate(), -15005) << pOperator;
    }
    XPathFunction_aritmetical_plus plus{XPathOperatorRow{L"+", nullptr, 3}};
    EXPECT_EQ(plus.evaluate(), 0);
    EXPECT_EQ(describe(plus.getOutputExpression()), "number NaN");
    XPathFunction_aritmetical_multi unknown{XPathOperatorRow{L"?", nullptr, 4}};
    unknown.addConvertedParameter(std::make_unique<XPathArgument>(2.0));
    unknown.addConvertedParameter(std::make_unique<XPathArgument>(3.0));
    EXPECT_EQ(unknown.evaluate(), 0);
    EXPECT_EQ(describe(unknown.getOutputExpression()), "number 0");
}

} // namespace
