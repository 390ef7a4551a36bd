#pragma once

#include "values/XPathEvalContext.h"
#include "values/XPathPlan.h"
#include "xmlproxy/XmlName.h"

#include <cstddef>

class Node;

namespace XmlPlugin
{

/// Quick code: answers a plain predicate without compiling its expression, and gives the same answers.
///
/// Ownership: borrows the plan.
/// Threads: any number of readers.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathDirectWalkTest.cpp
class XPathDirectPredicate
{
public:
    /// \p i_Plan must be plain.
    explicit XPathDirectPredicate(const XPathPlanPredicate& i_Plan) noexcept : m_Plan(i_Plan) {}

    /// For a predicate that asks for an attribute: whether the node is kept.
    bool holds(const Node& i_Node) const;
    /// For a predicate that asks for a position: whether the node at \p i_Place of the list, counted from 1, is kept.
    /// \p i_IsLast: whether it is the last node of the list.
    bool holdsAt(const Node& i_Node, std::size_t i_Place, bool i_IsLast) const noexcept;
    /// Whether no node after this one, which is at \p i_Place, can be kept.
    bool isPast(const Node& i_Node, std::size_t i_Place) const noexcept;

    /// Reduces the list to the nodes that the predicate keeps. Returns false, and changes nothing, if the expression
    /// would read a name in the list in another way.
    bool filter(NodeVector& io_Nodes) const;
    /// Whether the expression reads the attributes of this node as expected. If the name of the node or of its parent
    /// contains "::", the expression takes it for an axis.
    static bool isReadAsItStands(const Node& i_Node) noexcept;
    static bool isPlainName(const XmlName& i_Name) noexcept;

private:
    bool holdsForNumber(std::wstring_view i_Value) const;
    bool holdsForText(const Node& i_Node, std::wstring_view i_Value) const;

    const XPathPlanPredicate& m_Plan;
};

} // namespace XmlPlugin
