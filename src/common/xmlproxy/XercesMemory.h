#pragma once

#include <xercesc/framework/MemoryManager.hpp>

#include <cstddef>
#include <memory>

class XmlExpansionBudget;

/// The memory of one parse: the library's default memory, plus a list of the blocks in use.
///
/// The library does not free everything if memory runs out in the middle of its work, nor after an external DTD subset.
/// The destructor frees what is left.
///
/// Some destructors of the library allocate memory, and an exception from one of them would end the process. So if
/// memory runs out, small pieces come from a reserve; after the first time, all pieces do. The parse then goes on to a
/// point where it can be ended. The reserve is large enough to destroy all content models that were created.
///
/// If the parse has a budget, each request is reported to it; see `XmlExpansionBudget`.
///
/// Ownership: owns what it has allocated; the budget is not owned. Must outlive the library's parser and everything
/// that the parser has created. The library must stay initialised longer than this object lives.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XercesMemoryTest.cpp
class XercesMemory final : public xercesc::MemoryManager
{
public:
    explicit XercesMemory(XmlExpansionBudget* i_pBudget = nullptr);
    ~XercesMemory() override;

    /// Never null. Throws the library's `OutOfMemoryException` if the reserve does not help, and `XmlParseEnd` for a
    /// large piece if the budget is exceeded.
    void* allocate(XMLSize_t i_Size) override;
    void deallocate(void* i_pMemory) override;
    /// The default memory, because an exception may outlive the parse.
    xercesc::MemoryManager* getExceptionMemoryManager() override;

    /// Whether memory has run out. The parse must then end.
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
    std::size_t m_Models = 0; ///< nodes of content models created so far
    bool m_HasRunOut = false;
};
