#include "xmlproxy/UTF8XMLEncoding.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace
{

std::string bytesOf(const UTF8XMLEncoding& i_Encoding)
{
    std::ostringstream out;
    out << i_Encoding;
    return out.str();
}

struct Row
{
    const char* name;
    const wchar_t* text;
    const char* escaped;
    const char* raw;
};

const Row s_Rows[] = {
    {"empty", L"", "", ""},
    {"plain", L"abc", "abc", "abc"},
    {"less_amp_apostrophes", L"a<b&c'd'", "a&lt;b&amp;c&apos;d&apos;", "a<b&c'd'"},
    {"greater", L"a>b", "a&gt;b", "a>b"},
    {"quotes", L"\"x\"", "&quot;x&quot;", "\"x\""},
    {"tab", L"a\tb", "a&#9;b", "a\tb"},
    {"line_feed", L"a\nb", "a&#10;b", "a\nb"},
    {"carriage_return", L"a\rb", "a&#13;b", "a\rb"},
    {"code_1",
     L"a\x01"
     L"b",
     "ab",
     "a\x01"
     "b"},
    {"code_31",
     L"a\x1f"
     L"b",
     "ab",
     "a\x1f"
     "b"},
    {"only_removed", L"\x01\x02\x1f", "", "\x01\x02\x1f"},
    {"code_32", L"a b", "a b", "a b"},
    {"code_127", L"\x7f", "\x7f", "\x7f"},
    {"entity_is_escaped_again", L"&lt;", "&amp;lt;", "&lt;"},
    {"every_kind", L"\t\n\r\"&'<>", "&#9;&#10;&#13;&quot;&amp;&apos;&lt;&gt;", "\t\n\r\"&'<>"},
    {"two_bytes", L"\u00e9", "\xc3\xa9", "\xc3\xa9"},
    {"three_bytes", L"\u20ac", "\xe2\x82\xac", "\xe2\x82\xac"},
    {"surrogate_pair", L"\xd83d\xde00", "\xf0\x9f\x98\x80", "\xf0\x9f\x98\x80"},
    {"last_pair", L"\xdbff\xdfff", "\xf4\x8f\xbf\xbf", "\xf4\x8f\xbf\xbf"},
    {"lone_high", L"a\xd83d", "a\xef\xbf\xbd", "a\xef\xbf\xbd"},
    {"lone_low",
     L"\xde00"
     L"b",
     "\xef\xbf\xbd"
     "b",
     "\xef\xbf\xbd"
     "b"},
    {"escape_beside_wide", L"<\u20ac>", "&lt;\xe2\x82\xac&gt;", "<\xe2\x82\xac>"},
};

class UTF8XMLEncodingRows : public testing::TestWithParam<Row>
{
};

TEST_P(UTF8XMLEncodingRows, AreTheSameThroughEveryConstructor)
{
    const Row& row = GetParam();
    EXPECT_EQ(row.escaped, bytesOf(UTF8XMLEncoding(String(row.text))));
    EXPECT_EQ(row.escaped, bytesOf(UTF8XMLEncoding(row.text)));
    EXPECT_EQ(row.escaped, bytesOf(UTF8XMLEncoding(String(row.text).toNarrow().c_str())));
    EXPECT_EQ(row.escaped, bytesOf(UTF8XMLEncoding(row.text, true, false)));
    EXPECT_EQ(row.raw, bytesOf(UTF8XMLEncoding(row.text, false, false)));
}

INSTANTIATE_TEST_SUITE_P(Rows, UTF8XMLEncodingRows, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST(UTF8XMLEncoding, KeepsTheEscapedTextAndTheStrictFlag)
{
    const UTF8XMLEncoding escaped(L"<", true, true);
    EXPECT_EQ(String(L"&lt;"), escaped.text());
    EXPECT_TRUE(escaped.strict());
    EXPECT_EQ("&lt;", bytesOf(escaped));
    const UTF8XMLEncoding raw(L"<");
    EXPECT_FALSE(raw.strict());
}

TEST(UTF8XMLEncoding, NullIsTheEmptyText)
{
    EXPECT_EQ("", bytesOf(UTF8XMLEncoding(static_cast<const wchar_t*>(nullptr))));
    EXPECT_EQ("", bytesOf(UTF8XMLEncoding(static_cast<const char*>(nullptr))));
}

TEST(UTF8XMLEncoding, WritesUpToANull)
{
    const wchar_t text[] = {L'a', L'\0', L'b'};
    EXPECT_EQ("ab", bytesOf(UTF8XMLEncoding(String(text, 3))));
    EXPECT_EQ("a", bytesOf(UTF8XMLEncoding(text, false, false)));
}

TEST(UTF8XMLEncoding, LongTextOfCharactersThatGrow)
{
    const std::wstring text(1000000, L'&');
    const std::string bytes = bytesOf(UTF8XMLEncoding(text.c_str()));
    EXPECT_EQ(5000000U, bytes.size());
    EXPECT_EQ("&amp;&amp;", bytes.substr(4999990));
}

} // namespace
