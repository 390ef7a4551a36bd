#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

// The operators. The last parameter is the right operand, the one before it is the left one.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathOperatorFunctionsTest.cpp

/// Base of both families of logical operators: `XPathLogicalEvaluator` decides.
class XPathFunction_logicalBase : public XPathFunction
{
public:
    /// 0, or -15005 with fewer than two parameters.
    TErrorCode evaluate() final;

protected:
    XPathFunction_logicalBase(const XPathOperatorRow& i_Row, const wchar_t* i_Scope);

private:
    const wchar_t* m_Scope; ///< name of the trace scope
};

/// "or" and "and".
class XPathFunction_logical final : public XPathFunction_logicalBase
{
public:
    explicit XPathFunction_logical(const XPathOperatorRow& i_Row);
};

/// "=", "!=", "<", "<=", ">", ">="; also "(", ")" and ",", which are in a token list only for their priority.
class XPathFunction_logical_eq final : public XPathFunction_logicalBase
{
public:
    explicit XPathFunction_logical_eq(const XPathOperatorRow& i_Row);
};

/// "+" and "-". The result is not a number if an operand is missing.
class XPathFunction_aritmetical_plus final : public XPathFunction
{
public:
    explicit XPathFunction_aritmetical_plus(const XPathOperatorRow& i_Row);

    int getArgumentsCount() const override;
    int getMinArgumentsCount() const override;
    /// Always 0.
    TErrorCode evaluate() override;
};

/// "*", "div" and "mod".
class XPathFunction_aritmetical_multi final : public XPathFunction
{
public:
    explicit XPathFunction_aritmetical_multi(const XPathOperatorRow& i_Row);

    /// 0, or -15005 with fewer than two parameters.
    TErrorCode evaluate() override;

private:
    XPathNumber compute(double i_Left, double i_Right) const;
};

} // namespace XmlPlugin
