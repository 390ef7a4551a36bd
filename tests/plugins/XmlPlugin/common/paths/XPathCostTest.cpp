// How the visits of nodes, not the time, grow with the document.
#include "QuerySupport.h"
#include "RecordedTrace.h"
#include "boundary/XPathEngine.h"
#include "boundary/XmlCache.h"
#include "support/TemporaryFolder.h"
#include "values/XPathBudget.h"

#include "trace/Trace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

using namespace XmlPlugin;

namespace
{

/// Takes every record and keeps none.
class ForgottenTrace final : public TraceSink
{
public:
    ForgottenTrace() { Tracer::install(this, TraceInformation); }
    ~ForgottenTrace() override { Tracer::install(nullptr, TraceOff); }
    ForgottenTrace(const ForgottenTrace&) = delete;
    ForgottenTrace& operator=(const ForgottenTrace&) = delete;

    void write(const TraceRecord&) override { ++m_Count; }
    std::uint64_t count() const noexcept { return m_Count; }

private:
    std::uint64_t m_Count = 0;
};

std::string siblings(int i_Count)
{
    std::string xml = "<r>";
    for (int i = 1; i <= i_Count; ++i)
    {
        xml += "<a x='" + std::to_string(i % 10) + "' n='" + std::to_string(i) + "' e=''/>";
    }
    return xml + "</r>";
}

/// A chain of elements.
std::string levels(int i_Count)
{
    std::string xml;
    for (int i = 1; i <= i_Count; ++i)
    {
        xml += "<a x='" + std::to_string(i % 10) + "' n='" + std::to_string(i) + "' e=''>";
    }
    for (int i = 1; i <= i_Count; ++i)
    {
        xml += "</a>";
    }
    return xml;
}

/// Half of the elements in a chain, each with one leaf before the next one of the chain.
std::string ladder(int i_Count)
{
    std::string xml;
    for (int i = 1; i <= i_Count / 2; ++i)
    {
        xml += "<a n='" + std::to_string(i) + "' x='1' e=''><a x='1' e=''/>";
    }
    for (int i = 1; i <= i_Count / 2; ++i)
    {
        xml += "</a>";
    }
    return xml;
}

std::uint64_t visitsOf(const TestDocument& i_Document, const char* i_Query)
{
    const std::uint64_t before = XPathBudget::spent();
    answer(i_Document.root(), i_Query);
    return XPathBudget::spent() - before;
}

/// Room for what does not depend on the size.
constexpr std::uint64_t s_Constant = 200;

/// Twice the document may cost twice the visits and a tenth.
void expectProportion(std::uint64_t i_Half, std::uint64_t i_Whole, const char* i_Query)
{
    EXPECT_GT(i_Half, 0U) << i_Query;
    EXPECT_LE(i_Whole, i_Half * 2 + i_Half / 5 + s_Constant) << i_Query << ": " << i_Half << " and " << i_Whole;
}

// --- While somebody listens ---------------------------------------------------------------------

TEST(XPathCost, GrowsInProportionWhileSomebodyListens)
{
    const char* const queries[] = {
        "r/a/@n",
        "r/a[@x]/@x",
        "r/a[@x='3']/@n",
        "r/a[last()]/@n",
        "r/a[position()=5]/@n",
        "r/a[7]/@n",
        "//a[@x]/@n",
        "//a[@x][@n]/@n",
        "r/a[.='q']/@n",
        "r/a/self::a[@x]/@n",
        "r/a/parent::r[@x]/@n",
        "count(r/a[@x])",
        "r/a[@x=3]/@n",
        "r/a | r/a[@x]/@n",
    };
    const TestDocument half(siblings(500));
    const TestDocument whole(siblings(1000));
    for (const char* pQuery : queries)
    {
        const ForgottenTrace halfTrace;
        const std::uint64_t halfVisits = visitsOf(half, pQuery);
        const std::uint64_t halfRecords = halfTrace.count();
        const ForgottenTrace wholeTrace;
        const std::uint64_t wholeVisits = visitsOf(whole, pQuery);
        expectProportion(halfVisits, wholeVisits, pQuery);
        expectProportion(halfRecords, wholeTrace.count(), pQuery);
    }
}

// --- Of every kind of question ------------------------------------------------------------------

struct CostRow
{
    const char* query;
    std::uint64_t most; ///< visits for each element
};

/// Most of these are quadratic, and some cubic, where lists that share their nodes are walked one by one.
const CostRow s_Rows[] = {
    // subtrees that are searched for text
    {"//a[@e='q']/@x", 20},
    {"//a[contains(@e,'q')]", 20},
    {"//a[a='q']", 20},
    {"//a[string()='q']", 20},
    {"//a[normalize-space()='q']", 20},
    {"count(//a[..])", 20},
    {"count(//a[parent::r])", 20},
    {"count(//a[parent::*])", 20},
    // candidates of a long axis
    {"r/a/preceding::a[1]/@n", 40},
    {"//a/preceding::a[1]/@n", 40},
    {"//a/preceding::a[@x]/@n", 40},
    {"//a/preceding::a[last()]/@n", 40},
    {"//a/preceding::a[position()<3]/@n", 40},
    {"//a/following::a[@x]", 40},
    {"//a/following::a[1]", 40},
    {"//a/following::a[last()]", 40},
    {"//a/following::a[@x][2]/@n", 40},
    {"//a/following::a[.='q']", 40},
    {"//a/preceding-sibling::a[@x]", 40},
    {"//a/preceding-sibling::a[2]", 40},
    {"//a/ancestor::a[1]", 40},
    {"//a/ancestor::a[@x]", 40},
    {"//a/ancestor::a[last()]", 40},
    {"//a/ancestor::a[50]/@n", 40},
    {"//a/ancestor-or-self::a[@x][2]", 40},
    {"//a/descendant::a[@x]/@n", 40},
    {"//a/descendant::a[1]/@n", 40},
    {"count(//a/preceding::a)", 40},
    {"count(//a/following::a)", 40},
    // conditions with a long axis
    {"count(//a[preceding::a])", 40},
    {"count(//a[following::x])", 40},
    {"count(//a[ancestor::x])", 40},
    {"count(//a[ancestor::a])", 40},
    {"count(//a[descendant::x])", 40},
    {"count(//a[descendant::a])", 40},
    {"count(//a[preceding-sibling::a])", 40},
    {"count(//a[not(following::a)])", 40},
    {"count(//a[count(preceding::a)=5])", 40},
    {"count(//a[count(ancestor::a)>5])", 40},
    {"count(//a[count(following::*)>count(preceding::*)])", 60},
    {"count(//a[name(preceding::a)='a'])", 40},
    {"count(//a[preceding::a='q'])", 40},
    {"count(//a[preceding::a and following::a])", 60},
    {"count(//a/preceding::a[preceding::a])", 60},
    {"count(//a/following::a[count(following::a)=3])", 60},
    {"count(//a/ancestor::a[ancestor::a])", 60},
    {"count(//a/descendant::a[descendant::a])", 60},
};

/// Visits that do not depend on the size: what is walked before the whole tree is looked at.
constexpr std::uint64_t s_Patience = 2000;

void expectFew(const std::string& i_Xml, int i_Elements, const char* i_Shape)
{
    const TestDocument document(i_Xml);
    for (const CostRow& row : s_Rows)
    {
        const std::uint64_t visits = visitsOf(document, row.query);
        EXPECT_GT(visits, 0U) << row.query;
        EXPECT_LE(visits, row.most * static_cast<std::uint64_t>(i_Elements) + s_Patience)
            << row.query << " on " << i_Shape;
    }
}

TEST(XPathCost, IsInProportionToTheDocument)
{
    constexpr int count = 4000;
    expectFew(siblings(count), count, "siblings");
    expectFew(levels(count), count, "levels");
    expectFew(ladder(count), count, "a ladder");
}

/// Names with "::" are read as an axis and a name, and so nothing is found below them.
TEST(XPathCost, OfNamesWithColonsIsInProportion)
{
    constexpr int count = 2000;
    std::string xml = "<r><p::q>";
    for (int i = 1; i <= count; ++i)
    {
        xml += "<item id='x" + std::to_string(i) + "'/>";
    }
    xml += "</p::q>";
    for (int i = 1; i <= count; ++i)
    {
        xml += "<item id='y" + std::to_string(i) + "'/><no::item id='z'/>";
    }
    const TestDocument document(xml + "</r>");
    EXPECT_EQ(answer(document.root(), "//item[@id='x5']/@id"), "(none)");
    EXPECT_EQ(answer(document.root(), "//item[@id='y5']/@id"), "y5");
    EXPECT_EQ(answer(document.root(), "count(r/*[@id='y5'])"), "2") << "an element of another name at its place, too";
    for (const char* pQuery : {"//item[@id='x5']/@id", "//*[@id='y5']/@id", "count(r/*[@id])", "count(//*[.='q'])"})
    {
        EXPECT_LE(visitsOf(document, pQuery), 50U * count) << pQuery;
    }
}

// --- The budget ---------------------------------------------------------------------------------

class XPathBudgetTest : public testing::Test
{
protected:
    XPathBudgetTest() { m_File = m_Folder.write("document.xml", siblings(300)); }
    ~XPathBudgetTest() override
    {
        XPathBudget::setUsual(0);
        XmlCache::destroyInstance();
    }

