#include "paths/XPathDirectWalk.h"

#include "values/XPathBudget.h"
#include "xmlproxy/Node.h"

#include <bit>
#include <utility>
#include <vector>

namespace XmlPlugin
{

/// A name entry that several nodes have is an element's name in a parsed tree: text nodes have one each.
bool XPathDirectWalk::Test::matches(const Node& i_Node) noexcept
{
    const XmlName* pName = &i_Node.nameEntry();
    if (pName == m_pSame)
    {
        return true;
    }
    if (pName == m_pOther)
    {
        return false;
    }
    // A text node's name is its text.
    const bool isMatch =
        (m_pStep->m_IsAnyName || m_pStep->m_Name == i_Node.nameEntry()) && i_Node.getType() == Node::ElementNode;
    (isMatch ? m_pSame : m_pOther) = pName;
    return isMatch;
}

XPathDirectWalk::XPathDirectWalk(const XPathPlanBranch& i_Branch, XPathOutputCollector& io_Output)
    : m_Leaf(i_Branch.m_TakesAttribute ? XPathLeafValue(i_Branch.m_Attribute) : XPathLeafValue()),
      m_Output(io_Output),
      m_CountsNodes(io_Output.isCount() && m_Leaf.isWholeNode()),
      m_LeafBit(Steps{1} << i_Branch.m_StepCount)
{
    for (const XPathPlanStep* pStep = i_Branch.m_pSteps; pStep; pStep = pStep->m_pNext)
    {
        Test test{};
        test.m_pStep = pStep;
        for (const XPathPlanPredicate* pPredicate = pStep->m_pPredicates; pPredicate; pPredicate = pPredicate->m_pNext)
        {
            if (pPredicate->asksForPlace())
            {
                test.m_Counter = m_CounterCount++;
            }
            else
            {
                test.m_AsksForAttributes = true;
            }
        }
        if (test.m_AsksForAttributes)
        {
            m_AskingSteps |= Steps{1} << m_Tests.size();
        }
        m_Tests.push_back(test);
    }
}

// --- Whole paths --------------------------------------------------------------------------------

bool XPathDirectWalk::select(const XPathPlan& i_Plan, const Start& i_Start, XPathOutputList& io_Records)
{
    XPathOutputList records;
    XPathOutputCollector output(records, XPathOutputCollector::Purpose::Records);
    for (const XPathPlanBranch* pBranch = &i_Plan.m_First; pBranch; pBranch = pBranch->m_pNext)
    {
        const bool isBelow = i_Start.m_IsBelow && pBranch == &i_Plan.m_First;
        XPathDirectWalk walk(*pBranch, output);
        if (isBelow ? !walk.evaluateBelow(*i_Start.m_pNode) : !walk.evaluate(i_Start.m_pRoot))
        {
            return false;
        }
    }
    output.orderByKey();
    io_Records.append(std::move(records));
    return true;
}

bool XPathDirectWalk::count(const XPathPlan& i_Plan, const Start& i_Start, std::size_t& o_Count)
{
    if (i_Plan.m_First.m_pNext)
    {
        return false;
    }
    XPathOutputList none;
    XPathOutputCollector counter(none, XPathOutputCollector::Purpose::Count);
    XPathDirectWalk walk(i_Plan.m_First, counter);
    if (i_Start.m_IsBelow ? !walk.evaluateBelow(*i_Start.m_pNode) : !walk.evaluate(i_Start.m_pRoot))
    {
        return false;
    }
    o_Count = counter.size();
    return true;
}

// --- The loop -----------------------------------------------------------------------------------

bool XPathDirectWalk::evaluate(Node* i_pNode)
{
    if (m_Tests.empty())
    {
        return false; // an attribute of a root that is not there
    }
    if (isSearch())
    {
        search(*i_pNode);
        return !m_IsGivenUp;
    }
    const Steps step = 1;
    if (asksForAttributes(step) && i_pNode->getParent() && !isReadAsItStands(*i_pNode->getParent()))
    {
        return false;
    }
    // The node in a list of its own, after which nothing is visited.
    m_IsFirstAlone = true;
    open({nullptr, step, step});
    List below{};
    if (visit(*i_pNode, m_Lists.back(), below))
    {
        open(below);
    }
    return run();
}

bool XPathDirectWalk::evaluateBelow(Node& i_Node)
{
    if (i_Node.getType() != Node::ElementNode)
    {
        return true;
    }
    if (m_Tests.empty())
    {
        select(i_Node);
        return !m_IsGivenUp;
    }
    const Steps step = 1;
    if (asksForAttributes(step) && !isReadAsItStands(i_Node))
    {
        return false;
    }
    open({i_Node.children().front(), step, step});
    return run();
}

bool XPathDirectWalk::run()
{
    List below{};
    std::size_t visits = 1;
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
        ++visits;
        if (visit(*pNode, list, below))
        {
            open(below);
        }
    }
    XPathBudget::spend(visits);
    return !m_IsGivenUp;
}

