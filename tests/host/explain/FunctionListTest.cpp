#include "explain/FunctionList.h"

#include "xpathlanguage/XPathFunctionTable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST(FunctionList, HasAHeadingAndALineForEachFunction)
{
    const std::string list = functionList();
    EXPECT_THAT(list, StartsWith("FUNCTION                            ARGUMENTS         PRIORITY  ANSWER\n"
                                 "position()                          none; any number  5         number: position "));
    EXPECT_EQ(static_cast<std::size_t>(std::count(list.begin(), list.end(), '\n')),
              std::size(XPathLanguage::s_Functions) + 1);
    for (const XPathLanguage::Function& function : XPathLanguage::s_Functions)
    {
        EXPECT_THAT(list, HasSubstr("\n" + function.call() + " ")) << function.call();
        EXPECT_THAT(list, HasSubstr("  " + std::string(function.answer) + "\n")) << function.call();
    }
}

TEST(FunctionList, AlignsItsColumns)
{
    EXPECT_THAT(functionList(),
                HasSubstr("\nsubstring(string, number, number?)  2 or 3            1         string: the part from a "
                          "position, counted from 1, with a length\n"));
}
