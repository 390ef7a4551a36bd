// How the visits of nodes, not the time, grow with the document.
#include "QuerySupport.h"
#include "values/XPathBudget.h"

#include "trace/Trace.h"

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

} // namespace
