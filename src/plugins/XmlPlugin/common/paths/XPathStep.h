#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "paths/XPathLeafValue.h"
#include "values/XPathEvalContext.h"
#include "values/XPathOutputCollector.h"
#include "values/XPathText.h"
#include "xmlproxy/XmlName.h"
#include "xpathlanguage/XPathAxisTable.h"

#include <cstdint>
#include <memory>
#include <memory_resource>
#include <string_view>
#include <vector>

class Node;

namespace XmlPlugin
{

class XPathPredicate;

using XPathLanguage::AxisCode;
using enum XPathLanguage::AxisCode;

/// A node on a walk, and whether the predicates of its step have dropped it. A dropped node stays on the walk, so that
/// a deep search can continue below it.
struct MarkedNode
{
    Node* m_pNode = nullptr;
    bool m_IsMarked = false;
};

/// The text of a step, which must outlive the step.
struct XPathStepText
{
    std::wstring_view m_Step;
    std::wstring_view m_Previous; ///< text of the previous step; empty for the first one
};

class XPathStep;

/// Destroys a step. Its memory is left to its memory resource.
struct XPathStepEnd
{
    void operator()(XPathStep* i_pStep) const noexcept;
};
using XPathStepPointer = std::unique_ptr<XPathStep, XPathStepEnd>;

/// One piece of a location path: an axis, a node test and predicates.
///
/// Ownership: owned by the path; it is in the memory of the path and refers to its text. Owns its predicates.
/// Threads: one at a time (predicates keep the state of their evaluation).
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathStepTest.cpp
class XPathStep
{
public:
    enum StepType : unsigned
    {
        root = 0, ///< the first step of a branch
        mid = 1,
        leaf = 2 ///< the last step of a branch with more than one
    };

    /// Builds a step from its text. \p o_pStep is null unless the result is 0. Returns -15100 for a text that is empty
    /// or consists of spaces, and -15101 for a malformed one. Any \p i_StepType other than the three above fails an
    /// assertion. The step and its predicates are in \p io_Memory, which must outlive them.
    static TErrorCode create(const XPathStepText& i_Text, unsigned i_StepType, std::pmr::memory_resource& io_Memory,
                             XPathStepPointer& o_pStep);
    /// Whether `create` would create a step along the attribute axis from this text.
    static bool isAttributeStep(std::wstring_view i_Text);
    virtual ~XPathStep(); // slot 0
    XPathStep(const XPathStep&) = delete;
    XPathStep& operator=(const XPathStep&) = delete;

    /// Lists the candidates for this step below a node. On an error the list is empty.
    virtual TErrorCode listCandidates(const Node* i_pNode, NodeVector& o_Nodes); // slot 1
    /// Adds the values that the node has for this step. Returns -15104 if it has none, and -101 for null.
    virtual TErrorCode evaluate(const Node* i_pNode, XPathOutputCollector& io_Output); // slot 2

    String name() const { return copyOf(nameView()); }
    std::wstring_view nameView() const noexcept { return m_Name.text(); }
    const XmlNameView& nameKey() const noexcept { return m_Name; }
    /// Whether the node test is "*" or "node()".
    bool isAnyName() const noexcept { return m_IsAnyName; }
    String previousText() const { return copyOf(m_PreviousText); }
    unsigned type() const noexcept { return m_StepType; }
    unsigned axis() const noexcept { return m_Axis; }
    /// Whether the step was written after "//".
    bool isDeep() const noexcept { return m_IsDeep; }
    void setDeep(bool i_IsDeep) noexcept { m_IsDeep = i_IsDeep; }
    std::pmr::vector<XPathPredicate>& predicates() noexcept { return m_Predicates; }
    const std::pmr::vector<XPathPredicate>& predicates() const noexcept { return m_Predicates; }
    bool hasPredicates() const noexcept { return !m_Predicates.empty(); }

    /// For a leaf step: what it takes from a node.
    XPathLeafValue leafValue() const noexcept
    {
        using Kind = XPathLeafValue::Kind;
        return m_Taken == Kind::OneAttribute ? XPathLeafValue(m_Name) : XPathLeafValue(m_Taken);
    }

    /// The node test: true for the same name, "*" and "node()". The axis and the kind of node do not matter.
    bool matches(const Node& i_Node) const noexcept;
    /// Filters by predicates: keeps the nodes that pass the node test and all predicates. A step without predicates
    /// does not change the list. Returns the code of the first predicate that fails.
    TErrorCode filter(NodeVector& io_Nodes);
    /// Marks instead of filtering: returns all nodes in their order, and marks those that pass the node test but are
    /// dropped by the predicates. A predicate that fails drops all of them.
    std::vector<MarkedNode> mark(const NodeVector& i_Nodes);

    /// The element children of a node, in document order. Returns -101 for null.
    static TErrorCode listElementChildren(const Node* i_pNode, NodeVector& o_Nodes);
    /// The first text child, or null. Returns -101 for null.
    static TErrorCode findTextChild(const Node* i_pNode, const Node*& o_pText);

protected:
    explicit XPathStep(std::pmr::memory_resource& io_Memory);

private:
    template <class Kind>
    static XPathStepPointer makeIn(std::pmr::memory_resource& io_Memory);
    static XPathStepPointer make(unsigned i_StepType, std::pmr::memory_resource& io_Memory);
    static TErrorCode readTest(std::wstring_view i_Text, AxisCode& o_Axis, std::wstring_view& o_Name);
    void cutPredicates(std::wstring_view i_Text);
    TErrorCode applyPredicates(NodeVector& io_Nodes);
    void setTest(AxisCode i_Axis, std::wstring_view i_Name);

    std::pmr::vector<XPathPredicate> m_Predicates;
    XmlNameView m_Name;
    std::wstring_view m_PreviousText;
    unsigned m_StepType = root;
    unsigned m_Axis = ChildAxis;
    bool m_IsDeep = false;
    XPathLeafValue::Kind m_Taken = XPathLeafValue::Kind::WholeNode;
    bool m_IsAnyName = false;
    std::size_t m_EmptyPredicatesEnd = 0; ///< index after the last empty predicate
};

class XPathRootStep final : public XPathStep
{
public:
    using XPathStep::XPathStep;
};

class XPathMidStep final : public XPathStep
{
public:
    using XPathStep::XPathStep;
    TErrorCode listCandidates(const Node* i_pNode, NodeVector& o_Nodes) override;
};

class XPathLeafStep final : public XPathStep
{
public:
    using XPathStep::XPathStep;
    TErrorCode listCandidates(const Node* i_pNode, NodeVector& o_Nodes) override;
    TErrorCode evaluate(const Node* i_pNode, XPathOutputCollector& io_Output) override;
};

} // namespace XmlPlugin
