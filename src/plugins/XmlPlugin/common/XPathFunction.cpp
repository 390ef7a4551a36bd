#include "XPathFunction.h"

#include "XPathArgument.h"
#include "XPathBooleanFunctions.h"
#include "XPathContextFunctions.h"
#include "XPathNumberFunctions.h"
#include "XPathOperatorFunctions.h"
#include "XPathStringFunctions.h"
#include "XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

namespace
{

template <class Function>
std::unique_ptr<XPathFunction> make(const XPathFunctionRow& i_Row)
{
    return std::make_unique<Function>(i_Row);
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

enum class Family
{
    None,
    Logic,
    Comparison,
    Sum,
    Product
};

/// Every token of an expression is asked, most of them are no operator: decided by the length and
/// then by as few characters as possible.
/// D-20, D-21: "or" and "and" are one family of one priority, and so are all comparisons. In XPath 1.0 "and" stands
/// above "or", and "<" above "=".
Family familyOf(std::wstring_view i_Token) noexcept
{
    constexpr std::size_t longest = 3;
    if (i_Token.empty() || i_Token.size() > longest)
        return Family::None;
    const wchar_t first = i_Token.front();
    if (i_Token.size() == 1)
    {
        if (first == L'+' || first == L'-')
            return Family::Sum;
        if (first == L'*')
            return Family::Product;
        const bool isComparison = first == L'=' || first == L'<' || first == L'>';
        const bool isPunctuation = first == L'(' || first == L')' || first == L',';
        return isComparison || isPunctuation ? Family::Comparison : Family::None;
    }
    if (i_Token == L"<=" || i_Token == L">=" || i_Token == L"!=")
        return Family::Comparison;
    if (i_Token == L"or" || i_Token == L"and")
        return Family::Logic;
    return i_Token == L"div" || i_Token == L"mod" ? Family::Product : Family::None;
}

/// The function behind an operator, a parenthesis or a comma; null for every other token.
std::unique_ptr<XPathFunction> makeOperator(const String& i_Token)
{
    switch (familyOf(i_Token.view()))
    {
    case Family::Logic:
        return std::make_unique<XPathFunction_logical>(i_Token);
    case Family::Comparison:
        return std::make_unique<XPathFunction_logical_eq>(i_Token);
    case Family::Sum:
        return std::make_unique<XPathFunction_aritmetical_plus>(i_Token);
    case Family::Product:
        return std::make_unique<XPathFunction_aritmetical_multi>(i_Token);
    case Family::None:
        break;
    }
    return nullptr;
}

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
    const auto pRow = std::find_if(std::begin(s_Functions), std::end(s_Functions),
                                   [i_Name](const XPathFunctionRow& i_Row) { return i_Name == i_Row.name; });
    return pRow == std::end(s_Functions) ? nullptr : &*pRow;
}

XPathFunction* XPathFunctionFactory::create(const String& i_Name, const String& i_NextToken)
{
    if (i_NextToken.view() != L"(")
        return nullptr;
    const XPathFunctionRow* pRow = find(i_Name.view());
    return pRow ? pRow->make(*pRow).release() : nullptr;
}

XPathFunction* XPathFunctionFactory::selectOperator(const String& i_Token, const String& i_NextToken,
                                                    const XPathExpression* i_pPrevElement)
{
    std::unique_ptr<XPathFunction> pOperator = makeOperator(i_Token);
    if (!pOperator)
        return create(i_Token, i_NextToken);
    if (i_pPrevElement && i_Token.view() == L"(")
        pOperator->m_IsInfix = find(i_pPrevElement->stringView()) != nullptr;
    return pOperator.release();
}

// --- Base of all functions ----------------------------------------------------------------------

XPathFunction::XPathFunction(const String& i_Name) : m_Name(i_Name) {}

XPathFunction::~XPathFunction() = default;

int XPathFunction::getArgumentsCount() const
{
    const Trace trace(s_Tracer, L"int getArgumentsCount()");
    XML_TRACE(trace, TraceInformation) << L" getArgumentsCount = " << m_ArgumentsCount;
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
    m_pOutputExpression.reset();
}

TErrorCode XPathFunction::requireParameters(std::size_t i_Count) const noexcept
{
    return m_Parameters.size() < i_Count ? XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR : XML_SUCCESS;
}

void XPathFunction::setOutput(std::unique_ptr<XPathExpression> i_pOutput)
{
    m_pOutputExpression = std::move(i_pOutput);
    m_pOutputExpression->SetDataType(m_ResultType);
    const Trace trace(s_Tracer, L"XPathFunction::createOutputExpression");
    XML_TRACE(trace, TraceInformation) << L" expression " << m_pOutputExpression->GetExpressionString() << L" created ";
}

void XPathFunction::createOutputExpression(const String& i_Expression)
{
    setOutput(std::make_unique<XPathArgument>(i_Expression));
}

void XPathFunction::createOutputExpression(std::wstring_view i_Expression)
{
    createOutputExpression(String(i_Expression.data(), i_Expression.size()));
}

void XPathFunction::createOutputExpression(double i_Expression, LimitType i_LimitType, bool i_NegativeZero)
{
    auto pOutput = std::make_unique<XPathArgument>(i_Expression);
    pOutput->setLimitType(i_LimitType);
    pOutput->setNegativeZero(i_NegativeZero);
    setOutput(std::move(pOutput));
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
    const Trace trace(s_Tracer, L"int getArgumentsCount()");
    XML_TRACE(trace, TraceInformation) << L" getArgumentsCount = " << count;
    return count;
}

int XPathNamedFunction::getMinArgumentsCount() const
{
    return limit(m_Row.minimum);
}

} // namespace XmlPlugin
