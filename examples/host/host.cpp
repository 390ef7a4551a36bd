// The smallest complete host: loads the plug-in, evaluates one expression on one document, prints the values one per
// line, and releases everything in the right order. Usage: host XPATH FILE

#include "base/String.h"
#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <cstddef>
#include <iostream>

#include <dlfcn.h>

namespace
{

/// Returns 0 if there was a value, 1 if there was none, 2 after an error.
int printValues(PluginSDK::Plugin& io_Plugin, const char* i_pXPath, const char* i_pFile)
{
    PluginSDK::Expression* pExpression = nullptr;
    TErrorCode code = io_Plugin.createExpression(L"XmlValues", &pExpression);
    PluginSDK::StringVector values;
    if (code == XML_SUCCESS && pExpression != nullptr)
    {
        pExpression->setProperty(L"file", String(i_pFile).c_str());
        pExpression->setProperty(L"xpath", String(i_pXPath).c_str());
        code = static_cast<PluginSDK::VectorExpression*>(pExpression)->evaluate(values);
        io_Plugin.destroyExpression(pExpression);
    }
    if (code != XML_SUCCESS)
    {
        std::cerr << "error " << code << ": " << xmlErrorText(code) << '\n';
        return 2;
    }
    for (std::size_t i = 0; i < values.count(); ++i)
    {
        std::cout << String(values.get(i)).toNarrow() << '\n';
    }
    return values.count() > 0 ? 0 : 1;
}

} // namespace

int main(int i_Count, char** i_ppArguments)
{
    if (i_Count != 3)
    {
        std::cerr << "Usage: host XPATH FILE\n";
        return 2;
    }
    void* const pLibrary = dlopen(PLUGIN_FILE, RTLD_NOW | RTLD_LOCAL);
    if (pLibrary == nullptr)
    {
        std::cerr << dlerror() << '\n';
        return 2;
    }
    const auto pCreate = reinterpret_cast<PluginSDK::Plugin* (*)()>(dlsym(pLibrary, "createPlugin"));
    const auto pDestroy = reinterpret_cast<void (*)(PluginSDK::Plugin*)>(dlsym(pLibrary, "destroyPlugin"));
    PluginSDK::Plugin* const pPlugin = pCreate != nullptr && pDestroy != nullptr ? pCreate() : nullptr;
    if (pPlugin == nullptr)
    {
        std::cerr << PLUGIN_FILE << " is not a plug-in\n";
        return 2;
    }
    pPlugin->registerExpressions();

    const int status = printValues(*pPlugin, i_ppArguments[1], i_ppArguments[2]);

    pPlugin->unload();
    pDestroy(pPlugin);
    dlclose(pLibrary);
    return status;
}
