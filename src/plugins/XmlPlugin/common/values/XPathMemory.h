#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace XmlPlugin
{

/// The memory for the elements, functions and texts of one expression. It consists of a few blocks; the first is part
/// of this object.
///
/// Ownership: the destructor frees the memory. Whoever creates an object in it must destroy that object before.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathElementsTest.cpp
class XPathMemory
{
public:
    XPathMemory() noexcept = default;
    XPathMemory(const XPathMemory&) = delete;
    XPathMemory& operator=(const XPathMemory&) = delete;

    /// Joins \p i_Front, \p i_Text and \p i_Back into one text, which lives as long as this object.
    std::wstring_view keep(std::wstring_view i_Front, std::wstring_view i_Text = {}, std::wstring_view i_Back = {});
    /// Returns memory for one object, which the caller must destroy. \p i_Size is in bytes; the memory is aligned for
    /// every type. Throws `std::bad_alloc` if memory is exhausted.
    void* allocate(std::size_t i_Size)
    {
        const std::size_t size = (i_Size + s_Alignment - 1) / s_Alignment * s_Alignment;
        if (size > static_cast<std::size_t>(m_pEnd - m_pNext))
        {
            return allocateBlock(size);
        }
        std::byte* const pMemory = m_pNext;
        m_pNext += size;
        return pMemory;
    }

private:
    static constexpr std::size_t s_Alignment = alignof(std::max_align_t);
    static constexpr std::size_t s_FirstBlock = 3072;
    static constexpr std::size_t s_LaterBlock = 8192;

    void* allocateBlock(std::size_t i_Size);

    std::byte* m_pNext = m_FirstBlock; ///< free from here to m_pEnd
    std::byte* m_pEnd = m_FirstBlock + s_FirstBlock;
    std::vector<std::unique_ptr<std::byte[]>> m_LaterBlocks;
    alignas(s_Alignment) std::byte m_FirstBlock[s_FirstBlock];
};

} // namespace XmlPlugin
