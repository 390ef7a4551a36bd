#pragma once

#include "xmlproxy/XmlName.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

/// The attributes of one element of a parsed tree in one piece of memory. This header is followed by the names, the end
/// of each value, an index over the names when there are many, and the values end to end, each null-terminated. Their
/// numbers in document order are consecutive.
///
/// Ownership: in the memory of its tree, like the names.
/// Threads: any number of readers.
/// Invariants: there is at least one attribute; names are unique; nothing changes after construction.
/// Tested by: tests/common/xmlproxy/PackedAttributesTest.cpp
class PackedAttributes
{
public:
    /// An attribute as the parser provides it.
    struct Source
    {
        const XmlName* pName;   ///< of the same tree
        const char16_t* pValue; ///< not looked at when there is `pAscii`
        std::size_t length;     ///< of the value, in characters of either
        const char* pAscii = nullptr;
    };

    /// The number of bytes that `make` needs for these attributes. `std::bad_alloc` when it cannot be represented.
    static std::size_t bytesFor(std::span<const Source> i_Attributes);
    /// Makes them at \p i_pPlace, which has `bytesFor` bytes.
    static PackedAttributes* make(void* i_pPlace, std::span<const Source> i_Attributes, std::uint32_t i_FirstOrdinal);
    PackedAttributes(const PackedAttributes&) = delete;
    PackedAttributes& operator=(const PackedAttributes&) = delete;

    int count() const noexcept { return static_cast<int>(m_Count); }
    /// The index of the attribute with this name, or -1.
    int indexOf(const XmlNameView& i_Name) const noexcept;
    int indexOf(const String& i_Name) const noexcept;

    /// \p i_Index is at least 0 and less than `count()`.
    const XmlName& nameAt(int i_Index) const noexcept { return *names()[i_Index]; }
    /// Null-terminated. For the same indexes.
    std::wstring_view valueAt(int i_Index) const noexcept
    {
        const std::uint32_t start = i_Index == 0 ? 0 : ends()[i_Index - 1] + 1;
        return {texts() + start, ends()[i_Index] - start};
    }
    std::uint32_t ordinalAt(int i_Index) const noexcept { return m_FirstOrdinal + static_cast<std::uint32_t>(i_Index); }

private:
    /// Up to this count, a search compares the names one by one.
    static constexpr std::size_t s_SmallCount = 32;

    PackedAttributes(std::size_t i_Count, std::uint32_t i_FirstOrdinal) noexcept
        : m_Count(static_cast<std::uint32_t>(i_Count)), m_FirstOrdinal(i_FirstOrdinal)
    {
    }

    /// Number of slots of the index: a power of two, at least twice the count. The slots hold attribute indices (open
    /// addressing); -1 marks an empty slot.
    static std::size_t slotCount(std::size_t i_Count) noexcept;
    const XmlName* const* names() const noexcept { return reinterpret_cast<const XmlName* const*>(this + 1); }
    const std::uint32_t* ends() const noexcept { return reinterpret_cast<const std::uint32_t*>(names() + m_Count); }
    const std::int32_t* slots() const noexcept { return reinterpret_cast<const std::int32_t*>(ends() + m_Count); }
    const wchar_t* texts() const noexcept
    {
        const std::size_t slotsUsed = m_Count <= s_SmallCount ? 0 : slotCount(m_Count);
        return reinterpret_cast<const wchar_t*>(slots() + slotsUsed);
    }

    void fill(std::span<const Source> i_Attributes) noexcept;
    static wchar_t* putValue(const Source& i_Attribute, wchar_t* o_pUnits) noexcept;
    void fillSlots() noexcept;
    template <typename Name>
    int search(const Name& i_Name, std::size_t i_Hash) const noexcept;

    std::uint32_t m_Count;
    std::uint32_t m_FirstOrdinal;
};
