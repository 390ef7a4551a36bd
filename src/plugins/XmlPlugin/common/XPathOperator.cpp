#include "XPathOperator.h"

#include "XPathArgument.h"
#include "XPathBooleanFunctions.h"
#include "XPathFunction.h"
#include "XPathNumberFunctions.h"
#include "XPathStringFunctions.h"
#include "XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>

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
std::unique_ptr<XPathExpression> convert(const XPathExpression& i_Argument, DataType i_Target, const Trace& i_Trace)
{
    std::unique_ptr<XPathExpression> pConverted;
    switch (i_Target)
    {
    case BooleanType:
        XML_TRACE(i_Trace, TraceInformation) << L"boolean() has been function prepared ";
        pConverted = std::make_unique<XPathArgument>(XPathFunction_boolean::convert(i_Argument));
        break;
    case StringType:
        XML_TRACE(i_Trace, TraceInformation) << L"string() has been function prepared ";
        pConverted = std::make_unique<XPathArgument>(XPathFunction_string::convert(i_Argument));
        break;
    case NumberType:
        XML_TRACE(i_Trace, TraceInformation) << L"number() has been function prepared ";
        pConverted = makeNumber(XPathFunction_number::convert(i_Argument));
        break;
    default:
        return nullptr;
    }
    pConverted->SetDataType(i_Target);
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

} // namespace

XPathOperator::XPathOperator(const String& i_Expression, XPathExpression*, XPathFunction* i_pXPathFunction)
    : XPathExpression(i_Expression)
{
    const Trace trace(s_Tracer, L"XPathOperator Expression");
    XML_TRACE(trace, TraceInformation) << L"XPathOperator Expression" << i_Expression;
    m_pXPathFunction.reset(i_pXPathFunction); // last: the caller keeps it when something above throws
}

XPathOperator::~XPathOperator() = default;

bool XPathOperator::isOperator() const
{
    const Trace trace(s_Tracer, L"bool XPathOperator::isOperator() returns TRUE");
    XML_TRACE(trace, TraceInformation) << L"bool XPathOperator::isOperator() returns TRUE";
    return true;
}

int XPathOperator::getPriority() const
{
    const int priority = m_pXPathFunction->getPriority();
    const Trace trace(s_Tracer, L"XPathOperator::getPriority()");
    XML_TRACE(trace, TraceInformation) << L" Prioryty = " << priority;
    return priority;
}

bool XPathOperator::isInfix() const
{
    const bool result = m_pXPathFunction->isInfix();
    const Trace trace(s_Tracer, L"XPathOperator::isInfix()");
    XML_TRACE(trace, TraceInformation) << L" isInfix = " << result;
    return result;
}

int XPathOperator::getArgumentsCount() const
{
    const int count = m_pXPathFunction->argumentsOfCall();
    const Trace trace(s_Tracer, L"XPathOperator::getArgumentsCount()");
    XML_TRACE(trace, TraceInformation) << L" getArgumentsCount " << count;
    return count;
}

void XPathOperator::setArgumentsCount(int i_Count)
{
    const Trace trace(s_Tracer, L"XPathOperator::setArgumentsCount(int argNo)");
    XML_TRACE(trace, TraceInformation) << L" Input argNo " << i_Count;
    m_pXPathFunction->setArgumentsCount(i_Count);
}

TErrorCode XPathOperator::evaluate(const XPathExpressionsVector& i_Expressions)
{
    const Trace trace(s_Tracer, L"TErrorCode XPathOperator::evaluate(const XPathExpressionsVector &expressionsVector)");
    const int maximum = m_pXPathFunction->getArgumentsCount();
    const int minimum = m_pXPathFunction->getMinArgumentsCount();
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
    m_pXPathFunction->setEvalContext(m_EvalContext);
    m_pXPathFunction->setStartNode(m_StartNode);
    const TErrorCode result = m_pXPathFunction->evaluate();
    if (result == XML_SUCCESS)
        m_OutputArgument = m_pXPathFunction->getOutputExpression();
    return result;
}

XPathExpression* XPathOperator::getOutputArgument() const
{
    return m_OutputArgument;
}

void XPathOperator::reset() noexcept
{
    m_OutputArgument = nullptr;
    m_pXPathFunction->reset();
}

bool XPathOperator::convertTypeParameters(const XPathExpressionsVector& i_Expressions)
{
    const Trace trace(s_Tracer,
                      L"bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)");
    const std::span<const DataType> types = m_pXPathFunction->getParameterTypes();
    if (types.empty())
    {
        for (XPathExpression* pExpression : i_Expressions)
            m_pXPathFunction->addParameter(pExpression);
        return true;
    }
    std::size_t argument = i_Expressions.size(); // counted from the first one written
    XML_TRACE(trace, TraceInformation) << L"Expressions number to convert " << argument;
    for (XPathExpression* pExpression : i_Expressions)
    {
        const DataType target = types[std::min(--argument, types.size() - 1)];
        if (target == NumberType && isOrdinaryNumber(*pExpression))
            m_pXPathFunction->addParameter(pExpression);
        else if (auto pConverted = convert(*pExpression, target, trace))
            m_pXPathFunction->addConvertedParameter(std::move(pConverted));
    }
    return true;
}

} // namespace XmlPlugin
