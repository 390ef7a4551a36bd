#pragma once

#include "compile/XPathElements.h"
#include "values/XPathExpression.h"

#include <cstddef>
#include <string_view>

namespace XmlPlugin
{

/// Makes the tokens that the recogniser emits, and joins unions of operands into one operand each.
///
/// Ownership: the tokens belong to the elements that they are made in, which outlive the emitter.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathTokenizerTest.cpp
class XPathTokenEmitter
{
public:
    /// No more than \p i_Limit tokens are emitted.
    XPathTokenEmitter(XPathElements& io_Elements, std::size_t i_Limit) noexcept
        : m_Elements(io_Elements), m_Limit(i_Limit)
    {
    }

    // All texts live as long as the elements.

    /// An operator, parenthesis, comma or function; \p i_Next decides whether a name is one of a function.
    void token(std::wstring_view i_Text, std::wstring_view i_Next = {});
    /// A name, literal or number.
    void argument(std::wstring_view i_Text);
    /// A location path; with a plan if it is plain and quick code may walk it.
    void path(std::wstring_view i_Text);
    /// The 0 of a minus sign: "-x" is "(0 - x)".
    void negativeZero();

    /// Joins the texts around each "|" into one operand.
    void mergeUnions();

    /// In the order in which they were emitted.
    const XPathExpressionsVector& tokens() const noexcept { return m_ExprVector; }
    bool isLimitExceeded() const noexcept { return m_IsLimitExceeded; }
    std::size_t limit() const noexcept { return m_Limit; }
    void clear() noexcept { m_ExprVector.clear(); }

private:
    void add(XPathExpression& i_Token);
    XPathArgument& makePath(std::wstring_view i_Text);

    XPathElements& m_Elements;
    XPathExpressionsVector m_ExprVector;
    const std::size_t m_Limit;
    bool m_IsLimitExceeded = false;
};

} // namespace XmlPlugin
