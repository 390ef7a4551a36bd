#pragma once

#include "base/String.h"
#include "trace/Trace.h"

#include <type_traits>
#include <utility>

// The one place where the engine meets the platform's trace library.
//
// XMLPLUGIN_TRACE_ALWAYS or XMLPLUGIN_TRACE_NEVER is defined for a library that cannot tell whether somebody listens:
// then every operation writes its records, or none does. Without either the library is asked.

/// Keeps code that leads to a record apart from the code that runs when nobody listens, which then fits in the
/// processor's instruction cache.
#if defined(__GNUC__)
#define TRACE_COLD __attribute__((cold))
#else
#define TRACE_COLD
#endif

namespace XmlPlugin
{

/// The component of all trace records of the plug-in.
inline constexpr int s_Tracer = 5;

/// The trace scope of one function, opened where the function begins. Opens a scope of the platform for each record, so
/// it costs nothing until a record is written.
///
/// Ownership: none; the scope's name is a constant.
/// Tested by: tests/plugins/XmlPlugin/common/values/XmlTraceTest.cpp
class Trace
{
public:
    /// A line of a source file, whose path is given without the ending.
    struct Position
    {
        const wchar_t* source;
        int line;
    };
    /// Marks the end of a record. The end of the statement does so too.
    struct End
    {
    };
    static constexpr End end{};

    /// One record under construction. The constructor writes its head, the destructor the end marker.
    class Record
    {
    public:
        /// Takes the scope by value, so that it needs no memory as long as no sink wants records.
        TRACE_COLD Record(Trace i_Trace, TraceLevel i_Level, Position i_Position)
            : m_Trace(Tracer::getInstance(i_Trace.m_Component), i_Trace.m_Scope), m_Stream(m_Trace << i_Level)
        {
            m_Stream << ::Trace::pos(i_Position.source, i_Position.line);
        }
        TRACE_COLD ~Record() { m_Stream << ::Trace::end; }
        Record(const Record&) = delete;
        Record& operator=(const Record&) = delete;

        /// \p i_Text must be null-terminated.
        TRACE_COLD Record& operator<<(const wchar_t* i_Text) { return write(i_Text); }
        TRACE_COLD Record& operator<<(const String& i_Text) { return write(i_Text); }
        TRACE_COLD Record& operator<<(const void* i_pAddress) { return write(i_pAddress); }
        template <class Number>
        requires std::is_arithmetic_v<Number> TRACE_COLD Record& operator<<(Number i_Value) { return write(i_Value); }
        template <class Enumeration>
        requires std::is_enum_v<Enumeration> TRACE_COLD Record& operator<<(Enumeration i_Value)
        {
            return write(static_cast<std::underlying_type_t<Enumeration>>(i_Value));
        }
        void operator<<(End) noexcept {}

    private:
        template <class Value>
        Record& write(const Value& i_Value)
        {
            m_Stream << i_Value;
            return *this;
        }

        using Stream = decltype(std::declval<::Trace&>() << TraceInformation);

        ::Trace m_Trace;
        Stream m_Stream; ///< the scope itself, or what the library makes for one record
    };

    constexpr Trace(int i_Component, const wchar_t* i_Scope) noexcept : m_Component(i_Component), m_Scope(i_Scope) {}

    static constexpr Position pos(const wchar_t* i_Source, int i_Line) noexcept { return {i_Source, i_Line}; }

    /// Whether records of this level are written. False only if no sink wants them.
    static bool isEnabled([[maybe_unused]] TraceLevel i_Level) noexcept
    {
#if defined(XMLPLUGIN_TRACE_ALWAYS)
        return true;
#elif defined(XMLPLUGIN_TRACE_NEVER)
        return false;
#else
        return ::Trace::isEnabled(i_Level);
#endif
    }

private:
    int m_Component;
    const wchar_t* m_Scope;
};

/// The record of `XML_TRACE_VALUE`.
template <class Value>
TRACE_COLD void traceValue(const wchar_t* i_Scope, Trace::Position i_Position, const wchar_t* i_Text, Value i_Value)
{
    Trace::Record(Trace(s_Tracer, i_Scope), TraceInformation, i_Position) << i_Text << i_Value;
}

} // namespace XmlPlugin

/// Whether records of this level are written.
#define TRACE_IS_ON(i_Level) ::XmlPlugin::Trace::isEnabled(i_Level)

/// Names the source file of the records that follow. Used once per source file, without the file's ending.
#define XML_TRACE_SOURCE(i_Name)                                                                                       \
    namespace                                                                                                          \
    {                                                                                                                  \
    constexpr const wchar_t* s_TraceSource = L"./../../../../src/plugins/XmlPlugin/common/" i_Name;                    \
    }

/// One record of the scope \p i_Trace at this line: `XML_TRACE(trace, TraceInformation) << L"text" << value;`
/// If no sink wants the record, the statement costs one branch and evaluates nothing after the macro.
#define XML_TRACE(i_Trace, i_Level) XML_TRACE_AT(i_Trace, i_Level, __LINE__)
/// Same, with a line that is part of the contract of the record.
#define XML_TRACE_AT(i_Trace, i_Level, i_Line)                                                                         \
    if (!TRACE_IS_ON(i_Level)) [[likely]]                                                                              \
    {                                                                                                                  \
    }                                                                                                                  \
    else                                                                                                               \
        ::XmlPlugin::Trace::Record((i_Trace), (i_Level), ::XmlPlugin::Trace::pos(s_TraceSource, (i_Line)))
/// The only record of a scope: a text and a value. For functions so short that the code of a full record would matter:
/// `XML_TRACE_VALUE(L"scope", L"result = ", result);`
#define XML_TRACE_VALUE(i_Scope, i_Text, i_Value)                                                                      \
    do                                                                                                                 \
    {                                                                                                                  \
        if (TRACE_IS_ON(TraceInformation)) [[unlikely]]                                                                \
            ::XmlPlugin::traceValue((i_Scope), ::XmlPlugin::Trace::pos(s_TraceSource, __LINE__), (i_Text), (i_Value)); \
    } while (false)
