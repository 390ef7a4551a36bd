#pragma once

/// Marks what the trace library exports to the host and to plug-ins.
#if defined(_WIN32)
#if defined(XMLPLUGIN_TRACE_BUILD)
#define TRACE_API __declspec(dllexport)
#else
#define TRACE_API __declspec(dllimport)
#endif
#else
#define TRACE_API __attribute__((visibility("default")))
#endif
