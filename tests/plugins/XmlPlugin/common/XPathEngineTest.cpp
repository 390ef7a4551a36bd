#include "XPathEngine.h"

#include "RecordedTrace.h"
#include "XPathRecords.h"
#include "XmlCache.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

class XPathEngineTest : public testing::Test
{
protected:
    ~XPathEngineTest() override { XmlCache::destroyInstance(); }

    /// The values with "|" between, or the code of the failure.
    std::string query(const char* i_XPath)
    {
        XPathRecords records;
        const TErrorCode code = XPathEngine().start(i_XPath, m_File, records.list());
        std::string text = code == 0 ? "" : std::to_string(code);
        for (const XPathOutputElement* pRecord : records.list())
            text += pRecord->m_Value.toNarrow() + "|";
        return text;
    }

    /// The records of "XPathEngine::start", each as `level line text`.
    std::vector<std::string> recordsOf(const char* i_XPath)
    {
        const std::string begin = "5|XPathEngine::start|";
        const std::string source = "|./../../../../src/plugins/XmlPlugin/common/XPathEngine|";
        const RecordedTrace trace;
        query(i_XPath);
        std::vector<std::string> records;
        for (std::string line : trace.lines)
        {
            const std::size_t place = line.find(source);
            if (!line.starts_with(begin) || place == std::string::npos)
                continue;
            line.replace(place, source.size(), " ").erase(0, begin.size());
            records.push_back(line.replace(line.find('|'), 1, " "));
        }
        return records;
    }

    TemporaryFolder m_Folder;
    String m_File{m_Folder.write("d.xml", "<r><a id='1'/><a id='2'/></r>").c_str()};
};

TEST_F(XPathEngineTest, DeliversValuesInOrder)
{
    EXPECT_EQ(query("r/a/@id"), "1|2|");
    EXPECT_EQ(query("r/b/@id"), "");
    EXPECT_EQ(query("count(r/a)"), "2|");
    EXPECT_EQ(query("'x'"), "x|");
    EXPECT_EQ(query("1 = 1"), "true|");
}

TEST_F(XPathEngineTest, PassesCodesOnUnchanged)
{
    EXPECT_EQ(query("a ||"), "-15105");
    EXPECT_EQ(query("local-name()"), "-102");
    EXPECT_EQ(query("concat('a')"), "-15005");
    EXPECT_EQ(query("'|'|'|'"), "-15004");
    m_File = m_Folder.file("missing.xml").c_str();
    EXPECT_EQ(query("r/a/@id"), "-15103");
    EXPECT_EQ(query("a ||"), "-15103") << "the document is asked for first";
}

TEST_F(XPathEngineTest, AnErrorInTheExpressionLeavesTheDocumentCached)
{
    EXPECT_EQ(query("a ||"), "-15105");
    std::filesystem::remove(m_Folder.path() / "d.xml");
    EXPECT_EQ(query("r/a/@id"), "1|2|");
}

TEST_F(XPathEngineTest, TraceOfAQuery)
{
    const std::vector<std::string> expected = {"3 34 Parsing [r/a/@id] for the XML file " + m_File.toNarrow(),
                                               "3 45 result ok", "3 56  result OK, getValues to output",
                                               "3 61  result = 0"};
    EXPECT_EQ(recordsOf("r/a/@id"), expected);
}

TEST_F(XPathEngineTest, TraceOfAnExpressionThatFails)
{
    const std::vector<std::string> expected = {"3 34 Parsing [a ||] for the XML file " + m_File.toNarrow(),
                                               "3 45 result ok", "3 61  result = -15105"};
    EXPECT_EQ(recordsOf("a ||"), expected);
}

TEST_F(XPathEngineTest, TraceOfADocumentThatFails)
{
    m_File = m_Folder.write("bad.xml", "<r>").c_str();
    const std::vector<std::string> expected = {"3 34 Parsing [r] for the XML file " + m_File.toNarrow(),
                                               "3 61  result = -15103"};
    EXPECT_EQ(recordsOf("r"), expected);
}

} // namespace
