#pragma once

#include "values/XPathExpression.h"
#include "values/XPathSmallVector.h"

#include <limits>

namespace XmlPlugin
{

/// Puts the elements of an expression in postfix order. An operand leaves at once. An operator waits for an operator
/// that binds no tighter, a comma, the closing parenthesis or the end of the expression; then it leaves, after its
/// operands.
///
/// D-22: the only rule of priority, `leavesBefore`, applies to function names too: in "2 * count(a)" the "*" leaves
/// before "count" and finds only one operand. In XPath 1.0 a call binds tighter.
///
/// Ownership: borrows all elements.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathOperatorStackTest.cpp
class XPathOperatorStack
{
public:
    bool empty() const noexcept { return m_Waiting.empty(); }
    /// The element on top; null for a parenthesis that was opened without an element. The stack must not be empty.
    XPathExpression* top() const noexcept { return m_Waiting.back().m_pElement; }
    /// Whether a parenthesis is on top.
    bool isOpen() const noexcept { return !empty() && m_Waiting.back().m_Priority == s_Open; }

    /// Puts an operator on the stack, where it waits for its right operand. Those that bind at least as tightly leave
    /// first.
    void oper(XPathExpression& i_Operator, int i_Priority, XPathExpressionsVector& io_Postfix)
    {
        while (release(i_Priority, io_Postfix))
        {
        }
        push(i_Operator, i_Priority);
    }
    /// \p i_pParenthesis is the element that leaves if the parenthesis is still open at `finish`; may be null.
    void open(XPathExpression* i_pParenthesis = nullptr) { m_Waiting.push_back({i_pParenthesis, s_Open}); }
    /// The end of an argument: everything that waits inside the parenthesis leaves, and the parenthesis stays.
    void comma(XPathExpressionsVector& io_Postfix)
    {
        while (releaseInner(io_Postfix))
        {
        }
    }
    /// The closing parenthesis. There must be an open one.
    void close(XPathExpressionsVector& io_Postfix)
    {
        comma(io_Postfix);
        drop();
    }
    /// The end of the expression: everything leaves, including parentheses that are still open.
    void finish(XPathExpressionsVector& io_Postfix)
    {
        while (!empty())
        {
            releaseTop(io_Postfix);
        }
    }

    // The same in single steps, for a caller that records them.

    /// Whether an operator of priority \p i_Waiting leaves before one of priority \p i_Coming waits.
    static constexpr bool leavesBefore(int i_Waiting, int i_Coming) noexcept { return i_Waiting >= i_Coming; }
    /// Lets the top leave if it must leave before \p i_Priority. False if it stays.
    bool release(int i_Priority, XPathExpressionsVector& io_Postfix)
    {
        // s_Open is below every priority.
        return !empty() && leavesBefore(m_Waiting.back().m_Priority, i_Priority) && releaseTop(io_Postfix);
    }
    /// Lets the top leave unless it is a parenthesis. False if it stays or the stack is empty.
    bool releaseInner(XPathExpressionsVector& io_Postfix) { return !empty() && !isOpen() && releaseTop(io_Postfix); }
    /// Puts an operator on top of whatever is there. Without a priority, `release` never lets it leave.
    void push(XPathExpression& i_Operator, int i_Priority = 0) { m_Waiting.push_back({&i_Operator, i_Priority}); }
    /// Lets the top leave, whatever it is. Returns true.
    bool releaseTop(XPathExpressionsVector& io_Postfix)
    {
        if (XPathExpression* const pTop = top())
        {
            io_Postfix.push_back(pTop);
        }
        drop();
        return true;
    }
    /// Removes the top.
    void drop() noexcept { m_Waiting.pop_back(); }
    void clear() noexcept { m_Waiting.clear(); }

private:
    static constexpr int s_Open = std::numeric_limits<int>::min(); ///< the priority of a parenthesis

    struct Waiting
    {
        XPathExpression* m_pElement;
        int m_Priority;
    };
    XPathSmallVector<Waiting, 12> m_Waiting;
};

} // namespace XmlPlugin
