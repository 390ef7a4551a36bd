#include "values/XPathPrinter.h"

namespace XmlPlugin
{

String dumpElements(const XPathExpressionsVector& i_Elements)
{
    String text;
    for (const XPathExpression* pElement : i_Elements)
    {
        text += L'(';
        text += pElement->GetExpressionString();
        text += L',';
        text += String::valueOf(static_cast<int>(pElement->isOperator()));
        text += L',';
        text += String::valueOf(pElement->GetDataType());
        text += L")|";
    }
    return text;
}

} // namespace XmlPlugin
