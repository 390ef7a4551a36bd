#include "XPathDirectWalk.h"

#include "XPath.h"
#include "XPathPredicate.h"
#include "xmlproxy/Node.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <vector>

namespace XmlPlugin
{

namespace
{

/// Of several predicates that ask for places only the first one's list is known without looking ahead.
bool areDirect(const std::pmr::vector<XPathPredicate>& i_Predicates) noexcept
{
    std::ptrdiff_t places = 0;
    for (const XPathPredicate& predicate : i_Predicates)
    {
        if (!predicate.direct().isCommon())
            return false;
        places += predicate.direct().isPlace() ? 1 : 0;
    }
    return places <= 1;
}

bool isDirectLeaf(const XPathStep& i_Leaf) noexcept
{
    return i_Leaf.axis() == ChildAxis || (i_Leaf.axis() == AttributeAxis && i_Leaf.nameView() != L"*");
}

} // namespace

bool XPathDirectWalk::canWalk(const XPathBranch& i_Branch) noexcept
{
    constexpr unsigned mostSteps = std::numeric_limits<Steps>::digits;
    if (i_Branch.m_StepCount == 0 || i_Branch.m_StepCount >= mostSteps)
        return false;
    const auto isBuilt = [](const XPathBranch::Slot& i_Slot) { return i_Slot.m_pStep != nullptr; };
    if (!std::all_of(i_Branch.m_Steps.begin(), i_Branch.m_Steps.end(), isBuilt))
        return false;
    const auto isDirect = [](const XPathBranch::Slot& i_Slot)
    { return i_Slot.m_pStep->axis() == ChildAxis && areDirect(i_Slot.m_pStep->predicates()); };
    // The keys of "@*" may meet others, and then the order in which the other walk adds records counts.
    return std::all_of(i_Branch.m_Steps.begin(), i_Branch.m_Steps.end() - 1, isDirect) &&
           isDirectLeaf(*i_Branch.m_Steps.back().m_pStep);
}

/// A name entry that several nodes have is an element's name in a parsed tree: text nodes have one each.
bool XPathDirectWalk::Test::matches(const Node& i_Node) noexcept
{
    const XmlName* pName = &i_Node.nameEntry();
    if (pName == m_pSame)
        return true;
    if (pName == m_pOther)
        return false;
    // A text node's name is its text.
    const bool isMatch = m_pStep->matches(i_Node) && i_Node.getType() == Node::ElementNode;
    (isMatch ? m_pSame : m_pOther) = pName;
    return isMatch;
}

XPathDirectWalk::XPathDirectWalk(const XPathBranch& i_Branch, XPathOutputCollector& io_Output)
    : m_Leaf(*i_Branch.m_Steps.back().m_pStep),
      m_Output(io_Output),
      m_CountsNodes(io_Output.isCount() && m_Leaf.takesWholeNodes()),
      m_LeafBit(Steps{1} << i_Branch.m_StepCount)
{
    m_Tests.reserve(i_Branch.m_StepCount);
    for (unsigned i = 0; i < i_Branch.m_StepCount; ++i)
    {
        Test test{};
        test.m_pStep = i_Branch.m_Steps[i].m_pStep.get();
        test.m_IsDeep = test.m_pStep->isDeep();
        test.m_HasPredicates = test.m_pStep->hasPredicates();
        for (const XPathPredicate& predicate : test.m_pStep->predicates())
        {
            if (predicate.direct().isPlace())
                test.m_Counter = m_CounterCount++;
            else
                m_AskingSteps |= Steps{1} << i;
        }
        test.m_AsksForAttributes = asksForAttributes(Steps{1} << i);
        m_Tests.push_back(test);
    }
}

// --- The loop -----------------------------------------------------------------------------------

bool XPathDirectWalk::evaluate(Node* i_pNode, unsigned i_StepPosition)
{
    if (i_StepPosition == 0 && isPlainSearch())
    {
        search(*i_pNode);
        return !m_IsGivenUp;
    }
    const Steps step = Steps{1} << i_StepPosition;
    if (asksForAttributes(step) && i_pNode->getParent() && !isReadAsItStands(*i_pNode->getParent()))
        return false;
    // The node in a list of its own, behind which nothing is visited.
    open({nullptr, step, step});
    List below{};
    if (visit(*i_pNode, m_Lists.back(), below))
        open(below);
    while (!m_IsGivenUp && !m_Lists.empty())
    {
        List& list = m_Lists.back();
        Node* pNode = list.m_pNext;
        if (!pNode || list.m_Steps == 0)
        {
            close();
            continue;
        }
        list.m_pNext = pNode->nextSibling();
        if (visit(*pNode, list, below))
            open(below);
    }
    return !m_IsGivenUp;
}

/// Whether there is one step, behind "//" and without predicates: then a node is selected by its name alone.
bool XPathDirectWalk::isPlainSearch() const noexcept
{
    return m_Tests.size() == 1 && m_Tests.front().m_IsDeep && !m_Tests.front().m_HasPredicates;
}

/// The node and all below it, in document order.
void XPathDirectWalk::search(Node& i_Node)
{
    Test& test = m_Tests.front();
    std::vector<Node*> waiting; // siblings behind the nodes that are being searched
    Node* pNext = nullptr;      // what is behind the first one is not searched
    for (Node* pNode = &i_Node; pNode && !m_IsGivenUp; pNext = pNode ? pNode->nextSibling() : nullptr)
    {
        if (test.matches(*pNode))
            select(*pNode);
        if (Node* pChild = pNode->children().front())
        {
            if (pNext)
                waiting.push_back(pNext);
            pNode = pChild;
            continue;
        }
        if (!pNext && !waiting.empty())
        {
            pNext = waiting.back();
            waiting.pop_back();
        }
        pNode = pNext;
    }
}

void XPathDirectWalk::open(const List& i_List)
{
    m_Lists.push_back(i_List);
    m_Counters.resize(m_Lists.size() * m_CounterCount);
}

void XPathDirectWalk::close() noexcept
{
    m_Lists.pop_back();
    m_Counters.resize(m_Lists.size() * m_CounterCount);
}

/// Tests the node at all steps of its list and gives it to the leaf where they end. True with the
/// list of its children when there is something to be done with them.
bool XPathDirectWalk::visit(Node& i_Node, List& io_List, List& o_Below)
{
    o_Below = {i_Node.children().front(), 0, 0};
    for (Steps left = io_List.m_Steps; left != 0; left &= left - 1)
    {
        const Steps step = left & (~left + 1);
        Test& test = m_Tests[static_cast<std::size_t>(std::countr_zero(left))];
        const bool isMatch = test.matches(i_Node);
        const bool isDropped = isMatch && test.m_HasPredicates && !isKept(test, i_Node, step, io_List);
        if (test.m_IsDeep)
        {
            o_Below.m_Steps |= step;
            o_Below.m_Reachable |= isDropped ? 0 : step;
        }
        if (!isMatch || isDropped)
            continue;
        if (const Steps next = step << 1; next != m_LeafBit)
        {
            o_Below.m_Steps |= next;
            o_Below.m_Reachable |= next;
        }
        // D-54: below a dropped parent nothing is handed to the leaf by a deep step.
        else if (!test.m_IsDeep || (io_List.m_Reachable & step) != 0)
            select(i_Node);
    }
    if (!o_Below.m_pNext || o_Below.m_Steps == 0)
        return false;
    if (asksForAttributes(o_Below.m_Steps) && !isReadAsItStands(i_Node))
        m_IsGivenUp = true;
    return true;
}

/// Numbered as a parse does it, the nodes have ascending keys. Where they have not, the order in which the
/// other walk adds records decides which ones stay.
void XPathDirectWalk::select(Node& i_Node)
{
    const std::size_t before = m_Output.size();
    if (m_CountsNodes)
        m_Output.count(static_cast<std::int32_t>(i_Node.sequence()));
    else
        m_Leaf.evaluate(&i_Node, m_Output);
    if (m_Output.size() == before)
        return;
    const std::int32_t key = m_Output.lastKey();
    if (m_HasSelected && key <= m_LastKey)
        m_IsGivenUp = true;
    m_LastKey = key;
    m_HasSelected = true;
}

// --- Predicates ---------------------------------------------------------------------------------

bool XPathDirectWalk::isKept(Test& io_Test, const Node& i_Node, Steps i_Step, List& io_List)
{
    if (io_Test.m_AsksForAttributes && !isReadAsItStands(i_Node))
        m_IsGivenUp = true;
    const auto& predicates = io_Test.m_pStep->predicates();
    for (std::size_t i = 0; i < predicates.size(); ++i)
    {
        const XPathDirectPredicate& predicate = predicates[i].direct();
        if (!predicate.isPlace())
        {
            if (!predicate.holds(i_Node))
                return false;
            continue;
        }
        const std::size_t place = ++counterOf(io_Test);
        if (!io_Test.m_IsDeep && predicate.isPast(i_Node, place))
            io_List.m_Steps &= ~i_Step;
        if (!predicate.holdsAt(i_Node, place, predicate.isLast() && isLastInList(io_Test, i_Node, i)))
            return false;
    }
    return true;
}

/// Whether no sibling behind the node comes to the predicate at \p i_Predicate.
bool XPathDirectWalk::isLastInList(Test& io_Test, const Node& i_Node, std::size_t i_Predicate)
{
    if (m_Lists.size() == 1)
        return true; // the first node is alone in its list, whatever stands beside it
    const auto& predicates = io_Test.m_pStep->predicates();
    const auto end = predicates.begin() + static_cast<std::ptrdiff_t>(i_Predicate);
    for (const Node* pNode = i_Node.nextSibling(); pNode; pNode = pNode->nextSibling())
    {
        const auto holds = [pNode](const XPathPredicate& i_Before) { return i_Before.direct().holds(*pNode); };
        if (io_Test.matches(*pNode) && std::all_of(predicates.begin(), end, holds))
            return false;
    }
    return true;
}

bool XPathDirectWalk::isReadAsItStands(const Node& i_Node) noexcept
{
    const XmlName* pName = &i_Node.nameEntry();
    if (pName != m_pPlainName && !XPathDirectPredicate::isPlainName(*pName))
        return false;
    m_pPlainName = pName;
    return true;
}

} // namespace XmlPlugin
