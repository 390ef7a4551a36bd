#include "functions/XPathBooleanFunctions.h"

#include "ValueSupport.h"

#include <gtest/gtest.h>

using namespace XmlPlugin;

namespace
{

const CallRow s_Rows[] = {
    // boolean
    {"boolean", {"5"}, "boolean 1"},
    {"boolean", {"0"}, "boolean 0"},
    {"boolean", {"-0"}, "boolean 0"},
    {"boolean", {"'0'"}, "boolean 1"},
    {"boolean", {"nan"}, "boolean 0"},
    {"boolean", {"raw nan"}, "boolean 1"},
    {"boolean", {"inf"}, "boolean 1"},
    {"boolean", {"-inf"}, "boolean 1"},
    {"boolean", {"zero"}, "boolean 0"},
    {"boolean", {"true"}, "boolean 1"},
    {"boolean", {"false"}, "boolean 0"},
    {"boolean", {"'abc'"}, "boolean 1"},
    {"boolean", {"''"}, "boolean 0"},
    {"boolean", {"text 0"}, "boolean 1"},
    {"boolean", {"nodes x"}, "boolean 1"},
    {"boolean", {"nodes |"}, "boolean 1"},
    {"boolean", {"nodes"}, "boolean 0"},
    {"boolean", {"none"}, "boolean 0"},
    {"boolean", {"0", "1"}, "boolean 1"},
    {"boolean", {"1", "0"}, "boolean 0"},
    {"boolean", {}, "-15005"},
    // true and false
    {"true", {}, "boolean 1"},
    {"true", {"0"}, "boolean 1"},
    {"false", {}, "boolean 0"},
    {"false", {"1", "1"}, "boolean 0"},
    // not
    {"not", {"5"}, "boolean 0"},
    {"not", {"0"}, "boolean 1"},
    {"not", {"'0'"}, "boolean 0"},
    {"not", {"nan"}, "boolean 1"},
    {"not", {"raw nan"}, "boolean 0"},
    {"not", {"inf"}, "boolean 0"},
    {"not", {"zero"}, "boolean 1"},
    {"not", {"true"}, "boolean 0"},
    {"not", {"false"}, "boolean 1"},
    {"not", {"''"}, "boolean 1"},
    {"not", {"'abc'"}, "boolean 0"},
    {"not", {"nodes"}, "boolean 1"},
    {"not", {"nodes x"}, "boolean 0"},
    {"not", {"none"}, "boolean 1"},
    {"not", {"0", "1"}, "boolean 0"},
    {"not", {}, "-15005"},
};

TEST(XPathBooleanFunctions, Answer)
{
    for (const CallRow& row : s_Rows)
    {
        EXPECT_EQ(call(row.name, row.arguments), row.expected) << print(row.name, row.arguments);
    }
}

} // namespace
