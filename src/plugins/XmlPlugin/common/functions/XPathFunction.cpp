#include "functions/XPathFunction.h"

#include "functions/XPathBooleanFunctions.h"
#include "functions/XPathContextFunctions.h"
#include "functions/XPathLetterIndex.h"
#include "functions/XPathNumberFunctions.h"
#include "functions/XPathOperatorFunctions.h"
#include "functions/XPathStringFunctions.h"
#include "values/XPathArgument.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <array>
#include <new>

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

namespace
{

template <class Function>
XPathFunction* make(void* i_pPlace, const XPathFunctionRow& i_Row)
{
    static_assert(sizeof(Function) <= XPathFunction::s_Size);
    return i_pPlace ? new (i_pPlace) Function(i_Row) : new Function(i_Row);
}

template <class Function>
XPathFunction* makeOperator(void* i_pPlace, const XPathOperatorRow& i_Row)
{
    static_assert(sizeof(Function) <= XPathFunction::s_Size);
    return i_pPlace ? new (i_pPlace) Function(i_Row.token) : new Function(i_Row.token);
}

using Types = std::span<const DataType>;

constexpr DataType s_String[] = {StringType};
constexpr DataType s_TwoStrings[] = {StringType, StringType};
constexpr DataType s_Substring[] = {StringType, NumberType, NumberType};
constexpr DataType s_Number[] = {NumberType};

constexpr int Count = XPathFunctionRow::Count;
constexpr int NoLimit = XPathFunctionRow::NoLimit;

// D-22, D-23: the priorities are irregular, and all but one are those of "*" or of "or". In XPath 1.0 a call binds
// tighter than any operator; here "2 * count(a)" puts the "*" in front of the call.
// clang-format off
constexpr XPathFunctionRow s_Functions[] = {
    // name             made by                             initial    max   min  prio  result       parameters
    {L"position",         make<XPathFunction_position>,        0,    Count, Count, 5, NumberType,  {},
     "place of the context node in the list that a predicate filters, counted from 1"},
    {L"count",            make<XPathFunction_count>,           1,    Count, Count, 4, NumberType,  {},
     "number of nodes in a node set"},
    {L"last",             make<XPathFunction_last>,            0,    Count, Count, 4, NumberType,  {},
     "number of nodes in the list that a predicate filters"},
    {L"local-name",       make<XPathFunction_localname>,       0,        1,     0, 4, StringType,  {},
     "not implemented"},
    {L"name",             make<XPathFunction_name>,            1,        1,     0, 4, StringType,  {},
     "name of the first node of a node set, or of the context node in a predicate"},
    {L"string",           make<XPathFunction_string>,          0,        1,     0, 4, StringType,  {},
     "text of a value, or of the context node"},
    {L"concat",           make<XPathFunction_concat>,          1,  NoLimit,     2, 4, StringType,  Types(s_String),
     "its arguments, one behind the other"},
    {L"starts-with",      make<XPathFunction_startsWith>,      1,    Count, Count, 1, BooleanType, Types(s_TwoStrings),
     "whether the first text begins with the second"},
    {L"contains",         make<XPathFunction_contains>,        1,    Count, Count, 1, BooleanType, Types(s_TwoStrings),
     "whether the first text contains the second"},
    {L"substring-before", make<XPathFunction_substringBefore>, 1,    Count, Count, 1, StringType,  Types(s_TwoStrings),
     "the part of the first text before the second"},
    {L"substring-after",  make<XPathFunction_substringAfter>,  1,    Count, Count, 4, StringType,  Types(s_TwoStrings),
     "the part of the first text behind the second"},
    {L"substring",        make<XPathFunction_substring>,       1,        3,     2, 1, StringType,  Types(s_Substring),
     "the part of a text from a position, counted from 1, with a length if one is given"},
    {L"string-length",    make<XPathFunction_stringlength>,    1,        1,     0, 4, NumberType,  Types(s_String),
     "number of UTF-16 code units of a text"},
    {L"normalize-space",  make<XPathFunction_normalizespace>,  1,        1,     0, 4, StringType,  Types(s_String),
     "a text without blanks at its ends and with single spaces inside"},
    {L"translate",        make<XPathFunction_translate>,       1,        3,     3, 4, StringType,  {},
     "not implemented"},
    {L"boolean",          make<XPathFunction_boolean>,         1,    Count, Count, 4, BooleanType, {},
     "truth of a value"},
    {L"true",             make<XPathFunction_true>,            0,    Count, Count, 4, BooleanType, {},
     "true"},
    {L"false",            make<XPathFunction_false>,           0,    Count, Count, 4, BooleanType, {},
     "false"},
    {L"not",              make<XPathFunction_not>,             1,    Count, Count, 4, BooleanType, {},
     "true when the value is false"},
    {L"number",           make<XPathFunction_number>,          0,        1,     0, 4, NumberType,  {},
     "number that a value reads as"},
    {L"sum",              make<XPathFunction_sum>,             1,        1,     1, 4, NumberType,  {},
     "sum of the numbers in a node set"},
    {L"floor",            make<XPathFunction_floor>,           1,        1,     1, 4, NumberType,  Types(s_Number),
     "largest integer that is not greater than a number"},
    {L"ceiling",          make<XPathFunction_ceiling>,         1,        1,     1, 4, NumberType,  Types(s_Number),
     "smallest integer that is not less than a number"},
    {L"round",            make<XPathFunction_round>,           1,        1,     1, 4, NumberType,  Types(s_Number),
     "integer nearest to a number"},
};
// clang-format on

template <class Function>
constexpr XPathOperatorRow operatorRow(std::wstring_view i_Token)
{
    return {i_Token, makeOperator<Function>, Function::s_Priority};
}

// D-20, D-21: "or" and "and" are one family of one priority, and so are all comparisons. In XPath 1.0 "and" stands
// above "or", and "<" above "=".
constexpr XPathOperatorRow s_Or = operatorRow<XPathFunction_logical>(L"or");
constexpr XPathOperatorRow s_And = operatorRow<XPathFunction_logical>(L"and");
constexpr XPathOperatorRow s_Open = operatorRow<XPathFunction_logical_eq>(L"(");
constexpr XPathOperatorRow s_Close = operatorRow<XPathFunction_logical_eq>(L")");
constexpr XPathOperatorRow s_Comma = operatorRow<XPathFunction_logical_eq>(L",");
constexpr XPathOperatorRow s_Equal = operatorRow<XPathFunction_logical_eq>(L"=");
constexpr XPathOperatorRow s_NotEqual = operatorRow<XPathFunction_logical_eq>(L"!=");
constexpr XPathOperatorRow s_Less = operatorRow<XPathFunction_logical_eq>(L"<");
constexpr XPathOperatorRow s_LessOrEqual = operatorRow<XPathFunction_logical_eq>(L"<=");
constexpr XPathOperatorRow s_Greater = operatorRow<XPathFunction_logical_eq>(L">");
constexpr XPathOperatorRow s_GreaterOrEqual = operatorRow<XPathFunction_logical_eq>(L">=");
constexpr XPathOperatorRow s_Plus = operatorRow<XPathFunction_aritmetical_plus>(L"+");
constexpr XPathOperatorRow s_Minus = operatorRow<XPathFunction_aritmetical_plus>(L"-");
constexpr XPathOperatorRow s_Times = operatorRow<XPathFunction_aritmetical_multi>(L"*");
constexpr XPathOperatorRow s_Div = operatorRow<XPathFunction_aritmetical_multi>(L"div");
constexpr XPathOperatorRow s_Mod = operatorRow<XPathFunction_aritmetical_multi>(L"mod");

/// The only row whose token can begin with this character and has this length.
const XPathOperatorRow* candidate(wchar_t i_First, std::size_t i_Length) noexcept
{
    const bool isSingle = i_Length == 1;
    switch (i_First)
    {
    case L'(':
        return &s_Open;
    case L')':
        return &s_Close;
    case L',':
        return &s_Comma;
    case L'+':
        return &s_Plus;
    case L'-':
        return &s_Minus;
    case L'*':
        return &s_Times;
    case L'=':
        return &s_Equal;
    case L'<':
        return isSingle ? &s_Less : &s_LessOrEqual;
    case L'>':
        return isSingle ? &s_Greater : &s_GreaterOrEqual;
    case L'!':
        return &s_NotEqual;
    case L'a':
        return &s_And;
    case L'd':
        return &s_Div;
    case L'm':
        return &s_Mod;
    case L'o':
        return &s_Or;
    default:
        return nullptr;
    }
}

/// Every token of an expression is asked, most of them are no operator.
const XPathOperatorRow* findOperator(std::wstring_view i_Token) noexcept
{
    if (i_Token.empty())
    {
        return nullptr;
    }
    const XPathOperatorRow* pRow = candidate(i_Token.front(), i_Token.size());
    if (!pRow || pRow->token.size() != i_Token.size())
    {
        return nullptr;
    }
    return i_Token.size() == 1 || pRow->token == i_Token ? pRow : nullptr;
}

constexpr XPathLetterIndex<std::size(s_Functions)> s_FunctionLetters([](std::size_t i_Index)
                                                                     { return s_Functions[i_Index].name[0]; });

} // namespace

