#include "compile/XPathExpressionsParser.h"

#include "Printers.h"
#include "QuerySupport.h"
#include "RecordedTrace.h"
#include "compile/XPathTokenizer.h"
#include "values/XPathOutputList.h"
#include "values/XPathQuickCode.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

#ifdef _WIN32
#include <thread>
#else
#include <pthread.h>
#endif

using namespace XmlPlugin;

namespace
{

std::string postfixOf(const std::string& i_Expression)
{
    const XPathExpressionsParser parser(i_Expression.c_str());
    return parser.status() == 0 ? printElements(parser.postfix()) : "error " + std::to_string(parser.status());
}

struct PostfixRow
{
    const char* name;
    const char* expression;
    const char* expected;
};

const PostfixRow s_Postfix[] = {
    {"operand", "a/b", "a/b"},
    {"higher_priority_behind", "1 + 2 * 3", "1 2 3 * +"},
    {"higher_priority_before", "1 * 2 + 3", "1 2 * 3 +"},
    {"equal_priority", "1 - 2 - 3", "1 2 - 3 -"},
    {"equal_priority_mixed", "2 mod 3 * 4 div 5", "2 3 mod 4 * 5 div"},
    {"comparisons_are_equal", "1 < 2 = 3 != 4", "1 2 < 3 = 4 !="},
    {"or_and_share_a_priority", "a or b and c", "a  b or  c and"},
    {"and_or", "a and b or c", "a  b and  c or"},
    {"all_levels", "1 or 2 = 3 + 4 * 5", "1 2 3 4 5 * + = or"},
    {"all_levels_backwards", "1 * 2 + 3 = 4 or 5", "1 2 * 3 + 4 = 5 or"},
    {"parentheses", "(1 + 2) * 3", "1 2 + 3 *"},
    {"parentheses_behind", "1 * (2 + 3)", "1 2 3 + *"},
    {"nested_parentheses", "((1))", "1"},
    {"call_before", "count(a) + 1", "a count 1 +"},
    {"call_behind_lower", "1 + count(a)", "1 a count +"},
    {"call_behind_equal_comes_too_late", "2 * count(a)", "2 * a count"},
    {"position_stands_higher", "2 * position()", "2 position *"},
    {"arguments", "concat(a, b)", "a  b concat"},
    {"expression_as_argument", "concat(1 + 2, 3)", "1 2 + 3 concat"},
    {"nested_calls", "concat(concat(1,2),3)", "1 2 concat 3 concat"},
    {"low_function_waits", "contains(a,b) = true()", "a b true = contains"},
    {"low_function_behind_and", "@x and contains(@y,'z')", "@x and @y 'z' contains"},
    {"low_function_behind_or", "a or starts-with(b,'c')", "a or b 'c' starts-with"},
    {"high_function_behind_or", "a or not(b)", "a b not or"},
    {"sign", "-x", "0 x -"},
    {"sign_behind_times", "2 * -x", "2 0 x - *"},
    {"sign_of_a_union", "-a|b", "0 a|b -"},
    {"variable", "$x", "$ x"},
    {"joined_closing_parenthesis", "(a)|b", "a )|b ("},
    {"joined_opening_parenthesis", "a|(b)", "a|( b"},
    {"both_joined", "a)|(b", "a )|( b"},
    {"and_chain", "a and b and c", "a  b and"},
    {"empty", "", "error -15105"},
    {"not_recognised", "1 +", "error -15105"},
};

TEST(XPathExpressionsParser, Postfix)
{
    for (const PostfixRow& row : s_Postfix)
    {
        EXPECT_EQ(postfixOf(row.expression), row.expected) << row.name << ": " << row.expression;
    }
}

TEST(XPathExpressionsParser, StrayParenthesesAreDropped)
{
    XPathExpressionsParser parser(L"1 + 2");
    XPathTokenizer tokenizer(L"(1,2)");
    XPathExpressionsVector output;
    EXPECT_NE(tokenizer.start(), 0) << "a comma stands only in a call";
    XPathTokenizer call(L"concat(1,2)");
    ASSERT_EQ(call.start(), 0);
    const auto& tokens = call.outVector();
    parser.gotParen(tokens[5], output); // ")"
    parser.gotParen(tokens[3], output); // ","
    EXPECT_EQ(printElements(parser.doTrans(output)), "1 2 +");
}

/// What the parenthesis that opens a call gives back when it knows the function before it. The tokenizer's
/// parentheses do not: there the function waits for the next operator or the end.
TEST(XPathExpressionsParser, CallIsClosedByAParenthesisThatKnowsIt)
{
    XPathTokenizer call(L"count(a)");
    ASSERT_EQ(call.start(), 0);
    const auto& tokens = call.outVector();
    const std::unique_ptr<XPathExpression> pOpen(XPathExpression::create(L"(", L"", tokens[0]));
    ASSERT_TRUE(pOpen->isInfix());

    XPathExpressionsParser parser(L"1");
    XPathExpressionsVector output;
    parser.stackExpression(tokens[0], output);
    parser.stackExpression(pOpen.get(), output);
    parser.stackExpression(tokens[2], output);
    EXPECT_EQ(printElements(output), "a");
    parser.stackExpression(tokens[3], output);
    EXPECT_EQ(printElements(output), "a count");

    parser.stackExpression(pOpen.get(), output);
    parser.stackExpression(tokens[3], output);
    EXPECT_EQ(printElements(output), "a count") << "no function stands before it";
}

// --- Evaluation ---------------------------------------------------------------------------------

constexpr const char* s_Xml = "<r x='1'><a id='1'/><a id='2'><c v='deep'/></a><b/></r>";

struct AnswerRow
{
    const char* name;
    const char* expression;
    const char* expected;
};

const AnswerRow s_Answers[] = {
    {"path", "r/a/@id", "1 | 2"},
    {"path_without_nodes", "r/z/@id", "(none)"},
    {"union_in_document_order", "r/a/@id | r/@x", "1 | 1 | 2"},
    {"sum", "1 + 2", "3"},
    {"order_of_arguments", "5 - 3", "2"},
    {"order_of_arguments_div", "8 div 4 div 2", "1"},
    {"string", "concat('a','b','c')", "abc"},
    {"boolean", "1 = 2", "false"},
    {"boolean_as_text", "string(1 = 1)", "true"},
    {"boolean_joined", "concat(1 = 1, '')", "true"},
    {"boolean_as_number", "number(1 = 1) + 0", "1"},
    {"infinity_is_true", "5 and (1 div 0)", "true"},
    {"call_without_arguments", "true()", "true"},
    {"infinity", "1 div 0", "Infinity"},
    {"negative_infinity", "-1 div 0", "-Infinity"},
    {"not_a_number", "0 div 0", "NaN"},
    {"count", "count(r/a)", "2"},
    {"number_literal", "5.", "5."},
    {"string_literal", "'x'", "x"},
    {"only_the_top_counts", "2 * count(r/a)", "2"},
    {"first_fails_last_succeeds", "local-name() - 1", "NaN"},
    {"last_fails", "1 = local-name()", "error -15005"},
    {"nothing_left_after_a_failure", "local-name()", "error -102"},
    {"last_of_several_failures", "local-name() = translate('a','b','c')", "error -15005"},
    {"too_few_arguments", "concat('a')", "error -15005"},
    {"too_many_arguments", "floor(1, 2)", "error -15005"},
    {"no_elements", "'|'|'|'", "error -15004"},
    {"not_recognised", "r/", "error -15105"},
};

TEST(XPathExpressionsParser, Answers)
{
    const TestDocument document(s_Xml);
    for (const AnswerRow& row : s_Answers)
    {
        EXPECT_EQ(answer(document.root(), row.expression), row.expected) << row.name << ": " << row.expression;
    }
}

TEST(XPathExpressionsParser, ToleratesAMissingDocument)
{
    for (const AnswerRow& row : s_Answers)
    {
        answer(nullptr, row.expression);
    }
    EXPECT_EQ(answer(nullptr, "r/a/@id"), "(none)");
    EXPECT_EQ(answer(nullptr, "1 + count(//a)"), "1");
}

TEST(XPathExpressionsParser, NoResultBeforeARun)
{
    XPathExpressionsParser parser(L"1 = 1");
    XPathOutputList records;
    EXPECT_EQ(parser.getValues(records), -15004);
    EXPECT_EQ(parser.calculateBooleanOutput(records), -15004);
    EXPECT_TRUE(records.empty());
    EXPECT_EQ(parser.runParser(nullptr), 0);
    EXPECT_EQ(parser.getOutputType(), BooleanType);
    EXPECT_EQ(parser.calculateBooleanOutput(records), 0);
    ASSERT_EQ(records.size(), 1u);
    EXPECT_EQ(printRecords(records), "0||true|\n");
    EXPECT_EQ(records.front()->m_pNode, nullptr);
}

TEST(XPathExpressionsParser, ScalarsAreAppended)
{
    XPathExpressionsParser parser(L"1 + 2");
    XPathOutputList records;
    ASSERT_EQ(parser.runParser(nullptr), 0);
    EXPECT_EQ(parser.getValues(records), 0);
    EXPECT_EQ(parser.getValues(records), 0);
    EXPECT_EQ(records.size(), 2u);
}

TEST(XPathExpressionsParser, NodeSetsReplaceTheList)
{
    const TestDocument document(s_Xml);
    XPathExpressionsParser parser(L"r/a/@id");
    XPathOutputList records;
    XPathOutputElement former;
    records.push_back(&former);
    ASSERT_EQ(parser.runParser(document.root()), 0);
    EXPECT_EQ(parser.getValues(records), 0);
    ASSERT_EQ(records.size(), 2u);
    EXPECT_EQ(std::count(records.begin(), records.end(), &former), 0);

    XPathOutputList again;
    EXPECT_EQ(parser.getValues(again), 0);
    EXPECT_EQ(printRecords(again), printRecords(records));
}

TEST(XPathExpressionsParser, EachRunIsAFreshOne)
{
    const TestDocument document(s_Xml);
    const TestDocument other("<r><a id='7'/></r>");
    for (const char* pExpression : {"r/a/@id", "count(r/a) + sum(r/a/@id)", "string(r/a/@id)", "local-name()"})
    {
        XPathExpressionsParser parser(pExpression);
        for (Node* pRoot : {document.root(), other.root(), document.root()})
        {
            XPathOutputList records;
            const std::string expected = answer(pRoot, pExpression);
            const TErrorCode code = parser.runParser(pRoot);
            if (code == 0)
            {
                parser.getValues(records);
            }
            const std::string first =
                records.empty() ? "error " + std::to_string(code) : records.front()->m_Value.toNarrow();
            EXPECT_EQ(expected.substr(0, expected.find(" |")), first) << pExpression;
        }
    }
}

// --- Nesting and size ---------------------------------------------------------------------------

/// Runs \p i_Work on a thread with a stack of 1 MiB; a build with sanitizers or without inlining, whose frames
/// take several times as much, gets four.
template <typename Work>
void runOnStackOfOneMebibyte(Work i_Work)
{
#ifdef _WIN32
    std::thread(i_Work).join();
#else
#if defined(__SANITIZE_ADDRESS__) || defined(__NO_INLINE__)
    constexpr std::size_t size = std::size_t{4} << 20;
#else
    constexpr std::size_t size = std::size_t{1} << 20;
#endif
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, size), 0);
    pthread_t thread;
    const auto start = [](void* i_pWork) -> void*
    {
        (*static_cast<Work*>(i_pWork))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &i_Work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
#endif
}

