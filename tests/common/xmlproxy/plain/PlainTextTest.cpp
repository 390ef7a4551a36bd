#include "xmlproxy/plain/PlainText.h"

#include <gtest/gtest.h>

#include <xercesc/util/XMLChar.hpp>

#include <array>
#include <string>

namespace
{

std::string utf8(char32_t i_Code)
{
    char16_t units[2] = {};
    char16_t* pEnd = units;
    PlainText::put(i_Code, pEnd);
    if (i_Code < 0x80)
    {
        return {static_cast<char>(i_Code)};
    }
    const auto tail = [i_Code](unsigned i_Shift) { return static_cast<char>(0x80U | (i_Code >> i_Shift & 0x3FU)); };
    if (i_Code < 0x800)
    {
        return {static_cast<char>(0xC0U | i_Code >> 6U), tail(0)};
    }
    if (i_Code < 0x10000)
    {
        return {static_cast<char>(0xE0U | i_Code >> 12U), tail(6), tail(0)};
    }
    return {static_cast<char>(0xF0U | i_Code >> 18U), tail(12), tail(6), tail(0)};
}

/// Every character up to U+FFFF beside the parser library's table; and a few beyond.
TEST(PlainText, CharactersAreThoseOfTheParserLibrary)
{
    for (char32_t code = 0; code <= 0x10FFFF; code += code < 0x10000 ? 1 : 0x3FF)
    {
        const std::string bytes = utf8(code) + std::string(4, '\0');
        const bool isSurrogate = code >= 0xD800 && code <= 0xDFFF;
        const bool isLeftOut = code == 0x85 || code == 0x2028;
        const bool isExpected =
            code > 0xFFFF || (!isSurrogate && !isLeftOut && xercesc::XMLChar1_0::isXMLChar(static_cast<XMLCh>(code)));
        const PlainText::Character character = PlainText::characterAt(bytes.data());
        ASSERT_EQ(isExpected ? bytes.size() - 4 : 0U, character.length) << std::hex << static_cast<unsigned>(code);
        ASSERT_EQ(isExpected ? code : 0U, character.code);
        if (!isExpected)
        {
            continue;
        }
        ASSERT_EQ(bytes.size() - 4, PlainText::lengthAt(bytes[0]));
        const std::size_t surplus = bytes.size() - 4 - (code > 0xFFFF ? 2 : 1);
        ASSERT_EQ(surplus, PlainText::surplusOf(character));
        ASSERT_EQ(surplus, PlainText::surplusOf(bytes.substr(0, bytes.size() - 4)));
    }
}

TEST(PlainText, NamesAreThoseOfTheParserLibrary)
{
    for (char32_t code = 1; code <= 0xFFFF; ++code)
    {
        const auto unit = static_cast<XMLCh>(code);
        const bool isLeftOut = (code >= 0xD800 && code <= 0xDFFF) || code == U':';
        ASSERT_EQ(!isLeftOut && xercesc::XMLChar1_0::isFirstNameChar(unit), PlainText::isName(utf8(code)))
            << std::hex << static_cast<unsigned>(code);
        ASSERT_EQ(!isLeftOut && xercesc::XMLChar1_0::isNameChar(unit), PlainText::isName("a" + utf8(code)))
            << std::hex << static_cast<unsigned>(code);
        if (code < 0x80)
        {
            ASSERT_EQ(xercesc::XMLChar1_0::isNameChar(unit), PlainText::isNameByte(static_cast<char>(code)));
        }
    }
}

TEST(PlainText, SearchesStopAtTheFirstPlaceOfAll)
{
    for (std::size_t place = 0; place < 40; ++place)
    {
        for (const char stop : {'<', '"', '\0', '\n', '\x1f', '\x80', '\xff'})
        {
            std::string text(60, 'a');
            text.resize(100, '\0');
            text[place] = stop;
            ASSERT_EQ(text.data() + place, PlainText::find(text.data(), '<', '"')) << place << ' ' << int{stop};
            ASSERT_EQ(text.data() + (stop == '"' ? 60 : place), PlainText::find(text.data(), '<'));
        }
    }
}

struct ReferenceRow
{
    const char* text;
    char32_t code;
    std::size_t length;
};

const ReferenceRow s_References[] = {
    {"&lt;", U'<', 4},
    {"&gt;x", U'>', 4},
    {"&amp;", U'&', 5},
    {"&quot;", U'"', 6},
    {"&apos;;", U'\'', 6},
    {"&#65;", U'A', 5},
    {"&#x4a;", U'J', 6},
    {"&#x4A;", U'J', 6},
    {"&#1114111;", 0x10FFFF, 10},
    {"&#xFFFD;", 0xFFFD, 8},
    {"&#00000000065;", U'A', 14},
    {"&#000000000065;", U'A', 15},
    {"&#0000000000065;", U'A', 16},
    {"&#00000000000065;", 0, 0},
    {"&#xFFFE;", 0, 0},
    {"&#xDFFF;", 0, 0},
    {"&#1114112;", 0, 0},
    {"&#99999999999;", 0, 0},
    {"&#;", 0, 0},
    {"&#x;", 0, 0},
    {"&#x", 0, 0},
    {"&#65", 0, 0},
    {"&#a;", 0, 0},
    {"&#xg;", 0, 0},
    {"&LT;", 0, 0},
    {"&l;", 0, 0},
    {"&lt", 0, 0},
    {"&", 0, 0},
    {"&;", 0, 0},
    {"& lt;", 0, 0},
};

TEST(PlainText, ReferencesAreRead)
{
    for (const ReferenceRow& row : s_References)
    {
        const PlainText::Character character =
            PlainText::referenceAt((row.text + std::string(PlainText::s_LongestReference, '\0')).c_str());
        EXPECT_EQ(row.code, character.code) << row.text;
        EXPECT_EQ(row.length, character.length) << row.text;
    }
}

} // namespace
