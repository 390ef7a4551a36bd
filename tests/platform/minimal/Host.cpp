// Loads the plug-in (first argument), evaluates queries on a document (second argument, a file whose name is ASCII) and
// on the same document as an archive (third argument), and one on a document with a document type, which needs the
// parser library (fourth argument), and checks what comes back. The last argument says how the plug-in traces.

#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"
#include "trace/Trace.h"

#include <cstdio>
#include <string>

#include <dlfcn.h>

namespace
{

int s_Failures = 0;

void check(const std::string& i_What, const std::string& i_Actual, const std::string& i_Expected)
{
    if (i_Actual != i_Expected)
    {
        ++s_Failures;
        std::fprintf(stderr, "%s: \"%s\", not \"%s\"\n", i_What.c_str(), i_Actual.c_str(), i_Expected.c_str());
    }
}

/// The code, a colon and the values with a blank after each.
std::string answer(PluginSDK::Plugin& io_Plugin, const wchar_t* i_Type, const char* i_File, const wchar_t* i_XPath,
                   const wchar_t* i_MustExist = nullptr)
{
    PluginSDK::Expression* pExpression = nullptr;
    if (io_Plugin.createExpression(i_Type, &pExpression) != 0 || pExpression == nullptr)
    {
        return "no expression";
    }
    pExpression->setProperty(L"file", static_cast<const wchar_t*>(String(i_File)));
    pExpression->setProperty(L"xpath", i_XPath);
    if (i_MustExist != nullptr)
    {
        pExpression->setProperty(L"mustExist", i_MustExist);
    }
    std::string text;
    if (pExpression->getShape() == 0)
    {
        PluginSDK::String result;
        result = L"what was there before";
        const TErrorCode code = static_cast<PluginSDK::ScalarExpression*>(pExpression)->evaluate(result);
        text = std::to_string(code) + ':' + result.text().toNarrow();
    }
    else
    {
        PluginSDK::StringVector result;
        result.addString(L"what was there before");
        const TErrorCode code = static_cast<PluginSDK::VectorExpression*>(pExpression)->evaluate(result);
        text = std::to_string(code) + ':' + result.joined().toNarrow();
    }
    io_Plugin.destroyExpression(pExpression);
    return text;
}

void checkPlugin(PluginSDK::Plugin& io_Plugin, const char* i_File, const char* i_Archive, const char* i_Declared)
{
    io_Plugin.registerExpressions();
    check("names", io_Plugin.names().toNarrow(), "XmlValue XmlValues ");
    for (const char* pFile : {i_File, i_Archive})
    {
        check("number", answer(io_Plugin, L"XmlValue", pFile, L"1 + 2 * 3"), "0:7");
        check("count", answer(io_Plugin, L"XmlValue", pFile, L"count(//server)"), "0:3");
        check("list", answer(io_Plugin, L"XmlValues", pFile, L"//server[@role='web']/@name"), "0:alpha gamma ");
        check("predicate", answer(io_Plugin, L"XmlValue", pFile, L"//server[2]/@name"), "0:beta");
        check("text", answer(io_Plugin, L"XmlValue", pFile, L"concat(substring('abcd', 2, 2), '-', 'x')"), "0:bc-x");
        check("comparison", answer(io_Plugin, L"XmlValue", pFile, L"//port/@number = 443"), "0:true");
        check("none", answer(io_Plugin, L"XmlValue", pFile, L"//nothing", L"false"), "0:");
        check("must exist", answer(io_Plugin, L"XmlValue", pFile, L"//nothing", L"true"), "-15002:");
        check("refusal", answer(io_Plugin, L"XmlValues", pFile, L"//server["), "-15105:");
    }
    check("document type", answer(io_Plugin, L"XmlValue", i_Declared, L"/a/@b"), "0:value");
    check("missing file", answer(io_Plugin, L"XmlValue", "no such file", L"1"), "-15103:");
    io_Plugin.unload();
}

/// Every record is of component 5 and finished; the driver's last one is at its line.
void checkRecords(const std::string& i_Expected)
{
    const std::string& records = writtenRecords();
    const std::string source = "./../../../../src/plugins/XmlPlugin/common/XPathEngine:";
    if (i_Expected == "NEVER")
    {
        check("records", records, "");
        return;
    }
    const std::string start = "5 XPathEngine::start 3 " + source + "61  result = 0\n";
    check("the driver's record", records.find(start) == std::string::npos ? "missing" : "written", "written");
    const std::string last = "5 XPathEngine::start 3 " + source + "61  result = -15103\n";
    check("the last record", records.substr(records.size() - last.size()), last);
}

} // namespace

int main(int i_Count, char** i_Arguments)
{
    if (i_Count != 6)
    {
        std::fprintf(stderr, "usage: minimal_host PLUGIN FILE ARCHIVE DECLARED ALWAYS|NEVER\n");
        return 2;
    }
    void* const pLibrary = dlopen(i_Arguments[1], RTLD_NOW | RTLD_LOCAL);
    if (pLibrary == nullptr)
    {
        std::fprintf(stderr, "%s\n", dlerror());
        return 2;
    }
    check("records of loading", writtenRecords(), "");
    const auto pCreate = reinterpret_cast<PluginSDK::Plugin* (*)()>(dlsym(pLibrary, "createPlugin"));
    const auto pDestroy = reinterpret_cast<void (*)(PluginSDK::Plugin*)>(dlsym(pLibrary, "destroyPlugin"));
    PluginSDK::Plugin* const pPlugin = pCreate();
    checkPlugin(*pPlugin, i_Arguments[2], i_Arguments[3], i_Arguments[4]);
    pDestroy(pPlugin);
    checkRecords(i_Arguments[5]);
    dlclose(pLibrary);
    return s_Failures == 0 ? 0 : 1;
}
