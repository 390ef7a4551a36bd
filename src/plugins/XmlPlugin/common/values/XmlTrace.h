#pragma once

#include "trace/Trace.h"

namespace XmlPlugin
{

/// The component name of all trace records of the plug-in.
inline constexpr Tracer s_Tracer = Tracer::getInstance(5);

/// The record of `XML_TRACE_VALUE`.
template <class Value>
TRACE_COLD void traceValue(const wchar_t* i_Scope, Trace::Position i_Position, const wchar_t* i_Text, Value i_Value)
{
    const Trace trace(s_Tracer, i_Scope);
    TRACE_RECORD(trace, TraceInformation, i_Position) << i_Text << i_Value;
}

} // namespace XmlPlugin

/// Names the source file of the records below it. Used once per source file, without a semicolon.
#define XML_TRACE_SOURCE(i_Name)                                                                                       \
    namespace                                                                                                          \
    {                                                                                                                  \
    constexpr const wchar_t* s_TraceSource = L"./../../../../src/plugins/XmlPlugin/common/" i_Name;                    \
    }

/// One record of the scope \p i_Trace at this line: `XML_TRACE(trace, TraceInformation) << L"text";`
#define XML_TRACE(i_Trace, i_Level) TRACE_RECORD((i_Trace), (i_Level), Trace::pos(s_TraceSource, __LINE__))
/// Same, with a line that is part of the contract of the record.
#define XML_TRACE_AT(i_Trace, i_Level, i_Line) TRACE_RECORD((i_Trace), (i_Level), Trace::pos(s_TraceSource, (i_Line)))
/// The only record of a scope: a text and a value. For functions so short that the code of a full record would matter:
/// `XML_TRACE_VALUE(L"scope", L"result = ", result);`
#define XML_TRACE_VALUE(i_Scope, i_Text, i_Value)                                                                      \
    do                                                                                                                 \
    {                                                                                                                  \
        if (TRACE_IS_ON(TraceInformation)) [[unlikely]]                                                                \
            traceValue((i_Scope), Trace::pos(s_TraceSource, __LINE__), (i_Text), (i_Value));                           \
    } while (false)