/// Whether there is one step, after "//" and without predicates: then a node is selected by its name alone.
bool XPathDirectWalk::isSearch() const noexcept
{
    return m_Tests.size() == 1 && m_Tests.front().m_pStep->m_IsDeep && !m_Tests.front().hasPredicates();
}

/// The node and all below it, in document order.
void XPathDirectWalk::search(Node& i_Node)
{
    Test& test = m_Tests.front();
    std::vector<Node*> waiting; // siblings after the nodes that are being searched
    std::size_t visits = 0;
    Node* pNext = nullptr; // what is after the first one is not searched
    for (Node* pNode = &i_Node; pNode && !m_IsGivenUp; pNext = pNode ? pNode->nextSibling() : nullptr)
    {
        ++visits;
        if (test.matches(*pNode))
        {
            select(*pNode);
        }
        if (Node* pChild = pNode->children().front())
        {
            if (pNext)
            {
                waiting.push_back(pNext);
            }
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
    XPathBudget::spend(visits);
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
        const bool isDropped = isMatch && test.hasPredicates() && !isKept(test, i_Node, step, io_List);
        if (test.m_pStep->m_IsDeep)
        {
            o_Below.m_Steps |= step;
            o_Below.m_Reachable |= isDropped ? 0 : step;
        }
        if (!isMatch || isDropped)
        {
            continue;
        }
        if (const Steps next = step << 1; next != m_LeafBit)
        {
            o_Below.m_Steps |= next;
            o_Below.m_Reachable |= next;
        }
        // D-54: below a dropped parent nothing is handed to the leaf by a deep step.
        else if (!test.m_pStep->m_IsDeep || (io_List.m_Reachable & step) != 0)
        {
            select(i_Node);
        }
    }
    if (!o_Below.m_pNext || o_Below.m_Steps == 0)
    {
        return false;
    }
    if (asksForAttributes(o_Below.m_Steps) && !isReadAsItStands(i_Node))
    {
        m_IsGivenUp = true;
    }
    return true;
}

/// Numbered as a parse does it, the nodes have ascending keys. Where they have not, the order in which the
/// other walk adds records decides which ones stay.
void XPathDirectWalk::select(Node& i_Node)
{
    const std::size_t before = m_Output.size();
    if (m_CountsNodes)
    {
        m_Output.count(static_cast<std::int32_t>(i_Node.sequence()));
    }
    else
    {
        m_Leaf.add(i_Node, m_Output);
    }
    if (m_Output.size() == before)
    {
        return;
    }
    const std::int32_t key = m_Output.lastKey();
    if (m_HasSelected && key <= m_LastKey)
    {
        m_IsGivenUp = true;
    }
    m_LastKey = key;
    m_HasSelected = true;
}

// --- Predicates ---------------------------------------------------------------------------------

bool XPathDirectWalk::isKept(Test& io_Test, const Node& i_Node, Steps i_Step, List& io_List)
{
    if (io_Test.m_AsksForAttributes && !isReadAsItStands(i_Node))
    {
        m_IsGivenUp = true;
    }
    for (const XPathPlanPredicate* pPlan = io_Test.m_pStep->m_pPredicates; pPlan; pPlan = pPlan->m_pNext)
    {
        const XPathDirectPredicate predicate(*pPlan);
        if (!pPlan->asksForPlace())
        {
            if (!predicate.holds(i_Node))
            {
                return false;
            }
            continue;
        }
        const std::size_t place = ++counterOf(io_Test);
        if (!io_Test.m_pStep->m_IsDeep && predicate.isPast(i_Node, place))
        {
            io_List.m_Steps &= ~i_Step;
        }
        const bool asksForLast = pPlan->m_Kind == XPathPlanPredicate::Kind::Last;
        if (!predicate.holdsAt(i_Node, place, asksForLast && isLastInList(io_Test, i_Node, *pPlan)))
        {
            return false;
        }
    }
    return true;
}

/// Whether no sibling after the node comes to \p i_Predicate.
bool XPathDirectWalk::isLastInList(Test& io_Test, const Node& i_Node, const XPathPlanPredicate& i_Predicate)
{
    // The first node is alone in its list, whatever stands beside it.
    const Node* pNode = m_Lists.size() == 1 && m_IsFirstAlone ? nullptr : i_Node.nextSibling();
    for (; pNode; pNode = pNode->nextSibling())
    {
        bool isKept = io_Test.matches(*pNode);
        for (const XPathPlanPredicate* pBefore = io_Test.m_pStep->m_pPredicates; isKept && pBefore != &i_Predicate;
             pBefore = pBefore->m_pNext)
        {
            isKept = XPathDirectPredicate(*pBefore).holds(*pNode);
        }
        if (isKept)
        {
            return false;
        }
    }
    return true;
}

bool XPathDirectWalk::isReadAsItStands(const Node& i_Node) noexcept
{
    const XmlName* pName = &i_Node.nameEntry();
    if (pName != m_pPlainName && !XPathDirectPredicate::isPlainName(*pName))
    {
        return false;
    }
    m_pPlainName = pName;
    return true;
}

} // namespace XmlPlugin
