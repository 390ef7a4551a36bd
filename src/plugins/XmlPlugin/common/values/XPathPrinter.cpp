#include "values/XPathPrinter.h"

namespace XmlPlugin
{

String dumpElements(const XPathExpressionsVector& i_Elements)
{
    std::wstring text;
    for (const XPathExpression* pElement : i_Elements)
    {
        text += L'(';
        text += viewOf(pElement->GetExpressionString());
        text += L',';
        text += pElement->isOperator() ? L'1' : L'0';
        text += L',';
        text += std::to_wstring(pElement->GetDataType());
        text += L")|";
    }
    return copyOf(text);
}

} // namespace XmlPlugin
