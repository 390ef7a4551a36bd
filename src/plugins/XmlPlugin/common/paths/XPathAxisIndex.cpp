#include "paths/XPathAxisIndex.h"

#include "paths/XPathStep.h"
#include "values/XPathBudget.h"
#include "xmlproxy/Node.h"

#include <algorithm>

namespace XmlPlugin
{

bool XPathAxisIndex::isLong(unsigned i_Axis) noexcept
{
    switch (i_Axis)
    {
    case DescendantAxis:
    case FollowingAxis:
    case PrecedingAxis:
    case AncestorAxis:
    case AncestorOrSelfAxis:
    case FollowingSiblingAxis:
    case PrecedingSiblingAxis:
        return true;
    default:
        return false;
    }
}

XPathAxisIndex::XPathAxisIndex(const XPathStep& i_Step, const Node& i_Root) : m_Axis(i_Step.axis())
{
    listElements(i_Root);
    if (m_IsUsable)
    {
        countPassing(i_Step);
    }
    XPathBudget::spend(m_Elements.size());
}

// --- Making -------------------------------------------------------------------------------------

void XPathAxisIndex::listElements(const Node& i_Root)
{
    std::vector<Place> open; // the way down to the node
    for (const Node* pNode = &i_Root; pNode && m_IsUsable;)
    {
        const bool isElement = pNode->getType() == Node::ElementNode;
        const bool isNumbered = m_Elements.empty() || m_Elements.back().m_pNode->sequence() < pNode->sequence();
        m_IsUsable = isElement && isNumbered && m_Elements.size() < s_None;
        m_Elements.push_back({pNode, 0, 0, 0, s_None, 0});
        const auto place = static_cast<Place>(m_Elements.size() - 1);
        if (const Node* pChild = pNode->children().front())
        {
            open.push_back(place);
            pNode = pChild;
            continue;
        }
        m_Elements[place].m_End = place + 1;
        while (!open.empty() && !pNode->nextSibling())
        {
            m_Elements[open.back()].m_End = place + 1;
            pNode = m_Elements[open.back()].m_pNode;
            open.pop_back();
        }
        pNode = open.empty() ? nullptr : pNode->nextSibling();
    }
}

void XPathAxisIndex::countPassing(const XPathStep& i_Step)
{
    struct Open
    {
        Place m_Place;
        Place m_Children;
    };
    std::vector<Open> open; // the ancestors of the element
    for (Place place = 0; place < m_Elements.size(); ++place)
    {
        Element& element = m_Elements[place];
        while (!open.empty() && m_Elements[open.back().m_Place].m_End <= place)
        {
            open.pop_back();
        }
        element.m_Before = static_cast<Place>(m_Passing.size());
        if (!open.empty())
        {
            element.m_Sibling = open.back().m_Children++;
            placeBelow(element, open.back().m_Place);
        }
        // The ancestor axes know names and "*" only, not "node()".
        const bool isTested = !isUpward() || i_Step.nameView() != L"node()";
        if (isTested && i_Step.matches(*element.m_pNode))
        {
            m_Passing.push_back(place);
        }
        open.push_back({place, 0});
    }
}

/// What an element has from its parent, when all elements before it are counted.
void XPathAxisIndex::placeBelow(Element& io_Element, Place i_Parent) const noexcept
{
    const Element& parent = m_Elements[i_Parent];
    const std::size_t behindParent = passingBefore(i_Parent + 1);
    const bool isParentPassing = behindParent > parent.m_Before;
    io_Element.m_Above = parent.m_Above + (isParentPassing ? 1 : 0);
    io_Element.m_First = parent.m_First;
    if (io_Element.m_First != s_None)
    {
        return;
    }
    if (isUpward())
    {
        io_Element.m_First = isParentPassing ? i_Parent : s_None;
    }
    else if (behindParent < m_Passing.size())
    {
        io_Element.m_First = m_Passing[behindParent];
    }
}

bool XPathAxisIndex::isUpward() const noexcept
{
    return m_Axis == AncestorAxis || m_Axis == AncestorOrSelfAxis;
}

// --- Answering ----------------------------------------------------------------------------------

std::size_t XPathAxisIndex::passingBefore(Place i_Place) const noexcept
{
    return i_Place < m_Elements.size() ? m_Elements[i_Place].m_Before : m_Passing.size();
}

bool XPathAxisIndex::passes(Place i_Place) const noexcept
{
    return passingBefore(i_Place + 1) > m_Elements[i_Place].m_Before;
}

/// The node's place; `s_None` when it is not in the tree.
XPathAxisIndex::Place XPathAxisIndex::placeOf(const Node& i_Node) const noexcept
{
    const auto found = std::lower_bound(m_Elements.begin(), m_Elements.end(), i_Node.sequence(),
                                        [](const Element& i_Element, unsigned i_Sequence)
                                        { return i_Element.m_pNode->sequence() < i_Sequence; });
    return found != m_Elements.end() && found->m_pNode == &i_Node ? static_cast<Place>(found - m_Elements.begin())
                                                                  : s_None;
}

bool XPathAxisIndex::knows(const Node& i_Node) const noexcept
{
    return placeOf(i_Node) != s_None;
}

std::size_t XPathAxisIndex::count(const Node& i_Node) const noexcept
{
    const Place place = placeOf(i_Node);
    const Element& element = m_Elements[place];
    const Node* pParent = i_Node.getParent();
    switch (m_Axis)
    {
    case DescendantAxis:
        return passingBefore(element.m_End) - passingBefore(place + 1);
    case FollowingAxis:
        return m_Passing.size() - passingBefore(element.m_End);
    case PrecedingAxis:
        return element.m_Before - element.m_Above;
    case AncestorAxis:
        return element.m_Above;
    case AncestorOrSelfAxis:
        return element.m_Above + (passes(place) ? 1U : 0U);
    case PrecedingSiblingAxis:
        return element.m_Sibling;
    case FollowingSiblingAxis:
        return pParent ? pParent->childCount() - element.m_Sibling - 1 : 0;
    default:
        return 0;
    }
}

const Node* XPathAxisIndex::first(const Node& i_Node) const noexcept
{
    const Place place = placeOf(i_Node);
    const Element& element = m_Elements[place];
    const Node* pParent = i_Node.getParent();
    switch (m_Axis)
    {
    case DescendantAxis:
        return count(i_Node) > 0 ? passingNode(passingBefore(place + 1)) : nullptr;
    case FollowingAxis:
        return passingNode(passingBefore(element.m_End));
    case PrecedingAxis:
    case AncestorAxis:
        return element.m_First == s_None ? nullptr : m_Elements[element.m_First].m_pNode;
    case AncestorOrSelfAxis:
        return element.m_First != s_None ? m_Elements[element.m_First].m_pNode : passes(place) ? &i_Node : nullptr;
    // D-35: siblings of any name.
    case PrecedingSiblingAxis:
        return element.m_Sibling > 0 ? pParent->children().front() : nullptr;
    case FollowingSiblingAxis:
        return pParent ? i_Node.nextSibling() : nullptr;
    default:
        return nullptr;
    }
}

const Node* XPathAxisIndex::passingNode(std::size_t i_Number) const noexcept
{
    return i_Number < m_Passing.size() ? m_Elements[m_Passing[i_Number]].m_pNode : nullptr;
}

} // namespace XmlPlugin
