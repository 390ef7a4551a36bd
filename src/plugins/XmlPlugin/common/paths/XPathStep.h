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

/// A node on a walk, and whether the predicates of the step at which it is met have dropped it.
/// A dropped node stays on the walk, so that a deep search can go on below it.
struct MarkedNode
{
    Node* m_pNode = nullptr;
    bool m_IsMarked = false;
};

/// The text of a step, which outlives the step.
struct XPathStepText
{
    std::wstring_view m_Step;
    std::wstring_view m_Previous; ///< of the step before; empty for the first one
};

class XPathStep;

/// Ends a step, and leaves its memory to the resource that it is from.
struct XPathStepEnd
{
    void operator()(XPathStep* i_pStep) const noexcept;
};
using XPathStepPointer = std::unique_ptr<XPathStep, XPathStepEnd>;

/// One piece of a location path: an axis, a node test and predicates.
///
/// Ownership: owned by the path, in whose memory it lies and at whose text it looks. Owns its predicates.
/// Threads: one at a time (predicates keep their evaluation's state).
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

    /// Builds a step from its text. \p o_pStep is null unless the result is 0. -15100 for a text
    /// without anything but spaces, -15101 for a malformed one. \p i_StepType other than the three
    /// above is an assertion failure. Step and predicates are in \p io_Memory, which outlives them.
    static TErrorCode create(const XPathStepText& i_Text, unsigned i_StepType, std::pmr::memory_resource& io_Memory,
                             XPathStepPointer& o_pStep);
    /// Whether `create` makes a step of the attribute axis of this text.
    static bool isAttributeStep(std::wstring_view i_Text);
    virtual ~XPathStep(); // slot 0
    XPathStep(const XPathStep&) = delete;
    XPathStep& operator=(const XPathStep&) = delete;

    /// Lists the candidates for this step below a node. On an error the list is empty.
    virtual TErrorCode listCandidates(const Node* i_pNode, NodeVector& o_Nodes); // slot 1
    /// Adds the values that the node has for this step. -15104 when it has none, -101 without a node.
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

    /// Of a leaf step: what it takes from a node.
    XPathLeafValue leafValue() const noexcept
    {
        using Kind = XPathLeafValue::Kind;
        return m_Taken == Kind::OneAttribute ? XPathLeafValue(m_Name) : XPathLeafValue(m_Taken);
    }

    /// The node test: the same name, "*" or "node()". Axis and kind of node play no part.
    bool matches(const Node& i_Node) const noexcept;
    /// Predicate filter: keeps the nodes that pass the node test and all predicates; a step
    /// without predicates leaves the list as it is. The code of the first predicate that fails.
    TErrorCode filter(NodeVector& io_Nodes);
    /// Marking filter: all nodes in their order; marked are those that pass the node test and are
    /// dropped by the predicates. When a predicate fails, it drops all of them.
    std::vector<MarkedNode> mark(const NodeVector& i_Nodes);

    /// The element children of a node, in document order. -101 without a node.
    static TErrorCode listElementChildren(const Node* i_pNode, NodeVector& o_Nodes);
    /// The first text child, or null. -101 without a node.
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
    std::size_t m_EmptyPredicatesEnd = 0; ///< index behind the last empty predicate
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
