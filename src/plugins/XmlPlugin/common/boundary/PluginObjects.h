#pragma once

namespace PluginSDK
{
class Plugin;
}

/// The plug-in objects that hosts hold. While there is one, a parser library that was started stays started.
///
/// Threads: one at a time; there are no locks.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/PluginObjectsTest.cpp
namespace XmlPlugin::PluginObjects
{

/// Creates an object, which the caller owns; null if memory is exhausted.
PluginSDK::Plugin* create();
/// Destroys an object from `create`, and stops the parser library with the last one. Documents that `unload` has not
/// dropped stay in memory. Null is allowed.
void destroy(PluginSDK::Plugin* i_pPlugin);

} // namespace XmlPlugin::PluginObjects
