#include "output/ErrorReport.h"

#include "plugin/ErrorFault.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <sstream>

namespace
{

Outcome failed(TErrorCode i_Code, const std::string& i_Reason = "")
{
    Outcome outcome;
    outcome.code = i_Code;
    outcome.reason = i_Reason;
    return outcome;
}

Outcome refused(int i_Place)
{
    Outcome outcome = failed(XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED);
    outcome.recognisedUpTo = i_Place;
    return outcome;
}

} // namespace

namespace
{

struct MessageRow
{
    const char* name;
    Outcome outcome;
    const char* expected;
};

void PrintTo(const MessageRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class ErrorMessage : public testing::TestWithParam<MessageRow>
{
};

} // namespace

TEST_P(ErrorMessage, NamesWhatIsAtFault)
{
    EXPECT_EQ(errorMessage(GetParam().outcome, "f.xml", "//a"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, ErrorMessage,
    testing::Values(
        MessageRow{"file", failed(-15103), "xmlvalue: error -15103: the document could not be read as XML: f.xml"},
        MessageRow{"file_with_note", failed(-15103, "no such file"),
                   "xmlvalue: error -15103: the document could not be read as XML: f.xml (no such file)"},
        MessageRow{"expression", failed(-15101), "xmlvalue: error -15101: a step of a location path is malformed: //a"},
        MessageRow{"both", failed(-15002),
                   "xmlvalue: error -15002: no value found, although one must exist: //a in f.xml"},
        MessageRow{"unknown", failed(-4711), "xmlvalue: error -4711: unknown error: //a in f.xml"},
        MessageRow{"refused_without_place", failed(-15105),
                   "xmlvalue: error -15105: the expression is not recognised: //a"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

namespace
{

struct CaretRow
{
    const char* name;
    const char* expression;
    int place;          ///< in UTF-16 code units
    const char* shown;  ///< second line
    std::size_t column; ///< spaces before the caret
};

void PrintTo(const CaretRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class ErrorCaret : public testing::TestWithParam<CaretRow>
{
};

} // namespace

TEST_P(ErrorCaret, StandsUnderThePlace)
{
    const CaretRow& row = GetParam();
    const std::string message = errorMessage(refused(row.place), "f.xml", row.expression);
    EXPECT_EQ(message, "xmlvalue: error -15105: the expression is not recognised: " + std::string(row.shown) + '\n' +
                           row.shown + '\n' + std::string(row.column, ' ') + '^');
}

INSTANTIATE_TEST_SUITE_P(All, ErrorCaret,
                         testing::Values(CaretRow{"first", "abc", 0, "abc", 0}, CaretRow{"inside", "abc", 2, "abc", 2},
                                         CaretRow{"behind_the_last", "abc", 3, "abc", 3},
                                         CaretRow{"past_the_end", "abc", 99, "abc", 3}, CaretRow{"empty", "", 0, "", 0},
                                         CaretRow{"two_bytes_are_one_column", "\xC3\xA9x", 1, "\xC3\xA9x", 1},
                                         CaretRow{"pair_is_one_column", "\xF0\x9F\x98\x80x", 2, "\xF0\x9F\x98\x80x", 1},
                                         CaretRow{"inside_a_pair", "a\xF0\x9F\x98\x80x", 2, "a\xF0\x9F\x98\x80x", 1},
                                         CaretRow{"behind_two_pairs", "\xF0\x9F\x98\x80\xF0\x9F\x98\x80", 4,
                                                  "\xF0\x9F\x98\x80\xF0\x9F\x98\x80", 2},
                                         CaretRow{"control_characters_are_spaces", "a\n\tb", 3, "a  b", 3}),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST(ErrorReport, ControlCharactersDoNotBreakTheLine)
{
    EXPECT_EQ(errorMessage(failed(-15103), "a\nb\x1B[31m\x7F", "//a"),
              "xmlvalue: error -15103: the document could not be read as XML: a b [31m ");
    EXPECT_EQ(plainMessage("a\rb"), "xmlvalue: a b");
    EXPECT_EQ(plainMessage("a\xC2\x9B"
                           "31m\xC2\x80\xC2\xA0\xC3\x9B\xC2"),
              "xmlvalue: a 31m \xC2\xA0\xC3\x9B\xC2");
}

TEST(ErrorReport, ListHasEveryCodeOnce)
{
    std::istringstream list(errorList());
    std::set<int> codes;
    std::size_t count = 0;
    for (std::string line; std::getline(list, line); ++count)
    {
        std::istringstream words(line);
        int code = 0;
        std::string name;
        words >> code >> name;
        codes.insert(code);
        EXPECT_EQ(name, errorName(code));
        EXPECT_TRUE(line.ends_with(std::string("  ") + xmlErrorText(code))) << line;
    }
    EXPECT_EQ(codes.size(), count);
#define XML_ERROR_CHECK(value, name, text) EXPECT_TRUE(codes.contains(value)) << #name;
    XML_ERROR_CODES(XML_ERROR_CHECK)
#undef XML_ERROR_CHECK
    EXPECT_STREQ(errorName(-4711), "UNKNOWN");
}

TEST(ErrorReport, HintsStandBelow)
{
    Outcome outcome = refused(1);
    outcome.hints = {{7, "one\nline"}, {104, "another"}};
    EXPECT_EQ(errorMessage(outcome, "f.xml", "ab"),
              "xmlvalue: error -15105: the expression is not recognised: ab\nab\n ^\n"
              "hint: D-07: one line\nhint: D-104: another");
}

TEST(ErrorReport, ColoursMarkThePlaceAndTheHint)
{
    Outcome outcome = refused(1);
    outcome.hints = {{7, "text"}};
    EXPECT_EQ(errorMessage(outcome, "f.xml", "ab", Palette(true)),
              "xmlvalue: error -15105: the expression is not recognised: ab\nab\n \x1B[1;31m^\x1B[m\n"
              "\x1B[1;36mhint:\x1B[m D-07: text");
}

TEST(ErrorReport, TellsDocumentErrorsApart)
{
    EXPECT_TRUE(isDocumentError(-15103));
    EXPECT_FALSE(isDocumentError(-15105));
    EXPECT_FALSE(isDocumentError(-15002));
    EXPECT_FALSE(isDocumentError(0));
}
