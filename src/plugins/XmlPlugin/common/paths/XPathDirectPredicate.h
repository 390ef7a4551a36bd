#pragma once

#include "values/XPathEvalContext.h"
#include "values/XPathPlan.h"
#include "xmlproxy/XmlName.h"

#include <cstddef>

class Node;

namespace XmlPlugin
{

/// Answers a plain predicate without compiling its expression, as the expression does.
///
/// Ownership: borrows the plan.
/// Threads: any number of readers.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathDirectWalkTest.cpp
class XPathDirectPredicate
{
public:
    /// \p i_Plan is plain.
    explicit XPathDirectPredicate(const XPathPlanPredicate& i_Plan) noexcept : m_Plan(i_Plan) {}

    /// Of one that asks for an attribute: whether the node is kept.
    bool holds(const Node& i_Node) const;
    /// Of one that asks for a place: whether the node at \p i_Place of the list, counted from 1, is kept.
    /// \p i_IsLast: it is the last one in the list.
    bool holdsAt(const Node& i_Node, std::size_t i_Place, bool i_IsLast) const noexcept;
    /// Whether no node after this one, which is at \p i_Place, is kept.
    bool isPast(const Node& i_Node, std::size_t i_Place) const noexcept;

    /// Keeps the nodes of the list that the predicate keeps. False, and nothing done, where a name
    /// in the list would be read in another way by the expression.
    bool filter(NodeVector& io_Nodes) const;
    /// Whether the expression reads an attribute of the node as it stands: with "::" in its name or in its
    /// parent's it takes them for axes.
    static bool isReadAsItStands(const Node& i_Node) noexcept;
    static bool isPlainName(const XmlName& i_Name) noexcept;

private:
    bool holdsForNumber(std::wstring_view i_Value) const;
    bool holdsForText(const Node& i_Node, std::wstring_view i_Value) const;

    const XPathPlanPredicate& m_Plan;
};

} // namespace XmlPlugin
