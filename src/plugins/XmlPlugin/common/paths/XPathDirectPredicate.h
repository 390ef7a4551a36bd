#pragma once

#include "values/XPathEvalContext.h"
#include "xmlproxy/XmlName.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

class Node;

namespace XmlPlugin
{

/// A predicate of common shape: `[@a]`, `[@a='text']`, `[@a=5]`, `[2]`, `[position()=2]`, `[last()]`,
/// answered without its expression being compiled. It answers as the expression does.
///
/// Ownership: a value of its predicate; it looks at the predicate's text.
/// Threads: any number of readers.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathDirectWalkTest.cpp
class XPathDirectPredicate
{
public:
    /// \p i_Text: the predicate with its brackets; it outlives this.
    explicit XPathDirectPredicate(std::wstring_view i_Text);

    /// False for a predicate of any other shape, about which nothing else may be asked.
    bool isCommon() const noexcept { return m_Kind != Kind::Other; }
    /// Whether it asks for a place in the list, not for an attribute.
    bool isPlace() const noexcept { return isLast() || m_Kind == Kind::Place || m_Kind == Kind::Position; }
    bool isLast() const noexcept { return m_Kind == Kind::Last; }
    /// Of one that asks for a place by its number: that number.
    std::size_t place() const noexcept { return m_Place; }

    /// Of one that asks for an attribute: whether the node has it, so that it is kept.
    bool holds(const Node& i_Node) const;
    /// Of one that asks for a place: whether the node at \p i_Place of the list, counted from 1, is kept.
    /// \p i_IsLast: it is the last one in the list.
    bool holdsAt(const Node& i_Node, std::size_t i_Place, bool i_IsLast) const noexcept;
    /// Whether no node behind this one, which is at \p i_Place, is kept.
    bool isPast(const Node& i_Node, std::size_t i_Place) const noexcept;

    /// Keeps the nodes of the list that the predicate keeps. False, and nothing done, where a name
    /// in the list would be read in another way by the expression.
    bool filter(NodeVector& io_Nodes) const;
    /// Whether the expression reads an attribute of the node as it stands: with "::" in its name or in its
    /// parent's it takes them for axes.
    static bool isReadAsItStands(const Node& i_Node) noexcept;
    static bool isPlainName(const XmlName& i_Name) noexcept;

    friend bool operator==(const XPathDirectPredicate&, const XPathDirectPredicate&) = default;

private:
    enum class Kind : std::uint8_t
    {
        Other,
        HasAttribute,
        AttributeIsText,
        AttributeIsNumber,
        Place,    ///< [2]
        Position, ///< [position()=2]
        Last
    };

    Kind readAttribute(std::wstring_view& io_Text);
    Kind readPlace(std::wstring_view& io_Text);
    Kind readCall(std::wstring_view& io_Text);

    Kind m_Kind = Kind::Other;
    std::size_t m_Place = 0;
    double m_Number = 0.0;
    XmlNameView m_Attribute;
    std::wstring_view m_Text;
};

} // namespace XmlPlugin
