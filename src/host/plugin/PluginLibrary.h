#pragma once

#include "pluginsdk/Plugin.h"
#include "system/SharedLibrary.h"

#include <exception>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>

/// Does \p i_Call, which enters the plug-in, and gives its result. What the plug-in throws is replaced
/// by an exception of the tool's own: the plug-in's must not be looked at once its library is unloaded.
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
        throw std::runtime_error("the plug-in threw something that is no exception");
    }
}

/// A plug-in, loaded and ready to make expressions.
///
/// Ownership: owns the library and the plug-in object; expressions made by the plug-in must be
/// destroyed before. At its end it unloads the plug-in, destroys it, then unloads the library.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class PluginLibrary
{
public:
    /// Loads the plug-in at \p i_Path, or, when that is empty, the one that belongs to this program:
    /// beside it or in the library folder of its installation.
    /// Throws std::runtime_error with a line that tells why it cannot be used.
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
