#include "boundary/XmlValue.h"

#include "RecordedTrace.h"
#include "boundary/XmlCache.h"
#include "support/TemporaryFolder.h"

#include "base/String.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cfenv>
#include <filesystem>
#include <iterator>
#include <string>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace
{

constexpr const char* s_Document = "<r><a id='1' e=''/><a id='2'/><b id='&#xE4;&#x1D400;'/></r>";

/// Properties of one evaluation and what each type answers; a null property is not set.
struct ValueRow
{
    const char* name;
    const char* file; ///< "good", "bad", "rootless", "missing" or null
    const char* xpath;
    const char* mustExist;
    const char* value;  ///< "CODE text" of XmlValue
    const char* values; ///< "CODE count text|text" of XmlValues
};

const ValueRow s_Rows[] = {
    {"no_file", nullptr, "r/a/@id", nullptr, "-15000 ", "-15000 0 "},
    {"no_xpath", "good", nullptr, nullptr, "-15001 ", "-15001 0 "},
    {"neither", nullptr, nullptr, "true", "-15000 ", "-15000 0 "},
    {"one_value", "good", "r/b/@id", nullptr, "0 \xC3\xA4\xF0\x9D\x90\x80", "0 1 \xC3\xA4\xF0\x9D\x90\x80"},
    {"two_values", "good", "r/a/@id", nullptr, "-15003 ", "0 2 1|2"},
    {"two_values_that_must_exist", "good", "r/a/@id", "true", "-15003 ", "0 2 1|2"},
    {"no_value", "good", "r/c/@id", nullptr, "0 ", "0 0 "},
    {"no_value_but_must", "good", "r/c/@id", "true", "-15002 ", "-15002 0 "},
    {"must_exist_false", "good", "r/c/@id", "false", "0 ", "0 0 "},
    {"must_exist_capital", "good", "r/c/@id", "True", "0 ", "0 0 "},
    {"must_exist_capitals", "good", "r/c/@id", "TRUE", "0 ", "0 0 "},
    {"must_exist_blank_behind", "good", "r/c/@id", "true ", "0 ", "0 0 "},
    {"must_exist_blank_before", "good", "r/c/@id", " true", "0 ", "0 0 "},
    {"must_exist_longer", "good", "r/c/@id", "truee", "0 ", "0 0 "},
    {"must_exist_shorter", "good", "r/c/@id", "tru", "0 ", "0 0 "},
    {"must_exist_digit", "good", "r/c/@id", "1", "0 ", "0 0 "},
    {"must_exist_yes", "good", "r/c/@id", "yes", "0 ", "0 0 "},
    {"must_exist_empty", "good", "r/c/@id", "", "0 ", "0 0 "},
    {"empty_value_exists", "good", "r/a/@e", "true", "0 ", "0 1 "},
    {"empty_string_exists", "good", "''", "true", "0 ", "0 1 "},
    {"number", "good", "1 + 2", "true", "0 3", "0 1 3"},
    {"string", "good", "concat('a', 'b')", nullptr, "0 ab", "0 1 ab"},
    {"boolean", "good", "1 = 2", "true", "0 false", "0 1 false"},
    {"empty_xpath", "good", "", nullptr, "-15105 ", "-15105 0 "},
    {"not_recognised", "good", "a[", "true", "-15105 ", "-15105 0 "},
    {"nothing_left", "good", "'|'|'|'", nullptr, "-15004 ", "-15004 0 "},
    {"argument_count", "good", "concat('a')", nullptr, "-15005 ", "-15005 0 "},
    {"not_implemented", "good", "local-name()", nullptr, "-102 ", "-102 0 "},
    {"damaged_file", "bad", "r/@x", nullptr, "-15103 ", "-15103 0 "},
    {"missing_file", "missing", "r/@x", nullptr, "-15103 ", "-15103 0 "},
    {"missing_file_that_must_exist", "missing", "r/@x", "true", "-15103 ", "-15103 0 "},
    {"missing_file_and_bad_xpath", "missing", "a[", nullptr, "-15103 ", "-15103 0 "},
    {"no_elements", "rootless", "r/a/@id", nullptr, "0 ", "0 0 "},
    {"no_elements_but_must", "rootless", "//@id | ../a/@id", "true", "-15002 ", "-15002 0 "},
    {"no_elements_and_a_scalar", "rootless", "count(//a) + 2", nullptr, "0 2", "0 1 2"},
    {"no_elements_and_bad_xpath", "rootless", "a[", nullptr, "-15105 ", "-15105 0 "},
};

class XmlValueTest : public testing::Test
{
protected:
    XmlValueTest()
    {
        m_Folder.write("good", s_Document);
        m_Folder.write("bad", "<r x='1'>");
        m_Folder.write("rootless", "<?xml version='1.0' \xff?><r/>"); // given up before an error is counted
    }
    ~XmlValueTest() override { XmlPlugin::XmlCache::destroyInstance(); }

    void set(PluginSDK::Expression& io_Expression, const ValueRow& i_Row) const
    {
        const std::string file = i_Row.file ? m_Folder.file(i_Row.file) : "";
        setProperty(io_Expression, L"file", i_Row.file ? file.c_str() : nullptr);
        setProperty(io_Expression, L"xpath", i_Row.xpath);
        setProperty(io_Expression, L"mustExist", i_Row.mustExist);
    }

    static void setProperty(PluginSDK::Expression& io_Expression, const wchar_t* i_Name, const char* i_Value)
    {
        io_Expression.setProperty(i_Name, i_Value ? String(i_Value).c_str() : nullptr);
    }

    static std::string evaluate(XmlPlugin::XmlValue& io_Expression)
    {
        PluginSDK::String result;
        result = L"stale";
        const TErrorCode code = io_Expression.evaluate(result);
        return std::to_string(code) + " " + String(result.c_str()).toNarrow();
    }

    static std::string evaluate(XmlPlugin::XmlValues& io_Expression)
    {
        PluginSDK::StringVector result;
        result.addString(L"stale");
        const TErrorCode code = io_Expression.evaluate(result);
        std::string text = std::to_string(code) + " " + std::to_string(result.count()) + " ";
        for (std::size_t i = 0; i < result.count(); ++i)
        {
            text += (i > 0 ? "|" : "") + String(result.get(i)).toNarrow();
        }
        return text;
    }

    TemporaryFolder m_Folder;
};

TEST_F(XmlValueTest, AnswersOfBothTypes)
{
    // The same two objects for all rows: nothing of an earlier evaluation may be left.
    XmlPlugin::XmlValue value;
    XmlPlugin::XmlValues values;
    for (const ValueRow& row : s_Rows)
    {
        set(value, row);
        set(values, row);
        EXPECT_EQ(evaluate(value), row.value) << row.name;
        EXPECT_EQ(evaluate(values), row.values) << row.name;
    }
}

struct ErrorRow
{
    const char* value; ///< name of the row with the properties
    const char* text;  ///< of the record
};

/// The scope is that of the type that fails; `XmlValues` has no error for more than one value.
TEST_F(XmlValueTest, SaysWhyItFails)
{
    const ErrorRow rows[] = {
        {"no_file", R"(the property "file" is not set, result = -15000)"},
        {"no_xpath", R"(the property "xpath" is not set, result = -15001)"},
        {"no_value_but_must", "no value found, although one must exist, result = -15002"},
        {"two_values", "more than one value found where one string is wanted, result = -15003"},
    };
    for (const ErrorRow& row : rows)
    {
        const ValueRow& properties =
            *std::find_if(std::begin(s_Rows), std::end(s_Rows),
                          [&](const ValueRow& i_Row) { return std::string(i_Row.name) == row.value; });
        XmlPlugin::XmlValue value;
        XmlPlugin::XmlValues values;
        set(value, properties);
        set(values, properties);
        const RecordedTrace valueTrace(TraceError);
        const std::string valueAnswer = evaluate(value);
        ASSERT_EQ(valueTrace.lines.size(), 1u) << row.value;
        EXPECT_TRUE(valueTrace.lines.front().starts_with("5|XmlValue::evaluate|1|")) << valueTrace.lines.front();
        EXPECT_TRUE(valueTrace.lines.front().ends_with(std::string("|") + row.text)) << valueTrace.lines.front();
        const RecordedTrace valuesTrace(TraceError);
        const bool isError = !evaluate(values).starts_with("0 ");
        EXPECT_EQ(valuesTrace.lines.size(), isError ? 1u : 0u) << row.value;
        EXPECT_TRUE(!isError || valuesTrace.lines.front().starts_with("5|XmlValues::evaluate|1|")) << row.value;
    }
}

/// Rounding to nearest and subnormal numbers, whatever the host has set, which is what it finds afterwards.
TEST_F(XmlValueTest, ComputesInAnEnvironmentOfItsOwn)
{
    const char* const queries[] = {
        "0.1 + 0.2 = 0.3",
        "1 div 3",
        "-1 div 3",
        "round(2.5) + 0.1 + 0.7",
        "0."
        "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
        "0"
        "00000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000"
        "00"
        "000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000000001 > 0",
        "number('0.1') * 3 = 0.3",
        "123456.5 + 0",
    };
    XmlPlugin::XmlValue value;
    setProperty(value, L"file", m_Folder.file("good").c_str());
    for (const char* pQuery : queries)
    {
        setProperty(value, L"xpath", pQuery);
        const std::string expected = evaluate(value);
        EXPECT_TRUE(expected.starts_with("0 ")) << pQuery;
        for (const int rounding : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST})
        {
            std::fenv_t before;
            std::fegetenv(&before);
            std::fesetround(rounding);
            const std::string answer = evaluate(value);
            const int after = std::fegetround();
            std::fesetenv(&before);
            EXPECT_EQ(answer, expected) << pQuery << " with rounding " << rounding;
            EXPECT_EQ(after, rounding);
        }
#if defined(__SSE2__)
        constexpr unsigned flushedToZero = 0x8040; // results and operands
        const unsigned before = _mm_getcsr();
        _mm_setcsr(before | flushedToZero);
        const std::string answer = evaluate(value);
        const unsigned after = _mm_getcsr();
        _mm_setcsr(before);
        EXPECT_EQ(answer, expected) << pQuery << " with numbers flushed to zero";
        EXPECT_EQ(after & flushedToZero, flushedToZero);
#endif
    }
}

