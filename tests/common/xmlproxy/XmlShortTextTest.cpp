#include "xmlproxy/XmlShortText.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

TEST(XmlShortText, IsWhereItsBytesAre)
{
    const std::string letters = "abcdefghijklmnopqrstuvwxyz";
    for (std::size_t length = 1; length <= XmlShortText::s_Most; ++length)
    {
        const XmlShortText text(letters.substr(0, length));
        EXPECT_EQ(length, text.length());
        EXPECT_TRUE(text.isAt(letters.data()));
        for (std::size_t place = 0; place < length; ++place)
        {
            std::string other = letters;
            other[place] = '\0';
            EXPECT_FALSE(text.isAt(other.data())) << place;
        }
    }
}

TEST(XmlShortText, IsNowhereWhenItIsTooLongOrEmpty)
{
    const std::string letters = "abcdefghijklmnopqrstuvwxyz";
    for (const std::string& text : {letters.substr(0, 17), letters, std::string()})
    {
        EXPECT_EQ(0U, XmlShortText(text).length());
        EXPECT_FALSE(XmlShortText(text).isAt(letters.data()));
        EXPECT_FALSE(XmlShortText(text).isAt(std::string(16, '\0').data()));
    }
}

} // namespace
