#include "xmlproxy/XmlAssert.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
TEST(XmlAssertDeathTest, TellsConditionSourceAndLine)
{
    EXPECT_EXIT(wideAssert(L"i_Count > 0", L"./folder/Source", 24), testing::KilledBySignal(SIGABRT),
                "^Assertion failed: i_Count > 0, file ./folder/Source, line 24\n$");
}

TEST(XmlAssertDeathTest, WritesUtf8)
{
    EXPECT_EXIT(wideAssert(L"\u00E9", nullptr, 0), testing::KilledBySignal(SIGABRT),
                "Assertion failed: \xC3\xA9, file , line 0");
}
#endif