std::string repeated(const std::string& i_Text, int i_Count)
{
    std::string text;
    text.reserve(i_Text.size() * static_cast<std::size_t>(i_Count));
    for (int i = 0; i < i_Count; ++i)
    {
        text += i_Text;
    }
    return text;
}

std::string nested(const std::string& i_Open, int i_Count, const std::string& i_Inner, const std::string& i_Close)
{
    return repeated(i_Open, i_Count) + i_Inner + repeated(i_Close, i_Count);
}

struct NestingRow
{
    const char* name;
    const char* open;
    const char* inner;
    const char* close;
    const char* expected; ///< answer of 256 levels
};

const NestingRow s_Nestings[] = {
    {"parentheses", "(", "7", ")", "7"},
    {"signs", "-(", "7", ")", "7"},
    {"calls", "floor(", "7", ")", "7"},
    {"calls_with_two_arguments", "concat('',", "'x'", ")", "x"},
    {"parentheses_with_all_levels", "(1 and 2 = 3 < 1 + 2 * ", "7", ")", nullptr},
    {"predicates", "a[", "a/@x", "]", "(none)"},
    {"predicates_on_deep_steps", "//a[", "a/@x", "]", "(none)"},
};

TEST(XPathExpressionsParser, NestingUpToTheLimitIsEvaluated)
{
    const TestDocument document(nested("<a x='1'>", 300, "", "</a>"));
    runOnStackOfOneMebibyte(
        [&]
        {
            for (const NestingRow& row : s_Nestings)
            {
                const std::string text = nested(row.open, 256, row.inner, row.close);
                const std::string result = answer(document.root(), text);
                EXPECT_NE(result, "error -15105") << row.name;
                if (row.expected)
                {
                    EXPECT_EQ(result, row.expected) << row.name;
                }
            }
        });
}

