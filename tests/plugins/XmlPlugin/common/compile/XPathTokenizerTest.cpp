#include "compile/XPathTokenizer.h"
#include "Printers.h"
#include "RecordedTrace.h"
#include "functions/XPathOperator.h"
#include "values/XPathArgument.h"
#include "xpathlanguage/XPathAxisTable.h"
#include "xpathlanguage/XPathFunctionTable.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#ifndef _WIN32
#include <pthread.h>
#endif

using namespace XmlPlugin;

namespace
{

String wide(std::string_view i_Text)
{
    return String(i_Text.data(), i_Text.size());
}

/// The tokens as text, or "error CODE".
std::string tokensOf(std::string_view i_Expression, bool i_Remember = true)
{
    XPathTokenizer tokenizer(wide(i_Expression));
    if (!i_Remember)
    {
        tokenizer.forgetLookAhead();
    }
    const TErrorCode code = tokenizer.start();
    if (code != 0)
    {
        return "error " + std::to_string(code);
    }
    return printElements(tokenizer.outVector());
}

constexpr const char* s_Refused = "error -15105";

struct TokenRow
{
    const char* name;
    const char* expression;
    const char* expected;
};

void expectTokens(const std::vector<TokenRow>& i_Rows)
{
    for (const TokenRow& row : i_Rows)
    {
        EXPECT_EQ(tokensOf(row.expression), row.expected) << row.name << ": [" << row.expression << "]";
    }
}

// --- Operands -----------------------------------------------------------------------------------

TEST(XPathTokenizer, Numbers)
{
    expectTokens({
        {"integer", "5", "5"},
        {"stop_behind", "5.", "5."},
        {"fraction", "5.25", "5.25"},
        {"spaces_before_stop_are_taken", "5 .25", "5 .25"},
        {"space_behind_stop", "5. 25", s_Refused},
        {"stop_in_front", ".5", s_Refused},
        {"two_stops", "1.2.3", s_Refused},
        {"name_behind_number", "1a", s_Refused},
        {"spaces_around", "  5  ", "5"},
        {"digits_of_another_script", "\xD9\xA1\xD9\xA2", "\xD9\xA1\xD9\xA2"},
        {"fullwidth_digit_is_none", "\xEF\xBC\x91", s_Refused},
    });
}

TEST(XPathTokenizer, Literals)
{
    expectTokens({
        {"single_quotes", "'a'", "'a'"},
        {"double_quotes", "\"a\"", "\"a\""},
        {"empty", "''", "''"},
        {"other_quote_inside", "\"it's\"", "\"it's\""},
        {"spaces_around", "  ' a '  ", "' a '"},
        {"operators_inside", "'a or b | c'", "'a or b | c'"},
        {"parentheses_inside", "')('", "')('"},
        {"bar_alone", "'|'", "'|'"},
        {"above_the_first_plane", "'\xF0\x9D\x90\x80'", "'\xF0\x9D\x90\x80'"},
        {"unclosed", "'a", s_Refused},
        {"wrong_quote", "'a\"", s_Refused},
        {"two_literals", "'a''b'", s_Refused},
        {"predicate_behind", "'abc'[1]", s_Refused},
    });
}

TEST(XPathTokenizer, Names)
{
    expectTokens({
        {"letter", "a", "a"},
        {"underscore_first", "_a", "_a"},
        {"all_kinds", "a1._-", "a1._-"},
        {"umlaut", "\xC3\xA4", "\xC3\xA4"},
        {"ideograph", "\xE4\xB8\x80", "\xE4\xB8\x80"},
        {"combining_character_inside", "e\xCC\x81", "e\xCC\x81"},
        {"combining_character_first", "\xCC\x81", s_Refused},
        {"extender_inside", "a\xC2\xB7", "a\xC2\xB7"},
        {"hyphen_inside", "a-b", "a-b"},
        {"space_before_hyphen", "a -b", "a -b"},
        {"space_before_stop", "a .b", "a .b"},
        {"space_before_underscore", "a _b", "a _b"},
        {"minus_with_spaces", "a - b", s_Refused},
        {"space_behind_hyphen", "a- b", s_Refused},
        {"space_inside", "a b", s_Refused},
        {"space_before_digit", "a 1", s_Refused},
        {"hyphen_first", "-a", "( 0 - a )"},
        {"stop_first", ".a", s_Refused},
        {"operators_as_names", "or or or", "or or  or"},
        {"and_as_name", "and and and", "and and  and"},
        {"div_as_name", "div div div", "div div  div"},
        {"mod_as_name", "mod mod mod", "mod mod  mod"},
        {"operator_in_a_name", "aorb", "aorb"},
        {"operator_hugs_its_right", "a orb", "a or b"},
        {"words_without_spaces", "1or2", "1 or 2"},
        {"div_without_spaces", "1div2", "1 div 2"},
        {"div_begins_a_longer_word", "1 divx", "1 div x"},
        {"and_between_literals", "'a'and'b'", "'a' and 'b'"},
    });
}

TEST(XPathTokenizer, PrefixedNamesNeverFitTheirOwnText)
{
    expectTokens({
        {"prefixed", "p:item", s_Refused},
        {"one_letter", "a:b", s_Refused},
        {"any_in_prefix", "p:*", s_Refused},
        {"prefix_alone", "p:", s_Refused},
        {"colon_first", ":a", s_Refused},
        {"rest_reads_as_minus", "p:a-b", "p:a - b"},
        {"rest_reads_as_or", "a:bcor x", "a:bc or  x"},
        {"in_a_variable", "$a:bcor x", "$ a : bcor or  x"},
        {"space_before_colon", "p :a-b", s_Refused},
        {"prefixed_path", "a/p:b", s_Refused},
    });
}

TEST(XPathTokenizer, Variables)
{
    expectTokens({
        {"variable", "$x", "$ x"},
        {"space", "$ x", "$ x"},
        {"sum", "$x + 1", "$ x + 1"},
        {"dollar_alone", "$", s_Refused},
        {"number", "$1", s_Refused},
        {"prefixed", "$p:x", s_Refused},
        {"twice", "$$x", s_Refused},
    });
}

// --- Location paths -----------------------------------------------------------------------------

TEST(XPathTokenizer, LocationPathsStayWhole)
{
    expectTokens({
        {"relative", "a/b", "a/b"},
        {"absolute", "/a/b", "/a/b"},
        {"deep", "//a//b", "//a//b"},
        {"attribute", "a/@id", "a/@id"},
        {"any_attribute", "@*", "@*"},
        {"any_element", "*/*", "*/*"},
        {"self", ".", "."},
        {"parent", "..", ".."},
        {"up_and_down", "../../a", "../../a"},
        {"self_deep", ".//a", ".//a"},
        {"predicates", "a[1][@x='1']/b[c[d]]", "a[1][@x='1']/b[c[d]]"},
        {"spaces_kept", " a / b [ 1 ]", " a / b [ 1 ]"},
        {"spaces_behind_dropped", "a ", "a"},
        {"spaces_in_abbreviations", "/ a // @ id", "/ a // @ id"},
        {"step_behind_attribute", "@a/b", "@a/b"},
        {"slash_alone", "/", s_Refused},
        {"slashes_alone", "//", s_Refused},
        {"slash_at_the_end", "a/", s_Refused},
        {"slashes_at_the_end", "a//", s_Refused},
        {"three_slashes", "a///b", s_Refused},
        {"three_stops", "...", s_Refused},
        {"stops_apart", ". .", s_Refused},
        {"attribute_without_name", "@", s_Refused},
        {"attribute_twice", "@@a", s_Refused},
        {"attribute_and_axis", "@child::a", s_Refused},
        {"axis_and_attribute", "child::@a", s_Refused},
        {"empty_predicate", "a[]", s_Refused},
        {"unclosed_predicate", "a[1", s_Refused},
        {"unopened_predicate", "a1]", s_Refused},
        {"predicate_alone", "[1]", s_Refused},
        {"predicate_behind_stop", ".[1]", s_Refused},
    });
}

TEST(XPathTokenizer, PathsBehindExpressionsTakeTheLengthOfTheirPath)
{
    expectTokens({
        {"filtered_path", "(//a)/@id", s_Refused},
        {"filtered_deep_path", "(a)//b", s_Refused},
        {"predicate_behind_parenthesis", "(a)[1]", s_Refused},
        {"lengths_coincide", "1/bor x", "1 / bor or  x"},
        {"lengths_coincide_deep", "1//aborx", "1 // aborx or x"},
        {"axis_of_the_path_is_emitted", "1/@bor x", "1 / @ bor or  x"},
        {"every_step_is_emitted", "1/a//bor x", "1 / a // bor or  x"},
        {"parent_is_emitted", "1/../bor x", "1 / .. / bor or  x"},
        {"predicate_is_emitted", "1/b[2]/cor x", "1 / b [ 2 ] / cor or  x"},
        {"parentheses_of_a_node_type_are_emitted", "1/text()()/bor x", "1 / ( ) / bor or  x"},
        {"any_name_with_prefix_is_emitted", "\" or '\"/p:*'", "\" or '\" / p : * or '\"/p:*'"},
    });
}

TEST(XPathTokenizer, Axes)
{
    for (const XPathLanguage::Axis& row : XPathLanguage::s_Axes)
    {
        const std::string axis(row.name.text());
        const bool isReachable = XPathLanguage::hidingAxis(axis).empty();
        const auto expected = [&](const std::string& i_Text) { return isReachable ? i_Text : s_Refused; };
        EXPECT_EQ(tokensOf(axis), s_Refused) << axis;
        EXPECT_EQ(tokensOf(axis + "::"), s_Refused) << axis;
        EXPECT_EQ(tokensOf(axis + "::x"), expected(axis + "::x"));
        EXPECT_EQ(tokensOf(axis + "::*"), expected(axis + "::*"));
        EXPECT_EQ(tokensOf(axis + " :: x"), expected(axis + " :: x"));
        EXPECT_EQ(tokensOf("a/" + axis + "::x/b"), expected("a/" + axis + "::x/b"));
        EXPECT_EQ(tokensOf(axis + "x"), expected(axis + "x"));
        EXPECT_EQ(tokensOf(axis + " x"), expected(axis + " x"));
    }
    expectTokens({
        {"unknown_axis", "cousin::x", s_Refused},
        {"one_colon", "child:x", s_Refused},
        {"colons_apart", "child: :x", s_Refused},
        {"operator_read_as_node_test", "child or a", s_Refused},
        {"axis_name_in_a_path", "a/self", s_Refused},
        {"letter_case", "Child", "Child"},
    });
}

TEST(XPathTokenizer, NodeTypes)
{
    expectTokens({
        {"comment", "comment()", s_Refused},
        {"text", "text()", s_Refused},
        {"instruction", "processing-instruction()", s_Refused},
        {"node", "node()", s_Refused},
        {"named_instruction", "processing-instruction('x')", s_Refused},
        {"in_a_path", "a/text()", s_Refused},
        {"comment_twice", "comment()()", "comment()()"},
        {"text_twice", "a/text()()", "a/text()()"},
        {"text_twice_with_spaces", "a/ text() ( )", "a/ text() ( )"},
        {"instruction_twice", "processing-instruction()()", "processing-instruction()()"},
        {"node_twice", "node()()", s_Refused},
        {"emitted_behind_a_number", "1/comment()()", s_Refused},
        {"text_as_name", "text", "text"},
        {"comment_as_name", "comment/node", "comment/node"},
    });
}

// --- Operators ----------------------------------------------------------------------------------

struct OperandRow
{
    const char* text;
    const char* tokens;
    const char* joined;  ///< the tokens when "| b" follows
    bool isNameAtTheEnd; ///< takes a hyphen behind it
};

const OperandRow s_Operands[] = {
    {"a", "a", "a| b", true},
    {"@a", "@a", "@a| b", true},
    {"/a", "/a", "/a| b", true},
    {"//a", "//a", "//a| b", true},
    {"a/b", "a/b", "a/b| b", true},
    {"child::a", "child::a", "child::a| b", true},
    {"$x", "$ x", "$ x| b", true},
    {"a[1]", "a[1]", "a[1]| b", false},
    {"*", "*", "*| b", false},
    {".", ".", ".| b", false},
    {"..", "..", "..| b", false},
    {"1", "1", "1| b", false},
    {"1.5", "1.5", "1.5| b", false},
    {"'s'", "'s'", "s| b", false},
    {"\"s\"", "\"s\"", "s| b", false},
    {"(a)", "( a )", "( a )| b", false},
    {"last()", "last ( )", "last ( )| b", false},
    {"count(a)", "count ( a )", "count ( a )| b", false},
    {"-1", "( 0 - 1 )", "( 0 - 1| b )", false},
};

TEST(XPathTokenizer, EachOperatorBehindEachOperand)
{
    for (const OperandRow& row : s_Operands)
    {
        const std::string text = row.text;
        for (const XPathLanguage::Operator& known : XPathLanguage::s_Operators)
        {
            if (known.level == XPathLanguage::Level::None)
            {
                continue;
            }
            const std::string oper(known.text.text());
            const bool isTaken = oper == "-" && row.isNameAtTheEnd;
            const std::string expected = isTaken ? s_Refused : std::string(row.tokens) + " " + oper + "  b";
            EXPECT_EQ(tokensOf(text + " " + oper + " b"), expected) << text << " " << oper << " b";
            EXPECT_EQ(tokensOf(text + "  " + oper + " b"), expected) << text << "  " << oper << " b";
            EXPECT_EQ(tokensOf(text + " " + oper), isTaken ? std::string(row.tokens) + " -" : s_Refused);
        }
        EXPECT_EQ(tokensOf(text + " | b"), row.joined) << text;
        EXPECT_EQ(tokensOf(text + " |"), s_Refused) << text;
    }
}

TEST(XPathTokenizer, Operators)
{
    expectTokens({
        {"empty", "", s_Refused},
        {"blank", "   ", s_Refused},
        {"operand_before", "a or b", "a or  b"},
        {"no_operand_behind", "a or", s_Refused},
        {"no_operand_before", "= a", s_Refused},
        {"plus_as_sign", "+1", s_Refused},
        {"no_operand_drops_all_pairs", "1 + 2 + 3 +", s_Refused},
        {"chain", "1 + 2 - 3 + 4", "1 + 2 - 3 + 4"},
        {"equality_chain", "1!=2=3", "1 != 2 = 3"},
        {"relational_chain", "1<2<=3>4>=5", "1 < 2 <= 3 > 4 >= 5"},
        {"multiplicative_chain", "1*2div 3mod 4", "1 * 2 div 3 mod 4"},
        {"or_chain", "a or b or c or d", "a or  b or  c or  d"},
        {"stars", "***", "* * *"},
        {"all_levels", "1|2*3+4<5=6 and 7 or 8", "1|2 * 3 + 4 < 5 = 6 and 7 or 8"},
        {"less_apart", "1 < = 2", s_Refused},
        {"not_equal_apart", "1 ! = 2", s_Refused},
        {"double_equal", "1 == 2", s_Refused},
        {"comma", "a,b", s_Refused},
        {"letter_case", "1 OR 2", s_Refused},
        {"parentheses", "((1)+(2))*3", "( ( 1 ) + ( 2 ) ) * 3"},
        {"empty_parentheses", "()", s_Refused},
        {"unclosed", "(a", s_Refused},
        {"unopened", "a)", s_Refused},
        {"closed_and_opened", "a)|(b", "a )|( b"},
    });
}

TEST(XPathTokenizer, OnlyBlanksAreSpaces)
{
    for (const std::string space : {"\t", "\n", "\r", "\xC2\xA0", "\xE2\x80\x83"})
    {
        for (const std::string& text :
             {space + "a", "a" + space, "a" + space + "or b", "a or" + space + "b", "1" + space + "+ 2",
              "count" + space + "(a)", "count(" + space + "a)", "a/" + space + "b", "a[" + space + "1]", space})
        {
            EXPECT_EQ(tokensOf(text), s_Refused) << testing::PrintToString(text);
        }
        EXPECT_EQ(tokensOf("'" + space + "'"), "'" + space + "'") << "a literal holds any character";
    }
    expectTokens({
        {"everywhere", "  count  (  a  ,  1  )  +  (  2  )  ", "count (   a , 1 ) + ( 2 )"},
        {"nowhere", "count(a,1)+(2)", "count ( a , 1 ) + ( 2 )"},
    });
}

TEST(XPathTokenizer, AndChainsGoOnAtAShiftedPlace)
{
    expectTokens({
        {"one_and", "a and b", "a and  b"},
        {"last_operand_left_out", "a and b and c", "a and  b"},
        {"all_but_two_left_out", "a and b and c and d and e", "a and  b"},
        {"lengths_coincide", "abcd and b and c", "abcd and  b and  c"},
        {"lengths_coincide_longer", "abcd and b and c and d", "abcd and  b and  c and  d"},
        {"lengths_coincide_without_spaces", "'a'and'b'and'c'", "'a' and 'b' and 'c'"},
        {"one_too_short", "abc and b and c", "abc and  b"},
        {"one_too_long_skips_the_space", "abcde and b and c", "abcde and  b and  c"},
        {"two_too_long", "abcdef and b and c", "abcdef and  b"},
        {"one_and_read_twice", "a   and b", "a and  b and  b"},
        {"a_space_makes_up_for_it", "abcde and b  and c", "abcde and  b and  c"},
        {"chain_behind_or", "x or a and b and c", "x or  a and  b"},
        {"chain_in_a_call", "not(a and b and c)", "not ( a and  b )"},
        {"chain_in_a_predicate_stays_text", "a[b and c and d]", "a[b and c and d]"},
        {"reads_on_behind_its_parenthesis", "('ab'and'x') and('cd'and'y')",
         "( 'ab' and 'x' and ( 'cd' and 'y' ) ) and ( 'cd' and 'y' )"},
    });
}

TEST(XPathTokenizer, MinusSigns)
{
    expectTokens({
        {"one", "- 3", "( 0 - 3 )"},
        {"two", "- - 3", "3"},
        {"two_hugging", "--3", "3"},
        {"three", "-- -a", "( 0 - a )"},
        {"behind_minus", "1 - -2", "1 - ( 0 - 2 )"},
        {"behind_minus_twice", "1 - - -2", "1 - 2"},
        {"behind_times", "2*-3", "2 * ( 0 - 3 )"},
        {"in_front_of_a_sum", "-1 + 2", "( 0 - 1 ) + 2"},
        {"nested", "-(-1)", "( 0 - ( ( 0 - 1 ) ) )"},
        {"union", "-a|b", "( 0 - a|b )"},
        {"call", "-count(a)", "( 0 - count ( a ) )"},
        {"in_a_call", "floor(-1.5)", "floor ( ( 0 - 1.5 ) )"},
        {"alone", "-", s_Refused},
        {"two_alone", "--", s_Refused},
    });
    XPathTokenizer tokenizer(L"-3");
    ASSERT_EQ(tokenizer.start(), 0);
    EXPECT_TRUE(tokenizer.outVector()[1]->isNegativeZero());
    EXPECT_FALSE(tokenizer.outVector()[3]->isNegativeZero());
}

// --- Calls --------------------------------------------------------------------------------------

int argumentCount(const std::string& i_Call)
{
    XPathTokenizer tokenizer(wide(i_Call));
    if (tokenizer.start() != 0 || !tokenizer.outVector().front()->isOperator())
    {
        return -1;
    }
    return tokenizer.outVector().front()->getArgumentsCount();
}

TEST(XPathTokenizer, EachFunctionAsCallAndAsName)
{
    for (const XPathLanguage::Function& function : XPathLanguage::s_Functions)
    {
        const std::string name(function.name.text());
        EXPECT_EQ(tokensOf(name), name);
        EXPECT_EQ(tokensOf(name + "/@a"), name + "/@a");
        EXPECT_EQ(tokensOf(name + "x"), name + "x");
        EXPECT_EQ(tokensOf(name + "x(a)"), s_Refused);
        EXPECT_EQ(tokensOf(name + "()"), name + " ( )");
        EXPECT_EQ(tokensOf(" " + name + " ( ) "), name + " ( )");
        EXPECT_EQ(tokensOf(name + "(a)"), name + " ( a )");
        EXPECT_EQ(tokensOf(name + "(a,1,'s')"), name + " ( a , 1 , 's' )");
        EXPECT_EQ(tokensOf(name + "(a"), s_Refused);
        EXPECT_EQ(tokensOf(name + "(,)"), s_Refused);
        EXPECT_EQ(tokensOf(name + "(a,)"), s_Refused);
        EXPECT_EQ(tokensOf(name + "(a b)"), s_Refused);
        EXPECT_EQ(tokensOf(name + "()/a"), s_Refused);
        EXPECT_EQ(argumentCount(name + "(a)"), 1) << name;
        EXPECT_EQ(argumentCount(name + "(a, b)"), 2) << name;
        EXPECT_EQ(argumentCount(name + "(1,2,3,4,5)"), 5) << name;
    }
}

TEST(XPathTokenizer, CallsWithoutArgumentsKeepTheInitialCount)
{
    EXPECT_EQ(argumentCount("last()"), 0);
    EXPECT_EQ(argumentCount("position()"), 0);
    EXPECT_EQ(argumentCount("true()"), 0);
    EXPECT_EQ(argumentCount("count()"), 1);
    EXPECT_EQ(argumentCount("not()"), 1);
}

TEST(XPathTokenizer, Calls)
{
    expectTokens({
        {"two_arguments", "count(a, b)", "count ( a ,  b )"},
        {"nested", "concat(concat(1,2),3)", "concat ( concat ( 1 , 2 ) , 3 )"},
        {"expression_as_argument", "not(a = 1 or b)", "not ( a = 1 or  b )"},
        {"union_as_argument", "count(a|b)", "count ( a|b )"},
        {"unknown_function", "id('a')", s_Refused},
        {"longer_name_first", "string-length('a')", "string-length ( 'a' )"},
        {"longest_of_three", "substring-before('a','b')", "substring-before ( 'a' , 'b' )"},
        {"letter_case", "Count(a)", s_Refused},
        {"operator_behind", "not(a)and b", "not ( a ) and  b"},
        {"comparison_behind", "position()=last()", "position ( ) = last ( )"},
    });
}

// --- Unions -------------------------------------------------------------------------------------

TEST(XPathTokenizer, UnionsBecomeOneOperand)
{
    expectTokens({
        {"paths", "/a/b | //c", "/a/b| //c"},
        {"chain", "a|b|c|d", "a|b|c|d"},
        {"chain_with_spaces", "a | b | c", "a| b| c"},
        {"numbers", "1|2", "1|2"},
        {"literal_behind", "a|'b'", "a|b"},
        {"literals", "'a'|\"b\"|'c'", "a|b|c"},
        {"quotes_of_the_joined_text_go", "\"'\"|\"'\"|a", "||a"},
        {"quotes_at_the_end_stay", "\"'\"|\"'\"", "'|'"},
        {"in_a_comparison", "a|b = c|d", "a|b =  c|d"},
        {"parenthesis_before", "(a)|b", "( a )|b"},
        {"parenthesis_behind", "a|(b)", "a|( b )"},
        {"call_before", "count(a)|b", "count ( a )|b"},
        {"call_behind", "a|count(b)", "a|count ( b )"},
        {"in_a_predicate_stays_text", "a[b|c]", "a[b|c]"},
        {"bar_as_literal_is_joined", "'|'='a'", "'a'"},
        {"bar_as_literal_at_the_end", "a='|'", "a"},
        {"bars_only", "'|'|'|'", ""},
        {"bar_at_the_end", "a|", s_Refused},
        {"bar_at_the_beginning", "|a", s_Refused},
        {"two_bars", "a||b", s_Refused},
    });
}

// --- Where it stopped ---------------------------------------------------------------------------

TEST(XPathTokenizer, RecognisedUpTo)
{
    struct PlaceRow
    {
        const char* expression;
        unsigned expected;
    };
    for (const PlaceRow& row : {PlaceRow{"a/text()", 6},
                                {"", 0},
                                {"   ", 0},
                                {"/", 1},
                                {"a b", 1},
                                {"a - b", 3},
                                {"a[]", 2},
                                {"1 + ", 3},
                                {"'a", 0},
                                {"a or 'b", 4},
                                {"(a", 2},
                                {"a)", 2},
                                {"count(a,", 8},
                                {"descendant-or-self::x", 0},
                                {"a\tb", 1},
                                {"p:item", 6}})
    {
        XPathTokenizer tokenizer(row.expression);
        EXPECT_EQ(tokenizer.start(), -15105) << row.expression;
        EXPECT_EQ(tokenizer.recognisedUpTo(), row.expected) << row.expression;
    }
}

TEST(XPathTokenizer, RefusedTextHasNoTokens)
{
    XPathTokenizer tokenizer(L"1 + 2 +");
    EXPECT_EQ(tokenizer.start(), -15105);
    EXPECT_TRUE(tokenizer.outVector().empty());
}

// --- The two passes and the memory of the look-ahead ----------------------------------------------

/// Same answer with and without the memory, and a pass with emission takes what the look-ahead took.
void expectSameBothWays(const std::string& i_Text)
{
    EXPECT_EQ(tokensOf(i_Text, true), tokensOf(i_Text, false)) << "[" << i_Text << "]";
    XPathTokenizer tokenizer(wide(i_Text));
    const std::uint32_t measured = tokenizer.isUnionExpr(0, false);
    EXPECT_TRUE(tokenizer.outVector().empty());
    EXPECT_EQ(tokenizer.isUnionExpr(0, true), measured) << "[" << i_Text << "]";
}

TEST(XPathTokenizer, MemoryChangesNothingForShortTexts)
{
    constexpr std::string_view alphabet = "a1(/|'-* [@:.";
    std::vector<std::string> texts = {""};
    for (std::size_t begin = 0, length = 0; length < 3; ++length)
    {
        const std::size_t end = texts.size();
        for (; begin < end; ++begin)
        {
            for (const char unit : alphabet)
            {
                texts.push_back(texts[begin] + unit);
            }
        }
    }
    for (const std::string& text : texts)
    {
        expectSameBothWays(text);
        expectSameBothWays("(" + text + ")");
    }
}

TEST(XPathTokenizer, MemoryChangesNothingForMixesOfTokens)
{
    const std::vector<std::string> pieces = {
        "a", "abcd",  "1", "'s'", "(",       ")",    "[", "]", "/", "//", " and ", " or ", "=",    "+",      "-",
        "|", " div ", "*", "@b",  "child::", "not(", ",", " ", ".", "..", "$",     ":",    "self", "count(", "text()"};
    std::mt19937 random(20240501);
    for (int i = 0; i < 3000; ++i)
    {
        std::string text;
        for (auto count = random() % 7 + 1; count != 0; --count)
        {
            text += pieces[random() % pieces.size()];
        }
        expectSameBothWays(text);
    }
}

/// Makes expressions whose tokens are known: single "and"s only, and unions of paths only.
class Generator
{
public:
    std::string text;
    std::string tokens;

