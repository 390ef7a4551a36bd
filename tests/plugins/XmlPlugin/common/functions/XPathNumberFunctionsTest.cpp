#include "functions/XPathNumberFunctions.h"

#include "ValueSupport.h"

#include <gtest/gtest.h>

#include <string>

using namespace XmlPlugin;

namespace
{

const CallRow s_Rows[] = {
    // number
    {"number", {}, "number NaN"},
    {"number", {"'12'"}, "number 12"},
    {"number", {"'abc'"}, "number NaN"},
    {"number", {"''"}, "number NaN"},
    {"number", {"text 12"}, "number 12"},
    {"number", {"text  7 "}, "number 7"},
    {"number", {"text 1e3"}, "number NaN"},
    {"number", {"text -"}, "number 0"},
    {"number", {"text - 5"}, "number 0"},
    {"number", {"5"}, "number 5"},
    {"number", {"-0"}, "number 0 (-0)"},
    {"number", {"nan"}, "number NaN"},
    {"number", {"inf"}, "number Infinity"},
    {"number", {"-inf"}, "number -Infinity"},
    {"number", {"zero"}, "number 0 (zero)"},
    {"number", {"raw nan"}, "number nan"},
    {"number", {"true"}, "number 1"},
    {"number", {"false"}, "number 0"},
    {"number", {"nodes 7|8"}, "number 7"},
    {"number", {"nodes x|8"}, "number NaN"},
    {"number", {"nodes '7'"}, "number 7"},
    {"number", {"nodes"}, "number NaN"},
    {"number", {"none"}, "number NaN"},
    {"number", {"'5.0'"}, "number 5"},
    {"number", {"1", "2"}, "-15005"},
    // sum
    {"sum", {"nodes 1|2|3"}, "number 6"},
    {"sum", {"nodes 1.5|-0.5"}, "number 1"},
    {"sum", {"nodes 1|2|x"}, "number NaN"},
    {"sum", {"nodes x|1"}, "number NaN"},
    {"sum", {"nodes 1|'2'"}, "number 3"},
    {"sum", {"nodes"}, "number 0"},
    {"sum", {"nodes |1"}, "number NaN"},
    {"sum", {"'5'"}, "number 5"},
    {"sum", {"'x'"}, "number NaN"},
    {"sum", {"true"}, "number 1"},
    {"sum", {"-0"}, "number 0 (-0)"},
    {"sum", {"inf"}, "number Infinity"},
    {"sum", {"none"}, "number NaN"},
    {"sum", {}, "-15005"},
    {"sum", {"1", "2"}, "-15005"},
    // floor
    {"floor", {"2.7"}, "number 2"},
    {"floor", {"-2.1"}, "number -3"},
    {"floor", {"2"}, "number 2"},
    {"floor", {"raw -0"}, "number -0"},
    {"floor", {"-0"}, "number 0"},
    {"floor", {"nan"}, "number NaN"},
    {"floor", {"inf"}, "number Infinity"},
    {"floor", {"-inf"}, "number -Infinity"},
    {"floor", {"zero"}, "number 0 (zero)"},
    {"floor", {"raw inf"}, "number inf"},
    {"floor", {"raw nan"}, "number nan"},
    {"floor", {"'2.5'"}, "number 2"},
    {"floor", {"'x'"}, "number NaN"},
    {"floor", {"true"}, "number 1"},
    {"floor", {"nodes 3.9"}, "number 3"},
    {"floor", {"nodes"}, "number NaN"},
    {"floor", {"none"}, "number NaN"},
    {"floor", {}, "-15005"},
    {"floor", {"1", "2"}, "-15005"},
    // ceiling
    {"ceiling", {"2.1"}, "number 3"},
    {"ceiling", {"-2.9"}, "number -2"},
    {"ceiling", {"-0.5"}, "number -0"},
    {"ceiling", {"raw -0"}, "number -0"},
    {"ceiling", {"nan"}, "number NaN"},
    {"ceiling", {"-inf"}, "number -Infinity"},
    {"ceiling", {"zero"}, "number 0 (zero)"},
    {"ceiling", {"false"}, "number 0"},
    {"ceiling", {"text 2.5"}, "number 3"},
    {"ceiling", {"none"}, "number NaN"},
    {"ceiling", {}, "-15005"},
    {"ceiling", {"1", "2"}, "-15005"},
    // round
    {"round", {"0.5"}, "number 1"},
    {"round", {"-0.5"}, "number 0"},
    {"round", {"2.5"}, "number 3"},
    {"round", {"-2.5"}, "number -2"},
    {"round", {"-2.6"}, "number -3"},
    {"round", {"2.4"}, "number 2"},
    {"round", {"-2.4"}, "number -2"},
    {"round", {"-0.4"}, "number 0"},
    {"round", {"-0"}, "number 0"},
    {"round", {"raw -0"}, "number 0"},
    {"round", {"1e300"}, "number 1e+300"},
    {"round", {"-1e300"}, "number -1e+300"},
    {"round", {"9223372036854775808"}, "number 9.22337e+18"},
    {"round", {"-9223372036854775808"}, "number -9.22337e+18"},
    {"round", {"raw inf"}, "number inf"},
    {"round", {"raw nan"}, "number nan"},
    {"round", {"nan"}, "number NaN"},
    {"round", {"inf"}, "number Infinity"},
    {"round", {"-inf"}, "number -Infinity"},
    {"round", {"zero"}, "number 0 (zero)"},
    {"round", {"true"}, "number 1"},
    {"round", {"'1.5'"}, "number 2"},
    {"round", {"nodes 7.5"}, "number 8"},
    {"round", {"none"}, "number NaN"},
    {"round", {}, "-15005"},
    {"round", {"1", "2"}, "-15005"},
};

TEST(XPathNumberFunctions, Answer)
{
    for (const CallRow& row : s_Rows)
    {
        EXPECT_EQ(call(row.name, row.arguments), row.expected) << print(row.name, row.arguments);
    }
}

TEST(XPathNumberFunctions, SpecialNumbersStoreZero)
{
    for (const char* pOperand : {"inf:3", "nan:3", "zero:3"})
    {
        Values values;
        const XPathNumber converted = XPathFunction_number::convert(*values(pOperand));
        EXPECT_EQ(converted.m_Value, 0.0) << pOperand;
        EXPECT_EQ(converted.m_Limit, values(pOperand)->getLimitType()) << pOperand;
        EXPECT_EQ(XPathFunction_round::round(XPathNumber::of(*values(pOperand))).m_Value, 0.0) << pOperand;
    }
}

TEST(XPathNumberFunctions, NodesWithoutValue)
{
    Tree tree("r");
    tree.text(tree.root(), "12");
    Values values;
    XPathExpression* pNodes = values("nodes");
    values.addRecord(*pNodes, "", tree.root(), "30");
    EXPECT_EQ(callWith("number", {pNodes}), "number 12"); // the text of the node
    EXPECT_EQ(callWith("sum", {pNodes}), "number 30");    // the text of the record
}

} // namespace
