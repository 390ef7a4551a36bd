#include "paths/XPathSideFilter.h"

#include "paths/XPathDirectPredicate.h"
#include "paths/XPathPredicate.h"
#include "paths/XPathStep.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <string_view>

namespace XmlPlugin
{

namespace
{

bool isBefore(const Node* i_pLeft, const Node* i_pRight) noexcept
{
    return i_pLeft->sequence() < i_pRight->sequence();
}

/// Whether the text may call the function. What only looks like a call makes it slower, not wrong.
bool mayCall(std::wstring_view i_Text, std::wstring_view i_Function) noexcept
{
    for (std::size_t at = i_Text.find(i_Function); at != std::wstring_view::npos; at = i_Text.find(i_Function, at + 1))
    {
        const std::size_t next = i_Text.find_first_not_of(L" \t\r\n", at + i_Function.size());
        if (next != std::wstring_view::npos && i_Text[next] == L'(')
        {
            return true;
        }
    }
    return false;
}

} // namespace

/// On the preceding sides a list begins where that of all siblings begins, so that only its end is its own.
XPathSideFilter::XPathSideFilter(XPathStep& io_Step) : m_Step(io_Step)
{
    const bool isPreceding = io_Step.axis() == PrecedingAxis || io_Step.axis() == PrecedingSiblingAxis;
    for (const XPathPredicate& predicate : io_Step.predicates())
    {
        const XPathPlanPredicate& plan = predicate.plan();
        if (isPreceding ? plan.m_Kind == XPathPlanPredicate::Kind::Last : plan.asksForPlace())
        {
            m_pPlace = &plan;
            break;
        }
        const std::wstring_view text = predicate.textView();
        if (predicate.isEmpty() || mayCall(text, L"last") || (!isPreceding && mayCall(text, L"position")))
        {
            m_IsUsable = false;
            break;
        }
        ++m_Place;
    }
}

// --- Siblings -----------------------------------------------------------------------------------

bool XPathSideFilter::readChildren(const Node& i_Parent)
{
    const auto [entry, isNew] = m_Passing.try_emplace(&i_Parent);
    if (!isNew)
    {
        return m_IsUsable;
    }
    NodeVector& nodes = entry->second;
    XPathStep::listElementChildren(&i_Parent, nodes);
    // Ranks are found by the numbers of the nodes.
    m_IsUsable = m_IsUsable && std::adjacent_find(nodes.begin(), nodes.end(),
                                                  [](const Node* i_pLeft, const Node* i_pRight)
                                                  { return !isBefore(i_pLeft, i_pRight); }) == nodes.end();
    return m_IsUsable && filter(nodes);
}

/// Leaves what comes to the predicate that asks for a place. A number is compared with the place in the list, and of a
/// failure it counts whether it is the last node's.
bool XPathSideFilter::filter(NodeVector& io_Nodes)
{
    std::erase_if(io_Nodes, [this](const Node* i_pNode) { return !m_Step.matches(*i_pNode); });
    const bool isPreceding = m_Step.axis() == PrecedingAxis || m_Step.axis() == PrecedingSiblingAxis;
    for (std::size_t i = 0; i < m_Place && m_IsUsable; ++i)
    {
        XPathPredicate& predicate = m_Step.predicates()[i];
        const bool isDone = predicate.fiterNodes(io_Nodes) == XML_SUCCESS;
        m_IsUsable = isDone && !predicate.hasFailed() && (isPreceding || !predicate.hasNumber());
    }
    return m_IsUsable;
}

bool XPathSideFilter::isKept(const Node& i_Node)
{
    const NodeVector& passing = m_Passing[i_Node.getParent()];
    return std::binary_search(passing.begin(), passing.end(), &i_Node, isBefore);
}

NodeVector XPathSideFilter::keptBeside(const Node& i_Node, bool i_IsFollowing)
{
    const NodeVector& passing = m_Passing[i_Node.getParent()];
    const auto here = i_IsFollowing ? std::upper_bound(passing.begin(), passing.end(), &i_Node, isBefore)
                                    : std::lower_bound(passing.begin(), passing.end(), &i_Node, isBefore);
    const auto begin = i_IsFollowing ? here : passing.begin();
    const auto size = static_cast<std::size_t>((i_IsFollowing ? passing.end() : here) - begin);
    const std::size_t place = m_pPlace->m_Kind == XPathPlanPredicate::Kind::Last ? size : m_pPlace->m_Place;
    NodeVector kept;
    if (place >= 1 && place <= size)
    {
        Node* pNode = begin[static_cast<std::ptrdiff_t>(place - 1)];
        if (XPathDirectPredicate(*m_pPlace).holdsAt(*pNode, place, place == size))
        {
            kept.push_back(pNode);
        }
    }
    filterTheRest(kept);
    return kept;
}

/// By the predicates after the one that asks for a place.
void XPathSideFilter::filterTheRest(NodeVector& io_Nodes)
{
    for (std::size_t i = m_Place + 1; i < m_Step.predicates().size(); ++i)
    {
        if (m_Step.predicates()[i].fiterNodes(io_Nodes) != XML_SUCCESS)
        {
            io_Nodes.clear();
        }
    }
}

// --- Ancestors ----------------------------------------------------------------------------------

bool XPathSideFilter::readAncestors(const NodeVector& i_Nodes, const Node* i_pAbove, NodeVector& o_Passing)
{
    o_Passing = i_Nodes;
    if (!filter(o_Passing))
    {
        return false;
    }
    const auto known = m_Climbs.find(i_pAbove);
    const Climb* pAbove = known == m_Climbs.end() ? nullptr : &known->second;
    auto pPassing = o_Passing.rbegin();
    for (auto pNode = i_Nodes.rbegin(); pNode != i_Nodes.rend(); ++pNode)
    {
        const bool isPassing = pPassing != o_Passing.rend() && *pPassing == *pNode;
        Climb& climb = m_Climbs[*pNode];
        if (isPassing)
        {
            ++pPassing;
            climb.m_pNode = *pNode;
            climb.m_pAbove = pAbove && pAbove->m_pNode ? pAbove : nullptr;
            climb.m_Rank = climb.m_pAbove ? climb.m_pAbove->m_Rank + 1 : 1;
            // Two hops of one length are joined to one of twice the length and one, as in a skew binary number.
            const Climb* pOne = climb.m_pAbove;
            const Climb* pTwo = pOne ? pOne->m_pFar : nullptr;
            const bool isJoined =
                pTwo && pTwo->m_pFar && pOne->m_Rank - pTwo->m_Rank == pTwo->m_Rank - pTwo->m_pFar->m_Rank;
            climb.m_pFar = isJoined ? pTwo->m_pFar : pOne;
        }
        else if (pAbove)
        {
            climb = *pAbove;
        }
        pAbove = &climb;
    }
    return true;
}

/// The root is alone in its document, so that it may be kept beside the one at the place.
NodeVector XPathSideFilter::keptFrom(const Node& i_Node)
{
    NodeVector kept;
    const Climb* pFirst = &m_Climbs[&i_Node]; // was asked
    const std::size_t size = pFirst->m_Rank;
    const std::size_t place = m_pPlace->m_Kind == XPathPlanPredicate::Kind::Last ? size : m_pPlace->m_Place;
    const auto keep = [&](std::size_t i_Place)
    {
        Node* pNode = at(pFirst, size - i_Place + 1)->m_pNode;
        if (XPathDirectPredicate(*m_pPlace).holdsAt(*pNode, i_Place, i_Place == size) &&
            (kept.empty() || kept.back() != pNode))
        {
            kept.push_back(pNode);
        }
    };
    if (place >= 1 && place <= size)
    {
        keep(place);
    }
    if (size >= 1)
    {
        keep(size);
    }
    filterTheRest(kept);
    return kept;
}

const XPathSideFilter::Climb* XPathSideFilter::at(const Climb* i_pClimb, std::size_t i_Rank) noexcept
{
    while (i_pClimb->m_Rank > i_Rank)
    {
        const Climb* pFar = i_pClimb->m_pFar;
        i_pClimb = pFar && pFar->m_Rank >= i_Rank ? pFar : i_pClimb->m_pAbove;
    }
    return i_pClimb;
}

} // namespace XmlPlugin
