#pragma once

#include "values/XPathExpression.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"

#include <string>

/// Support of the tests: what the engine works on, as text.

/// Tokens or a postfix list with a blank between: `1 2 3 * +`.
inline std::string printElements(const XmlPlugin::XPathExpressionsVector& i_Elements)
{
    std::string text;
    for (const XmlPlugin::XPathExpression* pElement : i_Elements)
    {
        text += (text.empty() ? "" : " ") + pElement->text().toNarrow();
    }
    return text;
}

/// Records as lines `key|node text|value|name of the node`.
inline std::string printRecords(const XmlPlugin::XPathOutputList& i_Records)
{
    std::string text;
    for (const XmlPlugin::XPathOutputElement* pRecord : i_Records)
    {
        text += std::to_string(pRecord->m_OrderKey) + "|" + pRecord->m_NodeText.toNarrow() + "|" +
                pRecord->m_Value.toNarrow() + "|" + (pRecord->m_pNode ? pRecord->m_pNode->name().toNarrow() : "") +
                "\n";
    }
    return text;
}
