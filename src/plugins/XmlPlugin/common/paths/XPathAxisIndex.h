#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

class Node;

namespace XmlPlugin
{

class XPathStep;

/// Counts or looks up what one step selects along a long axis, from any node of a tree, without a walk. Lists all
/// elements in document order. For each, it stores how many elements that pass the node test are before it and above
/// it.
///
/// Construction takes time and memory in proportion to the tree; a question takes time in proportion to its logarithm.
///
/// Ownership: borrows the tree, which must not change.
/// Threads: any number of readers.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathWalkReferenceTest.cpp
class XPathAxisIndex
{
public:
    /// \p i_Step must have no predicates, and an axis that `isLong`.
    XPathAxisIndex(const XPathStep& i_Step, const Node& i_Root);

    /// Number of visits by walks after which it pays to look at the whole tree once.
    static std::uint64_t patience() noexcept { return s_Patience; }
    static void setPatience(std::uint64_t i_Visits) noexcept { s_Patience = i_Visits; } ///< for tests
    static constexpr std::uint64_t s_UsualPatience = 1000;

    /// Whether a walk along the axis may visit a large part of the tree.
    static bool isLong(unsigned i_Axis) noexcept;
    /// False for a tree that contains text nodes, and for one that is not numbered in document order.
    bool isUsable() const noexcept { return m_IsUsable; }
    bool knows(const Node& i_Node) const noexcept;

    /// The number of nodes selected from a node, which it must know.
    std::size_t count(const Node& i_Node) const noexcept;
    /// The first of them in document order; null if there is none.
    const Node* first(const Node& i_Node) const noexcept;

private:
    using Place = std::uint32_t;

    /// One element. Places are positions in document order, from 0.
    struct Element
    {
        const Node* m_pNode;
        Place m_End;     ///< after its last descendant
        Place m_Before;  ///< number of elements before it that pass
        Place m_Above;   ///< number of its ancestors that pass
        Place m_First;   ///< the first one that passes and precedes it, or the topmost ancestor; otherwise `s_None`
        Place m_Sibling; ///< number of elements before it in its parent
    };

    static inline std::uint64_t s_Patience = s_UsualPatience;
    static constexpr Place s_None = ~Place{0};

    void listElements(const Node& i_Root);
    void countPassing(const XPathStep& i_Step);
    bool isUpward() const noexcept;
    void placeBelow(Element& io_Element, Place i_Parent) const noexcept;
    bool passes(Place i_Place) const noexcept;
    std::size_t passingBefore(Place i_Place) const noexcept;
    Place placeOf(const Node& i_Node) const noexcept;
    const Node* passingNode(std::size_t i_Number) const noexcept;

    const unsigned m_Axis;
    bool m_IsUsable = true;
    std::vector<Element> m_Elements;
    std::vector<Place> m_Passing;
};

} // namespace XmlPlugin
