#include "compile/XPathCharacters.h"

#include <gtest/gtest.h>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/regx/RegularExpression.hpp>

namespace XmlPlugin
{
namespace
{

/// The parser library's own tables of the second edition are those of its regular expressions:
/// \i is a letter, "_" or ":", \c any name character.
class XPathCharactersTest : public testing::Test
{
protected:
    static void SetUpTestSuite() { xercesc::XMLPlatformUtils::Initialize(); }
    static void TearDownTestSuite() { xercesc::XMLPlatformUtils::Terminate(); }

    static bool matches(const xercesc::RegularExpression& i_Expression, char16_t i_Char)
    {
        const char16_t text[] = {i_Char, 0};
        return i_Expression.matches(text);
    }
};

TEST_F(XPathCharactersTest, letters_are_those_of_the_parser_library)
{
    const xercesc::RegularExpression initial(u"\\i", u"X");
    for (char16_t unit = 1; unit != 0xFFFF; ++unit)
    {
        const bool expected = unit != u'_' && unit != u':' && matches(initial, unit);
        ASSERT_EQ(expected, isLetter(static_cast<wchar_t>(unit))) << std::hex << static_cast<unsigned>(unit);
    }
}

TEST_F(XPathCharactersTest, name_characters_are_those_of_the_parser_library)
{
    const xercesc::RegularExpression name(u"\\c", u"X");
    for (char16_t unit = 1; unit != 0xFFFF; ++unit)
    {
        const wchar_t wide = static_cast<wchar_t>(unit);
        const bool isPunctuation = unit == u'.' || unit == u'-' || unit == u'_' || unit == u':';
        const bool actual =
            isPunctuation || isLetter(wide) || isDigit(wide) || isCombiningChar(wide) || isExtender(wide);
        ASSERT_EQ(matches(name, unit), actual) << std::hex << static_cast<unsigned>(unit);
    }
}

TEST_F(XPathCharactersTest, classes_do_not_overlap)
{
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit)
    {
        const wchar_t wide = static_cast<wchar_t>(unit);
        const int classes = isLetter(wide) + isDigit(wide) + isCombiningChar(wide) + isExtender(wide);
        ASSERT_LE(classes, 1) << std::hex << unit;
    }
}

struct CharacterRow
{
    const char* name;
    wchar_t unit;
    bool letter;
    bool ideographic;
    bool digit;
};

class XPathCharacterRows : public testing::TestWithParam<CharacterRow>
{
};

TEST_P(XPathCharacterRows, belongs_to_its_classes)
{
    const CharacterRow& row = GetParam();
    EXPECT_EQ(row.letter, isLetter(row.unit));
    EXPECT_EQ(row.ideographic, isIdeographic(row.unit));
    EXPECT_EQ(row.digit, isDigit(row.unit));
}

constexpr CharacterRow s_Rows[] = {
    {"before_A", L'@', false, false, false},
    {"capital_A", L'A', true, false, false},
    {"capital_Z", L'Z', true, false, false},
    {"underscore", L'_', false, false, false},
    {"null", L'\0', false, false, false},
    {"digit_0", L'0', false, false, true},
    {"arabic_indic_digit", L'\x0660', false, false, true},
    {"umlaut", L'\x00E4', true, false, false},
    {"multiplication_sign", L'\x00D7', false, false, false},
    {"first_ideograph", L'\x4E00', true, true, false},
    {"last_ideograph", L'\x9FA5', true, true, false},
    {"behind_last_ideograph", L'\x9FA6', false, false, false},
    {"ideographic_zero", L'\x3007', true, true, false},
    {"last_hangul_syllable", L'\xD7A3', true, false, false},
    {"surrogate", L'\xD83D', false, false, false},
};

INSTANTIATE_TEST_SUITE_P(Rows, XPathCharacterRows, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });

} // namespace
} // namespace XmlPlugin
