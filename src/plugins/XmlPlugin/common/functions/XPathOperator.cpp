#include "functions/XPathOperator.h"

#include "functions/XPathBooleanFunctions.h"
#include "functions/XPathFunction.h"
#include "functions/XPathNumberFunctions.h"
#include "functions/XPathStringFunctions.h"
#include "values/XPathArgument.h"
#include "values/XPathMemory.h"
#include "values/XPathQuickCode.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <memory>
#include <vector>

XML_TRACE_SOURCE(L"XPathOperator")

namespace XmlPlugin
{

namespace
{

std::unique_ptr<XPathExpression> makeNumber(const XPathNumber& i_Number)
{
    auto pArgument = std::make_unique<XPathArgument>(i_Number.m_Value);
    pArgument->setLimitType(i_Number.m_Limit);
    pArgument->setNegativeZero(i_Number.m_NegativeZero);
    return pArgument;
}

/// What the function `boolean`, `string` or `number` makes of \p i_Argument; null for a node set.
std::unique_ptr<XPathExpression> convert(const XPathExpression& i_Argument, DataType i_Target)
{
    std::unique_ptr<XPathExpression> pConverted;
    switch (i_Target)
    {
    case BooleanType:
        pConverted = std::make_unique<XPathArgument>(XPathFunction_boolean::convert(i_Argument));
        break;
    case StringType:
        pConverted = std::make_unique<XPathArgument>(XPathFunction_string::convert(i_Argument), StringType);
        break;
    case NumberType:
        pConverted = makeNumber(XPathFunction_number::convert(i_Argument));
        break;
    default:
        return nullptr;
    }
    pConverted->SetDataType(i_Target);
    return pConverted;
}

TRACE_COLD const wchar_t* conversionTo(DataType i_Target) noexcept
{
    switch (i_Target)
    {
    case BooleanType:
        return L"boolean";
    case StringType:
        return L"string";
    case NumberType:
        return L"number";
    default:
        return nullptr;
    }
}

/// The same as `convert` by a call of the function itself, which leaves its records.
TRACE_COLD std::unique_ptr<XPathExpression> convertTraced(XPathExpression& i_Argument, DataType i_Target,
                                                          Node* i_pStartNode, const Trace& i_Trace)
{
    const wchar_t* pName = conversionTo(i_Target);
    if (!pName)
    {
        return nullptr;
    }
    // Not by the factory: what nothing but tokens ask is part of the code that reads them.
    const std::span<const XPathFunctionRow> rows = XPathFunctionFactory::functions();
    const auto pRow =
        std::find_if(rows.begin(), rows.end(),
                     [&](const XPathFunctionRow& i_Row) { return i_Row.name == std::wstring_view(pName); });
    const std::unique_ptr<XPathFunction> pFunction(pRow->make(nullptr, *pRow));
    XML_TRACE(i_Trace, TraceInformation) << pName << L"() has been function prepared ";
    pFunction->addParameter(&i_Argument);
    pFunction->setStartNode(i_pStartNode);
    pFunction->evaluate(); // has the argument that it needs, and so succeeds
    auto pConverted = std::make_unique<XPathArgument>(XPathExpression::Lent{{}}, 0.0);
    pConverted->copyValue(*pFunction->getOutputExpression()); // which the function takes along
    XML_TRACE(i_Trace, TraceInformation) << L"Expression " << pConverted->text()
                                         << L" after converting created and added to function parameters";
    return pConverted;
}

/// An ordinary number converts to the same number, and a function that asks for numbers reads
/// nothing else of them.
bool isOrdinaryNumber(const XPathExpression& i_Argument) noexcept
{
    return i_Argument.GetDataType() == NumberType && i_Argument.getLimitType() == NumbType;
}

/// A text converts to the same text and so does a number, and a function that asks for texts reads each without
/// enclosing quotes.
bool isPlainText(const XPathExpression& i_Argument)
{
    const int type = i_Argument.GetDataType();
    if (type != StringType && type != NumberType)
    {
        return false;
    }
    const std::wstring_view text = i_Argument.stringView();
    return removeQuotes(text).size() == text.size();
}

bool isAsConverted(const XPathExpression& i_Argument, DataType i_Target)
{
    return i_Target == NumberType ? isOrdinaryNumber(i_Argument) : i_Target == StringType && isPlainText(i_Argument);
}

} // namespace

XPathOperator::XPathOperator(const String& i_Expression, XPathExpression*, XPathFunction* i_pXPathFunction)
    : XPathExpression(i_Expression)
{
    XML_TRACE_VALUE(L"XPathOperator Expression", L"XPathOperator Expression", i_Expression);
    m_pXPathFunction = i_pXPathFunction; // last: the caller keeps it when something above throws
}

XPathOperator::XPathOperator(const XPathFunctionChoice& i_Choice, XPathMemory& i_Memory)
    : XPathExpression(std::in_place, Lent{i_Choice.token()}),
      m_Choice(i_Choice),
      m_pMemory(&i_Memory),
      m_ArgumentsCount(i_Choice.initialCount())
{
    XML_TRACE_VALUE(L"XPathOperator Expression", L"XPathOperator Expression", text());
}

XPathOperator::~XPathOperator()
{
    if (!m_pMemory)
    {
        delete m_pXPathFunction;
    }
    else if (m_pXPathFunction)
    {
        std::destroy_at(m_pXPathFunction);
    }
}

XPathFunction& XPathOperator::makeFunction()
{
    m_pXPathFunction = m_Choice.make(m_pMemory->allocate(XPathFunction::s_Size));
    m_pXPathFunction->setArgumentsCount(m_ArgumentsCount);
    return *m_pXPathFunction;
}

bool XPathOperator::isOperator() const
{
    const Trace trace(s_Tracer, L"bool XPathOperator::isOperator() returns TRUE");
    XML_TRACE(trace, TraceInformation) << L"bool XPathOperator::isOperator() returns TRUE";
    return true;
}

int XPathOperator::getPriority() const
{
    const int priority = m_pMemory ? m_Choice.priority() : m_pXPathFunction->getPriority();
    XML_TRACE_VALUE(L"XPathOperator::getPriority()", L" Prioryty = ", priority);
    return priority;
}

bool XPathOperator::isInfix() const
{
    const bool result = m_pMemory ? m_Choice.isInfix() : m_pXPathFunction->isInfix();
    XML_TRACE_VALUE(L"XPathOperator::isInfix()", L" isInfix = ", result);
    return result;
}

int XPathOperator::getArgumentsCount() const
{
    const int count =
        m_pXPathFunction ? m_pXPathFunction->argumentsOfCall() : XPathFunction::recordedCount(m_ArgumentsCount);
    XML_TRACE_VALUE(L"XPathOperator::getArgumentsCount()", L" getArgumentsCount ", count);
    return count;
}

void XPathOperator::setArgumentsCount(int i_Count)
{
    XML_TRACE_VALUE(L"XPathOperator::setArgumentsCount(int argNo)", L" Input argNo ", i_Count);
    m_ArgumentsCount = i_Count;
    if (m_pXPathFunction)
    {
        m_pXPathFunction->setArgumentsCount(i_Count);
    }
}

TErrorCode XPathOperator::evaluate(const XPathExpressionsVector& i_Expressions)
{
    const Trace trace(s_Tracer, L"TErrorCode XPathOperator::evaluate(const XPathExpressionsVector &expressionsVector)");
    XPathFunction& called = function();
    const int maximum = called.getArgumentsCount();
    const int minimum = called.getMinArgumentsCount();
    const std::size_t count = i_Expressions.size();
    const bool isTooMany = maximum >= 0 && count > static_cast<std::size_t>(maximum);
    const bool isTooFew = minimum >= 0 && count < static_cast<std::size_t>(minimum);
    if (isTooMany || isTooFew)
    {
        XML_TRACE(trace, TraceInformation) << L"XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR";
        return XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR;
    }
    XML_TRACE(trace, TraceInformation) << L"ExpressionsVector size before convert = " << count;
    convertTypeParameters(i_Expressions);
    XML_TRACE(trace, TraceInformation) << L"Evaluate";
    called.setEvalContext(m_EvalContext);
    called.setStartNode(m_StartNode);
    const TErrorCode result = called.evaluate();
    if (result == XML_SUCCESS)
    {
        m_OutputArgument = called.getOutputExpression();
    }
    return result;
}

XPathExpression* XPathOperator::getOutputArgument() const
{
    return m_OutputArgument;
}

void XPathOperator::reset() noexcept
{
    m_OutputArgument = nullptr;
    if (m_pXPathFunction)
    {
        m_pXPathFunction->reset();
    }
}

bool XPathOperator::convertTypeParameters(const XPathExpressionsVector& i_Expressions)
{
    XPathFunction& called = function();
    const std::span<const DataType> types = called.getParameterTypes();
    if (types.empty())
    {
        for (XPathExpression* pExpression : i_Expressions)
        {
            called.addParameter(pExpression);
        }
        return true;
    }
    if (!XPathQuickCode::isAllowed()) [[unlikely]]
    {
        convertWithRecords(i_Expressions);
        return true;
    }
    std::size_t argument = i_Expressions.size(); // counted from the first one written
    for (XPathExpression* pExpression : i_Expressions)
    {
        const DataType target = types[std::min(--argument, types.size() - 1)];
        if (isAsConverted(*pExpression, target))
        {
            called.addParameter(pExpression);
        }
        else if (auto pConverted = convert(*pExpression, target))
        {
            called.addConvertedParameter(std::move(pConverted));
        }
    }
    return true;
}

/// Every argument is converted, the first one written first; the function takes them the other way round.
TRACE_COLD void XPathOperator::convertWithRecords(const XPathExpressionsVector& i_Expressions)
{
    const Trace trace(s_Tracer,
                      L"bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)");
    XPathFunction& called = function();
    const std::span<const DataType> types = called.getParameterTypes();
    const std::size_t count = i_Expressions.size();
    XML_TRACE(trace, TraceInformation) << L"Expressions number to convert " << count;
    std::vector<std::unique_ptr<XPathExpression>> converted;
    for (std::size_t i = 0; i < count; ++i)
    {
        const DataType target = types[std::min(i, types.size() - 1)];
        if (auto pConverted = convertTraced(*i_Expressions[count - 1 - i], target, m_StartNode, trace))
        {
            converted.push_back(std::move(pConverted));
        }
    }
    for (auto pConverted = converted.rbegin(); pConverted != converted.rend(); ++pConverted)
    {
        called.addConvertedParameter(std::move(*pConverted));
    }
}

} // namespace XmlPlugin
