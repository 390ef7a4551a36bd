#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

class XPathMemory;

/// An operator, parenthesis, comma or function call: everything that is not an operand. Its function determines its
/// behaviour.
///
/// Ownership: owns its function, which owns the results. A function chosen by a row is created when the operator is
/// first evaluated (a parenthesis never is), in the same memory as the operator.
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
    /// Number of arguments to take from the stack: the count of this call, not the limits of the function.
    int getArgumentsCount() const override;
    TErrorCode evaluate(const XPathExpressionsVector& i_Expressions) override;
    XPathExpression* getOutputArgument() const override;

    /// Drops arguments and result, so that the operator can be evaluated again. Must be called before every `evaluate`
    /// except the first.
    void reset() noexcept;
    void setArgumentsCount(int i_Count);
    /// Converts the arguments to the parameter types of the function and passes them to it. Always returns true. Unless
    /// a sink wants trace records, an argument whose conversion would make no difference, such as a number used as a
    /// text, is passed on unchanged.
    bool convertTypeParameters(const XPathExpressionsVector& i_Expressions);

private:
    XPathFunction& function() { return m_pXPathFunction ? *m_pXPathFunction : makeFunction(); }
    XPathFunction& makeFunction();
    void convertWithRecords(const XPathExpressionsVector& i_Expressions);

    XPathExpression* m_OutputArgument = nullptr; ///< owned by the function
    XPathFunctionChoice m_Choice;                ///< empty if the constructor received the function
    XPathMemory* m_pMemory = nullptr;            ///< null: the function is on the heap
    XPathFunction* m_pXPathFunction = nullptr;
    int m_ArgumentsCount = 0; ///< of the call, until the function exists
};

} // namespace XmlPlugin
