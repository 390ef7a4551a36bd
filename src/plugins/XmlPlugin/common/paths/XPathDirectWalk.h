#pragma once

#include "paths/XPathDirectPredicate.h"
#include "paths/XPathLeafValue.h"
#include "values/XPathOutputCollector.h"
#include "values/XPathPlan.h"
#include "values/XPathSmallVector.h"

#include <cstddef>
#include <cstdint>

class Node;

namespace XmlPlugin
{

/// Quick code: walks along the branches of a plain path and selects what `XPathWalk` selects.
///
/// Visits each node once, in document order, and tests it against all steps that apply: the steps of a branch are the
/// bits of a word. So the cost is proportional to the nodes that the branch can reach, however many "//" it has, and
/// the records are in their order from the start. Writes no trace records.
///
/// Ownership: borrows the plan, the tree and the output.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathDirectWalkTest.cpp
class XPathDirectWalk
{
public:
    /// Where the first branch of a path begins. The others begin at the root, with their first step.
    struct Start
    {
        Node* m_pRoot; ///< not null
        Node* m_pNode; ///< for the first branch: the root, or see below
        bool m_IsBelow =
            false; ///< the first branch continues below m_pNode, as if a previous step had selected the node
    };

    /// Appends what the path selects, in ascending key order without equal keys. Returns false, and appends nothing, if
    /// the general code must answer: something in the tree needs it (a name with "::", or keys that do not ascend), or
    /// the plan cannot begin there.
    static bool select(const XPathPlan& i_Plan, const Start& i_Start, XPathOutputList& io_Records);
    /// Counts the records that `select` would append, without creating them. Also returns false for a union, because
    /// the same record may occur in several branches.
    static bool count(const XPathPlan& i_Plan, const Start& i_Start, std::size_t& o_Count);

    XPathDirectWalk(const XPathPlanBranch& i_Branch, XPathOutputCollector& io_Output);

    /// Walks from a node at the first step, whose predicates filter it. Returns false, with some of the records added,
    /// if something in the tree needs the general code.
    bool evaluate(Node* i_pNode);
    /// Same, with a node that a step before the branch has selected.
    bool evaluateBelow(Node& i_Node);

private:
    using Steps = XPathPlanBranch::StepBits;

    // Up to these sizes, no memory from the heap is needed.
    static constexpr std::size_t s_UsualSteps = 8;
    static constexpr std::size_t s_UsualDepth = 8; ///< of documents, in levels

    /// One step of the branch, with the state of the walk.
    struct Test
    {
        bool matches(const Node& i_Node) noexcept;
        bool hasPredicates() const noexcept { return m_pStep->m_pPredicates != nullptr; }

        const XPathPlanStep* m_pStep;
        const XmlName* m_pSame;  ///< the name of an element that matches
        const XmlName* m_pOther; ///< the name of a node that does not
        bool m_AsksForAttributes;
        std::size_t m_Counter; ///< index of its counter of positions in a list; meaningless without such a predicate
    };

    /// The children of one node, while they are visited.
    struct List
    {
        Node* m_pNext;
        Steps m_Steps;     ///< the steps against which they are tested
        Steps m_Reachable; ///< the deep ones of these at which their parent was not dropped
    };

    bool run();
    bool isSearch() const noexcept;
    void search(Node& i_Node);
    bool visit(Node& i_Node, List& io_List, List& o_Below);
    void select(Node& i_Node);
    bool isKept(Test& io_Test, const Node& i_Node, Steps i_Step, List& io_List);
    bool isLastInList(Test& io_Test, const Node& i_Node, const XPathPlanPredicate& i_Predicate);
    bool isReadAsItStands(const Node& i_Node) noexcept;
    bool asksForAttributes(Steps i_Steps) const noexcept { return (i_Steps & m_AskingSteps) != 0; }
    std::size_t& counterOf(const Test& i_Test)
    {
        return m_Counters[m_Counters.size() - m_CounterCount + i_Test.m_Counter];
    }
    void open(const List& i_List);
    void close() noexcept;

    const XPathLeafValue m_Leaf;
    XPathOutputCollector& m_Output;
    const bool m_CountsNodes;                     ///< selected nodes are only counted
    XPathSmallVector<Test, s_UsualSteps> m_Tests; ///< of all steps except the leaf
    Steps m_LeafBit;
    Steps m_AskingSteps = 0;
    XPathSmallVector<List, s_UsualDepth> m_Lists; ///< from the topmost to the one being visited
    std::size_t m_CounterCount = 0;
    XPathSmallVector<std::size_t, s_UsualDepth> m_Counters; ///< `m_CounterCount` per list
    const XmlName* m_pPlainName = nullptr;                  ///< the last name that was found to be plain
    std::int32_t m_LastKey = 0;                             ///< of the record selected last, if there is one
    bool m_HasSelected = false;
    bool m_IsFirstAlone = false; ///< the topmost list is a single node, whatever its siblings
    bool m_IsGivenUp = false;
};

} // namespace XmlPlugin
