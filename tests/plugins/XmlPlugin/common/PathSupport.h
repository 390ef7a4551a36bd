#pragma once

#include "Printers.h"
#include "paths/XPath.h"
#include "values/XPathArgument.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"

#include <string>
#include <string_view>

/// Support of the tests: what a location path selects by itself, without the expression around it.

/// The records of a path, or "error CODE" (with " and records" when any are left, which is wrong).
inline std::string selectRecords(Node* i_pRoot, const String& i_Path)
{
    XmlPlugin::XPath path(i_Path);
    XmlPlugin::XPathOutputList records;
    const TErrorCode code = path.getValues(i_pRoot, records);
    if (code == 0)
    {
        return printRecords(records);
    }
    return "error " + std::to_string(code) + (records.empty() ? "" : " and records");
}

/// What a path selects, in one line: for a whole node `name#key`, for others the value; "-" for
/// nothing, "error CODE" for a failure.
inline std::string select(Node* i_pRoot, std::string_view i_Path)
{
    XmlPlugin::XPath path(String(i_Path.data(), i_Path.size()));
    XmlPlugin::XPathOutputList records;
    const TErrorCode code = path.getValues(i_pRoot, records);
    if (code != 0)
    {
        return "error " + std::to_string(code) + (records.empty() ? "" : " and records");
    }
    std::string text;
    for (const XmlPlugin::XPathOutputElement* pRecord : records)
    {
        text += text.empty() ? "" : " ";
        text += pRecord->m_Value.isEmpty()
                    ? pRecord->m_pNode->name().toNarrow() + "#" + std::to_string(pRecord->m_OrderKey)
                    : pRecord->m_Value.toNarrow();
    }
    return text.empty() ? "-" : text;
}

/// Place of the node among its parent's elements of its name.
inline int placeAmongNamesakes(const Node& i_Node)
{
    int place = 1;
    for (const Node* pNode = i_Node.previousSibling(); pNode; pNode = pNode->previousSibling())
    {
        place += pNode->getType() == Node::ElementNode && pNode->name() == i_Node.name() ? 1 : 0;
    }
    return place;
}

/// What an operand selects from a node: from the parent, with the steps that lead to the node itself before the path.
inline std::string selectWithPrefix(Node* i_pNode, const String& i_Path)
{
    const String prefixed = XmlPlugin::XPathArgument::addPrefixToXPath(i_Path, placeAmongNamesakes(*i_pNode), i_pNode);
    Node* pFrom = i_pNode->getParent() ? i_pNode->getParent() : i_pNode;
    if (prefixed.length() > 1 && prefixed.charAt(0) == L'/' && prefixed.charAt(1) != L'/')
    {
        while (pFrom->getParent())
        {
            pFrom = pFrom->getParent();
        }
    }
    const std::string records = selectRecords(pFrom, prefixed);
    return records.starts_with("error") ? "" : records;
}
