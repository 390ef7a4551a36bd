#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

/// Decides, before any arithmetic, whether an operation yields a special number, and which. The rules are specific to
/// this language, including their asymmetries.
///
/// Every function returns a `LimitType`: `NumbType` if the result must be computed from the stored numbers, `ZeroType`
/// if a division yields zero whatever they are. Operands must not be null.
/// Tested by: tests/plugins/XmlPlugin/common/functions/XPathNumericLimitsTest.cpp
class XPathNumericLimits
{
public:
    /// \p i_Operator is one of + - * div mod; `NumbType` for any other text.
    static int evaluate(const XPathExpression* i_pLeft, const XPathExpression* i_pRight, const String& i_Operator)
    {
        return evaluate(i_pLeft, i_pRight, viewOf(i_Operator));
    }
    static int evaluate(const XPathExpression* i_pLeft, const XPathExpression* i_pRight, std::wstring_view i_Operator);

    static LimitType evaluatePlus(const XPathNumber& i_Left, const XPathNumber& i_Right);
    static LimitType evaluateMinus(const XPathNumber& i_Left, const XPathNumber& i_Right);
    static LimitType evaluateMulti(const XPathNumber& i_Left, const XPathNumber& i_Right);
    static LimitType evaluateDiv(const XPathNumber& i_Left, const XPathNumber& i_Right);
    static LimitType evaluateMod(const XPathNumber& i_Left, const XPathNumber& i_Right);
};

} // namespace XmlPlugin
