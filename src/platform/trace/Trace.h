#pragma once

#include "base/String.h"
#include "trace/Export.h"

/// Keeps code that writes a record apart from the code that runs when nobody listens, so that the latter fits in the
/// processor's cache.
#if defined(__GNUC__)
#define TRACE_COLD __attribute__((cold))
#else
#define TRACE_COLD
#endif

/// Levels of trace records. A sink receives the records up to the level with which it was installed.
enum TraceLevel : int
{
    TraceOff = 0,
    TraceError = 1,
    TraceWarning = 2,
    TraceInformation = 3
};

/// One finished message.
struct TraceRecord
{
    int component;         ///< number passed to `Tracer::getInstance`
    const wchar_t* scope;  ///< name of the operation that wrote it
    int level;             ///< TraceError, TraceWarning or TraceInformation
    const wchar_t* source; ///< path of the source file, without its extension
    int line;              ///< line in that file
    String text;
};

/// Receives trace records. The host installs a sink and must keep it alive until it is replaced.
class TRACE_API TraceSink
{
public:
    virtual ~TraceSink();
    /// Called on the thread that traces. Must not throw.
    virtual void write(const TraceRecord& i_Record) = 0;
};

/// Connects all tracing components of the process with the one sink.
///
/// Threads: `install` must not run while another thread traces.
/// Tested by: tests/platform/trace/TraceTest.cpp
class TRACE_API Tracer
{
public:
    /// The tracer of one component.
    static constexpr Tracer getInstance(int i_Component) noexcept { return Tracer(i_Component); }

    /// Sends records up to \p i_Level to \p i_pSink, which is not owned. A null sink or `TraceOff` switches tracing
    /// off.
    static void install(TraceSink* i_pSink, int i_Level);
    static TraceSink* sink() noexcept;

    constexpr int component() const noexcept { return m_Component; }

    /// The level that the sink asked for; `TraceOff` without a sink. Public only for the inline test.
    static int s_Level;

private:
    explicit constexpr Tracer(int i_Component) noexcept : m_Component(i_Component) {}
    int m_Component;
};

/// The trace scope of one operation, from its beginning to its end. Costs nothing until a record is written.
class TRACE_API Trace
{
public:
    struct Position
    {
        const wchar_t* source;
        int line;
    };
    /// Marks the end of a record. The end of the statement ends the record too.
    struct End
    {
    };
    static constexpr End end{};

    /// A message under construction. The destructor sends it to the sink.
    class TRACE_API Record
    {
    public:
        /// Takes the scope by value, so that the scope needs no memory as long as nobody listens.
        TRACE_COLD Record(Trace i_Trace, int i_Level, Position i_Position);
        ~Record();
        Record(const Record&) = delete;
        Record& operator=(const Record&) = delete;

        Record& operator<<(const wchar_t* i_Text);
        Record& operator<<(const String& i_Text);
        Record& operator<<(bool i_Value);
        Record& operator<<(int i_Value);
        Record& operator<<(unsigned i_Value);
        Record& operator<<(long i_Value);
        Record& operator<<(unsigned long i_Value);
        Record& operator<<(long long i_Value);
        Record& operator<<(unsigned long long i_Value);
        /// Prints as in the C++ classic locale with precision 6.
        Record& operator<<(double i_Value);
        /// Prints the address, or 0 for null.
        Record& operator<<(const void* i_pAddress);
        void operator<<(End) noexcept {}

    private:
        TraceRecord m_Record;
    };

    constexpr Trace(Tracer i_Tracer, const wchar_t* i_Scope) noexcept : m_Tracer(i_Tracer), m_Scope(i_Scope) {}

    static Position pos(const wchar_t* i_Source, int i_Line) noexcept { return {i_Source, i_Line}; }
    static bool isEnabled(int i_Level) noexcept { return i_Level <= Tracer::s_Level; }

private:
    Tracer m_Tracer;
    const wchar_t* m_Scope;
};

/// Whether a statement writes a record; always false in a build without traces.
#define TRACE_IS_ON(i_Level) Trace::isEnabled(i_Level)

/// Writes one record: `TRACE_RECORD(trace, TraceInformation, Trace::pos(source, line)) << L"text" << value;` If the
/// sink does not want the level, nothing after it is evaluated, and the statement costs one branch.
#define TRACE_RECORD(i_Trace, i_Level, i_Position)                                                                     \
    if (!TRACE_IS_ON(i_Level)) [[likely]]                                                                              \
    {                                                                                                                  \
    }                                                                                                                  \
    else                                                                                                               \
        Trace::Record((i_Trace), (i_Level), (i_Position))
