#pragma once

#include "xmlproxy/XmlName.h"

#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace XmlPlugin
{

/// What a plain location path asks for, as `XPathPlainReader` reads it and `XPathDirectWalk` walks it.
///
/// Ownership: plans are created in an `XPathMemory` and refer to the text of the path; both must outlive them. No part
/// of a plan needs to be destroyed.
/// Threads: any number of readers; a finished plan never changes.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathPlainReaderTest.cpp

enum class XPathComparison : std::uint8_t
{
    Equal,
    NotEqual,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual
};

struct XPathPlanPredicate
{
    enum class Kind : std::uint8_t
    {
        None,         ///< not a plain predicate; nothing else is set
        HasAttribute, ///< [@a]
        Text,         ///< [@a='text']
        Number,       ///< [@a=5], and [@a='5'], which is the same (D-07)
        Place,        ///< [2]
        Position,     ///< [position()=2]
        Last          ///< [last()]
    };

    bool isPlain() const noexcept { return m_Kind != Kind::None; }
    /// Whether it asks for a position in the list, not for an attribute.
    bool asksForPlace() const noexcept { return m_Kind >= Kind::Place; }

    Kind m_Kind = Kind::None;
    XPathComparison m_Comparison = XPathComparison::Equal; ///< of a text or number
    std::uint32_t m_Place = 0;                             ///< counted from 1
    double m_Number = 0.0;
    XmlNameView m_Attribute;
    std::wstring_view m_Text;                    ///< without its quotes
    const XPathPlanPredicate* m_pNext = nullptr; ///< of the same step
};

/// A step along the child axis.
struct XPathPlanStep
{
    explicit XPathPlanStep(std::wstring_view i_Name) noexcept : m_Name(i_Name) {}

    XmlNameView m_Name;
    bool m_IsAnyName = false; ///< the name test is "*"
    bool m_IsDeep = false;    ///< written after "//"
    const XPathPlanPredicate* m_pPredicates = nullptr;
    const XPathPlanStep* m_pNext = nullptr;
};

/// Steps, and what is taken from the nodes that they select.
struct XPathPlanBranch
{
    /// A walk has one bit per step, and one for the leaf.
    using StepBits = std::uint64_t;
    static constexpr std::size_t s_MostSteps = std::numeric_limits<StepBits>::digits - 1;

    const XPathPlanStep* m_pSteps = nullptr; ///< null if the branch is only an attribute
    std::size_t m_StepCount = 0;             ///< at most `s_MostSteps`
    bool m_TakesAttribute = false;           ///< otherwise the node itself is taken
    XmlNameView m_Attribute;
    std::wstring_view m_Text; ///< from the bar on, or from where the reading began
    const XPathPlanBranch* m_pNext = nullptr;
};

struct XPathPlan
{
    XPathPlanBranch m_First;
    bool m_IsAbsolute = false;        ///< begins with a single "/"
    bool m_HasSpaceBeforeBar = false; ///< the text of a union of operands omits it
};

} // namespace XmlPlugin
