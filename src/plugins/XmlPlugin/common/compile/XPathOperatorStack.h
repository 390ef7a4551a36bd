#pragma once

#include "values/XPathExpression.h"
#include "values/XPathSmallVector.h"

#include <limits>

namespace XmlPlugin
{

/// Puts the elements of an expression in postfix order: operands leave at once, an operator waits until one that binds
/// no tighter, a comma, the closing parenthesis or the end sends it after its operands.
///
/// D-22: the one rule of priority, `leavesBefore`, holds for function names too: in "2 * count(a)" the "*" leaves
/// before "count" and finds one operand only. XPath 1.0 says that a call binds tighter.
///
/// Ownership: borrows all elements.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathOperatorStackTest.cpp
class XPathOperatorStack
{
public:
    bool empty() const noexcept { return m_Waiting.empty(); }
    /// The element on top, null for a parenthesis opened without one; the stack is not empty.
    XPathExpression* top() const noexcept { return m_Waiting.back().m_pElement; }
    /// Whether a parenthesis is on top.
    bool isOpen() const noexcept { return !empty() && m_Waiting.back().m_Priority == s_Open; }

    /// An operator waits for its right operand, above all that bind less tightly.
    void oper(XPathExpression& i_Operator, int i_Priority, XPathExpressionsVector& io_Postfix)
    {
        while (release(i_Priority, io_Postfix))
        {
        }
        push(i_Operator, i_Priority);
    }
    /// \p i_pParenthesis stands for itself where `finish` finds it still open; may be null.
    void open(XPathExpression* i_pParenthesis = nullptr) { m_Waiting.push_back({i_pParenthesis, s_Open}); }
    /// The end of an argument: what waits inside the parenthesis leaves, the parenthesis stays.
    void comma(XPathExpressionsVector& io_Postfix)
    {
        while (releaseInner(io_Postfix))
        {
        }
    }
    /// The closing parenthesis. Needs an open one.
    void close(XPathExpressionsVector& io_Postfix)
    {
        comma(io_Postfix);
        drop();
    }
    /// The end of the expression: everything leaves, parentheses that are still open too.
    void finish(XPathExpressionsVector& io_Postfix)
    {
        while (!empty())
        {
            releaseTop(io_Postfix);
        }
    }

    // The same in single steps, for those who record them.

    /// Whether an operator of priority \p i_Waiting leaves before one of priority \p i_Coming waits.
    static constexpr bool leavesBefore(int i_Waiting, int i_Coming) noexcept { return i_Waiting >= i_Coming; }
    /// Lets the top leave if it leaves before \p i_Priority; false when it stays.
    bool release(int i_Priority, XPathExpressionsVector& io_Postfix)
    {
        // s_Open is below every priority.
        return !empty() && leavesBefore(m_Waiting.back().m_Priority, i_Priority) && releaseTop(io_Postfix);
    }
    /// Lets the top leave unless it is a parenthesis; false when it stays or there is none.
    bool releaseInner(XPathExpressionsVector& io_Postfix) { return !empty() && !isOpen() && releaseTop(io_Postfix); }
    /// Puts an operator on top, above whatever is there; without a priority it is never asked by `release`.
    void push(XPathExpression& i_Operator, int i_Priority = 0) { m_Waiting.push_back({&i_Operator, i_Priority}); }
    /// Lets the top leave, whatever it is; true.
    bool releaseTop(XPathExpressionsVector& io_Postfix)
    {
        if (XPathExpression* const pTop = top())
        {
            io_Postfix.push_back(pTop);
        }
        drop();
        return true;
    }
    /// Takes the top away.
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
