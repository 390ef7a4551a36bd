#pragma once

#include "XPathExpression.h"

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace XmlPlugin
{

class XPathArgument;
class XPathOperator;
struct XPathFunctionChoice;

/// The elements of one expression with their texts and functions: made one behind the other in few blocks of memory, of
/// which the first is a part of this object, and destroyed together.
///
/// Ownership: owns everything that it has made; an element's text is lent to it.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/XPathElementsTest.cpp
class XPathElements
{
public:
    XPathElements() noexcept = default;
    ~XPathElements();
    XPathElements(const XPathElements&) = delete;
    XPathElements& operator=(const XPathElements&) = delete;

    /// An operand; \p i_Text must live as long as this object, as what `keep` returns does.
    XPathArgument& addArgument(std::wstring_view i_Text);
    /// A number: decimal digits, which must live as long too, and their value.
    XPathArgument& addNumber(std::wstring_view i_Digits, double i_Number);
    /// An operator, parenthesis, comma or function call.
    XPathOperator& addOperator(const XPathFunctionChoice& i_Choice);
    /// \p i_Front, \p i_Text and \p i_Back as one text that lives as long as this object.
    std::wstring_view keep(std::wstring_view i_Front, std::wstring_view i_Text = {}, std::wstring_view i_Back = {});
    /// Memory for one object, which its maker destroys. \p i_Size in bytes; aligned for every type.
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

    XPathExpressionsVector m_Elements; ///< to be destroyed
    std::byte* m_pNext = m_FirstBlock; ///< free from here to m_pEnd
    std::byte* m_pEnd = m_FirstBlock + s_FirstBlock;
    std::vector<std::unique_ptr<std::byte[]>> m_LaterBlocks;
    alignas(s_Alignment) std::byte m_FirstBlock[s_FirstBlock];
};

} // namespace XmlPlugin
