#include "boundary/XmlFileParser.h"

#include "RecordedTrace.h"
#include "boundary/XmlNodeSink.h"
#include "common/xmlproxy/TestFiles.h"
#include "common/xmlproxy/TestTrees.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/NodeReader.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace
{

using Lines = std::vector<std::string>;
using XmlPlugin::XmlFileParser;
using XmlPlugin::XmlNodeSink;

/// The records that the sink writes for messages as `RecordingSink` keeps them.
Lines recordsOf(const std::vector<std::string>& i_Messages)
{
    Lines lines;
    for (const std::string& message : i_Messages)
    {
        const std::size_t level = message.find(' ');
        const std::size_t line = message.find(' ', level + 1);
        const bool warning = message.starts_with("warning");
        const std::string scope = warning ? "onWarning" : "onCriticalError";
        lines.push_back("5|XmlNodeSink::" + scope + "(const String& ,int)|" + (warning ? "2" : "1") +
                        "|./../../../../src/plugins/XmlPlugin/common/XmlNodeSink|" + (warning ? "55" : "69") + "|" +
                        (warning ? "Warning" : "Critical error") + " parsing XML file at line" +
                        message.substr(level, line - level) + " message is:" + message.substr(line));
    }
    return lines;
}

struct Outcome
{
    int status;
    std::string tree; ///< empty when there is none
    Lines records;
};

Outcome parse(const String& i_Path)
{
    const RecordedTrace trace;
    XmlNodeSink sink;
    const int status = XmlFileParser(i_Path, sink).status();
    const std::unique_ptr<Node> pRoot(sink.release());
    return {status, pRoot ? printTree(*pRoot) : "", trace.lines};
}

struct Row
{
    const char* name;
    std::string document;
    int status;
    const char* tree;
    std::vector<std::string> places; ///< level and line of the messages
};

const Row s_Rows[] = {
    {"well_formed", "<a x='1'><b/></a>", 0, "a#1{x=1#0}(b#2)", {}},
    {"not_well_formed", "<a>\n<b>\n</a>", 1, "", {"critical 3"}},
    {"not_well_formed_behind_the_root", "<a/>\n<b/>", 1, "a#0", {"critical 2"}},
    {"empty_file", "", 1, "", {"critical 1"}},
    {"invalid_only", "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b/></a>", 0, "a#0(b#1)", {}},
    {"prefix_without_namespace", "<p:a/>", 0, "p:a#0", {}},
    {"schema_that_is_not_asked",
     "<a xmlns:i='http://www.w3.org/2001/XMLSchema-instance'\n"
     "i:noNamespaceSchemaLocation='missing.xsd'/>",
     0,
     "a#2{xmlns:i=http://www.w3.org/2001/XMLSchema-instance#0 i:noNamespaceSchemaLocation=missing.xsd#1}",
     {}},
    {"warning_only", "<?xml version='1.0' encoding='UTF-16'?><a/>", 0, "a#0", {"warning 1"}},
    {"archive", ZipBuilder().add("a.xml", "<a/>", true).bytes(), 0, "a#0", {}},
    {"archive_second_member", ZipBuilder().add("m", "x").add("a.xml", "<a/>").bytes(), 1, "", {"critical 1"}},
    {"given_up_without_a_counted_error", "<?xml version='1.0' \xff?><a/>", 0, "", {"critical 0"}},
    {"archive_without_members", ZipBuilder().bytes(), 0, "", {"critical 0"}},
};

class XmlFileParserRows : public testing::TestWithParam<Row>
{
protected:
    TestFolder m_Folder;
};

TEST_P(XmlFileParserRows, GiveStatusTreeAndRecords)
{
    const Row& row = GetParam();
    const String path = m_Folder.write("document", row.document);
    RecordingSink expected;
    NodeReader(&expected).read(path, 0);

    const Outcome outcome = parse(path);
    EXPECT_EQ(row.status, outcome.status);
    EXPECT_EQ(row.tree, outcome.tree);
    EXPECT_EQ(recordsOf(expected.messages), outcome.records);
    ASSERT_EQ(row.places.size(), outcome.records.size());
    for (std::size_t index = 0; index < row.places.size(); ++index)
    {
        // The line of an exception is that in the library's own source.
        const bool exception = row.places[index] == "critical 0";
        EXPECT_TRUE(exception || expected.messages[index].starts_with(row.places[index] + " "));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, XmlFileParserRows, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

class XmlFileParserFiles : public testing::Test
{
protected:
    TestFolder m_Folder;
};

TEST_F(XmlFileParserFiles, AMissingFileIsStatus1WithoutAWord)
{
    const Outcome outcome = parse(m_Folder.pathOf("missing.xml"));
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ("", outcome.tree);
    EXPECT_EQ(Lines{}, outcome.records);
}

TEST_F(XmlFileParserFiles, AFolderIsNoFile)
{
    const Outcome outcome = parse(m_Folder.pathOf(""));
    EXPECT_EQ(1, outcome.status);
    EXPECT_EQ(Lines{}, outcome.records);
}

TEST_F(XmlFileParserFiles, AnEmptyPathIsNoFile)
{
    EXPECT_EQ(1, parse(String()).status);
}

TEST_F(XmlFileParserFiles, AFileThatAppearsLaterIsRead)
{
    const String path = m_Folder.pathOf("a.xml");
    EXPECT_EQ(1, parse(path).status);
    m_Folder.write("a.xml", "<a/>");
    EXPECT_EQ(0, parse(path).status);
}

/// An archive whose member does not fit one read of the parser library.
ZipBuilder largeArchive(bool i_Deflate)
{
    std::string document = "<a>";
    for (int index = 0; index < 20000; ++index)
    {
        document += "<b x='" + std::to_string(index) + "'/>";
    }
    return ZipBuilder().add("a.xml", document + "</a>", i_Deflate);
}

using XmlFileParserDamage = testing::TestWithParam<bool>;

TEST_P(XmlFileParserDamage, DataWithAWrongSumIsNeverTaken)
{
    const TestFolder folder;
    const ZipBuilder builder = largeArchive(GetParam());
    const std::string good = builder.bytes();
    EXPECT_EQ(0, parse(folder.write("good.zip", good)).status);
    // A digit in the first value, one near the middle, one in the last value: well-formed all the same.
    for (const std::size_t from : {std::size_t{0}, good.size() / 2, good.rfind("'/></a>") - 1})
    {
        std::string bad = good;
        bad[bad.find_first_of("0123456789", std::max(from, builder.dataAt(0) + 5))] ^= 1;
        EXPECT_LT(0, parse(folder.write("bad.zip", bad)).status) << from;
    }
}

TEST_P(XmlFileParserDamage, NoWrongByteOfASmallArchiveGivesAnotherTree)
{
    const TestFolder folder;
    const std::string document = "<a x='1'><b y='22'/></a>";
    const std::string good = ZipBuilder().add("a.xml", document, GetParam()).bytes();
    const Outcome expected = parse(folder.write("good.zip", good));
    ASSERT_EQ(0, expected.status);
    for (std::size_t place = 0; place < good.size(); ++place)
    {
        for (const int mask : {0x01, 0x08, 0x80, 0xFF})
        {
            std::string bad = good;
            bad[place] = static_cast<char>(bad[place] ^ mask);
            const Outcome outcome = parse(folder.write("bad.zip", bad));
            EXPECT_TRUE(outcome.status != 0 || outcome.tree == expected.tree)
                << "byte " << place << " ^ " << mask << ": " << outcome.tree;
        }
    }
}

TEST_P(XmlFileParserDamage, AnArchiveThatIsCutShortIsRefused)
{
    const TestFolder folder;
    const std::string good = ZipBuilder().add("a.xml", "<a x='1'><b y='22'/></a>", GetParam()).bytes();
    for (std::size_t size = 0; size < good.size(); ++size)
    {
        const Outcome outcome = parse(folder.write("bad.zip", good.substr(0, size)));
        EXPECT_NE(0, outcome.status) << size;
        EXPECT_EQ("", outcome.tree) << size;
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, XmlFileParserDamage, testing::Bool(),
                         [](const auto& i_Info) { return i_Info.param ? "deflated" : "stored"; });

} // namespace
