#pragma once

/// Marks what the base library exports to the host and to plug-ins.
#if defined(_WIN32)
#if defined(XMLPLUGIN_BASE_BUILD)
#define BASE_API __declspec(dllexport)
#else
#define BASE_API __declspec(dllimport)
#endif
#else
#define BASE_API __attribute__((visibility("default")))
#endif
