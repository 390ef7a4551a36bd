#include "RecordedTrace.h"
#include "ValueSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

/// True when a record of this component says \p i_Record: its scope, a bar and its text.
bool has(const RecordedTrace& i_Trace, const std::string& i_Record)
{
    const std::size_t bar = i_Record.find('|');
    const std::string begin = "5|" + i_Record.substr(0, bar) + "|3|./../../../../src/plugins/XmlPlugin/common/XPath";
    const std::string end = i_Record.substr(bar);
    return std::any_of(i_Trace.lines.begin(), i_Trace.lines.end(),
                       [&](const std::string& i_Line) { return i_Line.starts_with(begin) && i_Line.ends_with(end); });
}

struct TraceRow
{
    const char* name;
    std::vector<std::string> arguments;
    const char* record; ///< scope, a bar, text
};

const TraceRow s_Rows[] = {
    {"string", {}, "TErrorCode XPathFunction_string::evaluate()| getFunctionParameters = 0"},
    {"string", {"'a'"}, "TErrorCode XPathFunction_string::evaluate()| pExpression->GetExpressionString() = a"},
    {"string", {"'a'"}, "TErrorCode XPathFunction_string::evaluate()| pExpression->GetDataType() = 1"},
    {"normalize-space",
     {"' a '"},
     "TErrorCode XPathFunction_normalizespace::evaluate()|normalize-space with parameter"},
    {"normalize-space", {}, "TErrorCode XPathFunction_normalizespace::evaluate()|normalize-space without parameters"},
    {"normalize-space", {"'a'"}, "TErrorCode XPathFunction_normalizespace::evaluate()|str = a"},
    {"number",
     {"nodes 7"},
     "TErrorCode XPathFunction_number::evaluate()|XPathFunction_number string from node 7 Type 2"},
    {"sum", {"nodes 7"}, "TErrorCode XPathFunction_sum::evaluate()|result = 0"},
    {"substring-after", {"'a'"}, "TErrorCode XPathFunction_substringAfter::evaluate()|result = -15005"},
    {"translate", {"'a'", "'b'", "'c'"}, "TErrorCode XPathFunction_translate::evaluate()|result = -102"},
    {"concat",
     {"'a'", "5"},
     "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|"
     "Expressions number to convert 2"},
    {"concat",
     {"'a'", "5"},
     "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|"
     "string() has been function prepared "},
    {"concat",
     {"'a'", "5"},
     "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|"
     "Expression 5 after converting created and added to function parameters"},
    {"+",
     {"'a'", "5"},
     "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|"
     "number() has been function prepared "},
    {"sum",
     {},
     "TErrorCode XPathOperator::evaluate(const XPathExpressionsVector &expressionsVector)|"
     "XML_PLUGIN_ERROR_XPATH_ARGUMENTS_NUMBER_ERROR"},
    {"true", {}, "XPathFunction::createOutputExpression| expression 1 created "},
    {"div", {"1", "0"}, "XPathFunction::createOutputExpression| expression Infinity created "},
    {"div", {"1", "0"}, "  XPathNumericLimits::evaluateDiv|result = 2"},
    {"div", {"1", "0"}, "  XPathNumericLimits::evaluate|result = 2"},
    {"=", {"1", "'a'"}, " XPathLogicalEvaluator::evaluate|column = 0 row = 5 oper = 0"},
    {"=", {"1", "'a'"}, " XPathLogicalEvaluator::evaluateNumberString|number evauation"},
    {"or", {"'a'", "1"}, " XPathLogicalEvaluator::evaluateNumberString|boolean evauation"},
    {"<", {"1", "2"}, " XPathLogicalEvaluator::evaluateLogicalOperation|numb1 = 1 numb2 = 2"},
    {"=", {"'a'", "'a'"}, " XPathLogicalEvaluator::evaluateStringString|EQ retuns 1"},
    {"!=", {"'a'", "'b'"}, " XPathLogicalEvaluator::evaluateStringString|INEQ returns 1"},
    {"and", {"'a'", "'b'"}, " XPathLogicalEvaluator::evaluateStringString|AND returns 1"},
    {"or", {"'a'", "''"}, " XPathLogicalEvaluator::evaluateStringString|OR returns 1"},
    {"<", {"text 1", "text 2"}, " XPathLogicalEvaluator::evaluateStringString|Both string arguments are number"},
    {"<", {"true", "'a'"}, " XPathLogicalEvaluator::evaluateStringBool|string is NaN so result is false"},
    {"<", {"true", "text 1"}, " XPathLogicalEvaluator::evaluateStringBool|number evaluation"},
    {"<", {"text 1", "true"}, " XPathLogicalEvaluator::evaluateBoolString|number evaluation. Numb1 = 1 Numb2 = 1"},
    {"=", {"nodes 8", "7"}, "PathArgument::XPathArgument(const String & i_Expression)| Expression string 8"},
    {"=", {"nodes 8", "7"}, "PathArgument::calculateType(const String & i_Expression)| m_DataType 2"},
    {"<", {"7", "nodes 1|b"}, "PathArgument::XPathArgument(const String & i_Expression)| Expression string b"},
    {"=", {"nodes a", "nan"}, " XPathLogicalEvaluator::evaluateNaNNode|result = 0"},
    {"=", {"nan", "nodes a"}, " XPathLogicalEvaluator::evaluateNodeNaN|result = 0"},
};

