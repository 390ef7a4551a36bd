#include "functions/XPathOperatorFunctions.h"

#include "functions/XPathLogicalEvaluator.h"
#include "functions/XPathNumericLimits.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <cstdint>
#include <limits>

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

namespace
{

constexpr DataType s_TwoNumbers[] = {NumberType, NumberType};

/// \p i_Number without its fraction; the smallest 32-bit integer when it is none of them.
std::int32_t truncate(double i_Number) noexcept
{
    constexpr double limit = 0x1p31;
    if (i_Number > -limit - 1.0 && i_Number < limit)
    {
        return static_cast<std::int32_t>(i_Number);
    }
    return std::numeric_limits<std::int32_t>::min();
}

/// D-96: "mod" truncates to 32-bit integers: 5.5 mod 2 is 1. XPath 1.0 says 1.5.
XPathNumber remainder(double i_Left, double i_Right) noexcept
{
    const std::int64_t left = truncate(i_Left);
    const std::int64_t right = truncate(i_Right);
    if (right == 0)
    {
        return XPathNumber::special(NaNType);
    }
    return {static_cast<double>(left % right)}; // 64 bits, because -2147483648 mod -1 leaves 32
}

} // namespace

// --- Comparisons and logic ----------------------------------------------------------------------

XPathFunction_logicalBase::XPathFunction_logicalBase(const XPathOperatorRow& i_Row, const wchar_t* i_Scope)
    : XPathFunction(i_Row), m_Scope(i_Scope)
{
    m_ResultType = BooleanType;
}

TErrorCode XPathFunction_logicalBase::evaluate()
{
    const TErrorCode result = requireParameters(2);
    // D-26: both operands have been evaluated, also where one decides. XPath 1.0 stops at the first that does.
    if (result == XML_SUCCESS)
    {
        createBoolean(XPathLogicalEvaluator::evaluate(&parameter(0), &parameter(1), name()) != 0);
    }
    XML_TRACE_VALUE(m_Scope, L"result = ", result);
    return result;
}

XPathFunction_logical::XPathFunction_logical(const XPathOperatorRow& i_Row)
    : XPathFunction_logicalBase(i_Row, L"TErrorCode XPathFunction_logical::evaluate()")
{
}

XPathFunction_logical_eq::XPathFunction_logical_eq(const XPathOperatorRow& i_Row)
    : XPathFunction_logicalBase(i_Row, L"TErrorCode XPathFunction_logical_eq::evaluate()")
{
}

// --- Sums ---------------------------------------------------------------------------------------

XPathFunction_aritmetical_plus::XPathFunction_aritmetical_plus(const XPathOperatorRow& i_Row) : XPathFunction(i_Row)
{
    m_ResultType = NumberType;
    m_ParameterTypes = s_TwoNumbers;
}

int XPathFunction_aritmetical_plus::getArgumentsCount() const
{
    return 2;
}

int XPathFunction_aritmetical_plus::getMinArgumentsCount() const
{
    return 1;
}

TErrorCode XPathFunction_aritmetical_plus::evaluate()
{
    LimitType limit = NaNType;
    double number = 0.0;
    bool isNegativeZero = false;
    if (m_Parameters.size() == 2)
    {
        const XPathExpression& left = parameter(1);
        const double a = left.GetExpressionNumb();
        const double b = parameter(0).GetExpressionNumb();
        const bool isMinus = isToken(m_Name, L'-');
        limit = static_cast<LimitType>(XPathNumericLimits::evaluate(&left, &parameter(0), m_Name));
        if (limit == NumbType)
        {
            number = isMinus ? a - b : a + b;
            // D-79: the flag alone, the number stays 0 and prints "0". "+" never sets it. IEEE says that -0 + -0 is -0.
            isNegativeZero = isMinus && a == 0.0 && b == 0.0 && left.isNegativeZero();
        }
    }
    createOutputExpression(number, limit, isNegativeZero);
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_aritmetical_plus::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

// --- Products -----------------------------------------------------------------------------------

XPathFunction_aritmetical_multi::XPathFunction_aritmetical_multi(const XPathOperatorRow& i_Row) : XPathFunction(i_Row)
{
    m_ResultType = NumberType;
    m_ParameterTypes = s_TwoNumbers;
}

XPathNumber XPathFunction_aritmetical_multi::compute(double i_Left, double i_Right) const
{
    if (isToken(m_Name, L'*'))
    {
        return {i_Left * i_Right};
    }
    if (m_Name == L"div")
    {
        return {i_Left / i_Right};
    }
    if (m_Name == L"mod")
    {
        return remainder(i_Left, i_Right);
    }
    return {};
}

TErrorCode XPathFunction_aritmetical_multi::evaluate()
{
    const TErrorCode result = requireParameters(2);
    if (result == XML_SUCCESS)
    {
        const XPathExpression& left = parameter(1);
        const XPathExpression& right = parameter(0);
        const auto limit = static_cast<LimitType>(XPathNumericLimits::evaluate(&left, &right, m_Name));
        createOutputExpression(limit != NumbType ? XPathNumber::special(limit)
                                                 : compute(left.GetExpressionNumb(), right.GetExpressionNumb()));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_aritmetical_multi::evaluate()", L"result = ", result);
    return result;
}

} // namespace XmlPlugin
