#include "compile/XPathOperatorStack.h"

#include "values/XPathPrinter.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

struct StackRow
{
    const char* name;
    const char* input; ///< letters are operands, digits operators of that priority, besides ( , )
    const char* expected;
};

const StackRow s_Rows[] = {
    {"operand", "a", "a"},
    {"operator", "a1b", "ab1"},
    {"tighter_waits_above", "a1b2c", "abc21"},
    {"looser_lets_leave", "a2b1c", "ab2c1"},
    {"equal_lets_leave", "a1b1c", "ab1c1"},
    {"several_leave", "a1b2c3d1e", "abcd321e1"},
    {"parentheses", "(a1b)2c", "ab1c2"},
    {"inner_ones_stay_inside", "a3(b1c)", "abc13"},
    {"nested", "((a1b)2(c1d))", "ab1cd12"},
    {"call", "4(a1b,c)1d", "ab1c4d1"},
    {"comma_keeps_the_parenthesis", "4(a,b,c1d)", "abcd14"},
    {"empty_call", "4()", "4"},
    {"two_open_at_the_end", "a1((b2c", "abc2((1"},
};

/// The elements by their characters.
std::string postfixOf(const std::string& i_Input)
{
    std::vector<std::unique_ptr<XPathExpression>> elements;
    XPathOperatorStack stack;
    XPathExpressionsVector postfix;
    for (const char unit : i_Input)
    {
        elements.push_back(std::make_unique<XPathExpression>(String(&unit, 1)));
        XPathExpression& element = *elements.back();
        switch (unit)
        {
        case '(':
            stack.open(&element);
            break;
        case ',':
            stack.comma(postfix);
            break;
        case ')':
            stack.close(postfix);
            break;
        default:
            if (unit >= '0' && unit <= '9')
            {
                stack.oper(element, unit - '0', postfix);
            }
            else
            {
                postfix.push_back(&element);
            }
            break;
        }
    }
    stack.finish(postfix);
    EXPECT_TRUE(stack.empty());
    std::string text;
    for (const XPathExpression* pElement : postfix)
    {
        text += pElement->text().toNarrow();
    }
    return text;
}

TEST(XPathOperatorStack, PutsInPostfixOrder)
{
    for (const StackRow& row : s_Rows)
    {
        EXPECT_EQ(postfixOf(row.input), row.expected) << row.name;
    }
}

TEST(XPathOperatorStack, GoesInSingleSteps)
{
    XPathExpression plus(1.0);
    XPathExpression times(2.0);
    XPathOperatorStack stack;
    XPathExpressionsVector postfix;
    EXPECT_FALSE(stack.release(0, postfix)) << "nothing is there";
    EXPECT_FALSE(stack.releaseInner(postfix));
    stack.open();
    EXPECT_TRUE(stack.isOpen());
    EXPECT_EQ(stack.top(), nullptr);
    EXPECT_FALSE(stack.release(0, postfix)) << "a parenthesis stays";
    EXPECT_FALSE(stack.releaseInner(postfix));
    stack.push(plus, 1);
    stack.push(times, 2);
    EXPECT_FALSE(stack.release(3, postfix));
    EXPECT_TRUE(stack.release(2, postfix));
    EXPECT_FALSE(stack.release(2, postfix));
    EXPECT_TRUE(stack.releaseInner(postfix));
    EXPECT_TRUE(stack.isOpen());
    stack.close(postfix);
    EXPECT_TRUE(stack.empty());
    EXPECT_EQ(postfix, (XPathExpressionsVector{&times, &plus}))
        << "an opening parenthesis without an element leaves none";
}

} // namespace
