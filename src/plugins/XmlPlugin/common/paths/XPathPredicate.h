#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "values/XPathEvalContext.h"
#include "values/XPathPlan.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace XmlPlugin
{

class XPathExpressionsParser;
class XPathPlaces;

/// One bracketed filter of a step.
///
/// Ownership: owned by its step; refers to the text of the path. The expression is compiled once, when first used, and
/// run for each node. Quick code answers a plain predicate without it.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathPredicateTest.cpp
class XPathPredicate
{
public:
    /// \p i_Expression: the text with its brackets, which must outlive the predicate.
    explicit XPathPredicate(std::wstring_view i_Expression);
    XPathPredicate(XPathPredicate&&) noexcept;
    ~XPathPredicate();
    XPathPredicate(const XPathPredicate&) = delete;
    XPathPredicate& operator=(const XPathPredicate&) = delete;

    /// The text with its brackets.
    String expression() const;
    /// True for "[]", which `fiterNodes` rejects.
    bool isEmpty() const noexcept { return m_Text.size() <= 2; }
    /// The text with its brackets, without a copy.
    std::wstring_view textView() const noexcept { return m_Text; }
    /// Whether the result has been a number for some node so far. A number is compared with the position of the node.
    bool hasNumber() const noexcept { return m_HasNumber; }
    /// Whether it has failed for some node so far.
    bool hasFailed() const noexcept { return m_HasFailed; }
    /// What the predicate asks for, if it is plain and quick code may answer it.
    const XPathPlanPredicate& plan() const noexcept { return m_Plan; }

    /// Keeps the nodes for which the expression is true, in their order. A node whose run fails is dropped. Returns
    /// -15106 for an empty predicate, and leaves the list unchanged; otherwise the code of the last node's run, or 0
    /// for an empty list.
    TErrorCode fiterNodes(NodeVector& io_Nodes);

private:
    std::wstring_view expressionView() const noexcept { return m_Text.substr(1, m_Text.size() - 2); }
    TErrorCode filterByExpression(NodeVector& io_Nodes);
    bool isKept(const Node& i_Node, std::size_t i_ListIndex);

    std::wstring_view m_Text; ///< with the brackets
    XPathPlanPredicate m_Plan;
    bool m_HasNumber = false;
    bool m_HasFailed = false;
    std::unique_ptr<XPathPlaces> m_pPlaces; ///< for the trace records, which contain the position of each node
    std::unique_ptr<XPathExpressionsParser> m_pParser;
};

} // namespace XmlPlugin