TEST(XPathExpressionsParser, NestingBeyondTheLimitIsRefused)
{
    const std::string record =
        "5| XPathTokenizer::start()|1|./../../../../src/plugins/XmlPlugin/common/XPathTokenizer|";
    for (const NestingRow& row : s_Nestings)
    {
        const std::string text = nested(row.open, 257, row.inner, row.close);
        const RecordedTrace trace(TraceError);
        EXPECT_EQ(postfixOf(text), "error -15105") << row.name;
        EXPECT_TRUE(std::any_of(trace.lines.begin(), trace.lines.end(),
                                [&](const std::string& i_Line) {
                                    return i_Line.starts_with(record) &&
                                           i_Line.ends_with("|The expression is nested more than 256 levels deep");
                                }))
            << row.name;
    }
}

TEST(XPathExpressionsParser, HopelessNestingIsRefusedAtOnce)
{
    runOnStackOfOneMebibyte(
        []
        {
            for (const NestingRow& row : s_Nestings)
            {
                EXPECT_EQ(postfixOf(nested(row.open, 20000, row.inner, row.close)), "error -15105") << row.name;
            }
        });
}

/// Each group is read again by every group before it.
std::string groupsThatReadOn(int i_Count)
{
    std::string text = "('ab'and'x')";
    for (int i = 1; i < i_Count; ++i)
    {
        text += " and('ab'and'x')";
    }
    return text;
}

