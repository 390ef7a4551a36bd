#pragma once

#include <cstddef>

/// Memory that is handed out piece by piece and freed as a whole.
///
/// Ownership: owns all pieces. Whoever constructs an object in one destroys it.
/// Threads: one at a time.
/// Invariants: blocks double in size up to a bound, so there are few of them and a small document takes little memory.
/// A piece that is larger gets a block of its own.
/// Tested by: tests/common/xmlproxy/XmlArenaTest.cpp
class XmlArena
{
public:
    /// Alignment of all pieces, in bytes.
    static constexpr std::size_t s_Alignment = alignof(void*);

    XmlArena() noexcept = default;
    ~XmlArena();
    XmlArena(const XmlArena&) = delete;
    XmlArena& operator=(const XmlArena&) = delete;

    /// Returns \p i_Bytes of uninitialised memory, valid until the arena is destroyed. `std::bad_alloc` when memory is
    /// exhausted.
    void* allocate(std::size_t i_Bytes)
    {
        if (i_Bytes > static_cast<std::size_t>(m_pEnd - m_pNext))
        {
            grow(i_Bytes);
        }
        std::byte* pPiece = m_pNext;
        m_pNext += i_Bytes;
        // The end of a block is aligned as well: there is room for this.
        m_pNext += (s_Alignment - i_Bytes % s_Alignment) % s_Alignment;
        return pPiece;
    }

private:
    struct Block;

    void grow(std::size_t i_Bytes);

    std::byte* m_pNext = nullptr;
    std::byte* m_pEnd = nullptr;
    Block* m_pLast = nullptr;
    std::size_t m_BlockBytes = 0; ///< of the last block that was not made for one large piece
};
