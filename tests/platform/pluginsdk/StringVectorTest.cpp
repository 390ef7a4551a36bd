#include "pluginsdk/StringVector.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

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

TEST(PluginStringVector, CopiesAreIndependent)
{
    PluginSDK::StringVector texts;
    const PluginSDK::StringVector copyOfNothing(texts);
    texts.addString(L"a");
    PluginSDK::StringVector copy(texts);
    texts.addString(L"b");
    EXPECT_EQ(copyOfNothing.count(), 0U);
    ASSERT_EQ(copy.count(), 1U);
    EXPECT_STREQ(copy.get(0), L"a");
    copy = texts;
    texts.removeAll();
    ASSERT_EQ(copy.count(), 2U);
    EXPECT_STREQ(copy.get(1), L"b");
}

TEST(PluginStringVector, MovesLeaveTheEmptyList)
{
    PluginSDK::StringVector texts;
    texts.addString(L"a");
    PluginSDK::StringVector taken(std::move(texts));
    ASSERT_EQ(taken.count(), 1U);
    EXPECT_EQ(texts.count(), 0U); // NOLINT(bugprone-use-after-move): that is what is asked
    EXPECT_EQ(texts.get(0), nullptr);
    texts.addString(L"b");
    taken = std::move(texts);
    ASSERT_EQ(taken.count(), 1U);
    EXPECT_STREQ(taken.get(0), L"b");
    EXPECT_EQ(texts.count(), 0U); // NOLINT(bugprone-use-after-move)
}

/// Hosts and plug-ins that were built with different libraries agree on the object.
TEST(PluginStringVector, IsAsLargeAsAPointer)
{
    static_assert(sizeof(PluginSDK::StringVector) == sizeof(void*));
    static_assert(std::is_standard_layout_v<PluginSDK::StringVector>);
}
