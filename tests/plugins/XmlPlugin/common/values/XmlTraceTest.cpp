#include "values/XmlTrace.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

XML_TRACE_SOURCE(L"XmlTraceTest")

namespace XmlPlugin
{

namespace
{

class KeepingSink final : public TraceSink
{
public:
    void write(const TraceRecord& i_Record) override
    {
        lines.push_back(std::to_string(i_Record.component) + ' ' + std::to_string(i_Record.level) + ' ' +
                        String(i_Record.scope).toNarrow() + ' ' + String(i_Record.source).toNarrow() + ':' +
                        std::to_string(i_Record.line) + ' ' + i_Record.text.toNarrow());
    }

    std::vector<std::string> lines;
};

class XmlTraceTest : public testing::Test
{
protected:
    ~XmlTraceTest() override { Tracer::install(nullptr, TraceOff); }

    /// The text of a record that holds this value alone.
    template <class Value>
    std::string textOf(const Value& i_Value)
    {
        Tracer::install(&m_Sink, TraceInformation);
        m_Sink.lines.clear();
        const Trace trace(s_Tracer, L"scope");
        XML_TRACE_AT(trace, TraceInformation, 1) << i_Value;
        return m_Sink.lines.size() == 1 ? m_Sink.lines.front().substr(m_Sink.lines.front().find(":1 ") + 3) : "none";
    }

    KeepingSink m_Sink;
};

enum Plain
{
    PlainValue = -7
};

int countCall(int& io_Count)
{
    return ++io_Count;
}

TEST_F(XmlTraceTest, WithoutASinkNothingIsEvaluated)
{
    int calls = 0;
    const Trace trace(s_Tracer, L"scope");
    XML_TRACE_AT(trace, TraceError, countCall(calls)) << countCall(calls);
    XML_TRACE_VALUE(L"scope", L"text", countCall(calls));
    EXPECT_EQ(calls, 0);
    EXPECT_FALSE(Trace::isEnabled(TraceError));
}

TEST_F(XmlTraceTest, BelowTheWantedLevelNothingIsEvaluated)
{
    Tracer::install(&m_Sink, TraceWarning);
    int calls = 0;
    const Trace trace(s_Tracer, L"scope");
    XML_TRACE(trace, TraceInformation) << countCall(calls);
    XML_TRACE_VALUE(L"scope", L"text", countCall(calls));
    XML_TRACE(trace, TraceWarning) << countCall(calls);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(m_Sink.lines.size(), 1U);
}

TEST_F(XmlTraceTest, RecordCarriesEverything)
{
    Tracer::install(&m_Sink, TraceInformation);
    const Trace trace(s_Tracer, L"Class::operation");
    XML_TRACE_AT(trace, TraceError, 61) << L" result = " << -15103 << Trace::end;
    XML_TRACE_VALUE(L"Class::other", L"result = ", true);
    const int line = __LINE__ - 1;
    const std::string source = "./../../../../src/plugins/XmlPlugin/common/XmlTraceTest:";
    ASSERT_EQ(m_Sink.lines.size(), 2U);
    EXPECT_EQ(m_Sink.lines[0], "5 1 Class::operation " + source + "61  result = -15103");
    EXPECT_EQ(m_Sink.lines[1], "5 3 Class::other " + source + std::to_string(line) + " result = true");
}

TEST_F(XmlTraceTest, PrintsEveryType)
{
    EXPECT_EQ(textOf(L"wide"), "wide");
    EXPECT_EQ(textOf(String(L"text")), "text");
    EXPECT_EQ(textOf(false), "false");
    EXPECT_EQ(textOf(-7), "-7");
    EXPECT_EQ(textOf(7UL), "7");
    EXPECT_EQ(textOf(1.5), "1.5");
    EXPECT_EQ(textOf(PlainValue), "-7");
    EXPECT_EQ(textOf(static_cast<const void*>(nullptr)), "0");
}

TEST_F(XmlTraceTest, LeavesTheElseToTheIfAroundIt)
{
    Tracer::install(&m_Sink, TraceError);
    const Trace trace(s_Tracer, L"scope");
    bool wentElsewhere = false;
    if (m_Sink.lines.empty())
    {
        XML_TRACE(trace, TraceInformation) << L"text";
    }
    else
    {
        wentElsewhere = true;
    }
    EXPECT_FALSE(wentElsewhere);
    EXPECT_TRUE(m_Sink.lines.empty());
}

} // namespace

} // namespace XmlPlugin
