#include "functions/XPathOperator.h"

#include "RecordedTrace.h"
#include "ValueSupport.h"
#include "functions/XPathFunction.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

std::unique_ptr<XPathOperator> make(const char* i_Name)
{
    XPathExpression* pElement = XPathExpression::create(String(i_Name), String(L"("), nullptr);
    EXPECT_TRUE(pElement->isOperator()) << i_Name;
    return std::unique_ptr<XPathOperator>(static_cast<XPathOperator*>(pElement));
}

/// Keeps what it was given, so that a test sees what an operator prepares.
class Recorder final : public XPathFunction
{
public:
    explicit Recorder(std::span<const DataType> i_Types)
    {
        m_ParameterTypes = i_Types;
        m_ArgumentsCount = -1;
    }
    int getMinArgumentsCount() const override { return -1; }
    TErrorCode evaluate() override
    {
        m_Seen.clear();
        for (std::size_t i = m_Parameters.size(); i > 0; --i)
        {
            m_Seen.push_back(describe(m_Parameters[i - 1]));
        }
        m_pSeenStart = m_pStartNode;
        m_pSeenContext = m_EvalContext;
        return m_Code;
    }

    std::vector<std::string> m_Seen; ///< first argument first
    const Node* m_pSeenStart = nullptr;
    const XPathEvalContext* m_pSeenContext = nullptr;
    TErrorCode m_Code = 0;
};

TEST(XPathOperator, AnswersForItsFunction)
{
    struct Row
    {
        const char* token;
        int priority;
        bool isInfix;
        int count;
    };
    const Row rows[] = {
        {"+", 3, false, 2},    {"mod", 4, false, 2},      {"or", 1, false, 2},
        {"=", 2, false, 2},    {"(", 2, false, 2},        {"position", 5, true, 0},
        {"count", 4, true, 1}, {"substring", 1, true, 1}, {"concat", 4, true, 1},
    };
    for (const Row& row : rows)
    {
        const std::unique_ptr<XPathOperator> pOperator = make(row.token);
        EXPECT_TRUE(pOperator->isOperator());
        EXPECT_EQ(pOperator->text().toNarrow(), row.token);
        EXPECT_EQ(pOperator->getPriority(), row.priority) << row.token;
        EXPECT_EQ(pOperator->isInfix(), row.isInfix) << row.token;
        EXPECT_EQ(pOperator->getArgumentsCount(), row.count) << row.token;
        EXPECT_EQ(pOperator->getOutputArgument(), nullptr) << row.token;
    }
}

TEST(XPathOperator, ArgumentCountIsTheCallsNotTheLimit)
{
    const std::unique_ptr<XPathOperator> pConcat = make("concat"); // no upper limit
    pConcat->setArgumentsCount(5);
    EXPECT_EQ(pConcat->getArgumentsCount(), 5);
    const std::unique_ptr<XPathOperator> pSum = make("sum"); // one argument at most
    pSum->setArgumentsCount(3);
    EXPECT_EQ(pSum->getArgumentsCount(), 3);
}

TEST(XPathOperator, ChecksTheNumberOfArguments)
{
    const CallRow rows[] = {
        {"concat", {"'a'"}, "-15005"},
        {"concat", {"'a'", "'b'", "'c'", "'d'", "'e'"}, "string abcde"},
        {"substring", {"'12345'"}, "-15005"},
        {"substring", {"'12345'", "2"}, "string 2345"},
        {"substring", {"'12345'", "2", "3"}, "string 234"},
        {"substring", {"'12345'", "2", "3", "4"}, "-15005"},
        {"+", {}, "-15005"},
        {"+", {"5"}, "number NaN"},
        {"+", {"5", "6"}, "number 11"},
        {"+", {"5", "6", "7"}, "-15005"},
        {"*", {"5"}, "-15005"},
        {"*", {"5", "6", "7"}, "-15005"},
        {"=", {"5"}, "-15005"},
        {"or", {"5", "6", "7"}, "-15005"},
        {"local-name", {}, "-102"},
        {"translate", {"'a'", "'b'", "'c'"}, "-102"},
    };
    for (const CallRow& row : rows)
    {
        EXPECT_EQ(call(row.name, row.arguments), row.expected) << print(row.name, row.arguments);
    }
}

