#pragma once

#include <xercesc/framework/MemoryManager.hpp>

class XmlExpansionBudget;

/// The memory of one parse: the library's default memory, and a list of what is in use.
///
/// The library does not give everything back when memory runs out in the middle of its work, nor
/// after an external DTD subset. What is left at the end goes back here.
///
/// The parse's budget, if there is one, is asked to look at each request: see there.
///
/// Ownership: owns what it has allocated; the budget is not owned. Outlives the library's parser and what that has
/// made; the library outlives it. Threads: one at a time. Tested by: tests/common/xmlproxy/XercesMemoryTest.cpp
class XercesMemory final : public xercesc::MemoryManager
{
public:
    explicit XercesMemory(XmlExpansionBudget* i_pBudget = nullptr) noexcept : m_pBudget(i_pBudget) {}
    ~XercesMemory() override;

    /// Throws the library's `OutOfMemoryException`, and `XmlParseEnd` for a large
    /// piece when the budget is exceeded.
    void* allocate(XMLSize_t i_Size) override;
    void deallocate(void* i_pMemory) override;
    /// The default memory: an exception may live longer than the parse.
    xercesc::MemoryManager* getExceptionMemoryManager() override;

private:
    struct Block;

    Block* m_pFirst = nullptr;
    XmlExpansionBudget* m_pBudget;
};
