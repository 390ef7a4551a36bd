// A host whose C++ library is set up differently from the plug-in's: its texts and containers have other sizes. It uses
// the plug-in framework alone. Arguments: the plug-in, a document. Exit status 0 when all answers are right.

#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"

#include <cstddef>
#include <cstdio>
#include <string>

#include <dlfcn.h>

namespace
{

int s_Failures = 0;

void check(const std::wstring& i_Actual, const wchar_t* i_Expected)
{
    if (i_Actual != i_Expected)
    {
        ++s_Failures;
        std::fprintf(stderr, "\"%ls\", not \"%ls\"\n", i_Actual.c_str(), i_Expected);
    }
}

PluginSDK::Expression* make(PluginSDK::Plugin& io_Plugin, const wchar_t* i_Type, const std::wstring& i_File,
                            const wchar_t* i_XPath)
{
    PluginSDK::Expression* pExpression = nullptr;
    io_Plugin.createExpression(i_Type, &pExpression);
    pExpression->setProperty(L"file", i_File.c_str());
    pExpression->setProperty(L"xpath", i_XPath);
    check(pExpression->getProperty(L"file"), i_File.c_str());
    return pExpression;
}

void evaluateOne(PluginSDK::Plugin& io_Plugin, const std::wstring& i_File)
{
    PluginSDK::Expression* pExpression = make(io_Plugin, L"XmlValue", i_File, L"concat('a text ', count(//server))");
    PluginSDK::String result;
    static_cast<PluginSDK::ScalarExpression*>(pExpression)->evaluate(result);
    const PluginSDK::String copy(result);
    check(copy.c_str(), L"a text 3");
    check(std::to_wstring(result.length()), L"8");
    io_Plugin.destroyExpression(pExpression);
}

void evaluateAll(PluginSDK::Plugin& io_Plugin, const std::wstring& i_File)
{
    PluginSDK::Expression* pExpression = make(io_Plugin, L"XmlValues", i_File, L"//server/@name");
    PluginSDK::StringVector result;
    result.addString(L"what was there before");
    static_cast<PluginSDK::VectorExpression*>(pExpression)->evaluate(result);
    std::wstring joined;
    for (std::size_t i = 0; i < result.count(); ++i)
    {
        joined += std::wstring(result.get(i)) + L' ';
    }
    check(joined, L"alpha beta gamma ");
    io_Plugin.destroyExpression(pExpression);
}

} // namespace

int main(int i_Count, char** i_Arguments)
{
    void* const pLibrary = i_Count == 3 ? dlopen(i_Arguments[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
    if (pLibrary == nullptr)
    {
        std::fprintf(stderr, "usage: other_library_host PLUGIN DOCUMENT\n");
        return 2;
    }
    const auto pCreate = reinterpret_cast<PluginSDK::Plugin* (*)()>(dlsym(pLibrary, "createPlugin"));
    const auto pDestroy = reinterpret_cast<void (*)(PluginSDK::Plugin*)>(dlsym(pLibrary, "destroyPlugin"));
    const std::string file(i_Arguments[2]);
    PluginSDK::Plugin* const pPlugin = pCreate();
    pPlugin->registerExpressions();
    check(pPlugin->expressionName(1), L"XmlValues");
    evaluateOne(*pPlugin, std::wstring(file.begin(), file.end()));
    evaluateAll(*pPlugin, std::wstring(file.begin(), file.end()));
    pPlugin->unload();
    pDestroy(pPlugin);
    dlclose(pLibrary);
    return s_Failures == 0 ? 0 : 1;
}