TEST(ValueTraces, SayWhatHappened)
{
    for (const TraceRow& row : s_Rows)
    {
        const RecordedTrace trace;
        call(row.name, row.arguments);
        EXPECT_TRUE(has(trace, row.record)) << row.record << "\nis not in\n" << testing::PrintToString(trace.lines);
    }
}

struct CountRow
{
    const char* name;
    std::vector<std::string> arguments;
    long records; ///< of the number of arguments
};

/// The most arguments of any function and the fewest where they are the call's own number. Of the arithmetic signs
/// nothing is said.
TEST(ValueTraces, SayTheNumberOfArgumentsWheneverItIsAsked)
{
    const CountRow rows[] = {
        {"not", {"true"}, 2}, {"concat", {"'a'", "'b'"}, 1}, {"=", {"1", "2"}, 2},
        {"*", {"1", "2"}, 2}, {"+", {"1", "2"}, 0},
    };
    for (const CountRow& row : rows)
    {
        const RecordedTrace trace;
        call(row.name, row.arguments);
        const auto isCount = [](const std::string& i_Line) { return isRecord(i_Line, "int getArgumentsCount()| "); };
        // The arguments of the signs and of concat are converted by functions that are not asked.
        EXPECT_EQ(std::count_if(trace.lines.begin(), trace.lines.end(), isCount), row.records) << row.name;
    }
    const std::unique_ptr<XPathExpression> pOperator(XPathExpression::create(String(L"+"), String(L"1"), nullptr));
    const RecordedTrace trace;
    EXPECT_EQ(pOperator->getArgumentsCount(), 2);
    EXPECT_EQ(countInOrder(trace, {"int getArgumentsCount()| getArgumentsCount = 2",
                                   "XPathOperator::getArgumentsCount()| getArgumentsCount 2"}),
              2u);
}

struct OrderRow
{
    const char* name;
    std::vector<std::string> arguments;
    std::vector<const char*> records; ///< in this order, with others between them
};

const char* const s_NumberPrepared =
    "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|"
    "number() has been function prepared ";

