#pragma once

#include "values/XPathEvalContext.h"
#include "values/XPathPlan.h"

#include <cstddef>
#include <unordered_map>

class Node;

namespace XmlPlugin
{

class XPathStep;

/// Filters the candidates of an axis step by its predicates, for many lists that share their nodes: the siblings on one
/// side of each child of a parent, or the ancestors of each node. Filtering each list alone would take time in
/// proportion to the square of the document.
///
/// Predicates that depend only on the node keep the same nodes in each list, so each node is tested once. The first
/// predicate that asks for a position (`[2]`, `[last()]`) keeps one node of each list, which is found by its rank; the
/// predicates after it filter lists of one node. Anything else, such as `[position()<3]` or a computed number, depends
/// on the list, and this class cannot answer it.
///
/// Ownership: borrows the step and the tree, which must not change.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathWalkReferenceTest.cpp
class XPathSideFilter
{
public:
    explicit XPathSideFilter(XPathStep& io_Step);

    /// False as soon as each list must be filtered alone.
    bool isUsable() const noexcept { return m_IsUsable; }
    /// Whether at most two nodes of each list are kept, which `keptBeside` and `keptAbove` return.
    bool asksForPlace() const noexcept { return m_pPlace != nullptr; }

    /// Tests the element children of \p i_Parent. Returns false if that does not decide what is kept; the object is
    /// then no longer usable.
    bool readChildren(const Node& i_Parent);
    /// For a child whose parent was read, if no predicate asks for a position: whether it is kept in any list.
    bool isKept(const Node& i_Node);
    /// What is kept of the siblings on one side of such a child: at most one node.
    NodeVector keptBeside(const Node& i_Node, bool i_IsFollowing);

    /// Tests a node and those of its ancestors that no call has tested yet, from the lowest up. \p i_pAbove: the
    /// ancestor above them, which was tested; null if there is none. Same result; \p o_Passing receives those that
    /// reach the predicate with the position, or are kept.
    bool readAncestors(const NodeVector& i_Nodes, const Node* i_pAbove, NodeVector& o_Passing);
    /// What is kept of a node that was tested and its ancestors.
    NodeVector keptFrom(const Node& i_Node);

private:
    /// Of a node and its ancestors, those that reach the predicate that asks for a position.
    struct Climb
    {
        Node* m_pNode = nullptr;         ///< the lowest of them; null if there is none
        const Climb* m_pAbove = nullptr; ///< of the next one above that; null if there is none
        const Climb* m_pFar = nullptr;   ///< of one further up, so that a few hops lead anywhere
        std::size_t m_Rank = 0;          ///< counted from the topmost one, which is 1; 0 if there is none
    };

    bool filter(NodeVector& io_Nodes);
    void filterTheRest(NodeVector& io_Nodes);
    static const Climb* at(const Climb* i_pClimb, std::size_t i_Rank) noexcept;

    XPathStep& m_Step;
    bool m_IsUsable = true;
    std::size_t m_Place = 0; ///< index of the predicate that asks for a position; without one, the number of predicates
    const XPathPlanPredicate* m_pPlace = nullptr;
    std::unordered_map<const Node*, NodeVector> m_Passing; ///< by parent: what reaches that predicate
    std::unordered_map<const Node*, Climb> m_Climbs;
};

} // namespace XmlPlugin
