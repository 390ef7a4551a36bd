#include "paths/XPathWalk.h"

#include "values/XPathBudget.h"
#include "values/XPathQuickCode.h"
#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <functional>

XML_TRACE_SOURCE(L"XPath")

namespace XmlPlugin
{

namespace
{

constexpr const wchar_t* s_StepScope = L"XPath::evaluateStep(Node*, unsigned int, std::list<XPathOutputElement *> &)";

constexpr const wchar_t* s_AncestorScope = L"XPath::ancestorStep";
constexpr const wchar_t* s_SiblingsScope = L"XPath::siblingsStep";
constexpr const wchar_t* s_FollowScope = L"XPath::followprescStep";

TRACE_COLD void traceParent()
{
    const Trace trace(s_Tracer, s_AncestorScope);
    XML_TRACE(trace, TraceInformation) << L"parent";
}

/// The node itself or the first element behind it; null when there is none.
Node* elementFrom(Node* i_pNode) noexcept
{
    while (i_pNode && i_pNode->getType() != Node::ElementNode)
    {
        i_pNode = i_pNode->nextSibling();
    }
    return i_pNode;
}

Node* firstElementChild(const Node& i_Node) noexcept
{
    return elementFrom(i_Node.children().front());
}

} // namespace

XPathWalk::XPathWalk(XPathBranch& i_Branch, XPathOutputCollector& io_Output)
    : m_Branch(i_Branch), m_StepPositionMax(i_Branch.m_StepCount), m_Output(io_Output)
{
}

// --- The loop -----------------------------------------------------------------------------------

TErrorCode XPathWalk::evaluate(MarkedNode i_Node, unsigned i_StepPosition)
{
    m_Pending.push_back({i_Node.m_pNode, i_StepPosition, Work::EvaluateStep, i_Node.m_IsMarked, false, false});
    TErrorCode code = XML_SUCCESS;
    while (!m_Pending.empty())
    {
        if (isBudgetSpent())
        {
            m_Pending.clear();
            return XML_PLUGIN_ERROR_XPATH_PARSER_ERROR;
        }
        Task task = m_Pending.back();
        Node* pSibling = nullptr;
        if (isForSiblings(task.m_Work))
        {
            pSibling = elementFrom(task.m_pNode->nextSibling());
        }
        if (pSibling)
        {
            m_Pending.back().m_pNode = pSibling;
        }
        else if (task.m_Work == Work::GuardedSiblings)
        {
            m_Pending.back().m_Work = Work::Guard;
        }
        else
        {
            m_Pending.pop_back();
        }

        code = perform(task);
        if (code != XML_SUCCESS)
        {
            unwind(code);
        }
        // Where a guard has stopped the unwinding, the error has come to nothing.
        if (!m_Pending.empty())
        {
            code = XML_SUCCESS;
        }
    }
    return code;
}

bool XPathWalk::spend() noexcept
{
    XPathBudget::spend(m_Unspent);
    m_Unspent = 0;
    return XPathBudget::isSpent();
}

/// Drops what is pending up to the next guard; what it began and did not end has failed.
void XPathWalk::unwind(TErrorCode i_Code)
{
    while (!m_Pending.empty())
    {
        const Task& task = m_Pending.back();
        if (task.m_Work == Work::Guard || task.m_Work == Work::ParentGuard || task.m_Work == Work::GuardedSiblings)
        {
            return;
        }
        if (task.m_Work == Work::Leave)
        {
            m_Failures[visitOf(task)] = i_Code;
            m_SideFilters.resize(std::max<std::size_t>(m_SideFilters.size(), task.m_StepPosition + 1));
            m_SideFilters[task.m_StepPosition].m_HasFailed = true;
        }
        m_Pending.pop_back();
    }
}

TErrorCode XPathWalk::perform(const Task& i_Task)
{
    switch (i_Task.m_Work)
    {
    case Work::EvaluateSiblings:
    case Work::SiblingsBelow:
    case Work::GuardedSiblings:
    case Work::EvaluateStep:
    case Work::StepBelow:
    case Work::WalkerStep:
        return evaluateStep(i_Task);
    case Work::NextStepBelow:
        return nextStepBelow(i_Task);
    case Work::SameStepBelow:
        sameStepBelow(i_Task);
        return XML_SUCCESS;
    case Work::ParentGuard:
        traceParent();
        return XML_SUCCESS;
    case Work::Guard:
    case Work::Leave:
        break;
    }
    return XML_SUCCESS;
}

XPathWalk::Visit XPathWalk::visitOf(const Task& i_Task) const noexcept
{
    return {i_Task.m_pNode, i_Task.m_StepPosition,
            (i_Task.m_IsMarked ? 1U : 0U) | (i_Task.m_IsParentMarked ? 2U : 0U) |
                (i_Task.m_AbsoluteDeepSearch ? 4U : 0U)};
}

std::size_t XPathWalk::VisitHash::operator()(const Visit& i_Visit) const noexcept
{
    const std::size_t rest = (std::size_t{i_Visit.m_StepPosition} << 6) | i_Visit.m_Flags;
    return std::hash<const Node*>{}(i_Visit.m_pNode) ^ (rest * 0x9E3779B97F4A7C15ULL);
}

// --- One node at one step -----------------------------------------------------------------------

TErrorCode XPathWalk::evaluateStep(const Task& i_Task)
{
    if (!i_Task.m_pNode || i_Task.m_StepPosition >= m_StepPositionMax)
    {
        return XML_SUCCESS;
    }
    const Trace trace(s_Tracer, s_StepScope);
    if (TRACE_IS_ON(TraceInformation)) [[unlikely]]
    {
        traceArrival(i_Task);
    }

    const XPathBranch::Slot& slot = m_Branch.m_Steps[i_Task.m_StepPosition];
    const XPathStep& current = *slot.m_pStep; // a step that could not be built is not come to
    const bool isMatch = current.matches(*i_Task.m_pNode);
    const bool isDeepSearch = current.isDeep() || i_Task.m_AbsoluteDeepSearch;
    if (!isMatch && !isDeepSearch)
    {
        return XML_SUCCESS;
    }
    if (slot.m_MayRepeat)
    {
        // Coming to the same place again adds nothing but records that are there already.
        const Visit visit = visitOf(i_Task);
        if (!m_Visits.add(*visit.m_pNode, visit.m_StepPosition, visit.m_Flags))
        {
            const auto failure = m_Failures.find(visit);
            return failure == m_Failures.end() ? XML_SUCCESS : failure->second;
        }
        Task leave = i_Task;
        leave.m_Work = Work::Leave;
        m_Pending.push_back(leave);
    }
    if (isDeepSearch)
    {
        Task below = i_Task;
        below.m_Work = Work::SameStepBelow;
        m_Pending.push_back(below);
    }
    if (!isMatch)
    {
        return XML_SUCCESS;
    }
    XML_TRACE(trace, TraceInformation) << L"Step matched against node [" << i_Task.m_pNode->name() << L"]";
    XML_TRACE(trace, TraceInformation) << L"Step name = " << current.name();
    return i_Task.m_IsMarked ? XML_SUCCESS : evaluateMatch(i_Task, current);
}

/// What brought the walk to the node, and where it is now.
TRACE_COLD void XPathWalk::traceArrival(const Task& i_Task) const
{
    const Trace trace(s_Tracer, s_StepScope);
    if (i_Task.m_Work == Work::StepBelow || i_Task.m_Work == Work::SiblingsBelow)
    {
        XML_TRACE(trace, TraceInformation) << L"Evaluate step";
    }
    else if (i_Task.m_Work == Work::WalkerStep)
    {
        traceWalker(i_Task);
    }
    XML_TRACE(trace, TraceInformation) << L"i_StepPosition = " << i_Task.m_StepPosition << L" i_absoluteDeepSearch = "
                                       << i_Task.m_AbsoluteDeepSearch << L" i_StepPositionMax = " << m_StepPositionMax;
    XML_TRACE(trace, TraceInformation) << L"Evaluating node [" << i_Task.m_pNode->name() << L"]";
}

/// Which walker brought the walk to the node.
TRACE_COLD void XPathWalk::traceWalker(const Task& i_Task) const
{
    const auto say = [](const wchar_t* i_Scope, const wchar_t* i_Text)
    {
        const Trace trace(s_Tracer, i_Scope);
        XML_TRACE(trace, TraceInformation) << i_Text;
    };
    switch (step(i_Task.m_StepPosition)->axis())
    {
    case AncestorAxis:
    case AncestorOrSelfAxis:
    case ParentAxis:
        say(s_AncestorScope, L"evaluateStep");
        break;
    case FollowingSiblingAxis:
    case PrecedingSiblingAxis:
        say(s_SiblingsScope, L" evaluate Step ");
        break;
    case FollowingAxis:
        say(s_FollowScope, L"follownig");
        break;
    case PrecedingAxis:
        say(s_FollowScope, L"prev");
        break;
    default:
        break;
    }
}

/// The node is selected by the step: goes on with the next one.
TErrorCode XPathWalk::evaluateMatch(const Task& i_Task, const XPathStep& i_Step)
{
    const unsigned next = i_Task.m_StepPosition + 1;
    const XPathBranch::Slot& slot = m_Branch.m_Steps[next];
    if (!slot.m_pStep)
    {
        return slot.m_Code;
    }

    Task below = i_Task;
    below.m_Work = Work::NextStepBelow;
    if (slot.m_pStep->axis() != AttributeAxis && slot.m_pStep->axis() != ChildAxis)
    {
        m_Pending.push_back(below); // after the walker
        startWalker(i_Task, *slot.m_pStep);
        return XML_SUCCESS;
    }
    if (!isLeaf(next))
    {
        m_Pending.push_back(below);
        return XML_SUCCESS;
    }
    const bool isDownward = i_Step.axis() >= ChildAxis && i_Step.axis() <= DescendantOrSelfAxis;
    const bool isSearched =
        (i_Step.axis() == FollowingAxis || i_Step.axis() == PrecedingAxis) && i_Task.m_AbsoluteDeepSearch;
    if ((isDownward || isSearched) && prevPredicateCheck(i_Task.m_StepPosition, i_Task))
    {
        const Trace trace(s_Tracer, s_StepScope);
        XML_TRACE(trace, TraceInformation) << L"Node match. EvaluateNode";
        evaluateLeaf(i_Task.m_pNode, next);
    }
    return XML_SUCCESS;
}

void XPathWalk::evaluateLeaf(Node* i_pNode, unsigned i_LeafPosition)
{
    const Trace trace(s_Tracer, s_StepScope);
    const TErrorCode code = step(i_LeafPosition)->evaluate(i_pNode, m_Output);
    XML_TRACE(trace, TraceInformation) << L"Evaluate result = " << code;
    if (code == XML_PLUGIN_ERROR_XPATH_NODE_WITHOUT_VALUE)
    {
        XML_TRACE(trace, TraceInformation) << L"Node [" << i_pNode->name() << L"] has no value ";
    }
    else if (m_Output.last())
    {
        XML_TRACE(trace, TraceInformation) << L"Last added element = " << m_Output.last()->m_Value;
    }
}

TErrorCode XPathWalk::nextStepBelow(const Task& i_Task)
{
    const unsigned next = i_Task.m_StepPosition + 1;
    if (isLeaf(next))
    {
        return XML_SUCCESS;
    }
    const Trace trace(s_Tracer, s_StepScope);
    XML_TRACE(trace, TraceInformation) << L"Evaluating descendant of node [" << i_Task.m_pNode->name() << L"]";
    XPathStep& nextStep = *step(next);
    Task pattern{firstElementChild(*i_Task.m_pNode), next, Work::StepBelow, false, false, false};
    if (!nextStep.hasPredicates())
    {
        pattern.m_Work = Work::SiblingsBelow;
        if (pattern.m_pNode)
        {
            m_Pending.push_back(pattern);
        }
        return XML_SUCCESS;
    }
    NodeVector children;
    if (nextStep.isDeep())
    {
        // What the predicates drop stays on the walk, so that the search goes on below it.
        XPathStep::listElementChildren(i_Task.m_pNode, children);
        pushAll(nextStep.mark(children), pattern);
        return XML_SUCCESS;
    }
    if (const TErrorCode code = nextStep.listCandidates(i_Task.m_pNode, children); code != XML_SUCCESS)
    {
        XML_TRACE(trace, TraceError) << L"Unable to get descendants from node [" << i_Task.m_pNode->name() << L"]";
        return code;
    }
    for (auto pChild = children.rbegin(); pChild != children.rend(); ++pChild)
    {
        pattern.m_pNode = *pChild;
        m_Pending.push_back(pattern);
    }
    return XML_SUCCESS;
}

void XPathWalk::sameStepBelow(const Task& i_Task)
{
    XPathStep& current = *step(i_Task.m_StepPosition);
    Task pattern{
        firstElementChild(*i_Task.m_pNode), i_Task.m_StepPosition, Work::EvaluateStep, false, i_Task.m_IsMarked,
        i_Task.m_AbsoluteDeepSearch};
    if (!current.hasPredicates())
    {
        pattern.m_Work = Work::EvaluateSiblings;
        if (pattern.m_pNode)
        {
            m_Pending.push_back(pattern);
        }
        return;
    }
    NodeVector children;
    XPathStep::listElementChildren(i_Task.m_pNode, children);
    pushAll(current.mark(children), pattern);
}

void XPathWalk::pushAll(const std::vector<MarkedNode>& i_Nodes, const Task& i_Pattern)
{
    Task task = i_Pattern;
    for (auto pNode = i_Nodes.rbegin(); pNode != i_Nodes.rend(); ++pNode)
    {
        task.m_pNode = pNode->m_pNode;
        task.m_IsMarked = pNode->m_IsMarked;
        m_Pending.push_back(task);
    }
}

/// D-54: below a dropped parent nothing is handed to the leaf by a deep step, so that
/// "//*[@x]" finds an element only when its parent is the start of the search or has an x too. XPath 1.0 says every one
/// with x.
bool XPathWalk::prevPredicateCheck(unsigned i_StepPosition, const Task& i_Node) const
{
    const Trace trace(s_Tracer, L"XPath::prevPredicateCheck");
    XML_TRACE(trace, TraceInformation) << L"XPath::prevPredicateCheck";
    return !step(i_StepPosition)->isDeep() || !isParentNodeMarked(i_Node);
}

bool XPathWalk::isParentNodeMarked(const Task& i_Node) const
{
    XML_TRACE_VALUE(L"XPath::isParentNodeMarked(MarkedNode i_Node)", L"result = ", i_Node.m_IsParentMarked);
    return i_Node.m_IsParentMarked;
}

// --- Walkers ------------------------------------------------------------------------------------

bool XPathWalk::startWalker(const Task& i_Task, const XPathStep& i_NextStep)
{
    Node* pNode = i_Task.m_pNode;
    const unsigned position = i_Task.m_StepPosition + 1;
    switch (i_NextStep.axis())
    {
    case AncestorAxis:
    case AncestorOrSelfAxis:
    case ParentAxis:
        ancestorStep(pNode, position);
        return true;
    case FollowingSiblingAxis:
    case PrecedingSiblingAxis:
        siblingsStep(pNode, position);
        return true;
    case FollowingAxis:
    case PrecedingAxis:
        followprescStep(pNode, position);
        return true;
    case DescendantAxis:
    case DescendantOrSelfAxis:
        descendantStep(pNode, position);
        return true;
    case SelfAxis:
        selfStep(pNode, position);
        return true;
    default:
        return false;
    }
}

/// Puts the nodes at the axis step, each on its own: an error in one does not touch the others. \p i_Pattern: what is
/// to be done with each of them.
void XPathWalk::pushGuarded(const std::vector<MarkedNode>& i_Nodes, const Task& i_Pattern)
{
    Task task = i_Pattern;
    for (auto pNode = i_Nodes.rbegin(); pNode != i_Nodes.rend(); ++pNode)
    {
        m_Pending.push_back({nullptr, 0, Work::Guard, false, false, false});
        task.m_pNode = pNode->m_pNode;
        task.m_IsMarked = pNode->m_IsMarked;
        m_Pending.push_back(task);
    }
}

/// Whether a walker comes to the node for the first time in that way. What it would do another time
/// adds nothing but records that are there already.
bool XPathWalk::isFirst(const Node& i_Node, unsigned i_StepPosition, WalkerVisit i_Visit)
{
    return m_WalkerVisits.add(i_Node, i_StepPosition, static_cast<unsigned>(i_Visit));
}

/// Hands the candidates that are left to the leaf behind the axis step.
void XPathWalk::evaluateLeaves(const std::vector<MarkedNode>& i_Nodes, unsigned i_LeafPosition, const Trace& i_Trace,
                               const wchar_t* i_Text)
{
    for (const MarkedNode& node : i_Nodes)
    {
        if (node.m_IsMarked || !isFirst(*node.m_pNode, i_LeafPosition, WalkerVisit::GivenToLeaf))
        {
            continue;
        }
        XML_TRACE(i_Trace, TraceInformation) << i_Text;
        evaluateLeaf(node.m_pNode, i_LeafPosition);
    }
}

/// What the predicates of a step keep of long lists; null where each list is filtered by itself: where quick
/// code is forbidden, as each filtering leaves its records, and after a candidate has failed, which ends it half done.
XPathSideFilter* XPathWalk::sideFilter(unsigned i_StepPosition)
{
    XPathStep& axisStep = *step(i_StepPosition);
    if (!axisStep.hasPredicates() || !XPathQuickCode::isAllowed())
    {
        return nullptr;
    }
    m_SideFilters.resize(std::max<std::size_t>(m_SideFilters.size(), i_StepPosition + 1));
    SideFilter& filter = m_SideFilters[i_StepPosition];
    if (!filter.m_pFilter)
    {
        filter.m_pFilter = std::make_unique<XPathSideFilter>(axisStep);
    }
    return filter.m_pFilter->isUsable() && !filter.m_HasFailed ? filter.m_pFilter.get() : nullptr;
}

/// The elements behind or before a node below its parent, in document order, with their marks. What an earlier list
/// has had is left out where that is known to come to the same: without predicates, or with such that a filter of all
/// lists answers.
std::vector<MarkedNode> XPathWalk::listSiblings(Node& i_Node, unsigned i_StepPosition, bool i_IsFollowing)
{
    XPathStep& axisStep = *step(i_StepPosition);
    XPathSideFilter* pFilter = sideFilter(i_StepPosition);
    if (pFilter && !pFilter->readChildren(*i_Node.getParent()))
    {
        pFilter = nullptr;
    }
    const bool isOnce = pFilter || !axisStep.hasPredicates();
    const auto next = [&](const Node& i_From)
    { return i_IsFollowing ? i_From.nextSibling() : i_From.previousSibling(); };
    NodeVector siblings;
    for (Node* pSibling = next(i_Node); pSibling; pSibling = next(*pSibling))
    {
        ++m_Unspent;
        if (pSibling->getType() != Node::ElementNode)
        {
            continue;
        }
        if (isOnce && !isFirst(*pSibling, i_StepPosition, WalkerVisit::Listed))
        {
            break;
        }
        siblings.push_back(pSibling);
    }
    if (!pFilter)
    {
        if (!i_IsFollowing)
        {
            std::reverse(siblings.begin(), siblings.end());
        }
        return axisStep.mark(siblings);
    }
    std::vector<MarkedNode> marked;
    if (pFilter->asksForPlace())
    {
        marked = markAllBut(pFilter->keptBeside(i_Node, i_IsFollowing), siblings, axisStep);
    }
    else
    {
        for (Node* pSibling : siblings)
        {
            marked.push_back({pSibling, axisStep.matches(*pSibling) && !pFilter->isKept(*pSibling)});
        }
    }
    if (!i_IsFollowing)
    {
        std::reverse(marked.begin(), marked.end());
    }
    return marked;
}

/// The nodes of a list, which goes away from the node that it lies beside: those that are new, and those that are
/// kept, which may have been dropped from an earlier list.
std::vector<MarkedNode> XPathWalk::markAllBut(const NodeVector& i_Kept, const NodeVector& i_New,
                                              const XPathStep& i_Step)
{
    std::vector<MarkedNode> marked;
    std::size_t found = 0;
    for (Node* pNode : i_New)
    {
        const bool isKept = found < i_Kept.size() && i_Kept[found] == pNode;
        found += isKept ? 1 : 0;
        marked.push_back({pNode, !isKept && i_Step.matches(*pNode)});
    }
    for (; found < i_Kept.size(); ++found)
    {
        marked.push_back({i_Kept[found], false});
    }
    return marked;
}

void XPathWalk::ancestorStep(Node* i_pNode, unsigned i_StepPosition)
{
    const Trace trace(s_Tracer, s_AncestorScope);
    XPathStep& axisStep = *step(i_StepPosition);
    XML_TRACE(trace, TraceInformation) << L"step != NULL";
    const Node* pParent = axisStep.axis() == ParentAxis ? i_pNode->getParent() : nullptr;
    const bool isParent =
        pParent && !m_WalkerVisits.contains(*pParent, i_StepPosition, static_cast<unsigned>(WalkerVisit::Climbed));
    const std::vector<MarkedNode> marked = listAncestors(*i_pNode, i_StepPosition);
    if (!isLeaf(i_StepPosition) && isLeaf(i_StepPosition + 1))
    {
        evaluateLeaves(marked, i_StepPosition + 1, trace, L"evaluateNode");
        if (isParent)
        {
            traceParent();
        }
        return;
    }
    if (isParent)
    {
        m_Pending.push_back({nullptr, 0, Work::ParentGuard, false, false, false});
    }
    pushGuarded(marked, {nullptr, i_StepPosition, Work::WalkerStep, false, false, false});
}

/// The candidates on the way up, the lowest first, with their marks. An ancestor that an earlier climb has met ends
/// this one. With predicates that are filtered list by list, only a climb that has begun at the same place does.
std::vector<MarkedNode> XPathWalk::listAncestors(Node& i_Node, unsigned i_StepPosition)
{
    XPathStep& axisStep = *step(i_StepPosition);
    Node* pFirst = axisStep.axis() == AncestorOrSelfAxis ? &i_Node : i_Node.getParent();
    XPathSideFilter* pFilter = axisStep.axis() == ParentAxis ? nullptr : sideFilter(i_StepPosition);
    if (pFilter && axisStep.nameView() != L"node()")
    {
        std::vector<MarkedNode> marked;
        if (markAncestors(pFirst, i_StepPosition, *pFilter, marked))
        {
            return marked;
        }
    }
    NodeVector candidates;
    for (Node* pCandidate = pFirst; pCandidate; pCandidate = pCandidate->getParent())
    {
        ++m_Unspent;
        const bool mayEnd = !axisStep.hasPredicates() || pCandidate == pFirst;
        if (mayEnd && !isFirst(*pCandidate, i_StepPosition, WalkerVisit::Climbed))
        {
            break;
        }
        if (axisStep.nameView() == L"*" || axisStep.nameView() == viewOf(pCandidate->name()))
        {
            candidates.push_back(pCandidate);
        }
        if (axisStep.axis() == ParentAxis)
        {
            break;
        }
    }
    return axisStep.mark(candidates);
}

/// The same by a filter of all such lists. False where that does not tell.
bool XPathWalk::markAncestors(Node* i_pFirst, unsigned i_StepPosition, XPathSideFilter& io_Filter,
                              std::vector<MarkedNode>& o_Marked)
{
    NodeVector nodes;
    Node* pNode = i_pFirst;
    for (; pNode && isFirst(*pNode, i_StepPosition, WalkerVisit::Asked); pNode = pNode->getParent())
    {
        ++m_Unspent;
        nodes.push_back(pNode);
    }
    NodeVector passing;
    if (!io_Filter.readAncestors(nodes, pNode, passing))
    {
        return false;
    }
    const XPathStep& axisStep = *step(i_StepPosition);
    std::erase_if(nodes, [&](const Node* i_pNode) { return !axisStep.matches(*i_pNode); });
    const bool hasKept = io_Filter.asksForPlace() && i_pFirst;
    o_Marked = markAllBut(io_Filter.asksForPlace() ? hasKept ? io_Filter.keptFrom(*i_pFirst) : NodeVector() : passing,
                          nodes, axisStep);
    return true;
}

/// D-35: the leaf takes every sibling on the asked-for side, whatever its name; and where
/// another step follows, the parent, not the sibling, is tested against the axis step (D-36).
/// XPath 1.0 says that the siblings of the step's name are taken and gone on from.
void XPathWalk::siblingsStep(Node* i_pNode, unsigned i_StepPosition)
{
    const Trace trace(s_Tracer, s_SiblingsScope);
    XML_TRACE(trace, TraceInformation) << L"XPath::siblingsStep";
    Node* pParent = i_pNode->getParent();
    if (!pParent)
    {
        return;
    }
    std::vector<MarkedNode> marked =
        listSiblings(*i_pNode, i_StepPosition, step(i_StepPosition)->axis() == FollowingSiblingAxis);
    if (!isLeaf(i_StepPosition) && isLeaf(i_StepPosition + 1))
    {
        evaluateLeaves(marked, i_StepPosition + 1, trace, L" evaluate Node ");
        return;
    }
    for (MarkedNode& node : marked)
    {
        node.m_pNode = pParent;
    }
    pushGuarded(marked, {nullptr, i_StepPosition, Work::WalkerStep, false, false, false});
}

void XPathWalk::followprescStep(Node* i_pNode, unsigned i_StepPosition)
{
    const Trace trace(s_Tracer, s_FollowScope);
    const bool isFollowing = step(i_StepPosition)->axis() == FollowingAxis;
    std::vector<MarkedNode> siblings;
    std::vector<MarkedNode> others;
    if (i_pNode->getParent())
    {
        XML_TRACE(trace, TraceInformation) << L"pParent != NUL";
    }
    // The siblings on the asked-for side, then those of the parent, and so on up to the root.
    for (Node* pNode = i_pNode; Node* pParent = pNode->getParent(); pNode = pParent)
    {
        if (!isFirst(*pNode, i_StepPosition, WalkerVisit::Climbed))
        {
            break;
        }
        const std::vector<MarkedNode> marked = listSiblings(*pNode, i_StepPosition, isFollowing);
        if (pNode == i_pNode)
        {
            XML_TRACE(trace, TraceInformation) << L"node matched";
            siblings = marked;
        }
        else
        {
            others.insert(others.end(), marked.begin(), marked.end());
        }
    }
    pushGuarded(others, {nullptr, i_StepPosition, Work::EvaluateStep, false, false, true});
    pushGuarded(siblings, {nullptr, i_StepPosition, Work::WalkerStep, false, false, true});
}

void XPathWalk::descendantStep(Node* i_pNode, unsigned i_StepPosition)
{
    const Trace trace(s_Tracer, L"XPath::descendantStep");
    XML_TRACE(trace, TraceInformation) << L"descendant";
    XPathStep& axisStep = *step(i_StepPosition);
    if (axisStep.axis() == DescendantOrSelfAxis)
    {
        pushGuarded(axisStep.mark({i_pNode}), {nullptr, i_StepPosition, Work::EvaluateStep, false, false, true});
        return;
    }
    if (!axisStep.hasPredicates())
    {
        if (Node* pChild = firstElementChild(*i_pNode))
        {
            m_Pending.push_back({pChild, i_StepPosition, Work::GuardedSiblings, false, false, true});
        }
        return;
    }
    NodeVector children;
    XPathStep::listElementChildren(i_pNode, children);
    pushGuarded(axisStep.mark(children), {nullptr, i_StepPosition, Work::EvaluateStep, false, false, true});
}

/// Unlike the other walkers it passes its error on.
void XPathWalk::selfStep(Node* i_pNode, unsigned i_StepPosition)
{
    const Trace trace(s_Tracer, L"XPath::selfStep");
    XML_TRACE(trace, TraceInformation) << L"XPath::selfStep";
    const MarkedNode self = step(i_StepPosition)->mark({i_pNode}).front();
    m_Pending.push_back({self.m_pNode, i_StepPosition, Work::EvaluateStep, self.m_IsMarked, false, false});
}

} // namespace XmlPlugin
