#pragma once

#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>
#include <memory>

class XmlExpansionBudget;

/// The memory of one parse: the library's default memory, and a list of what is in use.
///
/// The library does not give everything back when memory runs out in the middle of its work, nor
/// after an external DTD subset. What is left at the end goes back here.
///
/// Some destructors of the library allocate, and an exception out of them would end the process. So
/// when memory runs out, pieces come from a reserve as long as they are small, or all of them after
/// that has happened once: the parse goes on to where it can be ended. The reserve is enough to
/// destroy all content models that were made.
///
/// The parse's budget, if there is one, is asked to look at each request: see there.
///
/// Ownership: owns what it has allocated; the budget is not owned. Outlives the library's parser and what that has
/// made; the library outlives it. Threads: one at a time. Tested by: tests/common/xmlproxy/XercesMemoryTest.cpp
class XercesMemory final : public xercesc::MemoryManager
{
public:
    explicit XercesMemory(XmlExpansionBudget* i_pBudget = nullptr);
    ~XercesMemory() override;

    /// Throws the library's `OutOfMemoryException` where the reserve does not help, and `XmlParseEnd` for a large
    /// piece when the budget is exceeded.
    void* allocate(XMLSize_t i_Size) override;
    void deallocate(void* i_pMemory) override;
    /// The default memory: an exception may live longer than the parse.
    xercesc::MemoryManager* getExceptionMemoryManager() override;

    /// Whether memory has run out; the parse must end then.
    bool hasRunOut() const noexcept { return m_HasRunOut; }

private:
    struct Block;

    void* allocateBlock(XMLSize_t i_Size);
    void* takeFromReserve(XMLSize_t i_Size) noexcept;
    bool isOfReserve(const Block* i_pBlock) const noexcept;
    void growReserve();

    Block* m_pFirst = nullptr;
    XmlExpansionBudget* m_pBudget;
    std::unique_ptr<std::byte[]> m_pReserve;
    std::size_t m_ReserveBytes = 0;
    std::size_t m_ReserveUsed = 0;
    std::size_t m_Models = 0; ///< nodes of content models made so far
    bool m_HasRunOut = false;
};