    void expression(int i_Depth)
    {
        operand(i_Depth);
        for (auto count = m_Random() % 3; count != 0; --count)
        {
            static const char* const s_Infix[] = {" or", " =", " !=", " <", " >=", " +", " *", " div", " mod"};
            const std::string oper = s_Infix[m_Random() % std::size(s_Infix)];
            text += oper;
            tokens += oper + " ";
            operand(i_Depth);
        }
    }

private:
    void add(const std::string& i_Token)
    {
        text += i_Token;
        tokens += i_Token;
    }

    void operand(int i_Depth)
    {
        switch (m_Random() % (i_Depth > 0 ? 7 : 4))
        {
        case 0:
            text += " 12";
            tokens += "12";
            break;
        case 1:
            text += " 'x y'";
            tokens += "'x y'";
            break;
        case 2:
            add(" a/@b");
            break;
        case 3:
            add("//c[d and e and f]|g");
            break;
        case 4:
            text += " (";
            tokens += "( ";
            expression(i_Depth - 1);
            text += ")";
            tokens += " )";
            break;
        case 5:
            text += " -";
            tokens += "( 0 - ";
            operand(i_Depth - 1);
            tokens += " )";
            break;
        default:
            call(i_Depth - 1);
            break;
        }
    }

    void call(int i_Depth)
    {
        text += " concat(";
        tokens += "concat ( ";
        expression(i_Depth);
        text += ",";
        tokens += " , ";
        expression(i_Depth);
        text += ")";
        tokens += " )";
    }

