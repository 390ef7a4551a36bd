#include "values/XPathExpression.h"

#include "values/XPathArgument.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <utility>

XML_TRACE_SOURCE(L"XPathExpression")

namespace XmlPlugin
{

XPathExpression::XPathExpression(const String& i_Expression) : m_Expression(i_Expression)
{
    m_Text = m_Expression.view();
}

XPathExpression::XPathExpression(String&& i_Expression) noexcept : m_Expression(std::move(i_Expression))
{
    m_Text = m_Expression.view();
}

XPathExpression::XPathExpression(double i_Value) : m_Number(i_Value) {}

XPathExpression::~XPathExpression() = default;

bool XPathExpression::isOperator() const
{
    return false;
}

int XPathExpression::getPriority() const
{
    return 0;
}

bool XPathExpression::isInfix() const
{
    return false;
}

int XPathExpression::getArgumentsCount() const
{
    return 0;
}

TErrorCode XPathExpression::evaluate(const XPathExpressionsVector&)
{
    return XML_ERROR_NOT_IMPLEMENTED;
}

XPathExpression* XPathExpression::getOutputArgument() const
{
    return nullptr;
}

void XPathExpression::EvaluateXPath() {}

XPathOutputList XPathExpression::takeNodes() noexcept
{
    return std::exchange(m_Nodes, {});
}

void XPathExpression::setExpression(const String& i_Expression)
{
    if (m_NumberState != KnownNumber)
    {
        readNumber();
    }
    m_Expression = i_Expression;
    m_Text = m_Expression.view();
    m_TextState = OwnText;
}

void XPathExpression::copyValue(const XPathExpression& i_Value)
{
    if (i_Value.m_NumberState != KnownNumber)
    {
        i_Value.readNumber();
    }
    setExpression(i_Value.text());
    m_Number = i_Value.m_Number;
    m_DataType = i_Value.m_DataType;
    m_LimitType = i_Value.m_LimitType;
    m_NegativeZero = i_Value.m_NegativeZero;
}

void XPathExpression::makeOwnText() const
{
    if (m_TextState == PendingText)
    {
        m_Expression = XPathArgument::printNumber(m_Number);
    }
    else
    {
        m_Expression = String(m_Text.data(), m_Text.size());
    }
    m_Text = m_Expression.view();
    m_TextState = OwnText;
}

void XPathExpression::readNumber() const
{
    if (m_NumberState == TextNumber)
    {
        m_Number = XPathArgument::numberOf(m_Text);
    }
    else
    {
        XPathArgument::readOperand(m_Text, m_Number);
    }
    m_NumberState = KnownNumber;
}

String XPathExpression::removeQuotes(const String& i_Text)
{
    const std::wstring_view text = removeQuotes(i_Text.view());
    return String(text.data(), text.size());
}

double XPathExpression::GetExpressionNumb() const
{
    // No query sees it: a node set's number is its count. XPath 1.0 takes the number in its first node's text.
    if (m_NumberState != KnownNumber)
    {
        readNumber();
    }
    const double result = m_DataType == NodeSetType ? static_cast<double>(m_Nodes.size() + m_Counted) : m_Number;
    XML_TRACE_VALUE(L"XPathExpression::GetExpressionNumb() ", L"result = ", result);
    return result;
}

bool XPathExpression::GetExpressionBool() const
{
    bool result = false;
    switch (m_DataType)
    {
    case StringType:
        result = !removeQuotes(textView()).empty();
        break;
    case NodeSetType:
        result = !m_Nodes.empty();
        break;
    case BooleanType:
    case NumberType:
        // D-07: a quoted number is a number and yet true, whatever it is: boolean('0') is "true", as XPath 1.0 says.
        // D-81: a not-a-number without its mark differs from 0 and is therefore true. XPath 1.0 says false.
        if (m_TextState != PendingText && removeQuotes(m_Text).size() != m_Text.size())
        {
            result = true;
        }
        else if (m_LimitType == PosInfType || m_LimitType == NegInfType)
        {
            result = true;
        }
        else if (m_LimitType == NaNType)
        {
            result = false;
        }
        else
        {
            result = GetExpressionNumb() != 0.0;
        }
        break;
    default:
        break;
    }
    XML_TRACE_VALUE(L"XPathExpression::GetExpressionBool() ", L"result = ", result);
    return result;
}

std::wstring_view XPathExpression::specialText() const
{
    switch (m_LimitType)
    {
    case PosInfType:
        return L"Infinity";
    case NegInfType:
        return L"-Infinity";
    case NaNType:
        return L"NaN";
    default:
        return removeQuotes(textView());
    }
}

String XPathExpression::GetExpressionString() const
{
    const std::wstring_view text = stringView();
    return String(text.data(), text.size());
}

} // namespace XmlPlugin
