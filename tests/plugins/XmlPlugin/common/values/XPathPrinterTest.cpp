#include "values/XPathPrinter.h"

#include "values/XPathArgument.h"

#include <gtest/gtest.h>

using namespace XmlPlugin;

namespace
{

TEST(XPathPrinter, DumpHasTextKindAndType)
{
    XPathArgument number(L"5");
    XPathArgument text(L"'a'");
    XPathArgument path(L"a/b");
    EXPECT_EQ(dumpElements({&number, &text, &path}), L"(5,0,2)|(a,0,1)|(a/b,0,3)|");
    EXPECT_EQ(dumpElements({}), L"");
}

} // namespace
