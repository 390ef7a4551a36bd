#pragma once

#include "compile/XPathElements.h"
#include "values/XPathExpression.h"

#include <cstddef>
#include <string_view>

namespace XmlPlugin
{

/// Creates the tokens that the recogniser emits, and joins each union of operands into one operand.
///
/// Ownership: the tokens belong to the `XPathElements` in which they are created, which must outlive the emitter.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathTokenizerTest.cpp
class XPathTokenEmitter
{
public:
    /// Emits at most \p i_Limit tokens.
    XPathTokenEmitter(XPathElements& io_Elements, std::size_t i_Limit) noexcept
        : m_Elements(io_Elements), m_Limit(i_Limit)
    {
    }

    // All texts must live as long as the elements.

    /// An operator, parenthesis, comma or function. \p i_Next decides whether a name is the name of a function.
    void token(std::wstring_view i_Text, std::wstring_view i_Next = {});
    /// A name, literal or number.
    void argument(std::wstring_view i_Text);
    /// A location path, with a plan if it is plain and quick code may walk it.
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
