#pragma once

#include "values/XPathEvalContext.h"
#include "values/XPathPlan.h"

#include <cstddef>
#include <unordered_map>

class Node;

namespace XmlPlugin
{

class XPathStep;

/// What the predicates of an axis step keep of its candidates, for many lists that share their nodes: the siblings on
/// one side of each node of a parent, or the ancestors of each node. Filtered one by one, these lists cost the square
/// of the document.
///
/// Predicates that look at the node alone keep the same nodes in each list, so that each node is asked once. The first
/// one that asks for a place (`[2]`, `[last()]`) keeps one node of each list, which is found by its rank; those after
/// it filter lists of one. Anything else, such as `[position()<3]` or a number that is computed, depends on the list:
/// then nothing is known here.
///
/// Ownership: borrows the step and the tree, which must not change.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathWalkReferenceTest.cpp
class XPathSideFilter
{
public:
    explicit XPathSideFilter(XPathStep& io_Step);

    /// False as soon as a list has to be filtered by itself.
    bool isUsable() const noexcept { return m_IsUsable; }
    /// Whether at most two nodes of each list are kept, which `keptBeside` and `keptAbove` tell.
    bool asksForPlace() const noexcept { return m_pPlace != nullptr; }

    /// Asks the element children of \p i_Parent. False, and no longer usable, where that does not tell what is kept.
    bool readChildren(const Node& i_Parent);
    /// Of a child whose parent was read, and without a place: whether it is kept in any list.
    bool isKept(const Node& i_Node);
    /// What is kept of the siblings on one side of such a child, at most one node.
    NodeVector keptBeside(const Node& i_Node, bool i_IsFollowing);

    /// Asks a node and its ancestors, from the lowest up, that no call has asked yet. \p i_pAbove: the one above them,
    /// which was asked; null when there is none. Result as above; \p o_Passing: those that come to the place, or are
    /// kept.
    bool readAncestors(const NodeVector& i_Nodes, const Node* i_pAbove, NodeVector& o_Passing);
    /// What is kept of a node that was asked and its ancestors.
    NodeVector keptFrom(const Node& i_Node);

private:
    /// Of a node's ancestors and itself, those that come to the predicate that asks for a place.
    struct Climb
    {
        Node* m_pNode = nullptr;         ///< the lowest of them; null when there is none
        const Climb* m_pAbove = nullptr; ///< of the next one above that; null when there is none
        const Climb* m_pFar = nullptr;   ///< of one further above, so that few hops lead anywhere
        std::size_t m_Rank = 0;          ///< counted from the topmost one, which is 1; 0: there is none
    };

    bool filter(NodeVector& io_Nodes);
    void filterTheRest(NodeVector& io_Nodes);
    static const Climb* at(const Climb* i_pClimb, std::size_t i_Rank) noexcept;

    XPathStep& m_Step;
    bool m_IsUsable = true;
    std::size_t m_Place = 0; ///< index of the predicate that asks for a place; their number when there is none
    const XPathPlanPredicate* m_pPlace = nullptr;
    std::unordered_map<const Node*, NodeVector> m_Passing; ///< by parent: what comes to that predicate
    std::unordered_map<const Node*, Climb> m_Climbs;
};

} // namespace XmlPlugin
