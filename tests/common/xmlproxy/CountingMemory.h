#pragma once

#include "xmlproxy/ParserLibrary.h"

#include <xercesc/framework/MemoryManager.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <new>

/// The default memory of the parser library while it is held initialised by one of these; counts
/// requests, and the bytes that are in use at a time.
class CountingMemory final : public xercesc::MemoryManager
{
public:
    CountingMemory()
    {
        ParserLibrary::release(); // the parses of other tests have started it
        xercesc::XMLPlatformUtils::Initialize("en_US", nullptr, nullptr, this);
    }
    ~CountingMemory() override
    {
        ParserLibrary::release();
        xercesc::XMLPlatformUtils::Terminate();
    }
    CountingMemory(const CountingMemory&) = delete;
    CountingMemory& operator=(const CountingMemory&) = delete;

    void* allocate(XMLSize_t i_Size) override
    {
        auto* pSize = static_cast<std::size_t*>(std::malloc(s_Head + i_Size));
        if (!pSize)
        {
            throw xercesc::OutOfMemoryException();
        }
        *pSize = i_Size;
        ++m_Requests;
        m_Live += i_Size;
        m_Peak = std::max(m_Peak, m_Live);
        return reinterpret_cast<std::byte*>(pSize) + s_Head;
    }
    void deallocate(void* i_pMemory) override
    {
        if (i_pMemory)
        {
            auto* pSize = reinterpret_cast<std::size_t*>(static_cast<std::byte*>(i_pMemory) - s_Head);
            m_Live -= *pSize;
            std::free(pSize);
        }
    }
    xercesc::MemoryManager* getExceptionMemoryManager() override { return this; }

    std::size_t requests() const noexcept { return m_Requests; }
    /// Most bytes in use at a time.
    std::size_t peak() const noexcept { return m_Peak; }
    std::size_t live() const noexcept { return m_Live; }

private:
    static constexpr std::size_t s_Head = alignof(std::max_align_t);

    std::size_t m_Requests = 0;
    std::size_t m_Live = 0;
    std::size_t m_Peak = 0;
};
