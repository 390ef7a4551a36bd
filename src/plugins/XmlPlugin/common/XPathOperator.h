#pragma once

#include "XPathExpression.h"

#include <memory>

namespace XmlPlugin
{

class XPathFunction;

/// An operator, parenthesis, comma or function call: everything that is no operand. Its behaviour
/// is its function's.
///
/// Ownership: owns its function, which owns the results.
/// Tested by: tests/plugins/XmlPlugin/common/XPathOperatorTest.cpp
class XPathOperator final : public XPathExpression
{
public:
    /// Takes ownership of \p i_pXPathFunction (not null) unless it throws. \p i_pPrevElement is not used.
    XPathOperator(const String& i_Expression, XPathExpression* i_pPrevElement, XPathFunction* i_pXPathFunction);
    ~XPathOperator() override;

    bool isOperator() const override;
    int getPriority() const override;
    bool isInfix() const override;
    /// Arguments to take from the stack: the function's own count, never its limits.
    int getArgumentsCount() const override;
    TErrorCode evaluate(const XPathExpressionsVector& i_Expressions) override;
    XPathExpression* getOutputArgument() const override;

    /// Drops arguments and result, so that the operator can be evaluated again; needed before
    /// every `evaluate` but the first.
    void reset() noexcept;
    void setArgumentsCount(int i_Count);
    /// Converts the arguments to the function's parameter types and hands them to it. Always true.
    bool convertTypeParameters(const XPathExpressionsVector& i_Expressions);

private:
    XPathExpression* m_OutputArgument = nullptr; ///< owned by the function
    std::unique_ptr<XPathFunction> m_pXPathFunction;
};

} // namespace XmlPlugin