XPathNumber XPathNumber::of(const XPathExpression& i_Expression)
{
    return {i_Expression.GetExpressionNumb(), static_cast<LimitType>(i_Expression.getLimitType()),
            i_Expression.isNegativeZero()};
}

// --- Factory ------------------------------------------------------------------------------------

std::span<const XPathFunctionRow> XPathFunctionFactory::functions() noexcept
{
    return s_Functions;
}

const XPathFunctionRow* XPathFunctionFactory::find(std::wstring_view i_Name) noexcept
{
    constexpr std::size_t none = decltype(s_FunctionLetters)::s_None;
    std::size_t row = s_FunctionLetters.first(i_Name.empty() ? L'\0' : i_Name.front());
    while (row != none && i_Name != s_Functions[row].name)
    {
        row = s_FunctionLetters.next(row);
    }
    return row == none ? nullptr : &s_Functions[row];
}

XPathFunctionChoice XPathFunctionFactory::choose(std::wstring_view i_Token, std::wstring_view i_NextToken) noexcept
{
    XPathFunctionChoice choice{findOperator(i_Token), nullptr};
    if (!choice && isToken(i_NextToken, L'('))
    {
        choice.m_pNamed = find(i_Token);
    }
    return choice;
}

XPathFunction* XPathFunctionFactory::create(const String& i_Name, const String& i_NextToken)
{
    if (i_NextToken.view() != L"(")
    {
        return nullptr;
    }
    const XPathFunctionRow* pRow = find(i_Name.view());
    return pRow ? pRow->make(nullptr, *pRow) : nullptr;
}

