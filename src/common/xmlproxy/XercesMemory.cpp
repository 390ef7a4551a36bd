#include "xmlproxy/XercesMemory.h"

#include "xmlproxy/XmlExpansionBudget.h"

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/validators/common/ContentSpecNode.hpp>

#include <algorithm>
#include <functional>
#include <limits>
#include <new>
#include <utility>

/// Stands before the memory that is handed out.
struct alignas(std::max_align_t) XercesMemory::Block
{
    Block* pPrevious;
    Block* pNext;
};

namespace
{

constexpr std::size_t s_LeastReserve = std::size_t{64} << 10;
/// A content model is destroyed with two stacks for ten pointers, of which each grows by a quarter
/// and has at most one for each node; a model of one node needs none.
constexpr std::size_t s_ReservePerModel = 8 * sizeof(void*);
constexpr std::size_t s_SmallPiece = 4096;

/// What the library asks for when it makes a node of a content model.
std::size_t modelBytes() noexcept
{
    return sizeof(xercesc::ContentSpecNode) +
           xercesc::XMLPlatformUtils::alignPointerForNewBlockAllocation(sizeof(xercesc::MemoryManager*));
}

} // namespace

XercesMemory::XercesMemory(XmlExpansionBudget* i_pBudget)
    : m_pBudget(i_pBudget),
      m_pReserve(std::make_unique_for_overwrite<std::byte[]>(s_LeastReserve)),
      m_ReserveBytes(s_LeastReserve)
{
}

XercesMemory::~XercesMemory()
{
    m_pBudget = nullptr;
    while (m_pFirst)
    {
        deallocate(m_pFirst + 1);
    }
}

void* XercesMemory::allocate(XMLSize_t i_Size)
{
    if (m_pBudget)
    {
        m_pBudget->look();
        if (i_Size >= XmlExpansionBudget::s_LargePiece)
        {
            m_pBudget->throwIfExceeded();
        }
    }
    if (i_Size > std::numeric_limits<XMLSize_t>::max() - sizeof(Block))
    {
        throw xercesc::OutOfMemoryException();
    }
    if (i_Size == modelBytes() && ++m_Models * s_ReservePerModel > m_ReserveBytes)
    {
        growReserve();
    }
    auto* pBlock = new (allocateBlock(i_Size + sizeof(Block))) Block{nullptr, m_pFirst};
    if (m_pFirst)
    {
        m_pFirst->pPrevious = pBlock;
    }
    m_pFirst = pBlock;
    return pBlock + 1;
}

void XercesMemory::deallocate(void* i_pMemory)
{
    if (!i_pMemory)
    {
        return;
    }
    if (m_pBudget)
    {
        m_pBudget->look();
    }
    Block* pBlock = static_cast<Block*>(i_pMemory) - 1;
    (pBlock->pPrevious ? pBlock->pPrevious->pNext : m_pFirst) = pBlock->pNext;
    if (pBlock->pNext)
    {
        pBlock->pNext->pPrevious = pBlock->pPrevious;
    }
    if (!isOfReserve(pBlock))
    {
        getExceptionMemoryManager()->deallocate(pBlock);
    }
}

void* XercesMemory::allocateBlock(XMLSize_t i_Size)
{
    try
    {
        return getExceptionMemoryManager()->allocate(i_Size);
    }
    catch (const xercesc::OutOfMemoryException&)
    {
        void* pMemory = m_HasRunOut || i_Size <= s_SmallPiece ? takeFromReserve(i_Size) : nullptr;
        m_HasRunOut = true;
        if (!pMemory)
        {
            throw;
        }
        return pMemory;
    }
}

void* XercesMemory::takeFromReserve(XMLSize_t i_Size) noexcept
{
    constexpr std::size_t unit = alignof(std::max_align_t);
    if (i_Size > m_ReserveBytes - m_ReserveUsed)
    {
        return nullptr;
    }
    void* pMemory = m_pReserve.get() + m_ReserveUsed;
    m_ReserveUsed = std::min(m_ReserveBytes, m_ReserveUsed + (i_Size + unit - 1) / unit * unit);
    return pMemory;
}

bool XercesMemory::isOfReserve(const Block* i_pBlock) const noexcept
{
    const auto* pMemory = reinterpret_cast<const std::byte*>(i_pBlock);
    return !std::less<>()(pMemory, m_pReserve.get()) && std::less<>()(pMemory, m_pReserve.get() + m_ReserveBytes);
}

/// Doubles the reserve, of which nothing is in use as long as memory has not run out.
void XercesMemory::growReserve()
{
    if (m_HasRunOut)
    {
        throw xercesc::OutOfMemoryException();
    }
    std::unique_ptr<std::byte[]> pReserve(new (std::nothrow) std::byte[m_ReserveBytes * 2]);
    if (!pReserve)
    {
        m_HasRunOut = true;
        throw xercesc::OutOfMemoryException();
    }
    m_pReserve = std::move(pReserve);
    m_ReserveBytes *= 2;
}

xercesc::MemoryManager* XercesMemory::getExceptionMemoryManager()
{
    return xercesc::XMLPlatformUtils::fgMemoryManager;
}
