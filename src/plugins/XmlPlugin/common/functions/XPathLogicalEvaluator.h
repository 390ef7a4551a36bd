#pragma once

#include "values/XPathExpression.h"

namespace XmlPlugin
{

/// Decides every comparison and every "and" and "or". Uses a table indexed by the types of both operands and by the
/// operator.
///
/// Every handler takes the left operand, the right operand (neither null) and the text of the operator, and returns 1
/// (true) or 0. There are no errors.
/// Threads: no state.
/// Tested by: tests/plugins/XmlPlugin/common/functions/XPathLogicalEvaluatorTest.cpp
class XPathLogicalEvaluator
{
public:
    using Operand = const XPathExpression*;

    /// Decides \p i_pExp2 \p i_Operator \p i_pExp1: the right operand comes first. An unknown operator counts as "=". A
    /// value without a type makes everything false.
    static unsigned evaluate(Operand i_pExp1, Operand i_pExp2, const String& i_Operator);

    /// 0 number, 1 not a number, 2 Infinity, 3 -Infinity, 4 boolean, 5 string, 6 node set; -1 for anything else.
    static int getTypeIndex(Operand i_pExpression);
    /// "=" 0, "!=" 1, "<" 2, ">" 3, "<=" 4, ">=" 5, "and" 6, "or" 7; 0 for any other text.
    static int getOperIndex(const String& i_Operator);

    /// Compares two numbers. For "and" and "or", any number except 0 is true. Returns 0 for an unknown operator.
    static unsigned evaluateLogicalOperation(double i_Number1, double i_Number2, const String& i_Operator);

    static unsigned evaluateBoolNumber(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateStringNumber(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNumberString(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateStringBool(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateBoolString(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateStringString(Operand i_pLeft, Operand i_pRight, const String& i_Operator);

    // A node set is compared by its records: true if one of them makes the comparison true.
    static unsigned evaluateNodeNumber(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNumberNode(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNodeNaN(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNaNNode(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNodeInf(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNodeNInf(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateInfNode(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNInfNode(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateStringNode(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNodeString(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
    static unsigned evaluateNodeNodeOperation(Operand i_pLeft, Operand i_pRight, const String& i_Operator);
};

} // namespace XmlPlugin