/// A host may write a character beyond U+FFFF as one unit where its units are wide enough.
TEST_F(XmlValueTest, TakesWideCharacters)
{
    m_Folder.write("\xF0\x9D\x90\x80", s_Document);
    const String folder(m_Folder.file("").c_str());
    XmlPlugin::XmlValue value;
    value.setProperty(L"file", (std::wstring(folder.c_str()) + L"\U0001D400").c_str());
    const auto answer = [&value](const wchar_t* i_XPath)
    {
        value.setProperty(L"xpath", i_XPath);
        return evaluate(value);
    };
    EXPECT_EQ(answer(L"r/b[@id='\u00E4\U0001D400']/@id"), "0 \xC3\xA4\xF0\x9D\x90\x80");
    EXPECT_EQ(answer(L"string-length('\U0001D400')"), "0 2");
    EXPECT_EQ(answer(L"substring('\U0001D400x', 3)"), "0 x");
    std::filesystem::remove(m_Folder.path() / u8"\U0001D400");
    EXPECT_EQ(answer(L"count(r/a)"), "0 2") << "the document is known by this name";
}

TEST_F(XmlValueTest, ConstantSlots)
{
    XmlPlugin::XmlValue value;
    XmlPlugin::XmlValues values;
    EXPECT_FALSE(value.reservedFlagA());
    EXPECT_FALSE(values.reservedFlagA());
    EXPECT_EQ(value.getShape(), 0);
    EXPECT_EQ(values.getShape(), 1);
    EXPECT_TRUE(value.reservedFlagB());
    EXPECT_TRUE(values.reservedFlagB());
    value.reservedHook();
    values.reservedHook();
}

