#include "base/String.h"

#include <gtest/gtest.h>

#include <climits>
#include <ostream>
#include <string>
#include <vector>

namespace
{

using Units = std::vector<unsigned>;

Units unitsOf(const String& i_Text)
{
    Units result;
    for (int i = 0; i < i_Text.length(); ++i)
    {
        result.push_back(static_cast<unsigned>(i_Text.charAt(i)));
    }
    return result;
}

String fromUnits(const std::u16string& i_Units)
{
    const std::wstring units(i_Units.begin(), i_Units.end());
    return String(units.data(), units.size());
}

/// Names a table row in the output of the test runner.
template <class TRow>
std::string rowName(const testing::TestParamInfo<TRow>& i_Info)
{
    return i_Info.param.name;
}

} // namespace

// UTF-8 in

namespace
{

struct DecodeRow
{
    const char* name;
    std::string bytes;
    Units expected;
};

void PrintTo(const DecodeRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class StringDecode : public testing::TestWithParam<DecodeRow>
{
};

} // namespace

TEST_P(StringDecode, GivesTheseUnits)
{
    const DecodeRow& row = GetParam();
    EXPECT_EQ(unitsOf(String(row.bytes.data(), row.bytes.size())), row.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Utf8, StringDecode,
    testing::Values(
        // Whole characters, the first and last of each length
        DecodeRow{"empty", "", {}}, DecodeRow{"ascii", "aZ~", {'a', 'Z', '~'}},
        DecodeRow{"null_inside", std::string("a\0b", 3), {'a', 0, 'b'}}, DecodeRow{"last_of_1", "\x7F", {0x7F}},
        DecodeRow{"first_of_2", "\xC2\x80", {0x80}}, DecodeRow{"last_of_2", "\xDF\xBF", {0x7FF}},
        DecodeRow{"first_of_3", "\xE0\xA0\x80", {0x800}}, DecodeRow{"before_surrogates", "\xED\x9F\xBF", {0xD7FF}},
        DecodeRow{"after_surrogates", "\xEE\x80\x80", {0xE000}}, DecodeRow{"last_of_3", "\xEF\xBF\xBF", {0xFFFF}},
        DecodeRow{"first_of_4", "\xF0\x90\x80\x80", {0xD800, 0xDC00}},
        DecodeRow{"emoji", "\xF0\x9F\x98\x80", {0xD83D, 0xDE00}},
        DecodeRow{"last_of_4", "\xF4\x8F\xBF\xBF", {0xDBFF, 0xDFFF}},
        // Malformed: as many bytes as fit together become one U+FFFD
        DecodeRow{"lone_follower", "\x80", {0xFFFD}}, DecodeRow{"byte_FE", "\xFE", {0xFFFD}},
        DecodeRow{"byte_FF_between",
                  "a\xFF"
                  "b",
                  {'a', 0xFFFD, 'b'}},
        DecodeRow{"overlong_of_2", "\xC0\x80", {0xFFFD, 0xFFFD}},
        DecodeRow{"overlong_of_2_last", "\xC1\xBF", {0xFFFD, 0xFFFD}},
        DecodeRow{"overlong_of_3", "\xE0\x9F\xBF", {0xFFFD, 0xFFFD, 0xFFFD}},
        DecodeRow{"overlong_of_4", "\xF0\x8F\xBF\xBF", {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}},
        DecodeRow{"encoded_high_surrogate", "\xED\xA0\x80", {0xFFFD, 0xFFFD, 0xFFFD}},
        DecodeRow{"encoded_low_surrogate", "\xED\xBF\xBF", {0xFFFD, 0xFFFD, 0xFFFD}},
        DecodeRow{"above_last", "\xF4\x90\x80\x80", {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}},
        DecodeRow{"lead_F5", "\xF5\x80\x80\x80", {0xFFFD, 0xFFFD, 0xFFFD, 0xFFFD}},
        DecodeRow{"cut_2_at_end", "a\xC3", {'a', 0xFFFD}}, DecodeRow{"cut_3_at_end", "\xE2\x82", {0xFFFD}},
        DecodeRow{"cut_4_at_end", "\xF0\x9F\x98", {0xFFFD}},
        DecodeRow{"cut_3_before_letter", "\xE2\x82z", {0xFFFD, 'z'}},
        DecodeRow{"cut_3_before_lead", "\xE2\x82\xC3\xA9", {0xFFFD, 0xE9}}),
    rowName<DecodeRow>);

// UTF-8 out

namespace
{

struct EncodeRow
{
    const char* name;
    std::u16string units;
    std::string expected;
};

void PrintTo(const EncodeRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class StringEncode : public testing::TestWithParam<EncodeRow>
{
};

} // namespace

TEST_P(StringEncode, GivesTheseBytes)
{
    EXPECT_EQ(fromUnits(GetParam().units).toNarrow(), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Utf8, StringEncode,
    testing::Values(EncodeRow{"empty", u"", ""}, EncodeRow{"ascii", u"a~\x7F", "a~\x7F"},
                    EncodeRow{"first_of_2", u"\u0080", "\xC2\x80"}, EncodeRow{"last_of_2", u"\u07FF", "\xDF\xBF"},
                    EncodeRow{"first_of_3", u"\u0800", "\xE0\xA0\x80"},
                    EncodeRow{"last_of_3", u"\uFFFF", "\xEF\xBF\xBF"},
                    EncodeRow{"first_pair", {0xD800, 0xDC00}, "\xF0\x90\x80\x80"},
                    EncodeRow{"last_pair", {0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
                    EncodeRow{"high_at_end", {'a', 0xD83D}, "a\xEF\xBF\xBD"},
                    EncodeRow{"high_before_letter",
                              {0xD83D, 'a'},
                              "\xEF\xBF\xBD"
                              "a"},
                    EncodeRow{"low_alone", {0xDE00}, "\xEF\xBF\xBD"},
                    EncodeRow{"low_before_high", {0xDE00, 0xD83D}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
                    EncodeRow{"two_highs_and_low", {0xD83D, 0xD83D, 0xDE00}, "\xEF\xBF\xBD\xF0\x9F\x98\x80"}),
    rowName<EncodeRow>);

// Construction

TEST(String, DefaultIsEmpty)
{
    const String text;
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(text.length(), 0);
    EXPECT_STREQ(text.c_str(), L"");
}

TEST(String, NullIsEmpty)
{
    EXPECT_EQ(String(static_cast<const wchar_t*>(nullptr)), String());
    EXPECT_EQ(String(static_cast<const char*>(nullptr)), String());
    EXPECT_EQ(String(static_cast<const wchar_t*>(nullptr), 0), String());
    EXPECT_EQ(String(static_cast<const char*>(nullptr), 0), String());
}

TEST(String, WideTextAboveTheBasicPlaneIsSplit)
{
    EXPECT_EQ(unitsOf(String(L"a\U0001F600b")), (Units{'a', 0xD83D, 0xDE00, 'b'}));
    EXPECT_EQ(unitsOf(String(L"\uFFFF\U00010000\U0010FFFF")), (Units{0xFFFF, 0xD800, 0xDC00, 0xDBFF, 0xDFFF}));
}

TEST(String, WideTextOfUnitsStaysAsItIs)
{
    const wchar_t units[] = {static_cast<wchar_t>(0xDE00), L'a', static_cast<wchar_t>(0xD83D), L'\0'};
    EXPECT_EQ(unitsOf(String(units)), (Units{0xDE00, 'a', 0xD83D}));
    EXPECT_EQ(unitsOf(String(String(L"\U0001F600").c_str())), (Units{0xD83D, 0xDE00}));
}

TEST(String, LengthCountsEvenNulls)
{
    EXPECT_EQ(unitsOf(String(L"a\0b", 3)), (Units{'a', 0, 'b'}));
    EXPECT_EQ(unitsOf(String(L"abc", 2)), (Units{'a', 'b'}));
}

#if !defined(_WIN32)
TEST(String, WideValuesThatAreNoCharactersBecomeReplacements)
{
    const wchar_t values[] = {0x110000, 0x7FFFFFFF, static_cast<wchar_t>(0xFFFFFFFFU), 0};
    EXPECT_EQ(unitsOf(String(values)), (Units{0xFFFD, 0xFFFD, 0xFFFD}));
}

TEST(String, AppendedCharacterAboveTheBasicPlaneIsSplit)
{
    String text(L"x");
    text += L'\U0001F600';
    EXPECT_EQ(unitsOf(text), (Units{'x', 0xD83D, 0xDE00}));
}
#endif

TEST(String, CopiesAreIndependent)
{
    String text(L"one");
    const String copy(text);
    text += L"!";
    EXPECT_EQ(copy, String(L"one"));
    EXPECT_EQ(text, String(L"one!"));
}

// Comparison

namespace
{

struct CompareRow
{
    const char* name;
    String left;
    String right;
    int exact;      ///< sign of compareTo
    int ignoreCase; ///< sign of compareTo that ignores case
};

void PrintTo(const CompareRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class StringCompare : public testing::TestWithParam<CompareRow>
{
};

} // namespace

int sign(int i_Value)
{
    return (i_Value > 0) - (i_Value < 0);
}

TEST_P(StringCompare, AllWaysAgree)
{
    const auto& [name, left, right, exact, ignoreCase] = GetParam();
    EXPECT_EQ(sign(left.compareTo(right)), exact);
    EXPECT_EQ(sign(right.compareTo(left)), -exact);
    EXPECT_EQ(sign(left.compareTo(right, 1)), ignoreCase);
    EXPECT_EQ(sign(right.compareTo(left, 1)), -ignoreCase);
    EXPECT_EQ(left == right, exact == 0);
    EXPECT_EQ(left < right, exact < 0);
    EXPECT_EQ(left > right, exact > 0);
    EXPECT_EQ(left.equalsIgnoreCase(right), ignoreCase == 0);
}

INSTANTIATE_TEST_SUITE_P(All, StringCompare,
                         testing::Values(CompareRow{"equal", L"abc", L"abc", 0, 0},
                                         CompareRow{"both_empty", L"", L"", 0, 0},
                                         CompareRow{"empty_is_first", L"", L"a", -1, -1},
                                         CompareRow{"prefix_is_first", L"ab", L"abc", -1, -1},
                                         CompareRow{"letter", L"abd", L"abc", 1, 1},
                                         CompareRow{"case_only", L"ABC", L"abc", -1, 0},
                                         CompareRow{"case_and_length", L"ABCD", L"abc", -1, 1},
                                         CompareRow{"no_case_outside_ascii", L"\u00C9", L"\u00E9", -1, -1},
                                         CompareRow{"neighbours_of_letters", L"@[", L"`{", -1, -1},
                                         CompareRow{"high_unit", L"\uFFFF", L"a", 1, 1},
                                         CompareRow{"pair_by_its_units", L"\U00010000", L"\uFFFF", -1, -1}),
                         rowName<CompareRow>);

// Searching

TEST(String, StartsAndEnds)
{
    const String text(L"abcab");
    EXPECT_TRUE(text.startsWith(L"abc"));
    EXPECT_TRUE(text.startsWith(L""));
    EXPECT_TRUE(text.startsWith(text));
    EXPECT_FALSE(text.startsWith(L"b"));
    EXPECT_FALSE(text.startsWith(L"abcabc"));
    EXPECT_TRUE(text.endsWith(L"cab"));
    EXPECT_TRUE(text.endsWith(L""));
    EXPECT_FALSE(text.endsWith(L"abc"));
    EXPECT_FALSE(text.endsWith(L"xabcab"));
    EXPECT_FALSE(String().startsWith(L"a"));
    EXPECT_TRUE(String().endsWith(L""));
}

namespace
{

struct IndexRow
{
    const char* name;
    const wchar_t* text;
    const wchar_t* wanted;
    int from;
    int expected;
};

void PrintTo(const IndexRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class StringIndexOf : public testing::TestWithParam<IndexRow>
{
};

} // namespace

TEST_P(StringIndexOf, FindsTheFirst)
{
    const IndexRow& row = GetParam();
    EXPECT_EQ(String(row.text).indexOf(String(row.wanted), row.from), row.expected);
    if (String(row.wanted).length() == 1)
    {
        EXPECT_EQ(String(row.text).indexOf(row.wanted[0], row.from), row.expected);
    }
}

INSTANTIATE_TEST_SUITE_P(
    All, StringIndexOf,
    testing::Values(IndexRow{"first", L"abcab", L"ab", 0, 0}, IndexRow{"from_its_place", L"abcab", L"ab", 3, 3},
                    IndexRow{"from_behind_the_first", L"abcab", L"ab", 1, 3},
                    IndexRow{"from_behind_the_last", L"abcab", L"ab", 4, -1},
                    IndexRow{"one_character", L"abcab", L"b", 2, 4}, IndexRow{"missing", L"abcab", L"x", 0, -1},
                    IndexRow{"negative_from", L"abcab", L"a", -7, 0}, IndexRow{"lowest_from", L"ab", L"b", INT_MIN, 1},
                    IndexRow{"from_past_the_end", L"ab", L"b", 3, -1},
                    IndexRow{"highest_from", L"ab", L"b", INT_MAX, -1},
                    IndexRow{"longer_than_the_text", L"ab", L"abc", 0, -1},
                    IndexRow{"empty_at_from", L"abc", L"", 2, 2}, IndexRow{"empty_at_the_end", L"abc", L"", 3, 3},
                    IndexRow{"empty_past_the_end", L"abc", L"", 4, -1}, IndexRow{"empty_in_empty", L"", L"", 0, 0},
                    IndexRow{"behind_a_pair", L"\U0001F600b", L"b", 0, 2}),
    rowName<IndexRow>);

TEST(String, LastIndexOf)
{
    const String text(L"abcab");
    EXPECT_EQ(text.lastIndexOf(L"ab"), 3);
    EXPECT_EQ(text.lastIndexOf(L"abc"), 0);
    EXPECT_EQ(text.lastIndexOf(L"x"), -1);
    EXPECT_EQ(text.lastIndexOf(L""), 5);
    EXPECT_EQ(text.lastIndexOf(L'b'), 4);
    EXPECT_EQ(text.lastIndexOf(L'x'), -1);
    EXPECT_EQ(String().lastIndexOf(L'x'), -1);
    EXPECT_EQ(String().lastIndexOf(L"x"), -1);
}

// Cutting

namespace
{

struct SubstringRow
{
    const char* name;
    const wchar_t* text;
    int begin;
    int end;
    const wchar_t* expected;
};

void PrintTo(const SubstringRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class StringSubstring : public testing::TestWithParam<SubstringRow>
{
};

} // namespace

TEST_P(StringSubstring, EndIsIncluded)
{
    const SubstringRow& row = GetParam();
    EXPECT_EQ(String(row.text).substring(row.begin, row.end), String(row.expected));
}

INSTANTIATE_TEST_SUITE_P(
    All, StringSubstring,
    testing::Values(
        SubstringRow{"inside", L"abcde", 1, 3, L"bcd"}, SubstringRow{"one", L"abcde", 2, 2, L"c"},
        SubstringRow{"whole", L"abcde", 0, 4, L"abcde"}, SubstringRow{"end_is_length", L"abcde", 1, 5, L"bcde"},
        SubstringRow{"end_far_past", L"abcde", 1, INT_MAX, L"bcde"},
        SubstringRow{"end_before_begin", L"abcde", 3, 2, L""}, SubstringRow{"negative_end", L"abcde", 0, -1, L""},
        SubstringRow{"both_negative", L"abcde", -3, -2, L""}, SubstringRow{"negative_begin", L"abcde", -3, 1, L"ab"},
        SubstringRow{"lowest_begin", L"abcde", INT_MIN, 0, L"a"}, SubstringRow{"begin_is_last", L"abcde", 4, 9, L"e"},
        SubstringRow{"begin_is_length", L"abcde", 5, 9, L""}, SubstringRow{"begin_past", L"abcde", 6, 9, L""},
        SubstringRow{"empty_text", L"", 0, 0, L""}),
    rowName<SubstringRow>);

TEST(String, SubstringToTheEnd)
{
    const String text(L"abc");
    EXPECT_EQ(text.substring(0), text);
    EXPECT_EQ(text.substring(2), String(L"c"));
    EXPECT_EQ(text.substring(3), String());
    EXPECT_EQ(text.substring(4), String());
    EXPECT_EQ(text.substring(-1), text);
    EXPECT_EQ(String().substring(0), String());
}

TEST(String, TrimTakesFourCharacters)
{
    EXPECT_EQ(String(L" \t\r\na b\n\r\t ").trim(), String(L"a b"));
    EXPECT_EQ(String(L"ab").trim(), String(L"ab"));
    EXPECT_EQ(String(L" \t\r\n").trim(), String());
    EXPECT_EQ(String().trim(), String());
    EXPECT_EQ(String(L"\u00A0\v\fa\u3000").trim(), String(L"\u00A0\v\fa\u3000"));
}

TEST(String, CharAtOutsideIsNull)
{
    const String text(L"ab");
    EXPECT_EQ(text.charAt(0), L'a');
    EXPECT_EQ(text.charAt(1), L'b');
    EXPECT_EQ(text.charAt(2), L'\0');
    EXPECT_EQ(text.charAt(-1), L'\0');
    EXPECT_EQ(text.charAt(INT_MIN), L'\0');
    EXPECT_EQ(text.charAt(INT_MAX), L'\0');
}

// Joining

TEST(String, ConcatGivesANewText)
{
    const String left(L"ab");
    EXPECT_EQ(left.concat(L"cd"), String(L"abcd"));
    EXPECT_EQ(left + String(), left);
    EXPECT_EQ(String() + left, left);
    EXPECT_EQ(left, String(L"ab"));
}

TEST(String, AppendJoinsHalvesOfAPair)
{
    String text(L"ab");
    text += String(L"cd");
    text += L'e';
    text += text;
    EXPECT_EQ(text, String(L"abcdeabcde"));
    String pair;
    pair += static_cast<wchar_t>(0xD83D);
    pair += static_cast<wchar_t>(0xDE00);
    EXPECT_EQ(pair.toNarrow(), "\xF0\x9F\x98\x80");
}

TEST(String, ConvertsToItsUnits)
{
    const String text(L"ab");
    EXPECT_STREQ(static_cast<const wchar_t*>(text), L"ab");
    EXPECT_EQ(static_cast<const wchar_t*>(text), text.c_str());
    EXPECT_STREQ(static_cast<const wchar_t*>(String()), L"");
}

// Numbers

TEST(String, ValueOfTheLimits)
{
    EXPECT_EQ(String::valueOf(0), String(L"0"));
    EXPECT_EQ(String::valueOf(INT_MIN), String(std::to_string(INT_MIN).c_str()));
    EXPECT_EQ(String::valueOf(INT_MAX), String(L"2147483647"));
    EXPECT_EQ(String::valueOf(UINT_MAX), String(L"4294967295"));
    EXPECT_EQ(String::valueOf(LONG_MIN), String(std::to_string(LONG_MIN).c_str()));
    EXPECT_EQ(String::valueOf(ULONG_MAX), String(std::to_string(ULONG_MAX).c_str()));
    EXPECT_EQ(String::valueOf(LLONG_MIN), String(L"-9223372036854775808"));
    EXPECT_EQ(String::valueOf(ULLONG_MAX), String(L"18446744073709551615"));
}
