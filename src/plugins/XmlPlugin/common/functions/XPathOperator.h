#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

class XPathMemory;

/// An operator, parenthesis, comma or function call: everything that is no operand. Its behaviour
/// is its function's.
///
/// Ownership: owns its function, which owns the results. A function chosen by a row is made when the operator is first
/// evaluated, which a parenthesis never is, in the memory that the operator itself lies in.
/// Tested by: tests/plugins/XmlPlugin/common/functions/XPathOperatorTest.cpp
class XPathOperator final : public XPathExpression
{
public:
    /// Takes ownership of \p i_pXPathFunction (not null) unless it throws. \p i_pPrevElement is not used.
    XPathOperator(const String& i_Expression, XPathExpression* i_pPrevElement, XPathFunction* i_pXPathFunction);
    XPathOperator(const XPathFunctionChoice& i_Choice, XPathMemory& i_Memory);
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
    /// Converts the arguments to the function's parameter types and hands them to it. Always true. While nobody listens
    /// to the traces, an argument whose conversion would read the same, a number as a text for one, is handed on as it
    /// is.
    bool convertTypeParameters(const XPathExpressionsVector& i_Expressions);

private:
    XPathFunction& function() { return m_pXPathFunction ? *m_pXPathFunction : makeFunction(); }
    XPathFunction& makeFunction();
    void convertWithRecords(const XPathExpressionsVector& i_Expressions);

    XPathExpression* m_OutputArgument = nullptr; ///< owned by the function
    XPathFunctionChoice m_Choice;                ///< nothing for an operator that was given its function
    XPathMemory* m_pMemory = nullptr;            ///< null: the function is on the heap
    XPathFunction* m_pXPathFunction = nullptr;
    int m_ArgumentsCount = 0; ///< of the call, until the function is there
};

} // namespace XmlPlugin
