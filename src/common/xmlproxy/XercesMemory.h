#pragma once

#include <xercesc/framework/MemoryManager.hpp>

/// The memory of one parse: the library's default memory, and a list of what is in use.
///
/// The library does not give everything back when memory runs out in the middle of its work, nor
/// after an external DTD subset. What is left at the end goes back here.
///
/// Ownership: owns what it has allocated. Outlives the library's parser and what that has made;
/// the library outlives it.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XercesMemoryTest.cpp
class XercesMemory final : public xercesc::MemoryManager
{
public:
    XercesMemory() = default;
    ~XercesMemory() override;

    /// Throws the library's `OutOfMemoryException`.
    void* allocate(XMLSize_t i_Size) override;
    void deallocate(void* i_pMemory) override;
    /// The default memory: an exception may live longer than the parse.
    xercesc::MemoryManager* getExceptionMemoryManager() override;

private:
    struct Block;

    Block* m_pFirst = nullptr;
};
