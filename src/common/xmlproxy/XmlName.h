#pragma once

#include "base/String.h"

#include <cstddef>
#include <string_view>

/// A name of an element or attribute with its hash, so that two names are told apart without
/// comparing their texts.
///
/// The names of one parsed document are kept once each: there the same name has the same address,
/// and so have different names different ones. Elsewhere (single nodes, copies, trees that were put
/// together) only the other direction holds: the same address is the same name.
///
/// Ownership: a value. The one that a node shows is valid as long as the node.
/// Threads: any number of readers.
/// Invariants: never changed after construction; the same text has the same hash.
/// Tested by: tests/common/xmlproxy/XmlNameTest.cpp
class XmlName
{
public:
    explicit XmlName(const String& i_Text) : m_Text(i_Text), m_Hash(hashOf(i_Text.view())) {}
    XmlName(const XmlName&) = delete;
    XmlName& operator=(const XmlName&) = delete;

    const String& text() const noexcept { return m_Text; }
    std::size_t hash() const noexcept { return m_Hash; }

    /// The hash that a name of this text has.
    static std::size_t hashOf(std::wstring_view i_Text) noexcept { return std::hash<std::wstring_view>{}(i_Text); }

    /// True for the same text: decided by the address or the hash in nearly every case.
    friend bool operator==(const XmlName& i_Left, const XmlName& i_Right) noexcept
    {
        return &i_Left == &i_Right || (i_Left.m_Hash == i_Right.m_Hash && i_Left.m_Text == i_Right.m_Text);
    }

private:
    String m_Text;
    std::size_t m_Hash;
};
