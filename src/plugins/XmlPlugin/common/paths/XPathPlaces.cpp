#include "paths/XPathPlaces.h"

#include "values/XPathBudget.h"
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
    childrenOf(*pParent);
    const auto found = m_Places.find(&i_Node);
    return found == m_Places.end() ? 0 : found->second;
}

Node* XPathPlaces::find(const Node& i_Parent, std::wstring_view i_Name, int i_Place)
{
    const Namesakes& children = childrenOf(i_Parent);
    const auto found = children.find(i_Name);
    const bool isThere =
        found != children.end() && i_Place >= 1 && static_cast<std::size_t>(i_Place) <= found->second.size();
    return isThere ? found->second[static_cast<std::size_t>(i_Place - 1)] : nullptr;
}

const XPathPlaces::Namesakes& XPathPlaces::childrenOf(const Node& i_Parent)
{
    const auto [entry, isNew] = m_Children.try_emplace(&i_Parent);
    if (!isNew)
    {
        return entry->second;
    }
    for (Node* pNode : i_Parent.children())
    {
        XPathBudget::spend();
        if (pNode->getType() == Node::ElementNode)
        {
            std::vector<Node*>& namesakes = entry->second[viewOf(pNode->name())];
            namesakes.push_back(pNode);
            m_Places.emplace(pNode, static_cast<int>(namesakes.size()));
        }
    }
    return entry->second;
}

} // namespace XmlPlugin
