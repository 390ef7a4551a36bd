#pragma once

#include "paths/XPathDirectPredicate.h"
#include "paths/XPathLeafValue.h"
#include "xmlproxy/XmlName.h"

#include <cstdint>
#include <limits>
#include <memory_resource>
#include <string_view>
#include <vector>

class Node;

namespace XmlPlugin
{

struct XPathBranch;

/// A step that leads to children: a name test and predicates of common shape.
struct XPathDirectStep
{
    XPathDirectStep(const XmlNameView& i_Name, bool i_IsAnyName, bool i_IsDeep, std::pmr::memory_resource& io_Memory)
        : m_Name(i_Name), m_IsAnyName(i_IsAnyName), m_IsDeep(i_IsDeep), m_Predicates(&io_Memory)
    {
    }

    /// Adds a predicate. False for one that cannot be answered on the way.
    bool add(const XPathDirectPredicate& i_Predicate);
    /// Whether the node is an element that passes the name test.
    bool matches(const Node& i_Node) const noexcept;

    friend bool operator==(const XPathDirectStep&, const XPathDirectStep&) = default;

    XmlNameView m_Name;
    bool m_IsAnyName; ///< the name test is "*" or "node()"
    bool m_IsDeep;    ///< written after "//"
    std::pmr::vector<XPathDirectPredicate> m_Predicates;
};

/// A branch of the kind that most queries consist of: child steps, also behind "//", without
/// predicates or with such of common shape, and a leaf that takes one attribute, the text or the
/// node itself. `XPathDirectWalk` walks it.
///
/// The most usual spelling is read at one look, so that no step and no predicate need be built.
///
/// Ownership: owned by its branch, in the same memory; it looks at the text of the path.
/// Threads: any number of readers.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathDirectBranchTest.cpp
class XPathDirectBranch
{
public:
    /// A bit for each step, and one for the leaf.
    using StepBits = std::uint64_t;
    static constexpr std::size_t s_MostSteps = std::numeric_limits<StepBits>::digits - 1;

    /// Not of that kind.
    explicit XPathDirectBranch(std::pmr::memory_resource& io_Memory) : m_Steps(&io_Memory) {}

    /// Reads a branch as written, without a "/" in front. False when it is not of that kind or spelled in another
    /// way; then its steps have to be built to know it.
    bool read(std::wstring_view i_Text);
    /// Takes over the steps of a branch, which outlives this. False when it is not of that kind.
    bool take(const XPathBranch& i_Branch);

    /// Whether it is of that kind; if not, nothing else may be asked.
    bool isDirect() const noexcept { return !m_Steps.empty(); }
    const std::pmr::vector<XPathDirectStep>& steps() const noexcept { return m_Steps; } ///< all but the leaf
    const XPathLeafValue& leaf() const noexcept { return m_Leaf; }

    friend bool operator==(const XPathDirectBranch&, const XPathDirectBranch&) = default;

private:
    bool readAll(std::wstring_view i_Text);
    bool readStep(std::wstring_view& io_Text, bool i_IsDeep);
    bool readLeaf(std::wstring_view i_Text);
    bool takeAll(const XPathBranch& i_Branch);
    XPathDirectStep& addStep(const XmlNameView& i_Name, bool i_IsAnyName, bool i_IsDeep);
    /// Leaves nothing behind of a branch that \p i_IsDirect says is not of that kind.
    bool keepIf(bool i_IsDirect);

    std::pmr::vector<XPathDirectStep> m_Steps;
    XPathLeafValue m_Leaf;
};

} // namespace XmlPlugin
