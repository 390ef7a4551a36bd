#include "functions/XPathFunction.h"

#include "ValueSupport.h"
#include "xpathlanguage/XPathFunctionTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

constexpr int Count = XPathLanguage::CallCount;
constexpr int NoLimit = XPathLanguage::NoLimit;
constexpr TErrorCode Wrong = -15005;
constexpr TErrorCode Missing = -102;

struct FunctionRow
{
    const char* name;
    int initial;
    int maximum;
    int minimum;
    int priority;
    DataType result;
    std::vector<DataType> parameters;
    TErrorCode codes[5]; ///< of calls with none to four arguments
};

const std::vector<DataType> s_None;
const std::vector<DataType> s_Number = {NumberType};
const std::vector<DataType> s_String = {StringType};
const std::vector<DataType> s_TwoStrings = {StringType, StringType};
const std::vector<DataType> s_Substring = {StringType, NumberType, NumberType};

/// What these functions are, told independently of the table of the engine, which may have more of them.
// clang-format off
const FunctionRow s_Rows[] = {
    {"position",         0, Count,   Count, 5, NumberType,  s_None,       {0, 0, 0, 0, 0}},
    {"count",            1, Count,   Count, 4, NumberType,  s_None,       {Wrong, 0, 0, 0, 0}},
    {"last",             0, Count,   Count, 4, NumberType,  s_None,       {0, 0, 0, 0, 0}},
    {"local-name",       0, 1,       0,     4, StringType,  s_None,       {Missing, Missing, Wrong, Wrong, Wrong}},
    {"name",             1, 1,       0,     4, StringType,  s_None,       {0, 0, Wrong, Wrong, Wrong}},
    {"string",           0, 1,       0,     4, StringType,  s_None,       {0, 0, Wrong, Wrong, Wrong}},
    {"concat",           1, NoLimit, 2,     4, StringType,  s_String,     {Wrong, Wrong, 0, 0, 0}},
    {"starts-with",      1, Count,   Count, 1, BooleanType, s_TwoStrings, {Wrong, Wrong, 0, 0, 0}},
    {"contains",         1, Count,   Count, 1, BooleanType, s_TwoStrings, {Wrong, Wrong, 0, 0, 0}},
    {"substring-before", 1, Count,   Count, 1, StringType,  s_TwoStrings, {Wrong, Wrong, 0, 0, 0}},
    {"substring-after",  1, Count,   Count, 4, StringType,  s_TwoStrings, {Wrong, Wrong, 0, 0, 0}},
    {"substring",        1, 3,       2,     1, StringType,  s_Substring,  {Wrong, Wrong, 0, 0, Wrong}},
    {"string-length",    1, 1,       0,     4, NumberType,  s_String,     {Wrong, 0, Wrong, Wrong, Wrong}},
    {"normalize-space",  1, 1,       0,     4, StringType,  s_String,     {0, 0, Wrong, Wrong, Wrong}},
    {"translate",        1, 3,       3,     4, StringType,  s_None,       {Wrong, Wrong, Wrong, Missing, Wrong}},
    {"boolean",          1, Count,   Count, 4, BooleanType, s_None,       {Wrong, 0, 0, 0, 0}},
    {"true",             0, Count,   Count, 4, BooleanType, s_None,       {0, 0, 0, 0, 0}},
    {"false",            0, Count,   Count, 4, BooleanType, s_None,       {0, 0, 0, 0, 0}},
    {"not",              1, Count,   Count, 4, BooleanType, s_None,       {Wrong, 0, 0, 0, 0}},
    {"number",           0, 1,       0,     4, NumberType,  s_None,       {0, 0, Wrong, Wrong, Wrong}},
    {"sum",              1, 1,       1,     4, NumberType,  s_None,       {Wrong, 0, Wrong, Wrong, Wrong}},
    {"floor",            1, 1,       1,     4, NumberType,  s_Number,     {Wrong, 0, Wrong, Wrong, Wrong}},
    {"ceiling",          1, 1,       1,     4, NumberType,  s_Number,     {Wrong, 0, Wrong, Wrong, Wrong}},
    {"round",            1, 1,       1,     4, NumberType,  s_Number,     {Wrong, 0, Wrong, Wrong, Wrong}},
};
// clang-format on

