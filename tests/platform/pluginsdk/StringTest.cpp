#include "pluginsdk/String.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

TEST(PluginString, HoldsWhatItIsAssigned)
{
    PluginSDK::String text;
    EXPECT_STREQ(text.c_str(), L"");
    EXPECT_EQ(text.length(), 0U);
    text = L"value";
    EXPECT_STREQ(text.c_str(), L"value");
    EXPECT_EQ(text.length(), 5U);
    text = L"";
    EXPECT_EQ(text.length(), 0U);
}

TEST(PluginString, NullIsEmpty)
{
    PluginSDK::String text;
    text = L"value";
    text = nullptr;
    EXPECT_STREQ(text.c_str(), L"");
}

TEST(PluginString, KeepsUnitsAsTheyAre)
{
    const wchar_t units[] = {static_cast<wchar_t>(0xD83D), static_cast<wchar_t>(0xDE00), L'\0'};
    PluginSDK::String text;
    text = units;
    EXPECT_EQ(text.length(), 2U);
    EXPECT_STREQ(text.c_str(), units);
}

TEST(PluginString, TakesPartOfItself)
{
    PluginSDK::String text;
    text = L"a value that is longer than any small buffer";
    text = text.c_str() + 2;
    EXPECT_STREQ(text.c_str(), L"value that is longer than any small buffer");
}

TEST(PluginString, CopiesAreIndependent)
{
    PluginSDK::String text;
    const PluginSDK::String copyOfNothing(text);
    text = L"value";
    PluginSDK::String copy(text);
    text = L"other";
    EXPECT_STREQ(copyOfNothing.c_str(), L"");
    EXPECT_STREQ(copy.c_str(), L"value");
    copy = text;
    text = L"";
    EXPECT_STREQ(copy.c_str(), L"other");
    const PluginSDK::String& self = copy;
    copy = self;
    EXPECT_STREQ(copy.c_str(), L"other");
}

TEST(PluginString, MovesLeaveTheEmptyText)
{
    PluginSDK::String text;
    text = L"value";
    PluginSDK::String taken(std::move(text));
    EXPECT_STREQ(taken.c_str(), L"value");
    EXPECT_STREQ(text.c_str(), L""); // NOLINT(bugprone-use-after-move): that is what is asked
    text = L"again";
    taken = std::move(text);
    EXPECT_STREQ(taken.c_str(), L"again");
    EXPECT_EQ(text.length(), 0U); // NOLINT(bugprone-use-after-move)
}

/// Hosts and plug-ins that were built with different libraries agree on the object.
TEST(PluginString, IsAsLargeAsAPointer)
{
    static_assert(sizeof(PluginSDK::String) == sizeof(void*));
    static_assert(std::is_standard_layout_v<PluginSDK::String>);
}
