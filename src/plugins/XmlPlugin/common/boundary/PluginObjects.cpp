#include "boundary/PluginObjects.h"

#include "boundary/XmlPlugin.h"
#include "xmlproxy/ParserLibrary.h"

#include <cstddef>
#include <new>

namespace
{

std::size_t s_Count = 0;

} // namespace

namespace XmlPlugin::PluginObjects
{

PluginSDK::Plugin* create()
{
    try
    {
        ParserLibrary::locate();
        PluginSDK::Plugin* const pPlugin = new PluginSDK::XmlPlugin;
        ++s_Count;
        return pPlugin;
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

void destroy(PluginSDK::Plugin* i_pPlugin)
{
    if (!i_pPlugin)
    {
        return;
    }
    delete i_pPlugin;
    --s_Count;
    if (s_Count == 0)
    {
        ParserLibrary::release();
    }
}

} // namespace XmlPlugin::PluginObjects
