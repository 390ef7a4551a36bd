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

namespace XmlPlugin
{

class Trace;

/// Walks a tree along the axes of one branch. The leaf step of the branch adds a record for every node that the whole
/// branch selects.
///
/// The walk goes depth first and adds records in that order. Of two records with the same order key, the first one
/// stays. It has a stack of its own for what is still to be done, so the thread's stack does not limit its depth. An
/// error in one candidate of a walker ends only that candidate, not the walk.
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

    /// Walks from a node at step \p i_StepPosition. Returns 0, or the first error outside a walker.
    TErrorCode evaluate(MarkedNode i_Node, unsigned i_StepPosition);

private:
    enum class Work : std::uint8_t
    {
        EvaluateSiblings, ///< test the node against its step, and every element after it in its list
        SiblingsBelow,    ///< same; the walk continues with the next step there
        GuardedSiblings,  ///< same; an error in one of them does not affect the others
        EvaluateStep,     ///< test the node against its step
        StepBelow,        ///< same; the walk continues with the next step there
        WalkerStep,       ///< same; a walker has found the node
        NextStepBelow,    ///< continue with the next step at the node's children
        SameStepBelow,    ///< deep search: continue with the same step at the node's children
        Guard,            ///< an error above it ends here
        ParentGuard,      ///< same, after what the parent axis has found
        Leave             ///< everything that began at this node and step is done
    };

    /// Something still to be done with a node at a step.
    struct Task
    {
        Node* m_pNode;
        std::uint32_t m_StepPosition;
        Work m_Work;
        bool m_IsMarked;
        bool m_IsParentMarked;     ///< mark of the node from which the walk descended to this one
        bool m_AbsoluteDeepSearch; ///< a descendant, following or preceding axis is being searched
    };

    struct Visit
    {
        const Node* m_pNode;
        std::uint32_t m_StepPosition;
        std::uint32_t m_Flags;
        friend bool operator==(const Visit&, const Visit&) = default;
    };
    /// What a walker has already done with a node.
    enum class WalkerVisit : unsigned
    {
        Climbed, ///< passed it on the way up
        Listed,  ///< listed it as a candidate among siblings
        GivenToLeaf,
        Asked ///< asked the filter of a step with predicates about it
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

    // The walkers. Each puts its candidates at the axis step, or passes them to the leaf after it.
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
    /// Spends the visits since the last call, from time to time.
    bool isBudgetSpent() noexcept
    {
        constexpr std::size_t often = 1024;
        ++m_Unspent;
        return m_Unspent >= often && spend();
    }
    bool spend() noexcept;
    Visit visitOf(const Task& i_Task) const noexcept;

    /// The filter of one step with predicates.
    struct SideFilter
    {
        std::unique_ptr<XPathSideFilter> m_pFilter; ///< null until needed
        bool m_HasFailed = false;                   ///< whether something that began at this step has failed
    };

    XPathBranch& m_Branch;
    const unsigned m_StepPositionMax; ///< index of the leaf step
    XPathOutputCollector& m_Output;
    std::vector<SideFilter> m_SideFilters; ///< by position of the step
    std::size_t m_Unspent = 0;             ///< visits not yet reported to the budget
    std::vector<Task> m_Pending;           ///< the last one is done next
    XPathVisits<8> m_Visits;               ///< for steps that may repeat
    XPathVisits<4> m_WalkerVisits;
    std::unordered_map<Visit, TErrorCode, VisitHash> m_Failures; ///< error codes of visits that failed
};

} // namespace XmlPlugin
