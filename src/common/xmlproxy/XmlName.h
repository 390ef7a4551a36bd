#pragma once

#include "xmlproxy/XmlText.h"

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <utility>

class XmlTreeMemory;

/// A name of an element or attribute with its hash, which tells two names apart without comparing their texts.
///
/// A parsed document keeps each name once: within it, equal names have the same address.
/// Elsewhere (single nodes, copies, trees that were put together) only the other direction holds:
/// the same address is the same name.
///
/// Ownership: owned by the tree memory in which it was created, otherwise by its creator. The name that a node returns
/// is valid as long as the node.
/// Threads: any number of readers.
/// Invariants: never changed after construction; the same text has the same hash in one process.
/// Tested by: tests/common/xmlproxy/XmlNameTest.cpp
class XmlName
{
public:
    explicit XmlName(String i_Text) : XmlName(std::move(i_Text), nullptr) {}
    /// A name that belongs to the tree in \p i_pMemory; null for a name without a tree.
    XmlName(String i_Text, XmlTreeMemory* i_pMemory)
        : m_Text(std::move(i_Text)), m_Hash(hashOf(viewOf(m_Text))), m_pMemory(i_pMemory)
    {
    }
    XmlName(const XmlName&) = delete;
    XmlName& operator=(const XmlName&) = delete;

    const String& text() const noexcept { return m_Text; }
    std::size_t hash() const noexcept { return m_Hash; }
    XmlTreeMemory* memory() const noexcept { return m_pMemory; }

    /// The hash that a name of this text has.
    static std::size_t hashOf(std::wstring_view i_Text) noexcept { return hashOfUnits(i_Text); }
    static std::size_t hashOf(std::u16string_view i_Text) noexcept { return hashOfUnits(i_Text); }
    /// \p i_Text is ASCII.
    static std::size_t hashOf(std::string_view i_Text) noexcept { return hashOfUnits(i_Text); }

    /// Goes into every hash. Odd, and different in each process, so that nobody can write a document whose names have
    /// the same hash.
    static std::uint64_t secret() noexcept;
    /// Adopts the secret of another module of the process, with which this one shares trees. Must be called before this
    /// module creates or looks up any name.
    static void shareSecret(std::uint64_t i_Secret) noexcept;

    /// True if the texts are equal; the address or the hash almost always decides.
    friend bool operator==(const XmlName& i_Left, const XmlName& i_Right) noexcept
    {
        return &i_Left == &i_Right || (i_Left.m_Hash == i_Right.m_Hash && isSame(i_Left.m_Text, i_Right.m_Text));
    }

private:
    template <typename Units>
    static std::size_t hashOfUnits(Units i_Text) noexcept
    {
        const std::uint64_t factor = secret();
        std::uint64_t hash = factor;
        for (const auto unit : i_Text)
        {
            hash = (hash ^ static_cast<std::uint64_t>(unit)) * factor;
            hash ^= hash >> 32U;
        }
        return static_cast<std::size_t>(hash);
    }

    String m_Text;
    std::size_t m_Hash;
    XmlTreeMemory* m_pMemory;
};

/// The key of a search for a name: a text with its hash.
///
/// Ownership: refers to a text that the caller keeps alive.
/// Tested by: tests/common/xmlproxy/XmlNameTest.cpp
class XmlNameView
{
public:
    /// The empty name.
    XmlNameView() noexcept : XmlNameView(std::wstring_view()) {}
    explicit XmlNameView(std::wstring_view i_Text) noexcept : m_Text(i_Text), m_Hash(XmlName::hashOf(i_Text)) {}
    XmlNameView(const XmlName& i_Name) noexcept : m_Text(viewOf(i_Name.text())), m_Hash(i_Name.hash()) {}

    std::wstring_view text() const noexcept { return m_Text; }
    std::size_t hash() const noexcept { return m_Hash; }

    /// True for the same text: nearly always decided by the hash.
    friend bool operator==(const XmlNameView& i_Left, const XmlNameView& i_Right) noexcept
    {
        return i_Left.m_Hash == i_Right.m_Hash && i_Left.m_Text == i_Right.m_Text;
    }

private:
    std::wstring_view m_Text;
    std::size_t m_Hash;
};
