#include "values/XPathPrinter.h"

#include "xmlproxy/Node.h"

#include <vector>

namespace XmlPlugin
{

namespace
{

void appendElement(String& io_Text, const XPathExpression& i_Element)
{
    if (!io_Text.isEmpty())
    {
        io_Text += L' ';
    }
    io_Text += i_Element.text();
}

void printNode(String& io_Text, const Node& i_Node, int i_Depth)
{
    for (int i = 0; i < i_Depth; ++i)
    {
        io_Text += L"  ";
    }
    io_Text += String::valueOf(i_Node.sequence());
    io_Text += L' ';
    if (i_Node.getType() == Node::CharacterDataNode)
    {
        io_Text += String(L"\"") + i_Node.name() + String(L"\"\n");
        return;
    }
    io_Text += i_Node.name();
    const AttributeTable* pAttributes = i_Node.attributes();
    for (int i = 0; pAttributes && i < pAttributes->count(); ++i)
    {
        String name;
        String value;
        String ordinal;
        pAttributes->getAt(i, name, value);
        pAttributes->getByName(name, value, ordinal);
        io_Text += String(L" @") + name + String(L"=") + value + String(L"(") + ordinal + String(L")");
    }
    io_Text += L'\n';
}

} // namespace

String printElements(const XPathExpressionsVector& i_Elements)
{
    String text;
    for (const XPathExpression* pElement : i_Elements)
    {
        appendElement(text, *pElement);
    }
    return text;
}

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

String printRecords(const XPathOutputList& i_Records)
{
    String text;
    for (const XPathOutputElement* pRecord : i_Records)
    {
        text += String::valueOf(static_cast<int>(pRecord->m_OrderKey));
        text += L": ";
        text += pRecord->m_Value;
        if (pRecord->m_NodeText != pRecord->m_Value)
        {
            text += String(L" = ") + pRecord->m_NodeText;
        }
        text += L'\n';
    }
    return text;
}

String printTree(const Node& i_Root)
{
    String text;
    // Depth first without recursion; a copy's nodes have no parent pointers to go back by.
    std::vector<const Node*> pending{&i_Root};
    while (!pending.empty())
    {
        const Node* pNode = pending.back();
        const int depth = static_cast<int>(pending.size()) - 1;
        printNode(text, *pNode, depth);
        if (!pNode->children().empty())
        {
            pending.push_back(pNode->children().front());
            continue;
        }
        while (!pending.empty())
        {
            const Node* pNext = pending.size() > 1 ? pending.back()->nextSibling() : nullptr;
            pending.pop_back();
            if (pNext)
            {
                pending.push_back(pNext);
                break;
            }
        }
    }
    return text;
}

} // namespace XmlPlugin
