#pragma once

/// Marks what the plug-in framework exports to the host and to plug-ins.
#if defined(_WIN32)
#if defined(XMLPLUGIN_PLUGINSDK_BUILD)
#define PLUGINSDK_API __declspec(dllexport)
#else
#define PLUGINSDK_API __declspec(dllimport)
#endif
#else
#define PLUGINSDK_API __attribute__((visibility("default")))
#endif
