#pragma once

#include "base/ErrorCode.h"
#include "values/XPathOutputCollector.h"
#include "xmlproxy/XmlName.h"

#include <cstdint>
#include <string_view>

class Node;

namespace XmlPlugin
{

/// What the last step of a branch takes from a node.
///
/// Ownership: a value, which refers to the name in its step.
/// Threads: any number of readers.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathStepTest.cpp
class XPathLeafValue
{
public:
    enum class Kind : std::uint8_t
    {
        Text,
        AllAttributes,
        OneAttribute,
        WholeNode
    };

    /// The whole node.
    XPathLeafValue() noexcept = default;
    /// Any kind except one attribute.
    explicit XPathLeafValue(Kind i_Kind) noexcept : m_Kind(i_Kind) {}
    /// The attribute with this name, whose text must outlive this object.
    explicit XPathLeafValue(const XmlNameView& i_Attribute) noexcept : m_Kind(Kind::OneAttribute), m_Name(i_Attribute)
    {
    }

    bool isWholeNode() const noexcept { return m_Kind == Kind::WholeNode; }
    /// Adds the values that the node has. Returns -15104 if it has none.
    TErrorCode add(const Node& i_Node, XPathOutputCollector& io_Output) const;

    friend bool operator==(const XPathLeafValue&, const XPathLeafValue&) = default;

private:
    static TErrorCode addText(const Node& i_Node, XPathOutputCollector& io_Output);
    static void addAllAttributes(const Node& i_Node, XPathOutputCollector& io_Output);
    TErrorCode addAttribute(const Node& i_Node, XPathOutputCollector& io_Output) const;
    static void addNode(const Node& i_Node, XPathOutputCollector& io_Output);

    Kind m_Kind = Kind::WholeNode;
    XmlNameView m_Name;
};

} // namespace XmlPlugin
