#include "xmlproxy/XercesMemory.h"

#include <gtest/gtest.h>

#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

namespace
{

class XercesMemoryTest : public testing::Test
{
protected:
    XercesMemoryTest() { xercesc::XMLPlatformUtils::Initialize(); }
    ~XercesMemoryTest() override { xercesc::XMLPlatformUtils::Terminate(); }
};

// What is not given back, or given back twice, shows under the sanitizers.
TEST_F(XercesMemoryTest, TakesMemoryBackInAnyOrderAndTheRestAtItsEnd)
{
    for (const std::vector<int>& order : {std::vector<int>{0, 1, 2}, {2, 1, 0}, {1, 0, 2}, {1}, {0}, {2}, {}})
    {
        XercesMemory memory;
        void* blocks[3];
        for (void*& pBlock : blocks)
        {
            pBlock = memory.allocate(100);
            EXPECT_EQ(0U, reinterpret_cast<std::uintptr_t>(pBlock) % alignof(std::max_align_t));
            std::memset(pBlock, 0xFF, 100);
        }
        for (const int index : order)
        {
            memory.deallocate(blocks[index]);
        }
    }
}

TEST_F(XercesMemoryTest, NothingCanBeTakenBack)
{
    XercesMemory memory;
    memory.deallocate(nullptr);
    memory.deallocate(memory.allocate(0));
}

TEST_F(XercesMemoryTest, WhatCannotBeHadIsTheLibrarysException)
{
    XercesMemory memory;
    EXPECT_THROW(memory.allocate(std::numeric_limits<XMLSize_t>::max()), xercesc::OutOfMemoryException);
}

TEST_F(XercesMemoryTest, ExceptionsUseTheDefaultMemory)
{
    XercesMemory memory;
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgMemoryManager, memory.getExceptionMemoryManager());
}

} // namespace
