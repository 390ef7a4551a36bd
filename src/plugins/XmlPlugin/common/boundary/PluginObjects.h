#pragma once

namespace PluginSDK
{
class Plugin;
}

/// The plug-in objects that hosts hold: while there is one, the parser library stays as it is once it was started.
///
/// Threads: one at a time, nothing is locked.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/PluginObjectsTest.cpp
namespace XmlPlugin::PluginObjects
{

/// A new object, which belongs to the caller; null when memory is exhausted.
PluginSDK::Plugin* create();
/// Destroys what `create` made, and with the last object stops the parser library. The documents that `unload` did not
/// drop stay. Null is allowed.
void destroy(PluginSDK::Plugin* i_pPlugin);

} // namespace XmlPlugin::PluginObjects
