#pragma once

#include "base/ErrorCode.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

class String;

/// A compact list of wide texts. All texts lie end to end, each with its terminating null, in one buffer that is
/// counted in whole blocks of characters.
///
/// Blocks are the unit that callers see (`blocks`, `freeCharacters`): always as many as the used characters need. The
/// actual allocation is independent of them and grows geometrically. The start of each text is kept at the far end of
/// the buffer, growing downwards, so the cost of appending and reading does not depend on the number of texts.
///
/// Ownership: owns its buffer; an empty vector has none.
/// Threads: any number of readers, or one writer.
/// Invariants: used characters = blocks * block size - free characters; free < block size;
/// used characters and texts are at most 2147483647.
/// Tested by: tests/common/xmlproxy/StringVectorTest.cpp
class StringVector
{
public:
    /// \p i_BlockSize: characters per block, greater than 0.
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

    /// Text number \p i_Index, valid until the vector is changed; empty if there is no such text.
    std::wstring_view at(int i_Index) const noexcept
    {
        return i_Index >= 0 && i_Index < m_Count ? textAt(i_Index) : std::wstring_view();
    }
    /// Makes room for \p i_Count more texts with \p i_Characters characters altogether, terminating nulls included:
    /// inserting them cannot fail. `std::bad_alloc` when memory is exhausted.
    void reserve(int i_Count, std::size_t i_Characters);

private:
    /// Buffer units that the start of one text takes.
    static constexpr std::size_t s_StartUnits = sizeof(std::uint32_t) / sizeof(wchar_t);

    std::wstring_view textAt(int i_Index) const noexcept;
    std::uint32_t startAt(int i_Index) const noexcept;
    void setStart(int i_Index, std::uint32_t i_Start) noexcept;
    /// Where text number \p i_Index starts; for an index equal to the count, where the used characters end.
    std::uint32_t startOrEnd(int i_Index) const noexcept { return i_Index < m_Count ? startAt(i_Index) : m_Used; }
    void grow(std::size_t i_Units);

    std::unique_ptr<wchar_t[]> m_pBuffer;
    std::uint32_t m_Capacity = 0; ///< of the buffer, in units
    std::uint32_t m_Used = 0;     ///< characters, including terminating nulls
    int m_Count = 0;
    int m_BlockSize;
};