    std::mt19937 m_Random{20240502};
};

TEST(XPathTokenizer, GeneratedExpressionsGiveTheirTokens)
{
    Generator generator;
    for (int i = 0; i < 1000; ++i)
    {
        generator.text.clear();
        generator.tokens.clear();
        generator.expression(i % 6);
        if (generator.text.find(" - -") != std::string::npos)
        {
            continue; // two signs in a row cancel, which the generator does not know
        }
        ASSERT_EQ(tokensOf(generator.text), generator.tokens) << generator.text;
    }
}

// --- Traces -------------------------------------------------------------------------------------

/// The records of one scope, each as `level|text`.
std::vector<std::string> recordsOf(const RecordedTrace& i_Trace, const std::string& i_Scope)
{
    const std::string source = "|./../../../../src/plugins/XmlPlugin/common/XPathTokenizer|";
    std::vector<std::string> records;
    for (const std::string& line : i_Trace.lines)
    {
        const std::string begin = "5|" + i_Scope + "|";
        const std::size_t place = line.find(source);
        if (!line.starts_with(begin) || place == std::string::npos)
        {
            continue;
        }
        const std::size_t text = line.find('|', place + source.size());
        records.push_back(line.substr(begin.size(), place - begin.size()) + line.substr(text));
    }
    return records;
}

using Records = std::vector<std::string>;

TEST(XPathTokenizer, TraceOfRecognisedText)
{
    const RecordedTrace trace;
    EXPECT_EQ(tokensOf("a|b"), "a|b");
    EXPECT_EQ(recordsOf(trace, "XPathTokenizer::XPathTokenizer(String xpath)"),
              Records{"3| xpath to XPathTokenizer a|b"});
    EXPECT_EQ(recordsOf(trace, " XPathTokenizer::start()"),
              (Records{"3| XPathTokenizer::start()", "3| First Parsing ret = 5", "3|ret and xpath.length() are equal ",
                       "3|result = 0"}));
    EXPECT_EQ(recordsOf(trace, "XPathTokenizer::mergeXPath()"),
              (Records{"3|XPathTokenizer::mergeXPath()", "3|m_ExprVector.size()5"}));
}

TEST(XPathTokenizer, TraceOfRefusedText)
{
    const RecordedTrace trace;
    EXPECT_EQ(tokensOf("a/text()"), s_Refused);
    EXPECT_EQ(
        recordsOf(trace, " XPathTokenizer::start()"),
        (Records{"3| XPathTokenizer::start()", "3| First Parsing ret = 0", "3|ret and xpath.length() are different",
                 "1| Recognised up to offset = 6", "3|result = -15105"}));
}

TEST(XPathTokenizer, TraceOfProductions)
{
    const RecordedTrace trace;
    XPathTokenizer tokenizer(L"a");
    EXPECT_EQ(tokenizer.isStep(1, false), 1u);
    EXPECT_EQ(recordsOf(trace, " XPathTokenizer::isStep()"),
              (Records{"3| Offset = 1, consume = false", "3|result = 1"}));
    EXPECT_EQ(recordsOf(trace, " XPathTokenizer::isCharacter()").front(), "3|isCharacter return value = 0");
}

/// What a production asks of others, and what it emits, lies between its own two records.
TEST(XPathTokenizer, TraceOfNestedProductions)
{
    for (const bool isConsumed : {false, true})
    {
        const RecordedTrace trace;
        XPathTokenizer tokenizer(L"@a");
        EXPECT_EQ(tokenizer.isStep(1, isConsumed), 2u);
        const std::vector<const char*> records = {isConsumed ? " XPathTokenizer::isStep()| Offset = 1, consume = true"
                                                             : " XPathTokenizer::isStep()| Offset = 1, consume = false",
                                                  " XPathTokenizer::isAxisSpecifier()| Offset = 1",
                                                  " XPathTokenizer::isAxisName()| Offset = 1",
                                                  " XPathTokenizer::isAxisName()|result = 0",
                                                  " XPathTokenizer::isAbbreviatedAxisSpecifier()| Offset = 1",
                                                  " XPathTokenizer::isCharacter()|isCharacter return value = 1",
                                                  " XPathTokenizer::isAbbreviatedAxisSpecifier()|result = 1",
                                                  " XPathTokenizer::isAxisSpecifier()|result = 1",
                                                  " XPathTokenizer::isNodeTest()| Offset = 2",
                                                  " XPathTokenizer::isNameTest()| Offset = 2",
                                                  " XPathTokenizer::isNameTest()|result = 1",
                                                  " XPathTokenizer::isNodeTest()|result = 1",
                                                  " XPathTokenizer::isStep()|result = 2"};
        const std::size_t found = countInOrder(trace, records);
        EXPECT_EQ(found, records.size()) << (found < records.size() ? records[found] : "");
        EXPECT_TRUE(isRecord(trace.lines.back(), records.back()));
    }
}

// --- Productions on their own -------------------------------------------------------------------

TEST(XPathTokenizer, ProductionsMatchNothingPastTheEnd)
{
    XPathTokenizer tokenizer(L"a");
    for (const std::uint32_t offset : {3u, 4u, 1000u, 0xFFFFFFFFu})
    {
        EXPECT_EQ(tokenizer.isExpr(offset, false), 0u);
        EXPECT_EQ(tokenizer.isUnionExpr(offset, true), 0u);
        EXPECT_EQ(tokenizer.isStep(offset, true), 0u);
        EXPECT_EQ(tokenizer.isNCName(offset, true), 0u);
        EXPECT_EQ(tokenizer.isLiteral(offset, true), 0u);
        EXPECT_EQ(tokenizer.isNumber(offset, true), 0u);
        EXPECT_EQ(tokenizer.isAxisName(offset, true), 0u);
        EXPECT_EQ(tokenizer.isFunctionName(offset, true), 0u);
        EXPECT_EQ(tokenizer.isCharacter(offset, L")", true), 0u);
    }
}

TEST(XPathTokenizer, LengthsOfProductions)
{
    XPathTokenizer tokenizer(L" child ::p:item 'x'[1] string-length (a)");
    EXPECT_EQ(tokenizer.isAxisSpecifier(1, false), 9u);
    EXPECT_EQ(tokenizer.isAxisName(1, false), 6u);
    EXPECT_EQ(tokenizer.isNCName(10, false), 1u);
    EXPECT_EQ(tokenizer.isPrefixedName(10, false), 4u) << "the local part alone";
    EXPECT_EQ(tokenizer.isQName(10, false), 4u);
    EXPECT_EQ(tokenizer.isLiteral(16, false), 4u);
    EXPECT_EQ(tokenizer.isFilterExpr(16, false), 4u) << "without its predicate";
    EXPECT_EQ(tokenizer.isFilterExpr(16, true), 4u) << "although it emits it";
    EXPECT_EQ(tokenizer.isPredicate(20, false), 3u);
    EXPECT_EQ(tokenizer.isFunctionName(23, false), 14u);
    EXPECT_EQ(tokenizer.isFunctionCall(23, false), 18u);
}

#ifndef _WIN32

// --- Small stacks -------------------------------------------------------------------------------

/// Runs \p i_Work on a thread with a stack of \p i_Kibibytes.
template <class Work>
void runOnStackOf(std::size_t i_Kibibytes, Work i_Work)
{
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, i_Kibibytes * 1024), 0);
    pthread_t thread;
    const auto start = [](void* i_pWork) -> void*
    {
        (*static_cast<Work*>(i_pWork))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &i_Work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string repeat(std::size_t i_Count, std::string_view i_Text)
{
    std::string text;
    for (std::size_t i = 0; i < i_Count; ++i)
    {
        text += i_Text;
    }
    return text;
}

/// An expression that a stack has no room for is refused; it never ends the process.
TEST(XPathTokenizer, RefusesWhatTheStackHasNoRoomFor)
{
    const std::string nested[] = {
        repeat(250, "(") + "1" + repeat(250, ")"),
        repeat(250, "not(") + "1" + repeat(250, ")"),
        repeat(250, "(1 + ") + "1" + repeat(250, ")"),
        repeat(250, "concat('a', ") + "'b'" + repeat(250, ")"),
        repeat(250, "- (") + "1" + repeat(250, ")"), // left to the productions
        repeat(100000, "("),
    };
    for (const std::size_t kibibytes : {64U, 96U, 128U, 256U, 8192U})
    {
        for (const std::string& expression : nested)
        {
            TErrorCode code = 0;
            const String text = wide(expression);
            runOnStackOf(kibibytes, [&] { code = XPathTokenizer(text).start(); });
            const bool isAnswered = kibibytes == 8192U && expression.back() == ')';
            EXPECT_TRUE(code == 0 || (!isAnswered && code == XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED))
                << code << " with " << kibibytes << " KiB for " << expression.substr(0, 20);
        }
    }
}

#endif

} // namespace