std::unique_ptr<XPathFunction> select(const char* i_Token, const char* i_Next = "",
                                      const XPathExpression* i_pPrevious = nullptr)
{
    return std::unique_ptr<XPathFunction>(
        XPathFunctionFactory::selectOperator(String(i_Token), String(i_Next), i_pPrevious));
}

std::vector<DataType> copy(std::span<const DataType> i_Types)
{
    return {i_Types.begin(), i_Types.end()};
}

TEST(XPathFunctionFactory, MakesEveryNamedFunction)
{
    for (const FunctionRow& row : s_Rows)
    {
        const std::unique_ptr<XPathFunction> pFunction(XPathFunctionFactory::create(String(row.name), String(L"(")));
        ASSERT_TRUE(pFunction) << row.name;
        EXPECT_TRUE(pFunction->isInfix()) << row.name;
        EXPECT_TRUE(pFunction->name().isEmpty()) << row.name;
        EXPECT_EQ(pFunction->argumentsOfCall(), row.initial) << row.name;
        EXPECT_EQ(pFunction->getPriority(), row.priority) << row.name;
        EXPECT_EQ(pFunction->getResultType(), row.result) << row.name;
        EXPECT_EQ(copy(pFunction->getParameterTypes()), row.parameters) << row.name;
        EXPECT_EQ(pFunction->getOutputExpression(), nullptr) << row.name;

        EXPECT_EQ(pFunction->getArgumentsCount(), row.maximum == Count ? row.initial : row.maximum) << row.name;
        EXPECT_EQ(pFunction->getMinArgumentsCount(), row.minimum == Count ? row.initial : row.minimum) << row.name;
        pFunction->setArgumentsCount(7);
        EXPECT_EQ(pFunction->argumentsOfCall(), 7) << row.name;
        EXPECT_EQ(pFunction->getArgumentsCount(), row.maximum == Count ? 7 : row.maximum) << row.name;
        EXPECT_EQ(pFunction->getMinArgumentsCount(), row.minimum == Count ? 7 : row.minimum) << row.name;
    }
}

TEST(XPathFunctionFactory, RowsHoldTheirLimits)
{
    for (const FunctionRow& expected : s_Rows)
    {
        const XPathFunctionRow* pRow = XPathFunctionFactory::find(viewOf(String(expected.name)));
        ASSERT_NE(pRow, nullptr) << expected.name;
        EXPECT_EQ(pRow->maximum, expected.maximum) << expected.name;
        EXPECT_EQ(pRow->minimum, expected.minimum) << expected.name;
    }
}

TEST(XPathFunctionFactory, HasEveryFunctionOfTheLanguageOnce)
{
    const std::span<const XPathFunctionRow> functions = XPathFunctionFactory::functions();
    ASSERT_EQ(functions.size(), std::size(XPathLanguage::s_Functions));
    for (std::size_t i = 0; i < functions.size(); ++i)
    {
        EXPECT_EQ(functions[i].name, XPathLanguage::s_Functions[i].name.wide());
        EXPECT_EQ(XPathFunctionFactory::find(functions[i].name), &functions[i]);
    }
}

