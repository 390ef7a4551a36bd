#include "xmlproxy/XercesLibrary.h"

#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/NodeReader.h"
#include "xmlproxy/ParserLibrary.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <memory>

namespace
{

bool isInitialised()
{
    return xercesc::XMLPlatformUtils::fgMemoryManager != nullptr;
}

TEST(XercesLibrary, IsInitialisedWhileItIsHeld)
{
    ParserLibrary::release(); // the parses of other tests have started it
    ASSERT_FALSE(isInitialised());
    {
        XercesLibrary first;
        EXPECT_FALSE(isInitialised());
        first.hold();
        EXPECT_TRUE(isInitialised());
        auto pSecond = std::make_unique<XercesLibrary>();
        pSecond->acquire();
        pSecond->acquire();
        EXPECT_TRUE(pSecond->isHeld());
        pSecond.reset();
        EXPECT_TRUE(isInitialised());
    }
    EXPECT_FALSE(isInitialised());
}

TEST(XercesLibrary, StaysAfterAParse)
{
    const TestFolder folder;
    folder.write("a.xml", "<a/>");
    RecordingSink sink;
    XercesLibrary library;
    library.hold();
    NodeReader(&sink).read(folder.pathOf("a.xml"), 0);
    EXPECT_TRUE(isInitialised());
    EXPECT_EQ("a#0", sink.trees());
}

TEST(XercesLibrary, CountsItsStarts)
{
    ParserLibrary::release();
    const std::size_t before = XercesLibrary::startCount();
    {
        XercesLibrary first;
        first.hold();
        first.hold();
        XercesLibrary second;
        second.hold();
        EXPECT_EQ(before + 1, XercesLibrary::startCount());
    }
    XercesLibrary third;
    third.hold();
    EXPECT_EQ(before + 2, XercesLibrary::startCount());
}

} // namespace
