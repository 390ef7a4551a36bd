// Stands in front of the trace library's own header while the plug-in is built without trace
// statements: a record is never written, and the compiler drops what it would have held.
#pragma GCC system_header
#pragma once

#include_next "trace/Trace.h"

#undef TRACE_RECORD
#define TRACE_RECORD(i_Trace, i_Level, i_Position) \
    if (true)                                      \
    {                                              \
    }                                              \
    else                                           \
        Trace::Record((i_Trace), (i_Level), (i_Position))