TEST_F(XmlValueTest, DocumentsAreSharedBetweenObjects)
{
    const ValueRow row{"", "good", "count(r/a)", nullptr, "", ""};
    XmlPlugin::XmlValue value;
    set(value, row);
    EXPECT_EQ(evaluate(value), "0 2");
    m_Folder.write("good", "<r><a/></r>");
    EXPECT_EQ(evaluate(value), "0 2");
    XmlPlugin::XmlValues values;
    set(values, row);
    EXPECT_EQ(evaluate(values), "0 1 2");
    XmlPlugin::XmlCache::destroyInstance();
    EXPECT_EQ(evaluate(values), "0 1 1");
}

TEST_F(XmlValueTest, AMissingFileThatAppearsIsRead)
{
    XmlPlugin::XmlValue value;
    set(value, {"", "later", "r/@x", nullptr, "", ""});
    EXPECT_EQ(evaluate(value), "-15103 ");
    m_Folder.write("later", "<r x='1'/>");
    EXPECT_EQ(evaluate(value), "0 1");
    m_Folder.write("later", "not xml");
    EXPECT_EQ(evaluate(value), "0 1");
}

TEST_F(XmlValueTest, AnUnsetPropertyIsMissedAgain)
{
    XmlPlugin::XmlValue value;
    set(value, {"", "good", "r/b/@id", nullptr, "", ""});
    EXPECT_EQ(evaluate(value).substr(0, 2), "0 ");
    value.setProperty(L"xpath", nullptr);
    EXPECT_EQ(evaluate(value), "-15001 ");
    value.setProperty(L"file", nullptr);
    EXPECT_EQ(evaluate(value), "-15000 ");
}

} // namespace
