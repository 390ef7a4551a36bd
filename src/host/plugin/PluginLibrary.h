#pragma once

#include "pluginsdk/Plugin.h"
#include "system/SharedLibrary.h"

#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

/// Calls \p i_Call, which enters the plug-in, and returns its result. Replaces an exception from the plug-in by one of
/// the tool's own, because the plug-in's exception must not be used after its library is unloaded.
template <class TCall>
decltype(auto) callPlugin(TCall&& i_Call)
{
    try
    {
        return i_Call();
    }
    catch (const std::bad_alloc&)
    {
        throw std::bad_alloc();
    }
    catch (const std::exception& error)
    {
        throw std::runtime_error(std::string(error.what()));
    }
    catch (...)
    {
        throw std::runtime_error("the plug-in threw something that is not an exception");
    }
}

/// A plug-in that is loaded and ready to create expressions.
///
/// Ownership: owns the library and the plug-in object. All expressions must be destroyed before it. The destructor
/// unloads the plug-in, destroys it, then unloads the library.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class PluginLibrary
{
public:
    /// Loads the plug-in at \p i_Path (UTF-8). If that is empty, loads the plug-in installed with this program, which
    /// is next to it or in the library folder of its installation. Throws std::runtime_error with one line that says
    /// why the plug-in cannot be used.
    explicit PluginLibrary(const std::string& i_Path);
    ~PluginLibrary();
    PluginLibrary(const PluginLibrary&) = delete;
    PluginLibrary& operator=(const PluginLibrary&) = delete;

    PluginSDK::Plugin& plugin() noexcept { return *m_pPlugin; }
    bool offers(const wchar_t* i_TypeName) const;

    const std::string& path() const noexcept { return m_Path; }
    /// Name, version and path on one line.
    std::string description() const;

private:
    using DestroyPlugin = void (*)(PluginSDK::Plugin*);

    std::string m_Path;
    SharedLibrary m_Library;
    std::unique_ptr<PluginSDK::Plugin, DestroyPlugin> m_pPlugin;
};