TEST(XPathExpressionsParser, AndChainsThatMultiplyTheirTokensAreRefused)
{
    EXPECT_EQ(postfixOf(groupsThatReadOn(1)), "'ab' 'x' and");
    EXPECT_NE(postfixOf(groupsThatReadOn(8)), "error -15105");
    const RecordedTrace trace(TraceError);
    EXPECT_EQ(postfixOf(groupsThatReadOn(100)), "error -15105");
    EXPECT_EQ(postfixOf(groupsThatReadOn(2000)), "error -15105");
    ASSERT_FALSE(trace.lines.empty());
    EXPECT_TRUE(trace.lines.front().ends_with(" tokens")) << trace.lines.front();
}

TEST(XPathExpressionsParser, LongExpressionsTakeLinearTime)
{
    constexpr int size = 1 << 20;
    const TestDocument document(s_Xml);
    EXPECT_EQ(postfixOf(repeated("(", size)), "error -15105");
    EXPECT_EQ(postfixOf(repeated("(1)+", size / 4) + "1").substr(0, 5), "1 1 +");
    EXPECT_EQ(answer(document.root(), repeated("1+", size / 2) + "1"), "524289");
    EXPECT_EQ(answer(document.root(), repeated("1 and ", size / 6) + "1"), "true");
    EXPECT_EQ(answer(document.root(), repeated("r/@x|", size / 5) + "r/@x"), "1");
    EXPECT_EQ(answer(document.root(), repeated("r/", size / 2) + "@x"), "(none)");
    EXPECT_EQ(answer(document.root(), "string-length('" + repeated("x", size) + "')"), "1.04858e+06");
    EXPECT_EQ(answer(document.root(), repeated("n", size)), "(none)");
    EXPECT_EQ(answer(document.root(), repeated("-", size) + "5"), "5");
    EXPECT_EQ(answer(document.root(), repeated("- ", size / 2 + 1) + "5"), "-5");
    EXPECT_EQ(answer(document.root(), repeated(" ", size) + "5" + repeated(" ", size)), "5");
    EXPECT_EQ(postfixOf("r" + repeated("[1]", size / 3)).size(), static_cast<std::size_t>(size / 3 * 3 + 1));
    EXPECT_EQ(postfixOf("concat(1" + repeated(",1", size / 2) + ")").substr(0, 3), "1 1");
    EXPECT_EQ(postfixOf(repeated("1+", size / 2)), "error -15105");
}

// --- Traces -------------------------------------------------------------------------------------

