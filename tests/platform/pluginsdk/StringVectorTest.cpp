#include "pluginsdk/StringVector.h"

#include <gtest/gtest.h>

TEST(PluginStringVector, KeepsItsTextsInOrder)
{
    PluginSDK::StringVector texts;
    EXPECT_EQ(texts.count(), 0U);
    EXPECT_EQ(texts.addString(L"b"), 0);
    EXPECT_EQ(texts.addString(L""), 0);
    EXPECT_EQ(texts.addString(L"a"), 0);
    ASSERT_EQ(texts.count(), 3U);
    EXPECT_STREQ(texts.get(0), L"b");
    EXPECT_STREQ(texts.get(1), L"");
    EXPECT_STREQ(texts.get(2), L"a");
    EXPECT_EQ(texts.get(3), nullptr);
}

TEST(PluginStringVector, RefusesNull)
{
    PluginSDK::StringVector texts;
    EXPECT_EQ(texts.addString(nullptr), -101);
    EXPECT_EQ(texts.count(), 0U);
}

TEST(PluginStringVector, RemoveAllLeavesNothing)
{
    PluginSDK::StringVector texts;
    texts.removeAll();
    texts.addString(L"a");
    texts.removeAll();
    EXPECT_EQ(texts.count(), 0U);
    EXPECT_EQ(texts.get(0), nullptr);
}

TEST(PluginStringVector, TakesItsOwnTexts)
{
    PluginSDK::StringVector texts;
    texts.addString(L"first");
    for (int i = 0; i < 100; ++i)
    {
        ASSERT_EQ(texts.addString(texts.get(0)), 0);
    }
    EXPECT_STREQ(texts.get(100), L"first");
}
