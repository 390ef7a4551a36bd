#include "pluginsdk/String.h"

#include <gtest/gtest.h>

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
