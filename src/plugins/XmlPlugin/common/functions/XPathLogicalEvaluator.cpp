#include "functions/XPathLogicalEvaluator.h"

#include "functions/XPathRecordTexts.h"
#include "values/XPathArgument.h"
#include "values/XPathNumberText.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

XML_TRACE_SOURCE(L"XPathLogicalEvaluator")

namespace XmlPlugin
{

namespace
{

using Operand = XPathLogicalEvaluator::Operand;

enum Oper : int
{
    Unknown = -1,
    Equal = 0,
    NotEqual = 1,
    Less = 2,
    Greater = 3,
    LessOrEqual = 4,
    GreaterOrEqual = 5,
    And = 6,
    Or = 7
};

// clang-format off

/// What a cell of the decision table asks for. The right operand is the first one of `evaluate`,
/// the left one the second; handlers are named by the type of the right operand, then the left.
enum Action : char
{
    False            = '0',
    True             = '1',
    Numbers          = '2', ///< left number, right number
    NumberAndOne     = '3', ///< left number, 1 for the right infinity
    NumberAndZero    = '4', ///< left number, 0 for the right not-a-number
    OneAndNumber     = '5', ///< 1 for the left infinity, right number
    BoolNumber       = '6',
    ZeroAndNumber    = '7', ///< 0 for the left not-a-number, right number
    StringNumber     = '8',
    NumberString     = '9',
    ZeroAndBool      = 'A', ///< 0 for the left not-a-number, right boolean
    InfinityBools    = 'B', ///< left boolean, right boolean
    StringBool       = 'C',
    BoolString       = 'D',
    StringString     = 'E',
    NodeNumber       = 'F',
    NumberNode       = 'G',
    NodeNaN          = 'H',
    NaNNode          = 'I',
    RightBoolAndZero = 'J', ///< right boolean, 0
    NodeInf          = 'K',
    NodeNInf         = 'L',
    InfNode          = 'M',
    NInfNode         = 'N',
    BoolNodeBools    = 'O', ///< left boolean, right boolean
    Bools            = 'P', ///< left boolean, right boolean
    NodeString       = 'Q',
    StringNode       = 'R',
    RightBoolAndOne  = 'S', ///< right boolean, 1
    OneAndLeftBool   = 'T', ///< 1, left boolean
    ZeroAndLeftBool  = 'U', ///< 0, left boolean
    LeftBoolAndZero  = 'V', ///< left boolean, 0
    NodeNode         = 'W',
    NodeNaNBools     = 'X', ///< left boolean, right boolean
};

constexpr int s_Types = 7;

/// The decision table: down the type of the right operand, across that of the left; in a cell one
/// action for each of = != < > <= >= and or, in this order.
constexpr const char* s_Table[s_Types][s_Types] = {
    //               number      NaN         Infinity    -Infinity   boolean     string      node set
    /* number    */ {"22222222", "00000007", "01010151", "01101051", "66666666", "99999999", "GGGGGG66"},
    /* NaN       */ {"00000004", "01000000", "00000001", "00000001", "UU000004", "0000000V", "I000000I"},
    /* Infinity  */ {"01101031", "00000001", "10001111", "01101011", "TT1010TT", "010000B1", "0MM0M031"},
    /* -Infinity */ {"01010131", "00000001", "01010111", "10001111", "TT010131", "010000B1", "0N0N0NO1"},
    /* boolean   */ {"66666666", "JJ00000J", "55010155", "SS101051", "22222222", "DDDDDDDD", "OOOOOOOO"},
    /* string    */ {"88888888", "0000000A", "010000B1", "010000B1", "CCCCCCCC", "EEEEEEEE", "RRR0R0RR"},
    /* node set  */ {"FFFFFFPP", "HX00000P", "0K0K0K51", "0LL0L0P1", "PPPPPPPP", "QQ0Q00QQ", "WWWWWWWW"},
};

// clang-format on

Oper operOf(const String& i_Operator) noexcept
{
    static constexpr std::wstring_view names[] = {L"=", L"!=", L"<", L">", L"<=", L">=", L"and", L"or"};
    const std::wstring_view name = viewOf(i_Operator);
    for (int oper = Equal; oper <= Or; ++oper)
    {
        if (name.size() == names[oper].size() && name.front() == names[oper].front() && name == names[oper])
        {
            return static_cast<Oper>(oper);
        }
    }
    return Unknown;
}

bool isLogic(Oper i_Oper) noexcept
{
    return i_Oper == And || i_Oper == Or;
}

bool isEquality(Oper i_Oper) noexcept
{
    return i_Oper == Equal || i_Oper == NotEqual;
}

bool compare(double i_Left, double i_Right, Oper i_Oper) noexcept
{
    switch (i_Oper)
    {
    case Or:
        // D-81: a not-a-number differs from 0 and is true here. XPath 1.0 says false.
        return i_Left != 0.0 || i_Right != 0.0;
    case And:
        return i_Left != 0.0 && i_Right != 0.0;
    case Equal:
        return i_Left == i_Right;
    case NotEqual:
        return i_Left != i_Right;
    case Less:
        return i_Left < i_Right;
    case Greater:
        return i_Left > i_Right;
    case LessOrEqual:
        return i_Left <= i_Right;
    case GreaterOrEqual:
        return i_Left >= i_Right;
    default:
        return false;
    }
}

double numberOf(Operand i_pOperand)
{
    return i_pOperand->GetExpressionNumb();
}

double boolOf(Operand i_pOperand)
{
    return i_pOperand->GetExpressionBool() ? 1.0 : 0.0;
}

/// The comparison with its record.
bool decide(double i_Left, double i_Right, Oper i_Oper)
{
    const Trace trace(s_Tracer, L" XPathLogicalEvaluator::evaluateLogicalOperation");
    XML_TRACE(trace, TraceInformation) << L"numb1 = " << i_Left << L" numb2 = " << i_Right;
    return compare(i_Left, i_Right, i_Oper);
}

bool compareNumbers(Operand i_pLeft, Operand i_pRight, Oper i_Oper)
{
    return decide(numberOf(i_pLeft), numberOf(i_pRight), i_Oper);
}

bool compareBools(Operand i_pLeft, Operand i_pRight, Oper i_Oper)
{
    return decide(boolOf(i_pLeft), boolOf(i_pRight), i_Oper);
}

bool readsAsNumber(Operand i_pOperand)
{
    return XPathNumberText::isNumber(i_pOperand->stringView());
}

/// The same as `readNumber` by an operand that is made of the value, which leaves its records.
TRACE_COLD bool readTracedNumber(const XPathOutputElement& i_Record, double& o_Number)
{
    const XPathArgument operand(copyOf(i_Record.m_Value.view()));
    if (operand.GetDataType() != NumberType)
    {
        return false;
    }
    o_Number = XPathNumberText::numberOf(i_Record.m_Value.view());
    return true;
}

/// False for a value that does not read as a number.
bool readNumber(const XPathOutputElement& i_Record, double& o_Number)
{
    return TRACE_IS_ON(TraceInformation) ? readTracedNumber(i_Record, o_Number)
                                         : XPathNumberText::readOperand(i_Record.m_Value.view(), o_Number);
}

unsigned traced(const wchar_t* i_Scope, bool i_Result)
{
    const Trace trace(s_Tracer, i_Scope);
    XML_TRACE(trace, TraceInformation) << L"result = " << static_cast<unsigned>(i_Result);
    return i_Result ? 1 : 0;
}

/// True when some pair of texts that both read as numbers is so ordered: if any is, the extremes are.
bool haveOrderedNumbers(const XPathOutputList& i_Left, const XPathOutputList& i_Right, Oper i_Oper)
{
    const NumberRange left = numberRangeOf(i_Left);
    const NumberRange right = numberRangeOf(i_Right);
    const bool isUpwards = i_Oper == Less || i_Oper == LessOrEqual;
    return isUpwards ? compare(left.m_Smallest, right.m_Largest, i_Oper)
                     : compare(left.m_Largest, right.m_Smallest, i_Oper);
}

/// True for the operators in \p i_Opers when the node set has a node.
bool decideByPresence(Operand i_pNodes, const String& i_Operator, std::initializer_list<Oper> i_Opers)
{
    const bool isListed = std::find(i_Opers.begin(), i_Opers.end(), operOf(i_Operator)) != i_Opers.end();
    return isListed && !i_pNodes->getNodes().empty();
}

/// What the two handlers of a number and a string share.
/// D-100: both ask the number's text whether it reads as a number, and then compare the
/// string's stored number, which is 0 for a text like 'abc': 0 = 'abc' is true. XPath 1.0 says false.
bool compareNumberString(Operand i_pTested, Operand i_pLeft, Operand i_pRight, Oper i_Oper, const Trace& i_Trace)
{
    if (isLogic(i_Oper))
    {
        XML_TRACE(i_Trace, TraceInformation) << L"boolean evauation";
        return compareBools(i_pLeft, i_pRight, i_Oper);
    }
    if (readsAsNumber(i_pTested))
    {
        XML_TRACE(i_Trace, TraceInformation) << L"number evauation";
        return compareNumbers(i_pLeft, i_pRight, i_Oper);
    }
    return i_Oper == NotEqual;
}

unsigned perform(char i_Action, Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    using Evaluator = XPathLogicalEvaluator;
    switch (i_Action)
    {
    case True:
        return 1;
    case Numbers:
        return Evaluator::evaluateLogicalOperation(numberOf(i_pLeft), numberOf(i_pRight), i_Operator);
    case NumberAndOne:
        return Evaluator::evaluateLogicalOperation(numberOf(i_pLeft), 1.0, i_Operator);
    case NumberAndZero:
        return Evaluator::evaluateLogicalOperation(numberOf(i_pLeft), 0.0, i_Operator);
    case OneAndNumber:
        return Evaluator::evaluateLogicalOperation(1.0, numberOf(i_pRight), i_Operator);
    case BoolNumber:
        return Evaluator::evaluateBoolNumber(i_pLeft, i_pRight, i_Operator);
    case ZeroAndNumber:
        return Evaluator::evaluateLogicalOperation(0.0, numberOf(i_pRight), i_Operator);
    case StringNumber:
        return Evaluator::evaluateStringNumber(i_pLeft, i_pRight, i_Operator);
    case NumberString:
        return Evaluator::evaluateNumberString(i_pLeft, i_pRight, i_Operator);
    case ZeroAndBool:
        return Evaluator::evaluateLogicalOperation(0.0, boolOf(i_pRight), i_Operator);
    case InfinityBools:
    case BoolNodeBools:
    case Bools:
    case NodeNaNBools:
        return Evaluator::evaluateLogicalOperation(boolOf(i_pLeft), boolOf(i_pRight), i_Operator);
    case StringBool:
        return Evaluator::evaluateStringBool(i_pLeft, i_pRight, i_Operator);
    case BoolString:
        return Evaluator::evaluateBoolString(i_pLeft, i_pRight, i_Operator);
    case StringString:
        return Evaluator::evaluateStringString(i_pLeft, i_pRight, i_Operator);
    case NodeNumber:
        return Evaluator::evaluateNodeNumber(i_pLeft, i_pRight, i_Operator);
    case NumberNode:
        return Evaluator::evaluateNumberNode(i_pLeft, i_pRight, i_Operator);
    case NodeNaN:
        return Evaluator::evaluateNodeNaN(i_pLeft, i_pRight, i_Operator);
    case NaNNode:
        return Evaluator::evaluateNaNNode(i_pLeft, i_pRight, i_Operator);
    case RightBoolAndZero:
        return Evaluator::evaluateLogicalOperation(boolOf(i_pRight), 0.0, i_Operator);
    case NodeInf:
        return Evaluator::evaluateNodeInf(i_pLeft, i_pRight, i_Operator);
    case NodeNInf:
        return Evaluator::evaluateNodeNInf(i_pLeft, i_pRight, i_Operator);
    case InfNode:
        return Evaluator::evaluateInfNode(i_pLeft, i_pRight, i_Operator);
    case NInfNode:
        return Evaluator::evaluateNInfNode(i_pLeft, i_pRight, i_Operator);
    case NodeString:
        return Evaluator::evaluateNodeString(i_pLeft, i_pRight, i_Operator);
    case StringNode:
        return Evaluator::evaluateStringNode(i_pLeft, i_pRight, i_Operator);
    case RightBoolAndOne:
        return Evaluator::evaluateLogicalOperation(boolOf(i_pRight), 1.0, i_Operator);
    case OneAndLeftBool:
        return Evaluator::evaluateLogicalOperation(1.0, boolOf(i_pLeft), i_Operator);
    case ZeroAndLeftBool:
        return Evaluator::evaluateLogicalOperation(0.0, boolOf(i_pLeft), i_Operator);
    case LeftBoolAndZero:
        return Evaluator::evaluateLogicalOperation(boolOf(i_pLeft), 0.0, i_Operator);
    case NodeNode:
        return Evaluator::evaluateNodeNodeOperation(i_pLeft, i_pRight, i_Operator);
    default:
        return 0;
    }
}

} // namespace

// --- The decision -------------------------------------------------------------------------------

unsigned XPathLogicalEvaluator::evaluate(Operand i_pExp1, Operand i_pExp2, const String& i_Operator)
{
    const Trace trace(s_Tracer, L" XPathLogicalEvaluator::evaluate");
    XML_TRACE(trace, TraceInformation) << L"pExp1 = " << i_pExp1->GetExpressionString() << L" pExp2 = "
                                       << i_pExp2->GetExpressionString();
    const int row = getTypeIndex(i_pExp1);
    const int column = getTypeIndex(i_pExp2);
    const int oper = getOperIndex(i_Operator);
    XML_TRACE(trace, TraceInformation) << L"column = " << column << L" row = " << row << L" oper = " << oper;
    unsigned result = 0;
    if (row >= 0 && column >= 0)
    {
        const char action = s_Table[row][column][oper];
        // D-44: an unknown operator, such as a "(" that was left over, is decided as "=". XPath 1.0 knows none.
        if (operOf(i_Operator) == Unknown)
        {
            result = perform(action, i_pExp2, i_pExp1, String(L"="));
        }
        else
        {
            result = perform(action, i_pExp2, i_pExp1, i_Operator);
        }
    }
    XML_TRACE(trace, TraceInformation) << L"result = " << result;
    return result;
}

int XPathLogicalEvaluator::getTypeIndex(Operand i_pExpression)
{
    int index = -1;
    switch (i_pExpression->GetDataType())
    {
    case NumberType:
        // Kinds and indexes have the same numbers.
        // D-98: the zero of a division by an infinity has no index: 0 = 5 div (1 div 0) is false. IEEE says true.
        if (i_pExpression->getLimitType() != ZeroType)
        {
            index = i_pExpression->getLimitType();
        }
        break;
    case BooleanType:
        index = 4;
        break;
    case StringType:
        index = 5;
        break;
    case NodeSetType:
        index = 6;
        break;
    default:
        break;
    }
    XML_TRACE_VALUE(L" XPathLogicalEvaluator::getTypeIndex", L"result = ", index);
    return index;
}

int XPathLogicalEvaluator::getOperIndex(const String& i_Operator)
{
    const Oper oper = operOf(i_Operator);
    const int index = oper == Unknown ? static_cast<int>(Equal) : static_cast<int>(oper);
    XML_TRACE_VALUE(L" XPathLogicalEvaluator::getOperIndex", L"result = ", index);
    return index;
}

unsigned XPathLogicalEvaluator::evaluateLogicalOperation(double i_Number1, double i_Number2, const String& i_Operator)
{
    return decide(i_Number1, i_Number2, operOf(i_Operator)) ? 1 : 0;
}

// --- Handlers of single values ------------------------------------------------------------------

unsigned XPathLogicalEvaluator::evaluateBoolNumber(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    const Oper oper = operOf(i_Operator);
    bool result = false;
    // D-106: "and" and "or" look at the numbers, so that '0' or false() is false. XPath 1.0 says true.
    // A negative number is at no time ">=" a boolean.
    if (oper != GreaterOrEqual || !(numberOf(i_pLeft) < 0.0))
    {
        result = isEquality(oper) ? compareBools(i_pLeft, i_pRight, oper) : compareNumbers(i_pLeft, i_pRight, oper);
    }
    return traced(L" XPathLogicalEvaluator::evaluateBoolNumber", result);
}

unsigned XPathLogicalEvaluator::evaluateStringNumber(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    constexpr const wchar_t* scope = L" XPathLogicalEvaluator::evaluateNumberString"; // both handlers trace so
    const Trace trace(s_Tracer, scope);
    return traced(scope, compareNumberString(i_pLeft, i_pLeft, i_pRight, operOf(i_Operator), trace));
}

unsigned XPathLogicalEvaluator::evaluateNumberString(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    constexpr const wchar_t* scope = L" XPathLogicalEvaluator::evaluateNumberString";
    const Trace trace(s_Tracer, scope);
    return traced(scope, compareNumberString(i_pRight, i_pLeft, i_pRight, operOf(i_Operator), trace));
}

unsigned XPathLogicalEvaluator::evaluateStringBool(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    constexpr const wchar_t* scope = L" XPathLogicalEvaluator::evaluateStringBool";
    const Trace trace(s_Tracer, scope);
    const Oper oper = operOf(i_Operator);
    bool result = false;
    if (isEquality(oper) || isLogic(oper))
    {
        XML_TRACE(trace, TraceInformation) << L"boolean evaluation";
        result = compareBools(i_pLeft, i_pRight, oper);
    }
    else if (!readsAsNumber(i_pRight))
    {
        XML_TRACE(trace, TraceInformation) << L"string is NaN so result is false";
    }
    else
    {
        // D-105: the two change sides: true() < string(5) asks whether 5 < 1. XPath 1.0 asks whether 1 < 5.
        XML_TRACE(trace, TraceInformation) << L"number evaluation";
        result = compareNumbers(i_pRight, i_pLeft, oper);
    }
    return traced(scope, result);
}

unsigned XPathLogicalEvaluator::evaluateBoolString(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    constexpr const wchar_t* scope = L" XPathLogicalEvaluator::evaluateBoolString";
    const Trace trace(s_Tracer, scope);
    const Oper oper = operOf(i_Operator);
    bool result = false;
    if (isEquality(oper) || isLogic(oper))
    {
        XML_TRACE(trace, TraceInformation) << L"boolean evaluation";
        result = compareBools(i_pLeft, i_pRight, oper);
    }
    else if (readsAsNumber(i_pLeft))
    {
        XML_TRACE(trace, TraceInformation) << L"number evaluation. Numb1 = " << i_pLeft->GetExpressionString()
                                           << L" Numb2 = " << i_pRight->GetExpressionString();
        result = compareNumbers(i_pLeft, i_pRight, oper);
    }
    else
    {
        XML_TRACE(trace, TraceInformation) << L"string is NaN so result is false";
    }
    return traced(scope, result);
}

unsigned XPathLogicalEvaluator::evaluateStringString(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    constexpr const wchar_t* scope = L" XPathLogicalEvaluator::evaluateStringString";
    const Trace trace(s_Tracer, scope);
    const Oper oper = operOf(i_Operator);
    const std::wstring_view left = i_pLeft->stringView();
    const std::wstring_view right = i_pRight->stringView();
    bool result = false;
    const wchar_t* pDecision = nullptr;
    if (oper == Equal && left == right)
    {
        pDecision = L"EQ retuns 1";
    }
    else if (oper == NotEqual && left != right)
    {
        pDecision = L"INEQ returns 1";
    }
    else if (oper == And && !left.empty() && !right.empty())
    {
        pDecision = L"AND returns 1";
    }
    else if (oper == Or && (!left.empty() || !right.empty()))
    {
        pDecision = L"OR returns 1";
    }
    if (pDecision)
    {
        XML_TRACE(trace, TraceInformation) << pDecision;
        result = true;
    }
    else if (!isLogic(oper) && readsAsNumber(i_pLeft) && readsAsNumber(i_pRight))
    {
        // D-101: an equality that the texts do not decide goes on to the numbers, so that the strings 1.0 and 1
        // are both "=" and "!=". XPath 1.0 compares the texts only.
        XML_TRACE(trace, TraceInformation) << L"Both string arguments are number";
        result = compareNumbers(i_pLeft, i_pRight, oper);
    }
    return traced(scope, result);
}

// --- Handlers of node sets ----------------------------------------------------------------------

unsigned XPathLogicalEvaluator::evaluateNodeNumber(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    const Oper oper = operOf(i_Operator);
    if (isEquality(oper))
    {
        return traced(L" XPathLogicalEvaluator::evaluateNodeNumber",
                      evaluateNumberNode(i_pRight, i_pLeft, i_Operator) != 0);
    }
    const double number = numberOf(i_pLeft);
    const auto holds = [&](const XPathOutputElement* i_pRecord)
    {
        double value = 0.0;
        return readNumber(*i_pRecord, value) && compare(number, value, oper);
    };
    const XPathOutputList& records = i_pRight->getNodes();
    return traced(L" XPathLogicalEvaluator::evaluateNodeNumber", std::any_of(records.begin(), records.end(), holds));
}

unsigned XPathLogicalEvaluator::evaluateNumberNode(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    const Oper oper = operOf(i_Operator);
    const double number = numberOf(i_pRight);
    const auto holds = [&](const XPathOutputElement* i_pRecord)
    {
        double value = 0.0;
        if (!readNumber(*i_pRecord, value))
        {
            return oper == NotEqual;
        }
        return compare(value, number, oper);
    };
    const XPathOutputList& records = i_pLeft->getNodes();
    return traced(L" XPathLogicalEvaluator::evaluateNumberNode", std::any_of(records.begin(), records.end(), holds));
}

unsigned XPathLogicalEvaluator::evaluateNodeNaN(Operand, Operand, const String&)
{
    return traced(L" XPathLogicalEvaluator::evaluateNodeNaN", false);
}

unsigned XPathLogicalEvaluator::evaluateNaNNode(Operand i_pLeft, Operand, const String& i_Operator)
{
    return traced(L" XPathLogicalEvaluator::evaluateNaNNode", decideByPresence(i_pLeft, i_Operator, {Or}));
}

// D-103: against an infinity only the presence of nodes counts, not their numbers: @name < 1 div 0 is true for any
// text. XPath 1.0 says false where the text is no number.

unsigned XPathLogicalEvaluator::evaluateNodeInf(Operand, Operand i_pRight, const String& i_Operator)
{
    return traced(L" XPathLogicalEvaluator::evaluateNodeInf",
                  decideByPresence(i_pRight, i_Operator, {NotEqual, Greater, GreaterOrEqual}));
}

unsigned XPathLogicalEvaluator::evaluateNodeNInf(Operand, Operand i_pRight, const String& i_Operator)
{
    return traced(L" XPathLogicalEvaluator::evaluateNodeNInf",
                  decideByPresence(i_pRight, i_Operator, {NotEqual, Less, LessOrEqual}));
}

unsigned XPathLogicalEvaluator::evaluateInfNode(Operand i_pLeft, Operand, const String& i_Operator)
{
    return traced(L" XPathLogicalEvaluator::evaluateInfNode",
                  decideByPresence(i_pLeft, i_Operator, {NotEqual, Less, LessOrEqual}));
}

unsigned XPathLogicalEvaluator::evaluateNInfNode(Operand i_pLeft, Operand, const String& i_Operator)
{
    return traced(L" XPathLogicalEvaluator::evaluateNInfNode",
                  decideByPresence(i_pLeft, i_Operator, {NotEqual, Greater, GreaterOrEqual}));
}

/// D-102: texts only, never numbers; "<" and "<=" hold as soon as there is a node, ">" and
/// ">=" never do. XPath 1.0 compares the numbers of the node and of the string.
unsigned XPathLogicalEvaluator::evaluateStringNode(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    const XPathOutputList& records = i_pLeft->getNodes();
    const std::wstring_view text = i_pRight->stringView();
    bool result = false;
    switch (operOf(i_Operator))
    {
    case Or:
        result = !records.empty() || !text.empty();
        break;
    case And:
        result = !records.empty() && !text.empty();
        break;
    case Equal:
        result = hasText(records, text);
        break;
    case NotEqual:
        result = hasOtherText(records, text);
        break;
    case Less:
    case LessOrEqual:
        result = !records.empty();
        break;
    default:
        break;
    }
    return traced(L" XPathLogicalEvaluator::evaluateStringNode", result);
}

unsigned XPathLogicalEvaluator::evaluateNodeString(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    const Oper oper = operOf(i_Operator);
    if (isEquality(oper) || isLogic(oper))
    {
        return traced(L" XPathLogicalEvaluator::evaluateNodeString",
                      evaluateStringNode(i_pRight, i_pLeft, i_Operator) != 0);
    }
    return traced(L" XPathLogicalEvaluator::evaluateNodeString",
                  decideByPresence(i_pRight, i_Operator, {Less, LessOrEqual}));
}

unsigned XPathLogicalEvaluator::evaluateNodeNodeOperation(Operand i_pLeft, Operand i_pRight, const String& i_Operator)
{
    const XPathOutputList& left = i_pLeft->getNodes();
    const XPathOutputList& right = i_pRight->getNodes();
    const Oper oper = operOf(i_Operator);
    bool result = false;
    if (isLogic(oper))
    {
        result = compareBools(i_pLeft, i_pRight, oper);
    }
    else if (oper == Equal)
    {
        result = haveCommonText(left, right);
    }
    else if (oper == NotEqual)
    {
        result = haveDifferentTexts(left, right);
    }
    else
    {
        result = haveOrderedNumbers(left, right, oper);
    }
    return traced(L" XPathLogicalEvaluator::evaluateNodeNodeOperation", result);
}

} // namespace XmlPlugin