TEST(XPathFunctionFactory, NamesCountOnlyBeforeAParenthesis)
{
    struct Row
    {
        const char* name;
        const char* next;
        bool isKnown;
    };
    const Row rows[] = {
        {"count", "(", true},   {"count", "", false},  {"count", ")", false}, {"count", "((", false},
        {"count", " (", false}, {"Count", "(", false}, {"coun", "(", false},  {"counts", "(", false},
        {"", "(", false},       {"id", "(", false},    {"lang", "(", false},  {"namespace-uri", "(", false},
        {"count ", "(", false},
    };
    for (const Row& row : rows)
    {
        const std::unique_ptr<XPathFunction> pCreated(XPathFunctionFactory::create(String(row.name), String(row.next)));
        EXPECT_EQ(pCreated != nullptr, row.isKnown) << row.name << ' ' << row.next;
        EXPECT_EQ(select(row.name, row.next) != nullptr, row.isKnown) << row.name << ' ' << row.next;
    }
}

TEST(XPathFunctionFactory, SelectsOperators)
{
    struct Row
    {
        const char* token;
        int priority;
        DataType result;
        bool takesNumbers;
        int maximum;
        int minimum;
    };
    const Row rows[] = {
        {"or", 1, BooleanType, false, 2, 2}, {"and", 1, BooleanType, false, 2, 2}, {")", 2, BooleanType, false, 2, 2},
        {">", 2, BooleanType, false, 2, 2},  {"<", 2, BooleanType, false, 2, 2},   {">=", 2, BooleanType, false, 2, 2},
        {"<=", 2, BooleanType, false, 2, 2}, {"!=", 2, BooleanType, false, 2, 2},  {"=", 2, BooleanType, false, 2, 2},
        {",", 2, BooleanType, false, 2, 2},  {"(", 2, BooleanType, false, 2, 2},   {"+", 3, NumberType, true, 2, 1},
        {"-", 3, NumberType, true, 2, 1},    {"*", 4, NumberType, true, 2, 2},     {"div", 4, NumberType, true, 2, 2},
        {"mod", 4, NumberType, true, 2, 2},
    };
    for (const Row& row : rows)
    {
        for (const char* pNext : {"", "("})
        {
            const std::unique_ptr<XPathFunction> pFunction = select(row.token, pNext);
            ASSERT_TRUE(pFunction) << row.token;
            EXPECT_FALSE(pFunction->isInfix()) << row.token;
            EXPECT_EQ(pFunction->name().toNarrow(), row.token);
            EXPECT_EQ(pFunction->getPriority(), row.priority) << row.token;
            EXPECT_EQ(pFunction->getResultType(), row.result) << row.token;
            EXPECT_EQ(pFunction->argumentsOfCall(), 2) << row.token;
            EXPECT_EQ(pFunction->getArgumentsCount(), row.maximum) << row.token;
            EXPECT_EQ(pFunction->getMinArgumentsCount(), row.minimum) << row.token;
            const std::vector<DataType> numbers = {NumberType, NumberType};
            EXPECT_EQ(copy(pFunction->getParameterTypes()), row.takesNumbers ? numbers : s_None) << row.token;
        }
    }
    for (const char* pToken : {"", "|", "/", "[", "==", "<>", "OR", "And", "Div", "MOD", "not", "or ", "!", "a", "'='"})
    {
        EXPECT_FALSE(select(pToken)) << pToken;
    }
}

TEST(XPathFunctionFactory, CountsFollowTheCallForOperatorsWithoutTheirOwn)
{
    struct Row
    {
        const char* token;
        int maximum;
        int minimum;
    };
    for (const Row& row : {Row{"+", 2, 1}, Row{"-", 2, 1}, Row{"*", 5, 5}, Row{"=", 5, 5}, Row{"or", 5, 5}})
    {
        const std::unique_ptr<XPathFunction> pFunction = select(row.token);
        pFunction->setArgumentsCount(5);
        EXPECT_EQ(pFunction->getArgumentsCount(), row.maximum) << row.token;
        EXPECT_EQ(pFunction->getMinArgumentsCount(), row.minimum) << row.token;
    }
}

