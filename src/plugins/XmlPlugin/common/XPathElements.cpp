#include "XPathElements.h"

#include "XPathArgument.h"
#include "XPathOperator.h"

#include <algorithm>
#include <new>

namespace XmlPlugin
{

XPathElements::~XPathElements()
{
    for (XPathExpression* pElement : m_Elements)
    {
        std::destroy_at(pElement);
    }
}

XPathArgument& XPathElements::addArgument(std::wstring_view i_Text)
{
    m_Elements.reserve(m_Elements.size() + 1); // nothing can fail once the element is made
    auto* pArgument = new (allocate(sizeof(XPathArgument))) XPathArgument(XPathExpression::Lent{i_Text});
    m_Elements.push_back(pArgument);
    return *pArgument;
}

XPathArgument& XPathElements::addNumber(std::wstring_view i_Digits, double i_Number)
{
    m_Elements.reserve(m_Elements.size() + 1);
    auto* pArgument = new (allocate(sizeof(XPathArgument))) XPathArgument(XPathExpression::Lent{i_Digits}, i_Number);
    m_Elements.push_back(pArgument);
    return *pArgument;
}

XPathOperator& XPathElements::addOperator(const XPathFunctionChoice& i_Choice)
{
    m_Elements.reserve(m_Elements.size() + 1);
    auto* pOperator = new (allocate(sizeof(XPathOperator))) XPathOperator(i_Choice, *this);
    m_Elements.push_back(pOperator);
    return *pOperator;
}

std::wstring_view XPathElements::keep(std::wstring_view i_Front, std::wstring_view i_Text, std::wstring_view i_Back)
{
    const std::size_t size = i_Front.size() + i_Text.size() + i_Back.size();
    auto* const pText = static_cast<wchar_t*>(allocate(size * sizeof(wchar_t)));
    std::copy(i_Back.begin(), i_Back.end(),
              std::copy(i_Text.begin(), i_Text.end(), std::copy(i_Front.begin(), i_Front.end(), pText)));
    return {pText, size};
}

/// A large object gets a block of its own, and the current one stays in use.
void* XPathElements::allocateBlock(std::size_t i_Size)
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
