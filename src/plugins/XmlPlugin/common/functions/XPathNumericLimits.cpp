#include "functions/XPathNumericLimits.h"

#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"

XML_TRACE_SOURCE(L"XPathNumericLimits")

namespace XmlPlugin
{

namespace
{

bool isInfinite(const XPathNumber& i_Number) noexcept
{
    return i_Number.m_Limit == PosInfType || i_Number.m_Limit == NegInfType;
}

bool isFinite(const XPathNumber& i_Number) noexcept
{
    return i_Number.m_Limit == NumbType;
}

/// One rule of "+" or "-": operands of these kinds give this result, whatever their numbers are.
struct SumRule
{
    LimitType left;
    LimitType right;
    LimitType result;
};

template <std::size_t Count>
LimitType firstRule(const SumRule (&i_Rules)[Count], const XPathNumber& i_Left, const XPathNumber& i_Right) noexcept
{
    for (const SumRule& rule : i_Rules)
    {
        if (rule.left == i_Left.m_Limit && rule.right == i_Right.m_Limit)
        {
            return rule.result;
        }
    }
    return NumbType;
}

// D-84: a not-a-number is no rule's operand and adds its stored 0: number('x') + 5 is 5. IEEE says NaN.
// D-85: two negative infinities have no rule: (-1 div 0) + (-1 div 0) is 0. IEEE says -Infinity.
constexpr SumRule s_PlusRules[] = {
    {NumbType, PosInfType, PosInfType},   {PosInfType, NumbType, PosInfType}, {NumbType, NegInfType, NegInfType},
    {NegInfType, NumbType, NegInfType},   {PosInfType, NegInfType, NaNType},  {NegInfType, PosInfType, NaNType},
    {PosInfType, PosInfType, PosInfType},
};

// D-86, D-87: an infinity minus a finite number changes its sign: (1 div 0) - 5 is -Infinity. IEEE says Infinity.
constexpr SumRule s_MinusRules[] = {
    {NumbType, PosInfType, NegInfType},   {PosInfType, NumbType, NegInfType}, {NumbType, NegInfType, PosInfType},
    {NegInfType, NumbType, PosInfType},   {PosInfType, PosInfType, NaNType},  {PosInfType, NegInfType, PosInfType},
    {NegInfType, PosInfType, NegInfType}, {NegInfType, NegInfType, NaNType},
};

LimitType traced(const wchar_t* i_Scope, LimitType i_Result)
{
    XML_TRACE_VALUE(i_Scope, L"result = ", static_cast<int>(i_Result));
    return i_Result;
}

/// No rule of "+", "-" and "*" is for two ordinary numbers. The general code goes through the rules.
bool isPlain(const XPathExpression& i_Left, const XPathExpression& i_Right, std::wstring_view i_Operator) noexcept
{
    return i_Left.getLimitType() == NumbType && i_Right.getLimitType() == NumbType &&
           (isToken(i_Operator, L'+') || isToken(i_Operator, L'-') || isToken(i_Operator, L'*')) &&
           XPathQuickCode::isAllowed();
}

LimitType multiply(const XPathNumber& i_Left, const XPathNumber& i_Right) noexcept
{
    // D-88: the sign is always that of the right operand's stored number, which is 0 for an infinity that was
    // computed: 2 * (1 div 0) has no rule and is 0. IEEE says Infinity.
    const bool isPositive =
        (i_Left.m_Limit == PosInfType && isFinite(i_Right)) || (i_Right.m_Limit == PosInfType && isFinite(i_Left));
    if (isPositive && i_Right.m_Value > 0.0)
    {
        return PosInfType;
    }
    if (isPositive && i_Right.m_Value < 0.0)
    {
        return NegInfType;
    }
    // D-89: a negative infinity stays negative whatever it is multiplied by: (-1 div 0) * -2 is -Infinity.
    // IEEE says Infinity.
    if ((i_Left.m_Limit == NegInfType && isFinite(i_Right)) || (i_Right.m_Limit == NegInfType && isFinite(i_Left)))
    {
        return NegInfType;
    }
    if ((i_Left.m_Value == 0.0 && isInfinite(i_Right)) || (i_Right.m_Value == 0.0 && isInfinite(i_Left)))
    {
        return NaNType;
    }
    return NumbType;
}

LimitType divideByZero(const XPathNumber& i_Left, bool i_IsNegativeZero) noexcept
{
    if (i_Left.m_Value > 0.0)
    {
        return i_IsNegativeZero ? NegInfType : PosInfType;
    }
    if (i_Left.m_Value < 0.0)
    {
        return i_IsNegativeZero ? PosInfType : NegInfType;
    }
    return NumbType;
}

LimitType divide(const XPathNumber& i_Left, const XPathNumber& i_Right) noexcept
{
    // D-92: only the stored numbers count here, and an infinity stores 0: 0 div (1 div 0) is NaN. IEEE says 0.
    if (i_Left.m_Value == 0.0 && i_Right.m_Value == 0.0)
    {
        return NaNType;
    }
    if (isInfinite(i_Right))
    {
        if (isFinite(i_Left))
        {
            return ZeroType;
        }
        return isInfinite(i_Left) ? NaNType : NumbType;
    }
    if (isFinite(i_Left) && i_Right.m_Value == 0.0)
    {
        return divideByZero(i_Left, i_Right.m_NegativeZero);
    }
    // D-93: an infinity divided by a finite number is its stored 0: (1 div 0) div 2 is 0. IEEE says Infinity.
    return NumbType;
}

} // namespace

int XPathNumericLimits::evaluate(const XPathExpression* i_pLeft, const XPathExpression* i_pRight,
                                 std::wstring_view i_Operator)
{
    if (isPlain(*i_pLeft, *i_pRight, i_Operator))
    {
        return NumbType;
    }
    const XPathNumber left = XPathNumber::of(*i_pLeft);
    const XPathNumber right = XPathNumber::of(*i_pRight);
    LimitType result = NumbType;
    if (isToken(i_Operator, L'+'))
    {
        result = evaluatePlus(left, right);
    }
    else if (isToken(i_Operator, L'-'))
    {
        result = evaluateMinus(left, right);
    }
    else if (isToken(i_Operator, L'*'))
    {
        result = evaluateMulti(left, right);
    }
    else if (i_Operator == L"div")
    {
        result = evaluateDiv(left, right);
    }
    else if (i_Operator == L"mod")
    {
        result = evaluateMod(left, right);
    }
    return traced(L"  XPathNumericLimits::evaluate", result);
}

LimitType XPathNumericLimits::evaluatePlus(const XPathNumber& i_Left, const XPathNumber& i_Right)
{
    return traced(L"  XPathNumericLimits::evaluatePlus", firstRule(s_PlusRules, i_Left, i_Right));
}

LimitType XPathNumericLimits::evaluateMinus(const XPathNumber& i_Left, const XPathNumber& i_Right)
{
    return traced(L"  XPathNumericLimits::evaluateMinus", firstRule(s_MinusRules, i_Left, i_Right));
}

LimitType XPathNumericLimits::evaluateMulti(const XPathNumber& i_Left, const XPathNumber& i_Right)
{
    return traced(L"  XPathNumericLimits::evaluateMulti", multiply(i_Left, i_Right));
}

LimitType XPathNumericLimits::evaluateDiv(const XPathNumber& i_Left, const XPathNumber& i_Right)
{
    return traced(L"  XPathNumericLimits::evaluateDiv", divide(i_Left, i_Right));
}

LimitType XPathNumericLimits::evaluateMod(const XPathNumber& i_Left, const XPathNumber& i_Right)
{
    static_cast<void>(i_Left); // whatever it is
    // D-97: limit types do not count, and an infinity stores 0: 5 mod (1 div 0) is NaN. IEEE says 5.
    return traced(L"  XPathNumericLimits::evaluateMod", i_Right.m_Value == 0.0 ? NaNType : NumbType);
}

} // namespace XmlPlugin
