#include "base/String.h"
#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"
#include "support/TemporaryFolder.h"
#include "system/SharedLibrary.h"

#include <gtest/gtest.h>

#include <malloc.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

// What is left of documents when the plug-in is unloaded. This program is not linked with the parser library, so that
// the library goes when nobody but the plug-in holds it.

namespace
{

using CreatePlugin = PluginSDK::Plugin* (*)();
using DestroyPlugin = void (*)(PluginSDK::Plugin*);

/// Loads the module and reads the file through it several times.
void useOnce(const String& i_File)
{
    const SharedLibrary library(PLUGIN_MODULE);
    const auto pCreate = reinterpret_cast<CreatePlugin>(library.find("createPlugin"));
    const auto pDestroy = reinterpret_cast<DestroyPlugin>(library.find("destroyPlugin"));
    for (int time = 0; time < 3; ++time)
    {
        const std::unique_ptr<PluginSDK::Plugin, DestroyPlugin> pPlugin(pCreate(), pDestroy);
        PluginSDK::Expression* pExpression = nullptr;
        pPlugin->registerExpressions();
        ASSERT_EQ(0, pPlugin->createExpression(L"XmlValue", &pExpression));
        pExpression->setProperty(L"file", i_File.c_str());
        pExpression->setProperty(L"xpath", L"a/@x");
        PluginSDK::String value;
        EXPECT_EQ(0, static_cast<PluginSDK::ScalarExpression*>(pExpression)->evaluate(value));
        EXPECT_EQ(String(L"1"), String(value.c_str()));
        pPlugin->destroyExpression(pExpression);
        pPlugin->unload();
    }
}

TEST(Unload, LeavesNothingOfADocumentInAnyEncoding)
{
    const TemporaryFolder folder;
    const char* const encodings[] = {
        "UTF-8",        "US-ASCII",     "ISO-8859-1",   "ISO-8859-2",   "ISO-8859-5",   "ISO-8859-7",
        "ISO-8859-8",   "ISO-8859-9",   "ISO-8859-13",  "ISO-8859-15",  "windows-1250", "windows-1251",
        "windows-1252", "windows-1253", "windows-1254", "windows-1257", "KOI8-R",       "macintosh",
        "TIS-620",      "EUC-JP",       "Shift_JIS",    "ISO-2022-JP",  "EUC-KR",       "ISO-2022-KR",
        "GB2312",       "GBK",          "GB18030",      "Big5",         "EUC-TW",       "HZ-GB-2312",
    };
    for (const std::string encoding : encodings)
    {
        const std::string document =
            "<?xml version='1.0' encoding='" + encoding + "'?><!DOCTYPE a [<!ENTITY e '1'>]><a x='&e;'/>";
        const String file(folder.write("a.xml", document).c_str());
        useOnce(file); // what libraries keep for good is there after this
        const std::size_t before = mallinfo2().uordblks;
        constexpr std::size_t times = 5;
        for (std::size_t time = 0; time < times; ++time)
        {
            useOnce(file);
        }
        const std::size_t after = mallinfo2().uordblks;
        EXPECT_GT(times * 1024, after - std::min(before, after)) << encoding;
    }
}

} // namespace
