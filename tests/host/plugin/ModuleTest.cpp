#include "base/String.h"
#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"
#include "support/TemporaryFolder.h"
#include "system/SharedLibrary.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <filesystem>
#include <memory>

#if defined(__linux__)
#include <dlfcn.h>
#endif

// The module as a host sees it: loaded while the host runs, through its two entry points only.

namespace
{

using CreatePlugin = PluginSDK::Plugin* (*)();
using DestroyPlugin = void (*)(PluginSDK::Plugin*);

CreatePlugin findCreate(const SharedLibrary& i_Library)
{
    return reinterpret_cast<CreatePlugin>(i_Library.find("createPlugin"));
}

DestroyPlugin findDestroy(const SharedLibrary& i_Library)
{
    return reinterpret_cast<DestroyPlugin>(i_Library.find("destroyPlugin"));
}

struct Answer
{
    TErrorCode code;
    std::vector<std::string> values;
};

bool operator==(const Answer& i_Left, const Answer& i_Right)
{
    return i_Left.code == i_Right.code && i_Left.values == i_Right.values;
}

void PrintTo(const Answer& i_Answer, std::ostream* io_pStream)
{
    *io_pStream << i_Answer.code << ' ' << testing::PrintToString(i_Answer.values);
}

Answer query(PluginSDK::Plugin& io_Plugin, const std::string& i_File, const char* i_XPath)
{
    PluginSDK::Expression* pExpression = nullptr;
    EXPECT_EQ(io_Plugin.createExpression(L"XmlValues", &pExpression), 0);
    pExpression->setProperty(L"file", String(i_File.c_str()).c_str());
    pExpression->setProperty(L"xpath", String(i_XPath).c_str());
    PluginSDK::StringVector result;
    Answer answer{static_cast<PluginSDK::VectorExpression*>(pExpression)->evaluate(result), {}};
    for (std::size_t i = 0; i < result.count(); ++i)
    {
        answer.values.push_back(String(result.get(i)).toNarrow());
    }
    EXPECT_EQ(io_Plugin.destroyExpression(pExpression), 0);
    return answer;
}

class ModuleTest : public testing::Test
{
protected:
    const TemporaryFolder m_Folder;
    const std::string m_File = m_Folder.write("a.xml", "<a id='1'><b id='2'/><b id='3'/></a>");
};

} // namespace

TEST_F(ModuleTest, ExportsItsEntryPointsOnly)
{
    const SharedLibrary library(PLUGIN_MODULE);
    EXPECT_NE(library.find("createPlugin"), nullptr);
    EXPECT_NE(library.find("destroyPlugin"), nullptr);
    EXPECT_EQ(library.find("noSuchFunction"), nullptr);
}

TEST_F(ModuleTest, WholeLife)
{
    const SharedLibrary library(PLUGIN_MODULE);
    PluginSDK::Plugin* const pPlugin = findCreate(library)();
    ASSERT_NE(pPlugin, nullptr);

    PluginSDK::Version version{};
    EXPECT_EQ(&pPlugin->getVersion(version), &version);
    EXPECT_EQ(version.major, 1U);
    EXPECT_EQ(version.minor, 1U);
    EXPECT_EQ(version.patch, 1U);
    EXPECT_EQ(version.build, 1U);
    EXPECT_STREQ(pPlugin->getName(), L"Xml");
    EXPECT_EQ(pPlugin->reservedQuery(), 0);
    pPlugin->registerExpressions();
    ASSERT_EQ(pPlugin->expressionCount(), 2U);
    EXPECT_STREQ(pPlugin->expressionName(0), L"XmlValue");
    EXPECT_STREQ(pPlugin->expressionName(1), L"XmlValues");

    const Answer expected{0, {"2", "3"}};
    EXPECT_EQ(query(*pPlugin, m_File, "a/b/@id"), expected);
    m_Folder.write("a.xml", "<a><b id='4'/></a>");
    EXPECT_EQ(query(*pPlugin, m_File, "a/b/@id"), expected) << "a document is read once";
    pPlugin->unload();
    EXPECT_EQ(query(*pPlugin, m_File, "a/b/@id"), (Answer{0, {"4"}})) << "and again after unload";
    pPlugin->unload();
    pPlugin->unload();
    findDestroy(library)(pPlugin);
}

TEST_F(ModuleTest, CanBeLoadedAgain)
{
    for (int i = 0; i < 3; ++i)
    {
        const SharedLibrary library(PLUGIN_MODULE);
        PluginSDK::Plugin* const pPlugin = findCreate(library)();
        ASSERT_NE(pPlugin, nullptr);
        EXPECT_EQ(query(*pPlugin, m_File, "a/@id"), (Answer{0, {"1"}}));
        EXPECT_EQ(query(*pPlugin, m_Folder.file("missing"), "a/@id"), (Answer{-15103, {}}));
        EXPECT_EQ(query(*pPlugin, m_File, "a["), (Answer{-15105, {}}));
        pPlugin->unload();
        findDestroy(library)(pPlugin);
    }
}