XPathFunction* XPathFunctionFactory::selectOperator(const String& i_Token, const String& i_NextToken,
                                                    const XPathExpression* i_pPrevElement)
{
    const XPathFunctionChoice choice = choose(i_Token.view(), i_NextToken.view());
    std::unique_ptr<XPathFunction> pFunction(choice ? choice.make(nullptr) : nullptr);
    if (choice.m_pOperator == &s_Open && i_pPrevElement)
    {
        pFunction->m_IsInfix = find(i_pPrevElement->stringView()) != nullptr;
    }
    return pFunction.release();
}

int XPathFunctionChoice::initialCount() const noexcept
{
    return m_pOperator ? XPathFunction::s_InitialCount : m_pNamed->initialCount;
}

// --- Base of all functions ----------------------------------------------------------------------

XPathFunction::XPathFunction(std::wstring_view i_Name) : m_Name(i_Name) {}

XPathFunction::~XPathFunction() = default;

int XPathFunction::getArgumentsCount() const
{
    XML_TRACE_VALUE(L"int getArgumentsCount()", L" getArgumentsCount = ", m_ArgumentsCount);
    return m_ArgumentsCount;
}

int XPathFunction::getMinArgumentsCount() const
{
    return getArgumentsCount();
}

void XPathFunction::addConvertedParameter(std::unique_ptr<XPathExpression> i_pParameter)
{
    m_ConvertedParameters.push_back(std::move(i_pParameter));
    addParameter(m_ConvertedParameters.back().get());
}

void XPathFunction::reset() noexcept
{
    m_Parameters.clear();
    m_ConvertedParameters.clear();
    m_Output.reset();
}

TErrorCode XPathFunction::requireParameters(std::size_t i_Count) const noexcept
{
    return m_Parameters.size() < i_Count ? XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR : XML_SUCCESS;
}

TRACE_COLD static void traceOutput(const XPathExpression& i_Output)
{
    const Trace trace(s_Tracer, L"XPathFunction::createOutputExpression");
    XML_TRACE(trace, TraceInformation) << L" expression " << i_Output.GetExpressionString() << L" created ";
}

void XPathFunction::finishOutput()
{
    m_Output->SetDataType(m_ResultType);
    if (TRACE_IS_ON(TraceInformation)) [[unlikely]]
    {
        traceOutput(*m_Output);
    }
}

void XPathFunction::createOutputExpression(String&& i_Expression)
{
    m_Output.emplace(std::move(i_Expression), m_ResultType);
    finishOutput();
}

void XPathFunction::createOutputExpression(std::wstring_view i_Expression)
{
    createOutputExpression(String(i_Expression.data(), i_Expression.size()));
}

void XPathFunction::createOutputExpression(double i_Expression, LimitType i_LimitType, bool i_NegativeZero)
{
    m_Output.emplace(i_Expression);
    m_Output->setLimitType(i_LimitType);
    m_Output->setNegativeZero(i_NegativeZero);
    finishOutput();
}

void XPathFunction::createOutputExpression(const XPathNumber& i_Number)
{
    createOutputExpression(i_Number.m_Value, i_Number.m_Limit, i_Number.m_NegativeZero);
}

// --- Base of the named functions ----------------------------------------------------------------

XPathNamedFunction::XPathNamedFunction(const XPathFunctionRow& i_Row) : m_Row(i_Row)
{
    m_ArgumentsCount = i_Row.initialCount;
    m_Priority = i_Row.priority;
    m_ResultType = i_Row.resultType;
    m_ParameterTypes = i_Row.parameterTypes;
}

int XPathNamedFunction::limit(int i_Limit) const noexcept
{
    // D-61: where the limit is the call's own count, any number of arguments passes: count(a, b) counts b.
    // XPath 1.0 refuses it.
    return i_Limit == XPathFunctionRow::Count ? m_ArgumentsCount : i_Limit;
}

int XPathNamedFunction::getArgumentsCount() const
{
    const int count = limit(m_Row.maximum);
    XML_TRACE_VALUE(L"int getArgumentsCount()", L" getArgumentsCount = ", count);
    return count;
}

int XPathNamedFunction::getMinArgumentsCount() const
{
    return limit(m_Row.minimum);
}

} // namespace XmlPlugin
