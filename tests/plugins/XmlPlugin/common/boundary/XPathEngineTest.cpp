#include "boundary/XPathEngine.h"

#include "RecordedTrace.h"
#include "boundary/XmlCache.h"
#include "support/TemporaryFolder.h"
#include "values/XPathOutputList.h"

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
        XPathOutputList records;
        const TErrorCode code = XPathEngine().start(i_XPath, m_File, records);
        std::string text = code == 0 ? "" : std::to_string(code);
        for (const XPathOutputElement* pRecord : records)
        {
            text += pRecord->m_Value.toNarrow() + "|";
        }
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
            {
                continue;
            }
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

/// A document, an expression, and the records of the query behind the first one.
struct TraceRow
{
    const char* name;
    const char* document;
    const char* xpath;
    std::vector<std::string> records;
};

TEST_F(XPathEngineTest, TracesEachQuery)
{
    const std::string started = "3 45 result ok";
    const std::string rootless = "1 48 Start Node empty. Error in xml parsing";
    const std::string delivers = "3 56  result OK, getValues to output";
    const char* const pRootless = "<?xml version='1.0' \xff?><r/>"; // given up before an error is counted
    const TraceRow rows[] = {
        {"values", "<r x='1'/>", "r/@x", {started, delivers, "3 61  result = 0"}},
        {"no_value", "<r x='1'/>", "r/@y", {started, delivers, "3 61  result = 0"}},
        {"scalar", "<r/>", "1 + 2", {started, delivers, "3 61  result = 0"}},
        {"not_recognised", "<r/>", "a ||", {started, "3 61  result = -15105"}},
        {"evaluation_fails", "<r/>", "concat('a')", {started, "3 61  result = -15005"}},
        {"nothing_left", "<r/>", "'|'|'|'", {started, "3 61  result = -15004"}},
        {"document_fails", "<r>", "r", {"3 61  result = -15103"}},
        {"no_elements", pRootless, "r/@x", {started, rootless, delivers, "3 61  result = 0"}},
        {"no_elements_and_not_recognised", pRootless, "a ||", {started, rootless, "3 61  result = -15105"}},
        {"delivery_fails", pRootless, "name()", {started, rootless, delivers, "3 61  result = -15004"}},
    };
    for (const TraceRow& row : rows)
    {
        m_File = m_Folder.write(row.name, row.document).c_str();
        std::vector<std::string> expected = {std::string("3 34 Parsing [") + row.xpath + "] for the XML file " +
                                             m_File.toNarrow()};
        expected.insert(expected.end(), row.records.begin(), row.records.end());
        EXPECT_EQ(recordsOf(row.xpath), expected) << row.name;
    }
}

} // namespace
