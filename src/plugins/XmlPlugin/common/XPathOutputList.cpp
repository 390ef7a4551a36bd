#include "XPathOutputList.h"

#include <algorithm>
#include <iterator>
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

XPathOutputList& XPathOutputList::operator=(XPathOutputList&& io_Other) noexcept
{
    XPathOutputList taken(std::move(io_Other));
    swap(taken);
    return *this;
}

void XPathOutputList::addBlock()
{
    const std::size_t count = std::clamp(m_Records.size(), s_FirstBlock, s_LargestBlock);
    m_Blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(count * sizeof(XPathOutputElement)));
    m_pFree = reinterpret_cast<XPathOutputElement*>(m_Blocks.back().get());
    m_pEnd = m_pFree + count;
}

/// The record and its text share a block.
XPathOutputElement& XPathOutputList::addScalar(std::wstring_view i_Text)
{
    static_assert(alignof(XPathOutputElement) % alignof(wchar_t) == 0);
    const std::size_t textBytes = (i_Text.size() + 1) * sizeof(wchar_t);
    m_Blocks.push_back(std::make_unique_for_overwrite<std::byte[]>(sizeof(XPathOutputElement) + textBytes));
    std::byte* const pBlock = m_Blocks.back().get();
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
    m_Records.reserve(size() + io_Other.size());
    m_Blocks.reserve(m_Blocks.size() + io_Other.m_Blocks.size());
    m_Records.insert(m_Records.end(), io_Other.begin(), io_Other.end());
    std::move(io_Other.m_Blocks.begin(), io_Other.m_Blocks.end(), std::back_inserter(m_Blocks));
    m_pFree = io_Other.m_pFree;
    m_pEnd = io_Other.m_pEnd;
    io_Other.clear();
}

void XPathOutputList::swap(XPathOutputList& io_Other) noexcept
{
    m_Records.swap(io_Other.m_Records);
    m_Blocks.swap(io_Other.m_Blocks);
    std::swap(m_pFree, io_Other.m_pFree);
    std::swap(m_pEnd, io_Other.m_pEnd);
}

} // namespace XmlPlugin
