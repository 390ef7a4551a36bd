#include "boundary/XmlCache.h"

#include "RecordedTrace.h"
#include "boundary/XPathEngine.h"
#include "support/TemporaryFolder.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/NodeReader.h"
#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/XercesLibrary.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <filesystem>
#include <string>

using namespace XmlPlugin;

namespace
{

class XmlCacheTest : public testing::Test
{
protected:
    XmlCacheTest() { XmlCache::destroyInstance(); }
    ~XmlCacheTest() override { XmlCache::destroyInstance(); }

    static Node* get(const std::string& i_File, TErrorCode i_Expected = 0)
    {
        Node* pRoot = reinterpret_cast<Node*>(1);
        EXPECT_EQ(XmlCache::getInstance()->getDocument(String(i_File.c_str()), pRoot), i_Expected);
        return pRoot;
    }

    TemporaryFolder m_Folder;
};

TEST_F(XmlCacheTest, IsOneObject)
{
    XmlCache* const pCache = XmlCache::getInstance();
    ASSERT_NE(pCache, nullptr);
    EXPECT_EQ(XmlCache::getInstance(), pCache);
    XmlCache::destroyInstance();
    XmlCache::destroyInstance();
    EXPECT_NE(XmlCache::getInstance(), nullptr);
}

TEST_F(XmlCacheTest, ItsEndLeavesTheParserLibraryStarted)
{
    const auto isInitialised = [] { return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr; };
    ParserLibrary::release();
    ASSERT_NE(XmlCache::getInstance(), nullptr);
    EXPECT_FALSE(isInitialised());
    get(m_Folder.write("plain.xml", "<r/>"));
    EXPECT_EQ(isInitialised(), !NodeReader::readsPlainDocuments());
    get(m_Folder.write("d.xml", "<!DOCTYPE r><r/>"));
    EXPECT_TRUE(isInitialised());
    const std::size_t starts = XercesLibrary::startCount();
    for (int i = 0; i < 3; ++i)
    {
        XmlCache::destroyInstance();
        EXPECT_TRUE(isInitialised());
        EXPECT_NE(get(m_Folder.file("d.xml")), nullptr);
    }
    EXPECT_EQ(XercesLibrary::startCount(), starts);
}

TEST_F(XmlCacheTest, AFileIsReadOnce)
{
    const std::string file = m_Folder.write("d.xml", "<old/>");
    Node* const pRoot = get(file);
    ASSERT_NE(pRoot, nullptr);
    EXPECT_EQ(pRoot->name(), L"old");
    m_Folder.write("d.xml", "<new/>");
    EXPECT_EQ(get(file), pRoot);
    std::filesystem::remove(m_Folder.path() / "d.xml");
    EXPECT_EQ(get(file), pRoot);
    EXPECT_EQ(pRoot->name(), L"old");
}

TEST_F(XmlCacheTest, AnEmptyCacheReadsTheFileAnew)
{
    const std::string file = m_Folder.write("d.xml", "<old/>");
    get(file);
    m_Folder.write("d.xml", "<new/>");
    XmlCache::destroyInstance();
    EXPECT_EQ(get(file)->name(), L"new");
}

TEST_F(XmlCacheTest, AMissingFileIsLookedForEachTime)
{
    const std::string file = m_Folder.file("d.xml");
    EXPECT_EQ(get(file, -15103), nullptr);
    EXPECT_EQ(get(file, -15103), nullptr);
    m_Folder.write("d.xml", "<r/>");
    Node* const pRoot = get(file);
    ASSERT_NE(pRoot, nullptr);
    std::filesystem::remove(m_Folder.path() / "d.xml");
    EXPECT_EQ(get(file), pRoot);
}

TEST_F(XmlCacheTest, ADamagedFileIsReadAgain)
{
    const std::string file = m_Folder.write("d.xml", "<r><a></r>");
    EXPECT_EQ(get(file, -15103), nullptr);
    m_Folder.write("d.xml", "<r><a/></r>");
    EXPECT_NE(get(file), nullptr);
}

/// The parser library gives up the first line before it counts an error.
TEST_F(XmlCacheTest, ADocumentWithoutElementsIsKept)
{
    const std::string file = m_Folder.write("d.xml", "<?xml version='1.0' \xff?><a/>");
    EXPECT_EQ(get(file), nullptr);
    m_Folder.write("d.xml", "<a/>");
    EXPECT_EQ(get(file), nullptr);
    XmlCache::destroyInstance();
    EXPECT_NE(get(file), nullptr);
}

TEST_F(XmlCacheTest, FoldersAndEmptyNamesAreNoDocuments)
{
    EXPECT_EQ(get(m_Folder.file("."), -15103), nullptr);
    EXPECT_EQ(get("", -15103), nullptr);
    EXPECT_EQ(get(m_Folder.write("empty.xml", ""), -15103), nullptr);
}

TEST_F(XmlCacheTest, TwoNamesOfOneFileAreTwoDocuments)
{
    const std::string file = m_Folder.write("d.xml", "<r/>");
    const std::string other = m_Folder.file("./d.xml");
    Node* const pRoot = get(file);
    Node* const pOther = get(other);
    EXPECT_NE(pRoot, pOther);
    EXPECT_EQ(get(file), pRoot);
    EXPECT_EQ(get(other), pOther);
}

TEST_F(XmlCacheTest, ManyDocumentsKeepTheirPlaces)
{
    std::vector<Node*> roots;
    for (int i = 0; i < 50; ++i)
    {
        roots.push_back(get(m_Folder.write(std::to_string(i) + ".xml", "<r" + std::to_string(i) + "/>")));
    }
    for (int i = 0; i < 50; ++i)
    {
        Node* const pRoot = get(m_Folder.file(std::to_string(i) + ".xml"));
        EXPECT_EQ(pRoot, roots[static_cast<std::size_t>(i)]);
        EXPECT_EQ(pRoot->name().toNarrow(), "r" + std::to_string(i));
    }
}

} // namespace
