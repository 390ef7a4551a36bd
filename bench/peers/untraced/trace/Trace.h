// Stands in front of the trace library's own header while the plug-in is built without trace
// statements: a record is never written, and the compiler drops what it would have held.
#pragma GCC system_header
#pragma once

#include_next "trace/Trace.h"

#undef TRACE_IS_ON
#define TRACE_IS_ON(i_Level) false
