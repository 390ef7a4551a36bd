// The boundary of the plug-in: the two functions that a host finds by name. Everything else is
// hidden (Exports.map, Exports.def).
//
// A host calls createPlugin once, works with the object through PluginSDK::Plugin, calls its
// unload, and hands it to destroyPlugin before it unloads the library. A host that leaves unload
// out leaves the document cache alive until the process ends.

#include "boundary/XmlPlugin.h"

#include <new>

// On Windows the export list alone decides; elsewhere the version script narrows what is visible.
#if defined(_WIN32)
#define XMLPLUGIN_EXPORT
#else
#define XMLPLUGIN_EXPORT __attribute__((visibility("default")))
#endif

extern "C"
{

    /// A new plug-in object, or null when memory is exhausted.
    XMLPLUGIN_EXPORT PluginSDK::Plugin* createPlugin()
    {
        try
        {
            return new PluginSDK::XmlPlugin;
        }
        catch (const std::bad_alloc&)
        {
            return nullptr;
        }
    }

    /// Destroys what createPlugin made. Null is allowed.
    XMLPLUGIN_EXPORT void destroyPlugin(PluginSDK::Plugin* i_pPlugin)
    {
        delete i_pPlugin;
    }

} // extern "C"
