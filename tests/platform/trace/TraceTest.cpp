#include "trace/Trace.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace
{

constexpr Tracer s_Tracer = Tracer::getInstance(42);

/// What a sink was given, copied so that it stays.
struct Kept
{
    int component;
    std::wstring scope;
    int level;
    std::wstring source;
    int line;
    std::string text;
};

class KeepingSink final : public TraceSink
{
public:
    void write(const TraceRecord& i_Record) override
    {
        records.push_back({i_Record.component, i_Record.scope, i_Record.level, i_Record.source, i_Record.line,
                           i_Record.text.toNarrow()});
    }
    std::vector<Kept> records;
};

class TraceTest : public testing::Test
{
protected:
    ~TraceTest() override { Tracer::install(nullptr, TraceOff); }

    /// The text of a record that writes this value alone.
    template <class TValue>
    std::string textOf(const TValue& i_Value)
    {
        Tracer::install(&m_Sink, TraceInformation);
        m_Sink.records.clear();
        const Trace trace(s_Tracer, L"scope");
        trace << TraceInformation << Trace::pos(L"source", 1) << i_Value;
        return m_Sink.records.size() == 1 ? m_Sink.records.front().text : "no record";
    }

    KeepingSink m_Sink;
};

} // namespace

TEST_F(TraceTest, WithoutASinkRecordsAreDropped)
{
    Tracer::install(nullptr, TraceInformation);
    EXPECT_EQ(Tracer::sink(), nullptr);
    EXPECT_FALSE(Trace::isEnabled(TraceError));
    const Trace trace(s_Tracer, L"scope");
    trace << TraceError << Trace::pos(L"source", 1) << L"text" << Trace::end;
    Tracer::install(&m_Sink, TraceInformation);
    EXPECT_TRUE(m_Sink.records.empty());
}

TEST_F(TraceTest, SinkTakesLevelsUpToItsOwn)
{
    for (int wanted = TraceOff; wanted <= TraceInformation; ++wanted)
    {
        Tracer::install(&m_Sink, wanted);
        m_Sink.records.clear();
        const Trace trace(s_Tracer, L"scope");
        for (int level = TraceError; level <= TraceInformation; ++level)
        {
            EXPECT_EQ(Trace::isEnabled(level), level <= wanted);
            trace << static_cast<TraceLevel>(level) << Trace::pos(L"source", level) << L"text";
        }
        EXPECT_EQ(m_Sink.records.size(), static_cast<std::size_t>(wanted));
    }
}

TEST_F(TraceTest, RecordCarriesEverything)
{
    Tracer::install(&m_Sink, TraceInformation);
    EXPECT_EQ(Tracer::sink(), &m_Sink);
    const Trace trace(s_Tracer, L"Class::operation");
    trace << TraceWarning << Trace::pos(L"./folder/Source", 61) << L" result = " << -15103 << L", "
          << String(L"\U0001F600") << Trace::end;
    ASSERT_EQ(m_Sink.records.size(), 1U);
    const Kept& record = m_Sink.records.front();
    EXPECT_EQ(record.component, 42);
    EXPECT_EQ(record.scope, L"Class::operation");
    EXPECT_EQ(record.level, static_cast<int>(TraceWarning));
    EXPECT_EQ(record.source, L"./folder/Source");
    EXPECT_EQ(record.line, 61);
    EXPECT_EQ(record.text, " result = -15103, \xF0\x9F\x98\x80");
}

TEST_F(TraceTest, RecordsComeInOrderAndAlsoWithoutText)
{
    Tracer::install(&m_Sink, TraceInformation);
    const Trace trace(s_Tracer, L"scope");
    trace << TraceInformation << Trace::pos(L"source", 1) << L"first";
    trace << TraceInformation << Trace::pos(L"source", 2);
    trace << TraceInformation << Trace::pos(L"source", 3) << L"third";
    ASSERT_EQ(m_Sink.records.size(), 3U);
    EXPECT_EQ(m_Sink.records[0].text, "first");
    EXPECT_EQ(m_Sink.records[1].text, "");
    EXPECT_EQ(m_Sink.records[2].text, "third");
}

