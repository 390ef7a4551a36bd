#include "values/XPathOutputList.h"

#include <algorithm>
#include <new>
#include <type_traits>
#include <utility>

namespace XmlPlugin
{

namespace
{

// Blocks grow with the list, but stay of a size that the heap hands out again without the system's help.
constexpr std::size_t s_FirstBlock = 4; // records
constexpr std::size_t s_LargestBlock = 1024;

} // namespace

static_assert(std::is_trivially_destructible_v<XPathOutputElement>,
              "records are left where they are when a block is released");
static_assert(alignof(XPathOutputElement) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__);

void XPathOutputList::addBlock()
{
    const std::size_t count = std::clamp(m_Records.size(), s_FirstBlock, s_LargestBlock);
    if (m_Records.empty())
    {
        m_Records.reserve(count); // later it grows by itself
    }
    m_pFree = reinterpret_cast<XPathOutputElement*>(allocate(count * sizeof(XPathOutputElement)));
    m_pEnd = m_pFree + count;
}

std::byte* XPathOutputList::allocate(std::size_t i_Size)
{
    static_assert(sizeof(Block) % alignof(XPathOutputElement) == 0);
    m_pBlock = new (::operator new(sizeof(Block) + i_Size)) Block{m_pBlock};
    return reinterpret_cast<std::byte*>(m_pBlock + 1);
}

/// The record and its text share a block.
XPathOutputElement& XPathOutputList::addScalar(std::wstring_view i_Text)
{
    static_assert(alignof(XPathOutputElement) % alignof(wchar_t) == 0);
    const std::size_t textBytes = (i_Text.size() + 1) * sizeof(wchar_t);
    std::byte* const pBlock = allocate(sizeof(XPathOutputElement) + textBytes);
    auto* const pText = reinterpret_cast<wchar_t*>(pBlock + sizeof(XPathOutputElement));
    *std::copy(i_Text.begin(), i_Text.end(), pText) = L'\0';
    auto* const pRecord = new (pBlock) XPathOutputElement;
    pRecord->m_Value = XPathLentText(std::wstring_view(pText, i_Text.size()));
    m_Records.push_back(pRecord);
    return *pRecord;
}

void XPathOutputList::append(XPathOutputList&& io_Other)
{
    if (empty())
    {
        *this = std::move(io_Other);
        return;
    }
    m_Records.append(io_Other.m_Records);
    if (Block* pFirst = io_Other.m_pBlock)
    {
        while (pFirst->m_pPrevious)
        {
            pFirst = pFirst->m_pPrevious;
        }
        pFirst->m_pPrevious = std::exchange(m_pBlock, std::exchange(io_Other.m_pBlock, nullptr));
    }
    m_pFree = io_Other.m_pFree;
    m_pEnd = io_Other.m_pEnd;
    io_Other.clear();
}

} // namespace XmlPlugin
