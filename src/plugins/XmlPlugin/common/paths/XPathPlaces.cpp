#include "paths/XPathPlaces.h"

#include "xmlproxy/Node.h"

namespace XmlPlugin
{

int XPathPlaces::of(const Node& i_Node)
{
    const Node* pParent = i_Node.getParent();
    if (!pParent)
    {
        return 1;
    }
    if (pParent != m_pParent || !countUpTo(i_Node))
    {
        m_pParent = pParent;
        m_pNext = pParent->children().front();
        m_Counts.clear();
        countUpTo(i_Node);
    }
    return m_Counts[i_Node.name()];
}

/// False when the node is not among the siblings that are left.
bool XPathPlaces::countUpTo(const Node& i_Node)
{
    while (m_pNext)
    {
        const Node* pNode = m_pNext;
        m_pNext = pNode->nextSibling();
        if (pNode->getType() == Node::ElementNode)
        {
            ++m_Counts[pNode->name()];
        }
        if (pNode == &i_Node)
        {
            return true;
        }
    }
    return false;
}

} // namespace XmlPlugin
