#pragma once

#include "base/ErrorCode.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

class String;

/// A compact list of wide texts: all of them lie end to end, each with its terminating null, in
/// one buffer that is counted in whole blocks of characters.
///
/// The blocks are the measure that callers see (`blocks`, `freeCharacters`): always as many as the
/// used characters need. The real allocation has no fixed relation to them: it grows
/// geometrically, and the start of each text is kept at its far end, growing downwards, so that
/// appending and reading do not depend on the number of texts.
///
/// Ownership: owns its buffer; a vector without texts holds none.
/// Threads: any number of readers, or one writer.
/// Invariants: used characters = blocks * block size - free characters; free < block size;
/// used characters and texts are at most 2147483647.
/// Tested by: tests/common/xmlproxy/StringVectorTest.cpp
class StringVector
{
public:
    /// \p i_BlockSize: characters in a block, greater than 0.
    explicit StringVector(int i_BlockSize);
    StringVector(const StringVector&) = delete;
    StringVector& operator=(const StringVector&) = delete;

    /// Inserts a copy of \p i_Text (null-terminated, not a text of this vector) before text number \p i_Index, counted
    /// from 0; an index equal to the count appends it. Returns 0; -1009 for a null text; -1002 for an index that is
    /// negative or above the count. `std::bad_alloc` when memory is exhausted. A failure changes nothing.
    TErrorCode insert(int i_Index, const wchar_t* i_Text);
    /// Copies text number \p i_Index; a negative index means the first. Returns 0, or -1002 when there is no such text.
    TErrorCode get(int i_Index, String& o_Text) const;
    /// Stores the index of the first text that is exactly \p i_Text. Returns 0, or -1006 when there is none.
    TErrorCode find(const String& i_Text, int& o_Index) const;
    /// Removes text number \p i_Index. Returns 0, or -1002 when there is no such text.
    TErrorCode remove(int i_Index);
    void clear() noexcept;

    int count() const noexcept { return m_Count; }
    int blockSize() const noexcept { return m_BlockSize; }
    int blocks() const noexcept;
    /// Unused characters in the last block.
    int freeCharacters() const noexcept;

    /// Text number \p i_Index, valid until the vector is changed; an empty view when there is none.
    std::wstring_view at(int i_Index) const noexcept
    {
        return i_Index >= 0 && i_Index < m_Count ? textAt(i_Index) : std::wstring_view();
    }
    /// Makes room for \p i_Count more texts with \p i_Characters characters altogether, terminating nulls included:
    /// inserting them cannot fail. `std::bad_alloc` when memory is exhausted.
    void reserve(int i_Count, std::size_t i_Characters);

private:
    /// Units of the buffer that one start takes.
    static constexpr std::size_t s_StartUnits = sizeof(std::uint32_t) / sizeof(wchar_t);

    std::wstring_view textAt(int i_Index) const noexcept;
    std::uint32_t startAt(int i_Index) const noexcept;
    void setStart(int i_Index, std::uint32_t i_Start) noexcept;
    /// Where text number \p i_Index starts; for the count, where the used characters end.
    std::uint32_t startOrEnd(int i_Index) const noexcept { return i_Index < m_Count ? startAt(i_Index) : m_Used; }
    void grow(std::size_t i_Units);

    std::unique_ptr<wchar_t[]> m_pBuffer;
    std::uint32_t m_Capacity = 0; ///< units of the buffer
    std::uint32_t m_Used = 0;     ///< characters, terminating nulls included
    int m_Count = 0;
    int m_BlockSize;
};
