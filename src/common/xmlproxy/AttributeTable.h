#pragma once

#include "base/ErrorCode.h"
#include "xmlproxy/PackedAttributes.h"
#include "xmlproxy/XmlName.h"
#include "xmlproxy/XmlText.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <string>
#include <string_view>

class XmlTreeMemory;

/// The attributes of one element: names, values and document-order numbers under one index.
///
/// A table holds its attributes in one of two forms: those that `add` appends are in three string vectors; those that
/// the parser makes for a tree (`create`) are one piece of that tree's memory, until something is appended.
///
/// Ownership: owned by its node. A table in a tree's memory is deleted like any other; its memory is freed with the
/// tree.
/// Threads: any number of readers, or one writer.
/// Invariants: the three vectors have equal counts; names are unique; a large table has a hash index over its names.
/// Tested by: tests/common/xmlproxy/AttributeTableTest.cpp
class AttributeTable
{
public:
    /// \p i_BlockSize: block size of the three vectors in characters, greater than 0.
    explicit AttributeTable(int i_BlockSize);
    /// Makes a table of these attributes, whose names must be unique, in the memory of their tree. They are numbered
    /// consecutively from \p i_FirstOrdinal; the block size is 1. `std::bad_alloc` when memory is exhausted.
    static AttributeTable* create(XmlTreeMemory& io_Memory, std::span<const PackedAttributes::Source> i_Attributes,
                                  std::uint32_t i_FirstOrdinal);
    ~AttributeTable();
    AttributeTable(const AttributeTable&) = delete;
    AttributeTable& operator=(const AttributeTable&) = delete;

    int count() const noexcept { return isPacked() ? packed().count() : textCount(); }
    int blockSize() const noexcept { return m_BlockSize; }

    /// Appends an attribute; \p i_Ordinal is decimal text. Returns 0, or -1007 when there is an attribute of this name.
    /// `std::bad_alloc` when memory is exhausted. A failure changes nothing.
    TErrorCode add(const String& i_Name, const String& i_Value, const String& i_Ordinal);
    /// Copies the name and the value of attribute number \p i_Index, counted from 0; leaves both unchanged when there
    /// is no such attribute.
    void getAt(int i_Index, String& o_Name, String& o_Value) const;
    /// Copies the value and the ordinal (decimal text) of the attribute of exactly this name. Returns 0, or -1006 with
    /// both unchanged when there is none.
    TErrorCode getByName(const String& i_Name, String& o_Value, String& o_Ordinal) const;

    /// Returns the index of the attribute with exactly this name, or -1.
    int indexOf(const String& i_Name) const noexcept
    {
        return isPacked() ? packed().indexOf(i_Name) : textIndexOf(viewOf(i_Name));
    }
    /// Same, but hardly ever compares texts.
    int indexOf(const XmlNameView& i_Name) const noexcept
    {
        return isPacked() ? packed().indexOf(i_Name) : textIndexOf(i_Name.text());
    }
    /// The texts of attribute number \p i_Index, not copied: valid until the table is changed or destroyed; empty when
    /// there is no such attribute.
    std::wstring_view nameAt(int i_Index) const noexcept
    {
        return isInPacked(i_Index) ? viewOf(packed().nameAt(i_Index).text()) : textNameAt(i_Index);
    }
    std::wstring_view valueAt(int i_Index) const noexcept
    {
        return isInPacked(i_Index) ? packed().valueAt(i_Index) : textValueAt(i_Index);
    }
    /// The ordinal as decimal text; empty if there is no such attribute.
    std::wstring ordinalAt(int i_Index) const;
    /// The ordinal as a number; 0 if there is no such attribute.
    std::uint32_t orderAt(int i_Index) const noexcept
    {
        return isInPacked(i_Index) ? packed().ordinalAt(i_Index) : textOrderAt(i_Index);
    }

    /// True for a table that `create` made.
    bool isInMemory() const noexcept { return m_IsInMemory; }

    static void* operator new(std::size_t i_Bytes);
    static void* operator new(std::size_t, void* i_pPlace) noexcept { return i_pPlace; }
    static void operator delete(void* i_pTable) noexcept;
    static void operator delete(AttributeTable* i_pTable, std::destroying_delete_t) noexcept;

private:
    struct Texts;
    enum class Content : std::uint8_t
    {
        InTexts,
        InPacked,
        Empty ///< in a tree's memory, without attributes yet
    };

    explicit AttributeTable(const PackedAttributes* i_pPacked) noexcept;
    explicit AttributeTable(XmlTreeMemory* i_pMemory) noexcept;

    bool isPacked() const noexcept { return m_Content == Content::InPacked; }

    const PackedAttributes& packed() const noexcept { return *m_pPacked; }
    bool isInPacked(int i_Index) const noexcept { return isPacked() && i_Index >= 0 && i_Index < packed().count(); }
    void unpack();

    int textCount() const noexcept;
    int textIndexOf(std::wstring_view i_Name) const noexcept;
    std::wstring_view textNameAt(int i_Index) const noexcept;
    std::wstring_view textValueAt(int i_Index) const noexcept;
    std::wstring_view textOrdinalAt(int i_Index) const noexcept;
    std::uint32_t textOrderAt(int i_Index) const noexcept;

    int m_BlockSize;
    bool m_IsInMemory = false;
    Content m_Content;
    union
    {
        Texts* m_pTexts;                   ///< owned
        const PackedAttributes* m_pPacked; ///< in the memory of the tree
        XmlTreeMemory* m_pMemory;          ///< of the tree, while the table is empty
    };
};