TEST_F(TraceTest, LastSinkInstalledIsTheOne)
{
    KeepingSink other;
    Tracer::install(&m_Sink, TraceInformation);
    Tracer::install(&other, TraceError);
    const Trace trace(s_Tracer, L"scope");
    trace << TraceError << Trace::pos(L"source", 1) << L"text";
    EXPECT_TRUE(m_Sink.records.empty());
    EXPECT_EQ(other.records.size(), 1U);
}

TEST_F(TraceTest, NegativeLevelSwitchesOff)
{
    Tracer::install(&m_Sink, -1);
    EXPECT_EQ(Tracer::sink(), nullptr);
    EXPECT_FALSE(Trace::isEnabled(TraceError));
}

TEST_F(TraceTest, RecordsMayLackTheirPosition)
{
    Tracer::install(&m_Sink, TraceInformation);
    const Trace trace(s_Tracer, L"scope");
    trace << TraceInformation << L"text";
    ASSERT_EQ(m_Sink.records.size(), 1U);
    EXPECT_EQ(m_Sink.records.front().source, L"");
    EXPECT_EQ(m_Sink.records.front().line, 0);
    EXPECT_EQ(m_Sink.records.front().text, "text");
}

/// The pieces of one record may be what leaves records itself.
TEST_F(TraceTest, RecordsWithinARecordAreTheirOwn)
{
    Tracer::install(&m_Sink, TraceInformation);
    const Trace trace(s_Tracer, L"scope");
    const auto inner = [&trace]
    {
        trace << TraceInformation << Trace::pos(L"source", 2) << L"inner" << Trace::end;
        return 7;
    };
    trace << TraceInformation << Trace::pos(L"source", 1) << L"outer " << inner() << Trace::end;
    ASSERT_EQ(m_Sink.records.size(), 2U);
    EXPECT_EQ(m_Sink.records[0].text, "inner");
    EXPECT_EQ(m_Sink.records[1].text, "outer 7");
}

TEST_F(TraceTest, PrintsEveryType)
{
    EXPECT_EQ(textOf(L"wide"), "wide");
    EXPECT_EQ(textOf(static_cast<const wchar_t*>(nullptr)), "");
    EXPECT_EQ(textOf(String(L"text")), "text");
    EXPECT_EQ(textOf(true), "true");
    EXPECT_EQ(textOf(false), "false");
    EXPECT_EQ(textOf(INT_MIN), "-2147483648");
    EXPECT_EQ(textOf(UINT_MAX), "4294967295");
    EXPECT_EQ(textOf(-7L), "-7");
    EXPECT_EQ(textOf(7UL), "7");
    EXPECT_EQ(textOf(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(textOf(ULLONG_MAX), "18446744073709551615");
}

TEST_F(TraceTest, PrintsDoublesWithSixDigits)
{
    EXPECT_EQ(textOf(0.0), "0");
    EXPECT_EQ(textOf(-0.0), "-0");
    EXPECT_EQ(textOf(1.5), "1.5");
    EXPECT_EQ(textOf(1.0 / 3), "0.333333");
    EXPECT_EQ(textOf(1234567.0), "1.23457e+06");
    EXPECT_EQ(textOf(1e-5), "1e-05");
    EXPECT_EQ(textOf(std::numeric_limits<double>::lowest()), "-1.79769e+308");
    EXPECT_EQ(textOf(std::numeric_limits<double>::infinity()), "inf");
    EXPECT_EQ(textOf(-std::numeric_limits<double>::infinity()), "-inf");
    EXPECT_EQ(textOf(std::numeric_limits<double>::quiet_NaN()), "nan");
}

TEST_F(TraceTest, PrintsAddresses)
{
    EXPECT_EQ(textOf(static_cast<const void*>(nullptr)), "0");
    EXPECT_EQ(textOf(reinterpret_cast<const void*>(std::uintptr_t{0xabc0})), "0xabc0");
    EXPECT_EQ(textOf(reinterpret_cast<const void*>(UINTPTR_MAX)).size(), 2 + 2 * sizeof(void*));
}