/// The texts of one scope's records.
std::vector<std::string> textsOf(const RecordedTrace& i_Trace, const std::string& i_Scope)
{
    const std::string begin = "5|" + i_Scope + "|3|./../../../../src/plugins/XmlPlugin/common/XPathExpressionsParser|";
    std::vector<std::string> texts;
    for (const std::string& line : i_Trace.lines)
    {
        if (line.starts_with(begin))
        {
            texts.push_back(line.substr(line.find('|', begin.size()) + 1));
        }
    }
    return texts;
}

using Texts = std::vector<std::string>;

TEST(XPathExpressionsParser, TraceOfConstruction)
{
    const RecordedTrace trace;
    const XPathExpressionsParser parser(L"1 + 'a'");
    EXPECT_EQ(textsOf(trace, "XPathExpressionsParser::XPathExpressionsParser(const String & i_XPath)"),
              (Texts{" Parsed Expr = (1,0,2)|(+,1,-1)|(a,0,1)|", "Expr transformed =(1,0,2)|(a,0,1)|(+,1,-1)|"}));
    EXPECT_EQ(textsOf(trace, " XPathExpressionsParser::doTrans() "),
              (Texts{" XPathExpressionsParser::doTrans() ", "output.size = 3"}));
    EXPECT_EQ(textsOf(trace, " XPathExpressionsParser::stackExpression"),
              (Texts{"Expression 1 pushed to expressionVector", "gotOper for +",
                     "Expression 'a' pushed to expressionVector"}));
    EXPECT_EQ(textsOf(trace, " XPathExpressionsParser::gotOper"),
              (Texts{"i_pExpression = +", "pExpression =+goes on stack "}));
}

TEST(XPathExpressionsParser, TraceOfARefusedExpression)
{
    const RecordedTrace trace;
    XPathExpressionsParser parser(L"1 +");
    EXPECT_EQ(textsOf(trace, "XPathExpressionsParser::XPathExpressionsParser(const String & i_XPath)"),
              Texts{"Tokenizing error"});
    EXPECT_EQ(parser.runParser(nullptr), -15105);
    EXPECT_EQ(textsOf(trace, "XPathExpressionsParser::runParser(Node *i_pStartNode)"), Texts{"result = -15105"});
}

TEST(XPathExpressionsParser, TraceOfParentheses)
{
    const RecordedTrace trace;
    const XPathExpressionsParser parser(L"(1 * 2) + 3");
    EXPECT_EQ(
        textsOf(trace, " XPathExpressionsParser::gotParen"),
        (Texts{"i_pExpression = )", "pExpression from top = *", "pOper *goes on Vector", "pExpression from top = ("}));
    const Texts gotOper = textsOf(trace, " XPathExpressionsParser::gotOper");
    EXPECT_EQ(gotOper, (Texts{"i_pExpression = *", "pTop =(", " ( - put on stack ", "pExpression =*goes on stack ",
                              "i_pExpression = +", "pExpression =+goes on stack "}));
}

TEST(XPathExpressionsParser, TraceOfEvaluation)
{
    XPathExpressionsParser parser(L"1 = 2");
    const RecordedTrace trace;
    XPathOutputList records;
    ASSERT_EQ(parser.runParser(nullptr), 0);
    ASSERT_EQ(parser.getValues(records), 0);
    EXPECT_EQ(textsOf(trace, "XPathExpressionsParser::runParser(Node *i_pStartNode)"),
              (Texts{"m_OutputType = 0", "result = 0"}));
    const Texts evaluation = textsOf(trace, "XPathExpressionsParser::doParse()");
    const Texts expected = {" m_XPathExpressionsVector.size()3",
                            "pExpression =1Start Node = 0 RootPosition = 0",
                            "isOperator = false. Expression pushed on localstack",
                            "pExpression =2Start Node = 0 RootPosition = 0",
                            "isOperator = false. Expression pushed on localstack",
                            "pExpression ==Start Node = 0 RootPosition = 0",
                            "Arguments to read= 2 for = function ",
                            "Argument 2",
                            "Argument 1",
                            "pXPathOp->getOutputArgument() = 0",
                            "pXPathOp->getDataType() = 0",
                            "Argument to evaluate 0",
                            "result =0"};
    EXPECT_EQ(evaluation, expected);
    EXPECT_EQ(textsOf(trace, "XPathExpressionsParser::getValues"),
              (Texts{"Boolean Type output", "output size = 1", "result = 0"}));
    EXPECT_EQ(textsOf(trace, "XPathExpressionsParser::calculateBooleanOutpu"),
              (Texts{" output set on FALSE", "result = 0"}));
}

