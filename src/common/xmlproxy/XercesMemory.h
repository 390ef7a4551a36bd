#pragma once

#include <xercesc/framework/MemoryManager.hpp>

class XmlExpansionBudget;

/// The memory of one parse: the library's default memory, plus a list of the blocks in use.
///
/// The library does not free everything if memory runs out in the middle of its work, nor after an external DTD subset.
/// The destructor frees what is left.
///
/// If the parse has a budget, each request is reported to it; see `XmlExpansionBudget`.
///
/// Ownership: owns what it has allocated; the budget is not owned. Must outlive the library's parser and everything
/// that the parser has created. The library must stay initialised longer than this object lives. Threads: one at a
/// time. Tested by: tests/common/xmlproxy/XercesMemoryTest.cpp
class XercesMemory final : public xercesc::MemoryManager
{
public:
    explicit XercesMemory(XmlExpansionBudget* i_pBudget = nullptr) noexcept : m_pBudget(i_pBudget) {}
    ~XercesMemory() override;

    /// Never null. Throws the library's `OutOfMemoryException`, and `XmlExpansionBudget::Exceeded` for a large piece if
    /// the budget is exceeded.
    void* allocate(XMLSize_t i_Size) override;
    void deallocate(void* i_pMemory) override;
    /// The default memory, because an exception may outlive the parse.
    xercesc::MemoryManager* getExceptionMemoryManager() override;

private:
    struct Block;

    Block* m_pFirst = nullptr;
    XmlExpansionBudget* m_pBudget;
};
