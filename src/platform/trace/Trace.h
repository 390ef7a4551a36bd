#pragma once

#include "base/String.h"
#include "trace/Export.h"

/// Levels of a trace record. A sink gets those up to the level that it was installed with.
enum TraceLevel : int
{
    TraceOff = 0, ///< no record has this level
    TraceError = 1,
    TraceWarning = 2,
    TraceInformation = 3
};

/// One finished record.
///
/// Ownership: the texts that are pointers (null-terminated, never null) belong to the code that wrote the record and
/// are valid while that code is loaded. A sink that keeps them longer copies them.
struct TraceRecord
{
    int component;         ///< number passed to `Tracer::getInstance`
    const wchar_t* scope;  ///< name of the operation that wrote it
    int level;             ///< TraceError, TraceWarning or TraceInformation
    const wchar_t* source; ///< path of the source file, without the ending; "" when not told
    int line;              ///< line in that file, counted from 1; 0 when not told
    String text;
};

/// Receives trace records. Installed by the host, which keeps it alive until it is replaced.
class TRACE_API TraceSink
{
public:
    virtual ~TraceSink();
    /// Called in the middle of the operation that writes \p i_Record, on its thread. The record is valid during the
    /// call. Must not throw, and must not call what writes records.
    virtual void write(const TraceRecord& i_Record) = 0;
};

/// The process-wide switch between those who write records and the one sink.
///
/// Threads: `install` must not run while another thread writes records.
/// Tested by: tests/platform/trace/TraceTest.cpp
class TRACE_API Tracer
{
public:
    /// The tracer of component number \p i_Component. Holds nothing and need not be kept.
    static constexpr Tracer getInstance(int i_Component) noexcept { return Tracer(i_Component); }

    /// Sends the records with a level from 1 to \p i_Level to \p i_pSink, in place of the sink before. Does not take
    /// ownership. Null or `TraceOff` switches tracing off.
    static void install(TraceSink* i_pSink, int i_Level);
    /// The installed sink; null when there is none.
    static TraceSink* sink() noexcept;

    constexpr int component() const noexcept { return m_Component; }

    /// The level that the sink was installed with; `TraceOff` without a sink. Read by `Trace::isEnabled`, written by
    /// `install` only.
    static int s_Level;

private:
    explicit constexpr Tracer(int i_Component) noexcept : m_Component(i_Component) {}
    int m_Component;
};

/// The trace scope of one operation, open for its whole run. A record is written as one chain of insertions: its level,
/// its position, what it says, and the end marker.
///
///     Trace trace(Tracer::getInstance(5), L"XPathEngine::start");
///     trace << TraceInformation << Trace::pos(L"XPathEngine", 61) << L"result = " << code << Trace::end;
///
/// Costs nothing until a record is written. A record that no sink wants is dropped, but what it would say is evaluated:
/// ask `isEnabled` first where that costs.
///
/// Ownership: does not own the scope's name, which must be constant.
/// Threads: one at a time.
/// Tested by: tests/platform/trace/TraceTest.cpp
class TRACE_API Trace
{
public:
    /// A place in a source file.
    struct Position
    {
        const wchar_t* source;
        int line;
    };
    /// Marks the end of a record. The end of the statement ends it, too.
    struct End
    {
    };
    static constexpr End end{};

    /// One record under construction; goes to the sink at its end.
    class TRACE_API Record
    {
    public:
        /// A record of the scope \p i_Trace without a position and without text.
        Record(Trace i_Trace, TraceLevel i_Level);
        ~Record();
        Record(const Record&) = delete;
        Record& operator=(const Record&) = delete;

        Record& operator<<(Position i_Position) noexcept;
        /// Null-terminated; null is the empty text.
        Record& operator<<(const wchar_t* i_Text);
        Record& operator<<(const String& i_Text);
        /// "true" or "false".
        Record& operator<<(bool i_Value);
        /// Integers in decimal.
        Record& operator<<(int i_Value);
        Record& operator<<(unsigned i_Value);
        Record& operator<<(long i_Value);
        Record& operator<<(unsigned long i_Value);
        Record& operator<<(long long i_Value);
        Record& operator<<(unsigned long long i_Value);
        /// As a stream of the classic locale prints it with precision 6.
        Record& operator<<(double i_Value);
        /// The address in hexadecimal, or "0" for null.
        Record& operator<<(const void* i_pAddress);
        void operator<<(End) noexcept {}

    private:
        TraceRecord m_Record;
    };

    /// \p i_Scope is the operation's name: a constant text, never null.
    constexpr Trace(Tracer i_Tracer, const wchar_t* i_Scope) noexcept : m_Tracer(i_Tracer), m_Scope(i_Scope) {}

    /// Begins a record.
    Record operator<<(TraceLevel i_Level) const { return Record(*this, i_Level); }

    /// \p i_Source is a constant text, never null; \p i_Line is counted from 1.
    static constexpr Position pos(const wchar_t* i_Source, int i_Line) noexcept { return {i_Source, i_Line}; }
    /// Whether a record of this level would reach a sink.
    static bool isEnabled(int i_Level) noexcept { return i_Level <= Tracer::s_Level; }

private:
    Tracer m_Tracer;
    const wchar_t* m_Scope;
};