// --- Quick code ---------------------------------------------------------------------------------

/// The postfix list of an expression with everything that evaluation reads of it, and how the expression ends.
std::string compiled(const std::string& i_Expression)
{
    XPathExpressionsParser parser(String(i_Expression.c_str()));
    std::string text;
    for (const XPathExpression* pElement : parser.postfix())
    {
        text += '[' + pElement->text().toNarrow() + ']' + (pElement->isNegativeZero() ? "-0" : "");
        text += std::to_string(pElement->GetDataType());
        if (pElement->isOperator())
        {
            text += '/' + std::to_string(pElement->getArgumentsCount()) + '/' + std::to_string(pElement->getPriority());
        }
        text += ' ';
    }
    XPathOutputList records;
    text += std::to_string(parser.status()) + ' ' + std::to_string(parser.runParser(nullptr)) + ' ';
    text += std::to_string(parser.getValues(records)) + ' ';
    return text + printRecords(records);
}

std::string compiledByGeneralCode(const std::string& i_Expression)
{
    const XPathQuickCode::Forbidden general;
    return compiled(i_Expression);
}

TEST(XPathExpressionsParser, QuickCodeChangesNothing)
{
    static const char* const s_Operators[] = {" and ", " or ", "=", "!=", "<", ">=", "+", " - ", "*", " div ", " mod "};
    static const char* const s_Leaves[] = {"1",   "12.5",   "'ab'",       "'5'",    "\"'q'\"", "a/@b", "-3",
                                           "--2", "true()", "position()", "last()", ".",       "'|'"};
    std::mt19937 random(20260103);
    const std::function<std::string(int)> expression = [&](int i_Depth)
    {
        std::string text;
        for (auto count = random() % 4 + 1; count != 0; --count)
        {
            if (!text.empty())
            {
                text += s_Operators[random() % std::size(s_Operators)];
            }
            switch (i_Depth > 0 ? random() % 8 : 0)
            {
            case 1:
                text += "(" + expression(i_Depth - 1) + ")";
                break;
            case 2:
                text += "concat(" + expression(i_Depth - 1) + "," + expression(i_Depth - 1) + ")";
                break;
            case 3:
                text += "-substring(" + expression(i_Depth - 1) + ", 2)";
                break;
            case 4:
                text += "not(" + expression(i_Depth - 1) + ")";
                break;
            case 5:
                text += "starts-with(" + expression(i_Depth - 1) + ",'1')";
                break;
            default:
                text += s_Leaves[random() % std::size(s_Leaves)];
                break;
            }
        }
        return text;
    };
    constexpr int cases = 10000;
    for (int i = 0; i < cases; ++i)
    {
        const std::string text = expression(i % 4);
        ASSERT_EQ(compiled(text), compiledByGeneralCode(text)) << text;
    }
}

/// Quick code answers those who want to hear of errors only, and the errors are those of the general code.
TEST(XPathExpressionsParser, ErrorsAreToldWhicheverCodeAnswers)
{
    struct Row
    {
        const char* expression;
        std::size_t errors;
    };
    const TestDocument document(s_Xml);
    for (const Row& row : {Row{"r/a[@id='1']/@id", 0},
                           {"count(//a) + 1", 0},
                           {"r/a[", 1},
                           {"1 +", 1},
                           {"r/a[]/@id", 1},
                           {"r/a[@id][+]/@id | //a[@id]", 1},
                           {"r/a[b[1]]/@id", 2}, // the refused predicate, and the children that it leaves unlisted
                           {"concat('a', r/a[local-name()]/@id)", 1},
                           {"name()", 0},
                           {"local-name()", 0}})
    {
        const auto errors = [&](int i_Level)
        {
            RecordedTrace trace(i_Level);
            std::vector<std::string> lines{answer(document.root(), row.expression)};
            for (const std::string& line : trace.lines)
            {
                if (line.find("|1|./") != std::string::npos)
                {
                    lines.push_back(line);
                }
            }
            return lines;
        };
        const std::vector<std::string> quick = errors(TraceError);
        EXPECT_EQ(quick, errors(TraceInformation)) << row.expression;
        EXPECT_EQ(quick.size() - 1, row.errors) << row.expression;
    }
}

} // namespace
