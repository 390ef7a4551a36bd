#include "boundary/PluginObjects.h"

#include "boundary/XmlCache.h"
#include "boundary/XmlValue.h"
#include "pluginsdk/Plugin.h"
#include "support/TemporaryFolder.h"
#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/XercesLibrary.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <string>

using namespace XmlPlugin;

namespace
{

class PluginObjectsTest : public testing::Test
{
protected:
    PluginObjectsTest()
    {
        XmlCache::destroyInstance();
        ParserLibrary::release();
    }
    ~PluginObjectsTest() override { XmlCache::destroyInstance(); }

    static bool isInitialised() { return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr; }

    /// The value of the document's only attribute.
    std::string ask() const
    {
        XmlValue expression;
        expression.setProperty(L"file", m_File.c_str());
        expression.setProperty(L"xpath", L"a/@id");
        PluginSDK::String value;
        EXPECT_EQ(0, expression.evaluate(value));
        return String(value.c_str()).toNarrow();
    }

    const TemporaryFolder m_Folder;
    const String m_File{m_Folder.write("a.xml", "<!DOCTYPE a><a id='7'/>").c_str()};
    const std::size_t m_Before = XercesLibrary::startCount();
};

TEST_F(PluginObjectsTest, UnloadDoesNotStartTheParserLibraryAgain)
{
    PluginSDK::Plugin* const pPlugin = PluginObjects::create();
    ASSERT_NE(nullptr, pPlugin);
    EXPECT_FALSE(isInitialised());
    for (int i = 0; i < 5; ++i)
    {
        EXPECT_EQ("7", ask());
        pPlugin->unload();
        EXPECT_TRUE(isInitialised());
    }
    EXPECT_EQ(m_Before + 1, XercesLibrary::startCount());
    PluginObjects::destroy(pPlugin);
    EXPECT_FALSE(isInitialised());
}

TEST_F(PluginObjectsTest, TheLastOneStopsTheParserLibrary)
{
    PluginSDK::Plugin* const pFirst = PluginObjects::create();
    PluginSDK::Plugin* const pSecond = PluginObjects::create();
    EXPECT_EQ("7", ask());
    pSecond->unload();
    PluginObjects::destroy(pSecond);
    EXPECT_TRUE(isInitialised());
    EXPECT_EQ("7", ask());
    EXPECT_EQ(m_Before + 1, XercesLibrary::startCount());
    PluginObjects::destroy(pFirst);
    EXPECT_FALSE(isInitialised());
}

TEST_F(PluginObjectsTest, ALaterLifeStartsTheParserLibraryAgain)
{
    for (std::size_t life = 1; life <= 3; ++life)
    {
        PluginSDK::Plugin* const pPlugin = PluginObjects::create();
        EXPECT_EQ("7", ask());
        EXPECT_EQ(m_Before + life, XercesLibrary::startCount());
        pPlugin->unload();
        PluginObjects::destroy(pPlugin);
    }
}

TEST_F(PluginObjectsTest, AnEndWithoutUnloadLeavesTheDocuments)
{
    PluginSDK::Plugin* pPlugin = PluginObjects::create();
    EXPECT_EQ("7", ask());
    PluginObjects::destroy(pPlugin);
    EXPECT_FALSE(isInitialised());
    m_Folder.write("a.xml", "<a id='8'/>");
    pPlugin = PluginObjects::create();
    EXPECT_EQ("7", ask());
    EXPECT_FALSE(isInitialised()) << "nothing was read";
    pPlugin->unload();
    EXPECT_EQ("8", ask());
    pPlugin->unload();
    PluginObjects::destroy(pPlugin);
}

TEST_F(PluginObjectsTest, NullIsNoObject)
{
    PluginSDK::Plugin* const pPlugin = PluginObjects::create();
    EXPECT_EQ("7", ask());
    PluginObjects::destroy(nullptr);
    EXPECT_TRUE(isInitialised());
    PluginObjects::destroy(pPlugin);
}

} // namespace
