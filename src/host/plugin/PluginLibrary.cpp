#include "plugin/PluginLibrary.h"

#include "base/String.h"
#include "system/FileSystem.h"

#include <stdexcept>
#include <string_view>

namespace
{

#if defined(_WIN32)
constexpr const char* s_FileName = "XmlPlugin.dll";
#else
constexpr const char* s_FileName = "XmlPlugin.so";
#endif

/// The first place that has the plug-in; the program's own folder if none has.
std::string findPlugin()
{
    const std::filesystem::path folder = FileSystem::programFolder();
    const std::filesystem::path beside = folder / s_FileName;
    const std::filesystem::path installed = folder / XMLVALUE_PLUGIN_FOLDER / s_FileName;
    std::error_code ignored;
    const bool isInstalled = !std::filesystem::exists(beside, ignored) && std::filesystem::exists(installed, ignored);
    return FileSystem::toUtf8(isInstalled ? installed.lexically_normal() : beside);
}

using CreatePlugin = PluginSDK::Plugin* (*)();

SharedLibrary::Function require(const SharedLibrary& i_Library, const std::string& i_Path, const char* i_Name)
{
    const SharedLibrary::Function pFunction = i_Library.find(i_Name);
    if (pFunction == nullptr)
    {
        throw std::runtime_error(i_Path + ": not a plug-in: it does not export " + i_Name);
    }
    return pFunction;
}

std::string versionText(const PluginSDK::Plugin& i_Plugin)
{
    PluginSDK::Version version{};
    i_Plugin.getVersion(version);
    return std::to_string(version.major) + '.' + std::to_string(version.minor) + '.' + std::to_string(version.patch) +
           '.' + std::to_string(version.build);
}

} // namespace

PluginLibrary::PluginLibrary(const std::string& i_Path)
    : m_Path(i_Path.empty() ? findPlugin() : i_Path),
      m_Library(m_Path),
      m_pPlugin(nullptr, reinterpret_cast<DestroyPlugin>(require(m_Library, m_Path, "destroyPlugin")))
{
    const auto pCreate = reinterpret_cast<CreatePlugin>(require(m_Library, m_Path, "createPlugin"));
    m_pPlugin.reset(callPlugin(pCreate));
    if (m_pPlugin == nullptr)
    {
        throw std::runtime_error(m_Path + ": the plug-in could not be created");
    }
    callPlugin([this] { m_pPlugin->registerExpressions(); });
}

PluginLibrary::~PluginLibrary()
{
    m_pPlugin->unload();
}

bool PluginLibrary::offers(const wchar_t* i_TypeName) const
{
    for (std::size_t i = 0; i < m_pPlugin->expressionCount(); ++i)
    {
        if (std::wstring_view(m_pPlugin->expressionName(i)) == i_TypeName)
        {
            return true;
        }
    }
    return false;
}

std::string PluginLibrary::description() const
{
    return String(m_pPlugin->getName()).toNarrow() + ' ' + versionText(*m_pPlugin) + " (" + m_Path + ')';
}