    TErrorCode evaluate(const char* i_Query, XPathOutputList& o_Records) const
    {
        return XPathEngine().start(viewOf(String(i_Query)), viewOf(String(m_File.c_str())), o_Records);
    }

    TemporaryFolder m_Folder;
    std::string m_File;
};

/// The lists of this one depend on more than their nodes, so that each is filtered by itself.
constexpr const char* s_Product = "r/a/following::a[position()<last()]/@n";

TEST_F(XPathBudgetTest, EndsAnEvaluationThatVisitsTooMany)
{
    XPathOutputList records;
    EXPECT_EQ(evaluate(s_Product, records), 0);
    EXPECT_EQ(records.size(), 298U);
    XPathBudget::setUsual(20000);
    records.clear();
    const RecordedTrace trace(TraceError);
    EXPECT_EQ(evaluate(s_Product, records), XML_PLUGIN_ERROR_XPATH_PARSER_ERROR);
    EXPECT_TRUE(records.empty());
    ASSERT_EQ(trace.lines.size(), 1U);
    EXPECT_TRUE(trace.lines.front().starts_with("5|XPathEngine::start|1|"));
    EXPECT_TRUE(trace.lines.front().ends_with("|Given up: the evaluation has visited more than 20000 nodes"));
    EXPECT_EQ(evaluate("count(r/a)", records), 0) << "each evaluation has a budget of its own";
}

TEST_F(XPathBudgetTest, EndsEveryPartOfAnEvaluation)
{
    XPathBudget::setUsual(20000);
    for (const char* pQuery :
         {"count(r/a/following::a[position()<last()])", "string(r/a/following::a[position()<last()]/@n)",
          "not(r/a/following::a[position()<last()])", "r/a/following::a[position()<last()] | r/a",
          "r/a/following::a[last()>position()]/following::a[position()<last()]/@n"})
    {
        XPathOutputList records;
        EXPECT_EQ(evaluate(pQuery, records), XML_PLUGIN_ERROR_XPATH_PARSER_ERROR) << pQuery;
        EXPECT_TRUE(records.empty()) << pQuery;
    }
}

TEST_F(XPathBudgetTest, StopsSoonAfterIt)
{
    XPathBudget::setUsual(20000);
    const std::uint64_t before = XPathBudget::spent();
    XPathOutputList records;
    evaluate(s_Product, records);
    EXPECT_LE(XPathBudget::spent() - before, 25000U);
}

} // namespace
