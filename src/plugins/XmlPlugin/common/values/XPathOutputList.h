#pragma once

#include "values/XPathOutputElement.h"
#include "values/XPathSmallVector.h"
#include "xmlproxy/XmlText.h"

#include <cstddef>
#include <new>
#include <string_view>
#include <utility>

namespace XmlPlugin
{

/// A list of records. The records are in separate blocks and never move.
///
/// Ownership: owns the records that it has created, and the texts that it was given to keep. A record that the caller
/// put in stays the caller's.
/// Threads: one at a time.
/// Invariants: the address of a record does not change as long as it is in a list.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathOutputListTest.cpp
class XPathOutputList
{
public:
    using Iterator = XPathOutputElement**;
    using ConstIterator = XPathOutputElement* const*;

    XPathOutputList() noexcept = default;
    XPathOutputList(XPathOutputList&& io_Other) noexcept
        : m_Records(std::move(io_Other.m_Records)),
          m_pBlock(std::exchange(io_Other.m_pBlock, nullptr)),
          m_pFree(std::exchange(io_Other.m_pFree, nullptr)),
          m_pEnd(std::exchange(io_Other.m_pEnd, nullptr))
    {
    }
    XPathOutputList& operator=(XPathOutputList&& io_Other) noexcept
    {
        if (this != &io_Other)
        {
            releaseBlocks();
            m_Records = std::move(io_Other.m_Records);
            m_pBlock = std::exchange(io_Other.m_pBlock, nullptr);
            m_pFree = std::exchange(io_Other.m_pFree, nullptr);
            m_pEnd = std::exchange(io_Other.m_pEnd, nullptr);
        }
        return *this;
    }
    ~XPathOutputList() { releaseBlocks(); }

    /// Appends a copy of \p i_Record and returns it.
    XPathOutputElement& add(const XPathOutputElement& i_Record)
    {
        if (m_pFree == m_pEnd)
        {
            addBlock();
        }
        XPathOutputElement* pRecord = new (m_pFree) XPathOutputElement(i_Record);
        m_Records.push_back(pRecord);
        ++m_pFree;
        return *pRecord;
    }
    /// Appends a record whose value is a copy of \p i_Text, with key 0 and no node.
    XPathOutputElement& addScalar(std::wstring_view i_Text);
    XPathOutputElement& addScalar(const String& i_Text) { return addScalar(viewOf(i_Text)); }
    /// Appends a record that the caller owns.
    void push_back(XPathOutputElement* i_pRecord) { m_Records.push_back(i_pRecord); }
    /// Appends the records of another list, which is empty afterwards.
    void append(XPathOutputList&& io_Other);

    bool empty() const noexcept { return m_Records.empty(); }
    std::size_t size() const noexcept { return m_Records.size(); }
    XPathOutputElement* operator[](std::size_t i_Index) const noexcept { return m_Records[i_Index]; }
    XPathOutputElement* front() const noexcept { return m_Records.front(); }
    XPathOutputElement* back() const noexcept { return m_Records.back(); }
    Iterator begin() noexcept { return m_Records.begin(); }
    Iterator end() noexcept { return m_Records.end(); }
    ConstIterator begin() const noexcept { return m_Records.begin(); }
    ConstIterator end() const noexcept { return m_Records.end(); }
    /// Drops the records from \p i_From on. Their memory is kept until the list is cleared.
    void truncate(Iterator i_From) noexcept { m_Records.truncate(i_From); }

    void clear() noexcept { *this = XPathOutputList(); }

private:
    /// The header of a block; memory for records or a text follows it.
    struct Block
    {
        Block* m_pPrevious;
    };

    void addBlock();
    std::byte* allocate(std::size_t i_Size);
    void releaseBlocks() noexcept
    {
        while (m_pBlock)
        {
            ::operator delete(std::exchange(m_pBlock, m_pBlock->m_pPrevious));
        }
    }

    XPathSmallVector<XPathOutputElement*, 1> m_Records; ///< a single one, as for a scalar, needs no heap memory
    Block* m_pBlock = nullptr;                          ///< owned; the last block, which leads to all others
    XPathOutputElement* m_pFree = nullptr;              ///< in one of the blocks
    XPathOutputElement* m_pEnd = nullptr;
};

} // namespace XmlPlugin
