#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <ostream>

// The tool as a process, with the real plug-in, found where the tool looks for it.

namespace
{

ProcessResult runHost(std::vector<std::string> i_Arguments, const ProcessSettings& i_Settings = {})
{
    i_Arguments.insert(i_Arguments.begin(), HOST_PROGRAM);
    return runProcess(i_Arguments, i_Settings);
}

constexpr const char* s_Books = R"(<?xml version="1.0" encoding="UTF-8"?>
<books owner="M&amp;M">
  <book id="b1" title="&#x1F600;"/>
  <book id="b2" title=""/>
</books>
)";

} // namespace

namespace
{

struct QueryRow
{
    const char* name;
    std::vector<std::string> arguments;
    int status;
    const char* out;
    const char* err = "";
};

void PrintTo(const QueryRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class Query : public testing::TestWithParam<QueryRow>
{
};

} // namespace

TEST_P(Query, OfTheStandardInput)
{
    ProcessSettings settings;
    settings.input = s_Books;
    const ProcessResult result = runHost(GetParam().arguments, settings);
    EXPECT_EQ(result.status, GetParam().status);
    EXPECT_EQ(result.out, GetParam().out);
    EXPECT_EQ(result.err, GetParam().err);
}

INSTANTIATE_TEST_SUITE_P(
    All, Query,
    testing::Values(
        QueryRow{"attributes", {"books/book/@id"}, 0, "b1\nb2\n"}, QueryRow{"deep", {"//book/@id"}, 0, "b1\nb2\n"},
        QueryRow{"entity", {"books/@owner", "-"}, 0, "M&M\n"},
        QueryRow{"emoji_and_empty", {"//book/@title"}, 0, "\xF0\x9F\x98\x80\n\n"},
        QueryRow{"several_expressions", {"-e", "//book/@id", "-e", "books/@owner"}, 0, "b1\nb2\nM&M\n"},
        QueryRow{"nothing", {"books/book/@none"}, 1, ""}, QueryRow{"one", {"--one", "books/@owner"}, 0, "M&M\n"},
        QueryRow{"one_of_none", {"--one", "books/@none"}, 1, ""},
        QueryRow{"one_of_two",
                 {"--one", "//book/@id"},
                 2,
                 "",
                 "xmlvalue: error -15003: more than one value found where one string is wanted: //book/@id in "
                 "(standard input)\n"},
        QueryRow{"must_exist",
                 {"--must-exist", "//book/@none"},
                 2,
                 "",
                 "xmlvalue: error -15002: no value found, although one must exist: //book/@none in (standard input)\n"},
        QueryRow{"count", {"-c", "//book/@*"}, 0, "4\n"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

namespace
{

struct RefusedRow
{
    const char* name;
    const char* expression;
    const char* hints = "";
};

void PrintTo(const RefusedRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class QueryRefused : public testing::TestWithParam<RefusedRow>
{
};

} // namespace

TEST_P(QueryRefused, ShowsThePlace)
{
    ProcessSettings settings;
    settings.input = s_Books;
    const std::string expression = GetParam().expression;
    const ProcessResult result = runHost({"-e", expression}, settings);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, "");
    const std::string start =
        "xmlvalue: error -15105: the expression is not recognised: " + expression + '\n' + expression + '\n';
    ASSERT_TRUE(result.err.starts_with(start)) << result.err;
    ASSERT_TRUE(result.err.ends_with(GetParam().hints)) << result.err;
    const std::string rest = result.err.substr(start.size());
    const std::string caret = rest.substr(0, rest.size() - std::string(GetParam().hints).size());
    EXPECT_EQ(caret.find_first_not_of(' '), caret.size() - 2) << result.err;
    EXPECT_TRUE(caret.ends_with("^\n")) << result.err;
    EXPECT_LE(caret.size(), expression.size() + 2) << result.err;
}

INSTANTIATE_TEST_SUITE_P(
    All, QueryRefused,
    testing::Values(
        RefusedRow{"empty", ""}, RefusedRow{"open_bracket", "books/book["}, RefusedRow{"dangling_slash", "books/"},
        RefusedRow{"bad_character", "books/#"},
        RefusedRow{"text", "books/text()",
                   "hint: D-14: 'text()' is not a node test here, and elements keep no text (D-27); ask for an "
                   "attribute, as in a/@name\n"},
        RefusedRow{"lone_slash", "/", "hint: D-16: the root alone cannot be selected; '/*' is the document element\n"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST(QueryFiles, DamagedAndMissingDocuments)
{
    const TemporaryFolder folder;
    const std::string good = folder.write("good.xml", "<a b='c'/>");
    const std::string broken = folder.write("broken.xml", "<a b='c'>");
    const std::string missing = folder.file("missing.xml");
    const ProcessResult result = runHost({"a/@b", broken, good, missing});
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.out, good + ":c\n");
    const std::string error = "xmlvalue: error -15103: the document could not be read as XML: ";
    EXPECT_EQ(result.err, error + broken +
                              " (line 1: input ended before all started tags were ended; last tag started is 'a')\n" +
                              error + missing + " (no such file)\n");
}

TEST(QueryFiles, VersionOfThePlugin)
{
    const ProcessResult result = runHost({"--version"});
    EXPECT_EQ(result.status, 0);
    EXPECT_TRUE(result.out.starts_with("xmlvalue " HOST_VERSION "\nXml 1.1.1.1 (")) << result.out;
}

TEST(QueryFiles, TraceShowsThePluginAtWork)
{
    const TemporaryFolder folder;
    const std::string good = folder.write("good.xml", "<a b='c'/>");
    const ProcessResult result = runHost({"--trace", "a/@b", good});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out, "c\n");
    EXPECT_NE(result.err.find("INFO ./../../../../src/plugins/XmlPlugin/common/XPathEngine(34) [XPathEngine::start] "
                              "Parsing [a/@b] for the XML file " +
                              good + '\n'),
              std::string::npos)
        << result.err;
}
