#include "xmlproxy/XmlText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

using namespace std::literals;

TEST(XmlText, UnitsEndWithANull)
{
    const String text(L"text");
    EXPECT_STREQ(unitsOf(text), L"text");
    EXPECT_STREQ(unitsOf(String()), L"");
}

TEST(XmlText, ViewsReachPastNullCharacters)
{
    const String text = copyOf(L"a\0b"sv);
    EXPECT_EQ(text.length(), 3);
    EXPECT_EQ(viewOf(text), L"a\0b"sv);
    EXPECT_EQ(viewOf(String()), L""sv);
}

TEST(XmlText, SameTextsHaveTheSameUnits)
{
    EXPECT_TRUE(isSame(String(L"a"), String(L"a")));
    EXPECT_FALSE(isSame(String(L"a"), String(L"A")));
    EXPECT_FALSE(isSame(String(L"a"), copyOf(L"a\0"sv)));
    EXPECT_TRUE(isSame(String(), String(L"")));
}

TEST(XmlText, TakesUtf16UnitByUnit)
{
    const std::u16string units{u'a', char16_t{0xD83D}, char16_t{0xDE00}, u'\0', char16_t{0xD800}};
    const String text = fromUtf16(units.data(), units.size());
    ASSERT_EQ(text.length(), 5);
    for (int i = 0; i < text.length(); ++i)
    {
        EXPECT_EQ(static_cast<char16_t>(text.charAt(i)), units[static_cast<std::size_t>(i)]) << i;
    }
}
