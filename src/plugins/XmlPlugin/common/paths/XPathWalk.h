#pragma once

#include "base/ErrorCode.h"
#include "paths/XPath.h"
#include "paths/XPathSideFilter.h"
#include "paths/XPathStep.h"
#include "paths/XPathVisits.h"
#include "values/XPathOutputCollector.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class Node;
class Trace;

namespace XmlPlugin
{

/// Walks a tree along the axes of one branch and lets the branch's leaf step add a record for
/// every node that the whole branch selects.
///
/// The walk goes depth first and adds records in that order: of two records with one order key the
/// first one stays. It keeps what is still to be done on a stack of its own, so that its depth is
/// not bounded by the thread's stack. What a walker does with one of its candidates cannot fail
/// the walk: an error ends that candidate only.
///
/// Ownership: borrows the branch, the tree and the output.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathWalkTest.cpp
class XPathWalk
{
public:
    XPathWalk(XPathBranch& i_Branch, XPathOutputCollector& io_Output);
    ~XPathWalk() { spend(); }
    XPathWalk(const XPathWalk&) = delete;
    XPathWalk& operator=(const XPathWalk&) = delete;

    /// Walks from a node that stands at step \p i_StepPosition. 0, or the first error outside a walker.
    TErrorCode evaluate(MarkedNode i_Node, unsigned i_StepPosition);

private:
    enum class Work : std::uint8_t
    {
        EvaluateSiblings, ///< test the node against its step, and every element behind it in its list
        SiblingsBelow,    ///< the same; the walk goes on with the next step there
        GuardedSiblings,  ///< the same; an error in one of them does not touch the others
        EvaluateStep,     ///< test the node against its step
        StepBelow,        ///< the same; the walk goes on with the next step there
        WalkerStep,       ///< the same; a walker has found the node
        NextStepBelow,    ///< go on with the next step at the node's children
        SameStepBelow,    ///< deep search: go on with the same step at the node's children
        Guard,            ///< an error above it ends here
        ParentGuard,      ///< the same, behind what the parent axis has found
        Leave             ///< all that began at this node and step is done
    };

    /// Something still to be done with a node that stands at a step.
    struct Task
    {
        Node* m_pNode;
        std::uint32_t m_StepPosition;
        Work m_Work;
        bool m_IsMarked;
        bool m_IsParentMarked;     ///< mark of the node from which the walk came down to this one
        bool m_AbsoluteDeepSearch; ///< a descendant, following or preceding axis is being searched
    };

    struct Visit
    {
        const Node* m_pNode;
        std::uint32_t m_StepPosition;
        std::uint32_t m_Flags;
        friend bool operator==(const Visit&, const Visit&) = default;
    };
    /// What a walker has done with a node.
    enum class WalkerVisit : unsigned
    {
        Climbed, ///< it came by on its way up
        Listed,  ///< a candidate among siblings
        GivenToLeaf,
        Asked ///< by the filter of a step with predicates
    };
    struct VisitHash
    {
        std::size_t operator()(const Visit& i_Visit) const noexcept;
    };

    TErrorCode perform(const Task& i_Task);
    TErrorCode evaluateStep(const Task& i_Task);
    void traceArrival(const Task& i_Task) const;
    static bool isForSiblings(Work i_Work) noexcept { return i_Work <= Work::GuardedSiblings; }
    TErrorCode evaluateMatch(const Task& i_Task, const XPathStep& i_Step);
    void evaluateLeaf(Node* i_pNode, unsigned i_LeafPosition);
    void traceWalker(const Task& i_Task) const;
    TErrorCode nextStepBelow(const Task& i_Task);
    void sameStepBelow(const Task& i_Task);

    // The walkers. Each puts its candidates at the axis step, or hands them to the leaf behind it.
    bool startWalker(const Task& i_Task, const XPathStep& i_NextStep);
    void ancestorStep(Node* i_pNode, unsigned i_StepPosition);
    void siblingsStep(Node* i_pNode, unsigned i_StepPosition);
    void followprescStep(Node* i_pNode, unsigned i_StepPosition);
    void descendantStep(Node* i_pNode, unsigned i_StepPosition);
    void selfStep(Node* i_pNode, unsigned i_StepPosition);
    bool isFirst(const Node& i_Node, unsigned i_StepPosition, WalkerVisit i_Visit);
    void evaluateLeaves(const std::vector<MarkedNode>& i_Nodes, unsigned i_LeafPosition, const Trace& i_Trace,
                        const wchar_t* i_Text);
    XPathSideFilter* sideFilter(unsigned i_StepPosition);
    std::vector<MarkedNode> listSiblings(Node& i_Node, unsigned i_StepPosition, bool i_IsFollowing);
    std::vector<MarkedNode> listAncestors(Node& i_Node, unsigned i_StepPosition);
    bool markAncestors(Node* i_pFirst, unsigned i_StepPosition, XPathSideFilter& io_Filter,
                       std::vector<MarkedNode>& o_Marked);
    static std::vector<MarkedNode> markAllBut(const NodeVector& i_Kept, const NodeVector& i_New,
                                              const XPathStep& i_Step);

    bool prevPredicateCheck(unsigned i_StepPosition, const Task& i_Node) const;
    bool isParentNodeMarked(const Task& i_Node) const;

    XPathStep* step(unsigned i_StepPosition) const noexcept { return m_Branch.m_Steps[i_StepPosition].m_pStep.get(); }
    bool isLeaf(unsigned i_StepPosition) const noexcept { return i_StepPosition == m_StepPositionMax; }
    void pushAll(const std::vector<MarkedNode>& i_Nodes, const Task& i_Pattern);
    void pushGuarded(const std::vector<MarkedNode>& i_Nodes, const Task& i_Pattern);
    void unwind(TErrorCode i_Code);
    /// Spends the visits since the last time, now and then.
    bool isBudgetSpent() noexcept
    {
        constexpr std::size_t often = 1024;
        ++m_Unspent;
        return m_Unspent >= often && spend();
    }
    bool spend() noexcept;
    Visit visitOf(const Task& i_Task) const noexcept;

    /// Of one step with predicates.
    struct SideFilter
    {
        std::unique_ptr<XPathSideFilter> m_pFilter; ///< null before it is needed
        bool m_HasFailed = false;                   ///< something that began at this step has
    };

    XPathBranch& m_Branch;
    const unsigned m_StepPositionMax; ///< index of the leaf step
    XPathOutputCollector& m_Output;
    std::vector<SideFilter> m_SideFilters; ///< by the position of the step
    std::size_t m_Unspent = 0;             ///< visits that the budget does not know of yet
    std::vector<Task> m_Pending;           ///< the last one is done next
    XPathVisits<8> m_Visits;               ///< of steps that may repeat
    XPathVisits<4> m_WalkerVisits;
    std::unordered_map<Visit, TErrorCode, VisitHash> m_Failures; ///< how visits ended that did not succeed
};

} // namespace XmlPlugin
