#include "values/XPathExpression.h"

#include "xmlproxy/XmlErrorCodes.h"

#include <utility>

namespace XmlPlugin
{

XPathExpression::XPathExpression(const String& i_Expression) : m_Value(i_Expression) {}

XPathExpression::XPathExpression(String&& i_Expression) noexcept : m_Value(std::move(i_Expression)) {}

XPathExpression::XPathExpression(double i_Value) : m_Value(i_Value) {}

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

String XPathExpression::GetExpressionString() const
{
    return copyOf(stringView());
}

} // namespace XmlPlugin