const OrderRow s_Orders[] = {
    {"concat",
     {"'a'", "'b'"},
     {"TErrorCode XPathFunction_string::evaluate()| pExpression->GetExpressionString() = a",
      "XPathFunction::createOutputExpression| expression a created ",
      "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|Expression a after",
      "TErrorCode XPathFunction_string::evaluate()| pExpression->GetExpressionString() = b",
      "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|Expression b after",
      "XPathFunction::createOutputExpression| expression ab created "}},
    {"+",
     {"1", "2"},
     {s_NumberPrepared, "TErrorCode XPathFunction_number::evaluate()|result = 0",
      "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|Expression 1 after",
      s_NumberPrepared,
      "bool XPathOperator::convertTypeParameters(const XPathExpressionsVector &expressionsVector)|Expression 2 after",
      "XPathFunction::createOutputExpression| expression 3 created "}},
    {"number",
     {"nodes '7'"},
     {"TErrorCode XPathFunction_number::evaluate()|XPathFunction_number string from node 7 Type 2"}},
    {"sum",
     {"nodes x|2"},
     {"PathArgument::XPathArgument(const String & i_Expression)| Expression string x",
      "PathArgument::XPathArgument(const String & i_Expression)| Expression string 2",
      "TErrorCode XPathFunction_sum::evaluate()|result = 0"}},
    {"=",
     {"true", "3"},
     {" XPathLogicalEvaluator::evaluate|pExp1 = ",
      " XPathLogicalEvaluator::evaluateLogicalOperation|numb1 = 1 numb2 = 1",
      " XPathLogicalEvaluator::evaluateBoolNumber|result = 1", " XPathLogicalEvaluator::evaluate|result = 1"}},
    {"<",
     {"true", "3"},
     {" XPathLogicalEvaluator::evaluateLogicalOperation|numb1 = 1 numb2 = 3",
      " XPathLogicalEvaluator::evaluateBoolNumber|result = 1"}},
    {"=",
     {"text 1", "true"},
     {" XPathLogicalEvaluator::evaluateBoolString|boolean evaluation",
      " XPathLogicalEvaluator::evaluateLogicalOperation|numb1 = 1 numb2 = 1",
      " XPathLogicalEvaluator::evaluateBoolString|result = 1"}},
    {"=",
     {"3", "nodes 3"},
     {" XPathLogicalEvaluator::evaluateNumberNode|result = 1",
      " XPathLogicalEvaluator::evaluateNodeNumber|result = 1"}},
    {"=",
     {"'a'", "nodes b"},
     {" XPathLogicalEvaluator::evaluateStringNode|result = 0",
      " XPathLogicalEvaluator::evaluateNodeString|result = 0"}},
    {"and",
     {"nodes 3", "nodes"},
     {" XPathLogicalEvaluator::evaluateLogicalOperation|numb1 = 1 numb2 = 0",
      " XPathLogicalEvaluator::evaluateNodeNodeOperation|result = 0"}},
};

TEST(ValueTraces, ComeInThisOrder)
{
    for (const OrderRow& row : s_Orders)
    {
        const RecordedTrace trace;
        call(row.name, row.arguments);
        const std::size_t found = countInOrder(trace, row.records);
        EXPECT_EQ(found, row.records.size())
            << print(row.name, row.arguments) << ": " << (found < row.records.size() ? row.records[found] : "")
            << "\nis not there in\n"
            << testing::PrintToString(trace.lines);
    }
}

TEST(ValueTraces, DoNotChangeAnswers)
{
    const std::vector<std::string> operands = {"5",    "-0",    "nan",      "inf",   "zero",      "'5'", "'a'",
                                               "true", "false", "text abc", "nodes", "nodes 3|x", "none"};
    for (const char* pName :
         {"string", "number", "boolean", "concat", "substring", "sum", "round", "+", "div", "=", "<", "or"})
    {
        for (const std::string& first : operands)
        {
            for (const std::string& second : operands)
            {
                const std::string silent = call(pName, {first, second});
                const RecordedTrace trace;
                EXPECT_EQ(call(pName, {first, second}), silent) << print(pName, {first, second});
                EXPECT_FALSE(trace.lines.empty());
            }
        }
    }
}

} // namespace
