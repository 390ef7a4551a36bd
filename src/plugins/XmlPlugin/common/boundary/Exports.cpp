// The boundary of the plug-in: the two functions that a host finds by name. Everything else is
// hidden (Exports.map, Exports.def).
//
// A host calls createPlugin once, works with the object through PluginSDK::Plugin, calls its
// unload, and hands it to destroyPlugin before it unloads the library. A host that leaves unload
// out leaves the document cache alive until the process ends; one that leaves destroyPlugin out,
// the parser library.

#include "boundary/PluginObjects.h"

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
        return XmlPlugin::PluginObjects::create();
    }

    /// Destroys what createPlugin made; with the last such object the parser library is stopped. Null is allowed.
    XMLPLUGIN_EXPORT void destroyPlugin(PluginSDK::Plugin* i_pPlugin)
    {
        XmlPlugin::PluginObjects::destroy(i_pPlugin);
    }

} // extern "C"