#if defined(__linux__)

namespace
{

/// A module that is loaded now.
bool isLoaded(const std::string& i_Path)
{
    void* const pLibrary = dlopen(i_Path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    if (pLibrary)
    {
        dlclose(pLibrary);
    }
    return pLibrary;
}

} // namespace

/// Of this process: the program and the module share the library.
TEST_F(ModuleTest, TheParserLibraryStaysUntilTheLastPluginIsDestroyed)
{
    const auto isInitialised = [] { return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr; };
    const std::string file = m_Folder.write("b.xml", "<!DOCTYPE a><a id='1'/>");
    const SharedLibrary library(PLUGIN_MODULE);
    PluginSDK::Plugin* const pFirst = findCreate(library)();
    PluginSDK::Plugin* const pSecond = findCreate(library)();
    ASSERT_NE(pFirst, nullptr);
    ASSERT_NE(pSecond, nullptr);
    ASSERT_FALSE(isInitialised());
    EXPECT_EQ(query(*pFirst, file, "a/@id"), (Answer{0, {"1"}}));
    EXPECT_TRUE(isInitialised());
    pFirst->unload();
    EXPECT_TRUE(isInitialised());
    findDestroy(library)(pFirst);
    EXPECT_TRUE(isInitialised());
    EXPECT_EQ(query(*pSecond, file, "a/@id"), (Answer{0, {"1"}}));
    pSecond->unload();
    findDestroy(library)(pSecond);
    EXPECT_FALSE(isInitialised());
}

TEST_F(ModuleTest, TheParserModuleComesWithTheFirstDocumentAndGoesWithTheLastPlugin)
{
    const std::string module = std::filesystem::path(PLUGIN_MODULE).replace_filename("XmlPluginXerces.so").string();
    const std::string file = m_Folder.write("b.xml", "<!DOCTYPE a><a id='1'/>");
    for (int life = 0; life < 3; ++life)
    {
        const SharedLibrary library(PLUGIN_MODULE);
        PluginSDK::Plugin* const pFirst = findCreate(library)();
        PluginSDK::Plugin* const pSecond = findCreate(library)();
        EXPECT_EQ(query(*pFirst, m_Folder.file("missing.xml"), "a/@id").code, -15103);
        EXPECT_FALSE(isLoaded(module));
        EXPECT_EQ(query(*pFirst, file, "a/@id"), (Answer{0, {"1"}}));
        EXPECT_TRUE(isLoaded(module));
        pFirst->unload();
        findDestroy(library)(pFirst);
        EXPECT_TRUE(isLoaded(module));
        findDestroy(library)(pSecond);
        EXPECT_FALSE(isLoaded(module));
    }
    EXPECT_FALSE(isLoaded(PLUGIN_MODULE));
}

TEST_F(ModuleTest, TheParserModuleIsFoundFromAnotherWorkingFolder)
{
    const std::filesystem::path plugin = PLUGIN_MODULE;
    const std::filesystem::path before = std::filesystem::current_path();
    const std::string file = m_Folder.write("b.xml", "<!DOCTYPE a><a id='1'/>");
    std::filesystem::current_path(plugin.parent_path());
    void* const pLibrary = dlopen(("./" + plugin.filename().string()).c_str(), RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(pLibrary, nullptr) << dlerror();
    PluginSDK::Plugin* const pPlugin = reinterpret_cast<CreatePlugin>(dlsym(pLibrary, "createPlugin"))();
    std::filesystem::current_path(m_Folder.path());
    EXPECT_EQ(query(*pPlugin, file, "a/@id"), (Answer{0, {"1"}}));
    std::filesystem::current_path(before);
    pPlugin->unload();
    reinterpret_cast<DestroyPlugin>(dlsym(pLibrary, "destroyPlugin"))(pPlugin);
    dlclose(pLibrary);
}

#endif

TEST_F(ModuleTest, DestroyingNothingIsAllowed)
{
    const SharedLibrary library(PLUGIN_MODULE);
    findDestroy(library)(nullptr);
    PluginSDK::Plugin* const pPlugin = findCreate(library)();
    ASSERT_NE(pPlugin, nullptr);
    EXPECT_EQ(pPlugin->destroyExpression(nullptr), 0);
    findDestroy(library)(pPlugin);
}

TEST_F(ModuleTest, TypesOfExpressions)
{
    const SharedLibrary library(PLUGIN_MODULE);
    PluginSDK::Plugin* const pPlugin = findCreate(library)();
    ASSERT_NE(pPlugin, nullptr);
    for (const auto& [pName, shape] : {std::pair{L"XmlValue", 0}, std::pair{L"XmlValues", 1}})
    {
        PluginSDK::Expression* pExpression = nullptr;
        ASSERT_EQ(pPlugin->createExpression(pName, &pExpression), 0);
        EXPECT_EQ(pExpression->getShape(), shape);
        EXPECT_EQ(pPlugin->destroyExpression(pExpression), 0);
    }
    findDestroy(library)(pPlugin);
}
