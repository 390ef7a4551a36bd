#include "xmlproxy/XmlArena.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace
{

constexpr std::size_t s_FirstBytes = std::size_t{2} << 10;
constexpr std::size_t s_MostBytes = std::size_t{8} << 20;
/// From this size on a block consists of whole large pages.
constexpr std::size_t s_LargePage = std::size_t{2} << 20;

bool isLarge(std::size_t i_Bytes) noexcept
{
    return i_Bytes >= s_LargePage;
}

/// Page by page the system takes longer to hand out the memory of a tree than the tree takes to build.
void askForLargePages([[maybe_unused]] void* i_pMemory, [[maybe_unused]] std::size_t i_Bytes) noexcept
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    // A wish: when it is refused nothing changes, not even the error number, which others look at.
    const int before = errno;
    madvise(i_pMemory, i_Bytes, MADV_HUGEPAGE);
    errno = before;
#endif
}

void* allocateBlock(std::size_t i_Bytes)
{
    if (!isLarge(i_Bytes))
    {
        return ::operator new(i_Bytes);
    }
    void* pMemory = ::operator new (i_Bytes, std::align_val_t{s_LargePage});
    askForLargePages(pMemory, i_Bytes);
    return pMemory;
}

} // namespace

/// Stands at the beginning of its memory.
struct XmlArena::Block
{
    Block* pPrevious;
    std::size_t bytes;
};

XmlArena::~XmlArena()
{
    while (m_pLast)
    {
        Block* pBlock = m_pLast;
        m_pLast = pBlock->pPrevious;
        if (isLarge(pBlock->bytes))
        {
            ::operator delete (pBlock, std::align_val_t{s_LargePage});
        }
        else
        {
            ::operator delete(pBlock);
        }
    }
}

void XmlArena::grow(std::size_t i_Bytes)
{
    if (i_Bytes > std::numeric_limits<std::size_t>::max() / 2)
    {
        throw std::bad_alloc();
    }
    const std::size_t usual = std::clamp(m_BlockBytes * 4, s_FirstBytes, s_MostBytes);
    std::size_t bytes = std::max(usual, sizeof(Block) + i_Bytes);
    const std::size_t unit = isLarge(bytes) ? s_LargePage : s_Alignment;
    bytes = (bytes + unit - 1) / unit * unit;

    auto* pMemory = static_cast<std::byte*>(allocateBlock(bytes));
    m_pLast = new (pMemory) Block{m_pLast, bytes};
    m_BlockBytes = usual;
    m_pNext = pMemory + sizeof(Block);
    m_pEnd = pMemory + bytes;
}
