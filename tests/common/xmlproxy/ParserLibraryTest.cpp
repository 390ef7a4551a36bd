#include "xmlproxy/ParserLibrary.h"

#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/NodeReader.h"
#include "xmlproxy/XercesLibrary.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

namespace
{

class ParserLibraryTest : public testing::Test
{
protected:
    ParserLibraryTest()
    {
        ParserLibrary::release();
        m_Folder.write("a.xml", "<!DOCTYPE a><a/>");
    }
    ~ParserLibraryTest() override { ParserLibrary::release(); }

    static bool isInitialised() { return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr; }

    void read() const
    {
        RecordingSink sink;
        NodeReader(&sink).read(m_Folder.pathOf("a.xml"), 0);
        EXPECT_EQ("a#0", sink.trees());
    }

    const std::size_t m_Before = XercesLibrary::startCount();
    TestFolder m_Folder;
};

TEST_F(ParserLibraryTest, IsStartedByTheFirstDocumentOnly)
{
    EXPECT_FALSE(isInitialised());
    for (int i = 0; i < 3; ++i)
    {
        read();
        EXPECT_TRUE(isInitialised());
    }
    EXPECT_EQ(m_Before + 1, XercesLibrary::startCount());
}

TEST_F(ParserLibraryTest, IsOneObjectUntilItIsReleased)
{
    ParserLibrary* const pLibrary = &ParserLibrary::instance();
    EXPECT_EQ(pLibrary, &ParserLibrary::instance());
    EXPECT_FALSE(isInitialised()) << "no parser was asked for";
}

TEST_F(ParserLibraryTest, StopsWhenItIsReleasedAndStartsAgain)
{
    for (std::size_t life = 1; life <= 3; ++life)
    {
        read();
        EXPECT_EQ(m_Before + life, XercesLibrary::startCount());
        ParserLibrary::release();
        ParserLibrary::release();
        EXPECT_FALSE(isInitialised());
    }
}

} // namespace
