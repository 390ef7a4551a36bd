#include "functions/XPathBooleanFunctions.h"

#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

double XPathFunction_boolean::convert(const XPathExpression& i_Value)
{
    switch (i_Value.GetDataType())
    {
    case NumberType:
        return i_Value.GetExpressionBool() ? 1.0 : 0.0;
    case StringType:
        return i_Value.stringView().empty() ? 0.0 : 1.0;
    case NodeSetType:
        return i_Value.getNodes().empty() ? 0.0 : 1.0;
    case BooleanType:
        return i_Value.GetExpressionNumb();
    default:
        return 0.0;
    }
}

TErrorCode XPathFunction_boolean::evaluate()
{
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS)
    {
        createOutputExpression(convert(parameter(0)));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_boolean::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_true::evaluate()
{
    createBoolean(true);
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_true::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

TErrorCode XPathFunction_false::evaluate()
{
    createBoolean(false);
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_false::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

TErrorCode XPathFunction_not::evaluate()
{
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS)
    {
        createBoolean(!parameter(0).GetExpressionBool());
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_not::evaluate()", L"result = ", result);
    return result;
}

} // namespace XmlPlugin
