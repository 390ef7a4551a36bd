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
#include "xpathlanguage/XPathFunctionTable.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <new>

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

using XPathLanguage::CallCount;
using XPathLanguage::NoLimit;

namespace
{

template <class Function, class Row>
XPathFunction* make(void* i_pPlace, const Row& i_Row)
{
    static_assert(sizeof(Function) <= XPathFunction::s_Size);
    return i_pPlace ? new (i_pPlace) Function(i_Row) : new Function(i_Row);
}

template <DataType... t_Types>
constexpr std::array<DataType, sizeof...(t_Types)> s_Types{t_Types...};

// clang-format off
#define XPATH_TYPES(...) s_Types<__VA_ARGS__>
#define XPATH_ROW(name, function, parameters, initial, maximum, minimum, priority, result, types, reads, answer)       \
    {L"" name, make<function, XPathFunctionRow>, initial, maximum, minimum, priority, result, XPATH_TYPES types},
constexpr XPathFunctionRow s_Functions[] = {XPATH_FUNCTIONS(XPATH_ROW)};
#undef XPATH_ROW
#undef XPATH_TYPES

#define XPATH_ROW(text, function, level, priority) {L"" text, make<function, XPathOperatorRow>, priority},
constexpr XPathOperatorRow s_Operators[] = {XPATH_OPERATORS(XPATH_ROW)};
#undef XPATH_ROW
// clang-format on

constexpr XPathLetterIndex<std::size(s_Functions)> s_FunctionLetters([](std::size_t i_Index)
                                                                     { return s_Functions[i_Index].name[0]; });
constexpr XPathLetterIndex<std::size(s_Operators)> s_OperatorLetters([](std::size_t i_Index)
                                                                     { return s_Operators[i_Index].token[0]; });

/// The operators of one character: one more than the index of their row, by that character; 0: none.
using SignRows = std::array<std::uint8_t, 128>;

constexpr SignRows rowsOfSigns() noexcept
{
    SignRows rows{};
    std::uint8_t row = 0;
    for (const XPathOperatorRow& known : s_Operators)
    {
        ++row;
        if (known.token.size() == 1)
        {
            rows[static_cast<std::size_t>(known.token[0])] = row;
        }
    }
    return rows;
}

constexpr SignRows s_Signs = rowsOfSigns();

/// Every token of an expression is asked, most of them are no operator.
constexpr const XPathOperatorRow* findOperator(std::wstring_view i_Token) noexcept
{
    const std::size_t first = i_Token.empty() ? 0 : static_cast<std::size_t>(i_Token.front());
    if (i_Token.size() == 1)
    {
        const std::size_t row = first < s_Signs.size() ? s_Signs[first] : 0;
        return row == 0 ? nullptr : &s_Operators[row - 1];
    }
    constexpr std::size_t none = decltype(s_OperatorLetters)::s_None;
    std::size_t row = s_OperatorLetters.first(static_cast<wchar_t>(first));
    while (row != none && s_Operators[row].token != i_Token)
    {
        row = s_OperatorLetters.next(row);
    }
    return row == none ? nullptr : &s_Operators[row];
}

constexpr const XPathOperatorRow* s_pOpen = findOperator(L"(");

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
    if (viewOf(i_NextToken) != L"(")
    {
        return nullptr;
    }
    const XPathFunctionRow* pRow = find(viewOf(i_Name));
    return pRow ? pRow->make(nullptr, *pRow) : nullptr;
}

XPathFunction* XPathFunctionFactory::selectOperator(const String& i_Token, const String& i_NextToken,
                                                    const XPathExpression* i_pPrevElement)
{
    const XPathFunctionChoice choice = choose(viewOf(i_Token), viewOf(i_NextToken));
    std::unique_ptr<XPathFunction> pFunction(choice ? choice.make(nullptr) : nullptr);
    if (choice.m_pOperator == s_pOpen && i_pPrevElement)
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

XPathFunction::XPathFunction(const XPathOperatorRow& i_Row)
    : m_IsInfix(false), m_Priority(i_Row.priority), m_Name(i_Row.token)
{
}

XPathFunction::~XPathFunction() = default;

int XPathFunction::getArgumentsCount() const
{
    return recordedCount(m_ArgumentsCount);
}

int XPathFunction::recordedCount(int i_Count)
{
    XML_TRACE_VALUE(L"int getArgumentsCount()", L" getArgumentsCount = ", i_Count);
    return i_Count;
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
    createOutputExpression(copyOf(i_Expression));
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
    return i_Limit == CallCount ? m_ArgumentsCount : i_Limit;
}

int XPathNamedFunction::getArgumentsCount() const
{
    return recordedCount(limit(m_Row.maximum));
}

int XPathNamedFunction::getMinArgumentsCount() const
{
    return m_Row.minimum == CallCount ? recordedCount(m_ArgumentsCount) : m_Row.minimum;
}

} // namespace XmlPlugin
