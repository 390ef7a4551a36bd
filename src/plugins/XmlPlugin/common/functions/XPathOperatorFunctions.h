#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

// The operators. The last parameter is the right operand, the one before it the left.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathOperatorFunctionsTest.cpp

/// What both families of logical operators share: the comparison evaluator decides.
class XPathFunction_logicalBase : public XPathFunction
{
public:
    /// 0, or -15005 with fewer than two parameters.
    TErrorCode evaluate() final;

protected:
    XPathFunction_logicalBase(std::wstring_view i_Name, int i_Priority, const wchar_t* i_Scope);

private:
    const wchar_t* m_Scope; ///< name of the trace scope
};

/// "or" and "and".
class XPathFunction_logical final : public XPathFunction_logicalBase
{
public:
    static constexpr int s_Priority = 1;

    explicit XPathFunction_logical(std::wstring_view i_Name);
};

/// "=", "!=", "<", "<=", ">", ">="; also "(", ")" and ",", which stand in a token list for their priority only.
class XPathFunction_logical_eq final : public XPathFunction_logicalBase
{
public:
    static constexpr int s_Priority = 2;

    explicit XPathFunction_logical_eq(std::wstring_view i_Name);
};

/// "+" and "-". Not a number when an operand is missing.
class XPathFunction_aritmetical_plus final : public XPathFunction
{
public:
    static constexpr int s_Priority = 3;

    explicit XPathFunction_aritmetical_plus(std::wstring_view i_Name);

    int getArgumentsCount() const override;
    int getMinArgumentsCount() const override;
    /// Always 0.
    TErrorCode evaluate() override;
};

/// "*", "div" and "mod".
class XPathFunction_aritmetical_multi final : public XPathFunction
{
public:
    static constexpr int s_Priority = 4;

    explicit XPathFunction_aritmetical_multi(std::wstring_view i_Name);

    /// 0, or -15005 with fewer than two parameters.
    TErrorCode evaluate() override;

private:
    XPathNumber compute(double i_Left, double i_Right) const;
};

} // namespace XmlPlugin
