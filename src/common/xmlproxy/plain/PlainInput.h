#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

class PlainSource;

/// The bytes of a document as they are read, one block at a time, and where lines begin in them.
///
/// The bytes that have been read are followed by a null character. No document may contain one, so a scan checks for
/// the end only when it meets a null character.
///
/// Ownership: the source is not owned and must outlive this object.
/// Threads: one at a time.
/// Invariants: `s_Padding` null characters follow the last byte.
/// Tested by: tests/common/xmlproxy/plain/PlainInputTest.cpp
class PlainInput
{
public:
    /// Number of bytes after the last one that may be read; all are null.
    static constexpr std::size_t s_Padding = 64;

    /// Where a line begins, and its number.
    struct Line
    {
        unsigned number = 1;
        /// Offset of its first byte in the document, plus the difference between the bytes and the UTF-16 code units of
        /// its characters so far.
        std::int64_t start = 0;
    };

    /// Reads blocks of \p i_BlockSize bytes (at least 1).
    PlainInput(PlainSource& io_Source, std::size_t i_BlockSize);
    PlainInput(const PlainInput&) = delete;
    PlainInput& operator=(const PlainInput&) = delete;

    /// The end of what has been read.
    const char* end() const noexcept { return m_pEnd; }
    /// Reads on. Drops what is before \p io_pFrom and moves the rest, and \p io_pFrom with it. False if there is
    /// nothing more, or it cannot be read.
    bool readMore(const char*& io_pFrom);
    /// Reads on until there are \p i_Count bytes at \p io_pFrom. False if there are fewer.
    bool provide(const char*& io_pFrom, std::size_t i_Count)
    {
        return static_cast<std::size_t>(m_pEnd - io_pFrom) >= i_Count || provideMore(io_pFrom, i_Count);
    }
    /// True if everything has been read. Also false if reading failed.
    bool isComplete() const noexcept { return m_IsComplete; }

    std::int64_t offsetOf(const char* i_pPlace) const noexcept { return m_Offset + (i_pPlace - m_pBuffer.get()); }
    /// The column of a place in \p i_Line, counted from 1 in UTF-16 code units.
    unsigned columnOf(const char* i_pPlace, const Line& i_Line) const noexcept
    {
        return static_cast<unsigned>(offsetOf(i_pPlace) - i_Line.start + 1);
    }

private:
    bool provideMore(const char*& io_pFrom, std::size_t i_Count);
    void makeRoom(const char*& io_pFrom);

    PlainSource& m_Source;
    std::size_t m_Capacity; ///< without the padding
    std::unique_ptr<char[]> m_pBuffer;
    char* m_pEnd;
    std::int64_t m_Offset = 0; ///< of the first byte of the buffer
    bool m_IsComplete = false;
    bool m_IsFailed = false;
};