TEST(XPathFunctionFactory, ParenthesisAfterAFunctionNameOpensACall)
{
    struct Row
    {
        const char* previous;
        bool isCall;
    };
    const Row rows[] = {
        {"contains", true}, {"'contains'", true}, {"true", true}, {"a/b", false},
        {"5", false},       {"containsx", false}, {"", false},
    };
    for (const Row& row : rows)
    {
        const XPathArgument previous{String(row.previous)};
        EXPECT_EQ(select("(", "", &previous)->isInfix(), row.isCall) << row.previous;
        EXPECT_FALSE(select(")", "", &previous)->isInfix()) << row.previous;
        EXPECT_FALSE(select("+", "(", &previous)->isInfix()) << row.previous;
    }
    EXPECT_FALSE(select("(")->isInfix());
}

TEST(XPathFunction, DefaultsOfTheBase)
{
    class Probe final : public XPathFunction
    {
    public:
        using XPathFunction::XPathFunction;
        TErrorCode evaluate() override { return requireParameters(1); }
    };
    Probe probe{L"p"};
    EXPECT_EQ(probe.name(), String(L"p"));
    EXPECT_EQ(probe.getArgumentsCount(), 2);
    EXPECT_EQ(probe.getMinArgumentsCount(), 2);
    EXPECT_EQ(probe.getPriority(), 4);
    EXPECT_TRUE(probe.isInfix());
    EXPECT_TRUE(probe.getParameterTypes().empty());
    EXPECT_EQ(probe.getOutputExpression(), nullptr);
    EXPECT_EQ(probe.evaluate(), -15005);

    probe.addConvertedParameter(std::make_unique<XPathArgument>(1.0));
    EXPECT_EQ(probe.evaluate(), 0);
    probe.reset();
    EXPECT_EQ(probe.evaluate(), -15005);
}

TEST(XPathFunction, ResultIsDroppedByAReset)
{
    const std::unique_ptr<XPathFunction> pFunction(XPathFunctionFactory::create(String(L"true"), String(L"(")));
    EXPECT_EQ(pFunction->evaluate(), 0);
    EXPECT_EQ(describe(pFunction->getOutputExpression()), "boolean 1");
    pFunction->reset();
    EXPECT_EQ(pFunction->getOutputExpression(), nullptr);
    EXPECT_EQ(pFunction->evaluate(), 0);
    EXPECT_EQ(describe(pFunction->getOutputExpression()), "boolean 1");
}

TEST(XPathFunction, AcceptsItsNumberOfArguments)
{
    for (const FunctionRow& row : s_Rows)
    {
        for (std::size_t count = 0; count < std::size(row.codes); ++count)
        {
            const std::string answer = call(row.name, std::vector<std::string>(count, "'ab'"));
            const bool isFailure = answer.starts_with("-1");
            EXPECT_EQ(isFailure ? answer : "0", std::to_string(row.codes[count])) << row.name << ' ' << count << answer;
        }
    }
}

/// Every function takes every type of argument, alone and in every place: never a crash, and a
/// result of the function's own type if any.
TEST(XPathFunction, AcceptsEveryTypeOfArgument)
{
    const std::vector<std::string> operands = {"5",        "-0",      "nan",       "inf",  "-inf", "zero",
                                               "raw nan",  "raw inf", "'5'",       "'a'",  "true", "false",
                                               "text abc", "nodes",   "nodes 3|x", "none", "''"};
    for (const XPathFunctionRow& row : XPathFunctionFactory::functions())
    {
        const std::string name = String(row.name.data()).toNarrow();
        for (const std::string& first : operands)
        {
            for (const std::string& second : operands)
            {
                for (const std::vector<std::string>& arguments :
                     {std::vector<std::string>{first}, {first, second}, {first, second, first}})
                {
                    const std::string answer = call(name, arguments);
                    static const char* const s_Types[] = {"boolean ", "string ", "number "};
                    EXPECT_TRUE(answer == "nothing" || answer == "-15005" || answer == "-102" ||
                                answer.starts_with(s_Types[row.resultType]))
                        << print(name, arguments) << " = " << answer;
                }
            }
        }
    }
}

} // namespace
