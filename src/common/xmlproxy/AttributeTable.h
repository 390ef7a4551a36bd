#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "xmlproxy/StringVector.h"
#include "xmlproxy/XmlName.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

/// The attributes of one element: names, values and document-order numbers under one index.
///
/// Ownership: a value of its node.
/// Threads: any number of readers, or one writer.
/// Invariants: the three vectors have the same count; names are unique. A large table has a hash
/// index over its names beside the vectors.
/// Tested by: tests/common/xmlproxy/AttributeTableTest.cpp
class AttributeTable
{
public:
    /// \p i_BlockSize: block size of the three vectors in characters, greater than 0.
    explicit AttributeTable(int i_BlockSize);
    AttributeTable(const AttributeTable&) = delete;
    AttributeTable& operator=(const AttributeTable&) = delete;

    int count() const noexcept { return m_Names.count(); }
    int blockSize() const noexcept { return m_BlockSize; }

    /// Appends an attribute. 0; -1007 when the name is already there. `std::bad_alloc` when there
    /// is no room. A failure changes nothing.
    TErrorCode add(const String& i_Name, const String& i_Value, const String& i_Ordinal);
    /// Copies the name and the value at \p i_Index; leaves both alone when there is none.
    void getAt(int i_Index, String& o_Name, String& o_Value) const;
    /// Copies the value and the ordinal (decimal text) of the attribute of exactly this name. 0, or -1006.
    TErrorCode getByName(const String& i_Name, String& o_Value, String& o_Ordinal) const;

    /// The index of the attribute of exactly this name, or -1.
    int indexOf(const String& i_Name) const noexcept;
    int indexOf(const XmlName& i_Name) const noexcept { return indexOf(i_Name.text()); }
    /// The texts at an index, without a copy: valid until the table is changed; empty when there
    /// is no such attribute.
    std::wstring_view nameAt(int i_Index) const noexcept { return m_Names.at(i_Index); }
    std::wstring_view valueAt(int i_Index) const noexcept { return m_Values.at(i_Index); }
    std::wstring_view ordinalAt(int i_Index) const noexcept { return m_Ordinals.at(i_Index); }

    /// Makes room for that many more attributes, so that they are added with one allocation a vector.
    /// The characters are those of all texts together, without terminating nulls.
    void reserve(int i_Count, std::size_t i_NameCharacters, std::size_t i_ValueCharacters,
                 std::size_t i_OrdinalCharacters);

private:
    /// Open addressing over attribute indices, -1 in an empty slot; the size is a power of two and
    /// at least twice the number of attributes.
    using Slots = std::vector<int>;

    std::size_t slotOf(std::wstring_view i_Name) const noexcept;
    void reserveSlots(int i_Count);

    StringVector m_Names;
    StringVector m_Values;
    StringVector m_Ordinals;
    int m_BlockSize;
    std::unique_ptr<Slots> m_pSlots; ///< null in a small table
};
