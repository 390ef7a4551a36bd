#include "values/XPathValue.h"

#include "values/XPathNumberText.h"
#include "values/XmlTrace.h"

XML_TRACE_SOURCE(L"XPathExpression")

namespace XmlPlugin
{

DataType XPathValue::typeOf(std::wstring_view i_Text)
{
    // D-07: a quoted text that reads as a number is a number: '5' is 5. XPath 1.0 keeps it a string.
    const std::wstring_view text = removeQuotes(i_Text);
    if (XPathNumberText::isNumber(text))
    {
        return NumberType;
    }
    return text.size() != i_Text.size() ? StringType : NodeSetType;
}

void XPathValue::classify()
{
    m_Type = typeOf(m_Text);
    m_NumberState = m_Type == NumberType ? TextNumber : KnownNumber;
}

void XPathValue::setText(const String& i_Text)
{
    if (m_NumberState != KnownNumber)
    {
        readNumber();
    }
    m_OwnText = i_Text;
    m_Text = viewOf(m_OwnText);
    m_TextState = OwnText;
}

void XPathValue::copyScalar(const XPathValue& i_Other)
{
    if (i_Other.m_NumberState != KnownNumber)
    {
        i_Other.readNumber();
    }
    setText(i_Other.text());
    m_Number = i_Other.m_Number;
    m_Type = i_Other.m_Type;
    m_Limit = i_Other.m_Limit;
    m_IsNegativeZero = i_Other.m_IsNegativeZero;
}

void XPathValue::makeOwnText() const
{
    m_OwnText = m_TextState == PendingText ? XPathNumberText::print(m_Number) : copyOf(m_Text);
    m_Text = viewOf(m_OwnText);
    m_TextState = OwnText;
}

void XPathValue::readNumber() const
{
    if (m_NumberState == TextNumber)
    {
        m_Number = XPathNumberText::numberOf(m_Text);
    }
    else
    {
        XPathNumberText::readOperand(m_Text, m_Number);
    }
    m_NumberState = KnownNumber;
}

double XPathValue::toNumber() const
{
    // No query sees it: a node set's number is its count. XPath 1.0 takes the number in its first node's text.
    if (m_NumberState != KnownNumber)
    {
        readNumber();
    }
    const double result = m_Type == NodeSetType ? static_cast<double>(m_Nodes.size() + m_Counted) : m_Number;
    XML_TRACE_VALUE(L"XPathExpression::GetExpressionNumb() ", L"result = ", result);
    return result;
}

bool XPathValue::toBoolean() const
{
    bool result = false;
    switch (m_Type)
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
        else if (m_Limit == PosInfType || m_Limit == NegInfType)
        {
            result = true;
        }
        else if (m_Limit == NaNType)
        {
            result = false;
        }
        else
        {
            result = toNumber() != 0.0;
        }
        break;
    default:
        break;
    }
    XML_TRACE_VALUE(L"XPathExpression::GetExpressionBool() ", L"result = ", result);
    return result;
}

std::wstring_view XPathValue::specialText() const
{
    switch (m_Limit)
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

} // namespace XmlPlugin
