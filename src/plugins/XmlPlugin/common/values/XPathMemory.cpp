#include "values/XPathMemory.h"

#include <algorithm>

namespace XmlPlugin
{

std::wstring_view XPathMemory::keep(std::wstring_view i_Front, std::wstring_view i_Text, std::wstring_view i_Back)
{
    const std::size_t size = i_Front.size() + i_Text.size() + i_Back.size();
    auto* const pText = static_cast<wchar_t*>(allocate(size * sizeof(wchar_t)));
    std::copy(i_Back.begin(), i_Back.end(),
              std::copy(i_Text.begin(), i_Text.end(), std::copy(i_Front.begin(), i_Front.end(), pText)));
    return {pText, size};
}

/// A large object gets a block of its own, and the current one stays in use.
void* XPathMemory::allocateBlock(std::size_t i_Size)
{
    const std::size_t size = std::max(i_Size, s_LaterBlock);
    m_LaterBlocks.push_back(std::unique_ptr<std::byte[]>(new std::byte[size]));
    std::byte* const pBlock = m_LaterBlocks.back().get();
    if (i_Size < s_LaterBlock)
    {
        m_pNext = pBlock + i_Size;
        m_pEnd = pBlock + size;
    }
    return pBlock;
}

} // namespace XmlPlugin