TEST(XPathOperator, ConvertsArguments)
{
    struct Row
    {
        std::vector<DataType> types;
        std::vector<std::string> arguments;
        std::vector<std::string> seen;
    };
    const Row rows[] = {
        {{}, {"5", "'a'", "nodes 3"}, {"number 5", "string a", "nodes a/@b"}},
        // A number where a text is asked for is read by its text, and stays a number.
        {{StringType}, {"5", "true", "nodes 3|7", "nan"}, {"number 5", "string true", "string 3", "number NaN"}},
        {{StringType, NumberType}, {"5", "'6'", "'x'", "true"}, {"number 5", "number 6", "number NaN", "number 1"}},
        {{NumberType, StringType}, {"text 7", "inf", "false"}, {"number 7", "number Infinity", "string false"}},
        {{BooleanType},
         {"5", "0", "''", "nodes x", "none"},
         {"boolean 1", "boolean 0", "boolean 0", "boolean 1", "boolean 0"}},
        {{NumberType},
         {"-0", "inf", "zero", "nodes 9", "none"},
         {"number 0 (-0)", "number Infinity", "number 0 (zero)", "number 9", "number NaN"}},
        {{StringType}, {"none", "nodes", "\"'q'\""}, {"string ", "string ", "string q"}},
        {{NodeSetType}, {"5", "nodes 3"}, {}},
        {{StringType}, {}, {}},
    };
    const auto seenBy = [](const Row& i_Row)
    {
        Values values;
        auto pFunction = std::make_unique<Recorder>(i_Row.types);
        const Recorder& recorder = *pFunction;
        XPathOperator call(String(L"f"), nullptr, pFunction.release());
        EXPECT_EQ(call.evaluate(values.arguments(i_Row.arguments)), 0);
        return recorder.m_Seen;
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(seenBy(row), row.seen);
        // The functions themselves convert then, and a number becomes the text by which it is read otherwise.
        const RecordedTrace trace;
        std::vector<std::string> seen = row.seen;
        for (std::size_t i = 0; i < seen.size() && !row.types.empty(); ++i)
        {
            if (row.types[std::min(i, row.types.size() - 1)] == StringType)
            {
                seen[i].replace(0, seen[i].find(' '), "string");
            }
        }
        EXPECT_EQ(seenBy(row), seen);
    }
}

TEST(XPathOperator, HandsOnNodeAndContext)
{
    Tree tree("a");
    const XPathEvalContext context;
    auto pFunction = std::make_unique<Recorder>(std::span<const DataType>());
    const Recorder& recorder = *pFunction;
    XPathOperator call(String(L"f"), nullptr, pFunction.release());
    call.setStartNode(tree.root());
    call.setEvalContext(&context);
    EXPECT_EQ(call.evaluate({}), 0);
    EXPECT_EQ(recorder.m_pSeenStart, tree.root());
    EXPECT_EQ(recorder.m_pSeenContext, &context);
}

TEST(XPathOperator, PassesTheFunctionsCodeOn)
{
    auto pFunction = std::make_unique<Recorder>(std::span<const DataType>());
    pFunction->m_Code = -7;
    XPathOperator call(String(L"f"), nullptr, pFunction.release());
    EXPECT_EQ(call.evaluate({}), -7);
    EXPECT_EQ(call.getOutputArgument(), nullptr);
}

TEST(XPathOperator, FunctionWithoutResultLeavesNone)
{
    EXPECT_EQ(call("count", {"5"}), "nothing");
    EXPECT_EQ(call("name", {"nodes"}), "nothing");
}

TEST(XPathOperator, CanBeEvaluatedAgainAfterReset)
{
    Values values;
    const std::unique_ptr<XPathOperator> pPlus = make("+");
    EXPECT_EQ(pPlus->evaluate(values.arguments({"1", "2"})), 0);
    EXPECT_EQ(describe(pPlus->getOutputArgument()), "number 3");
    pPlus->reset();
    EXPECT_EQ(pPlus->getOutputArgument(), nullptr);
    EXPECT_EQ(pPlus->evaluate(values.arguments({"'4'", "nodes 5"})), 0);
    EXPECT_EQ(describe(pPlus->getOutputArgument()), "number 9");

    const std::unique_ptr<XPathOperator> pCount = make("count");
    EXPECT_EQ(pCount->evaluate(values.arguments({"nodes a|b"})), 0);
    EXPECT_EQ(describe(pCount->getOutputArgument()), "number 2");
    pCount->reset();
    EXPECT_EQ(pCount->evaluate(values.arguments({"'x'"})), 0);
    EXPECT_EQ(pCount->getOutputArgument(), nullptr);
}

} // namespace
