#include "xmlproxy/XercesMemory.h"

#include "xmlproxy/XmlExpansionBudget.h"

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>
#include <limits>
#include <new>

/// Stands before the memory that is handed out.
struct alignas(std::max_align_t) XercesMemory::Block
{
    Block* pPrevious;
    Block* pNext;
};

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
    void* pMemory = getExceptionMemoryManager()->allocate(i_Size + sizeof(Block));
    auto* pBlock = new (pMemory) Block{nullptr, m_pFirst};
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
    getExceptionMemoryManager()->deallocate(pBlock);
}

xercesc::MemoryManager* XercesMemory::getExceptionMemoryManager()
{
    return xercesc::XMLPlatformUtils::fgMemoryManager;
}
