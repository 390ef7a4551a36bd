// Quick code against the general code: what the product compiles must be the same.
#include "compile/XPathQuickReader.h"

#include "CaseScale.h"
#include "compile/XPathExpressionsParser.h"
#include "compile/XPathTokenizer.h"
#include "values/XPathArgument.h"
#include "values/XPathQuickCode.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using namespace XmlPlugin;

namespace
{

String wide(std::string_view i_Text)
{
    return String(i_Text.data(), i_Text.size());
}

/// Everything that evaluation reads of a postfix list, or where the text was refused.
std::string detailsOf(const std::string& i_Expression)
{
    const XPathExpressionsParser parser(wide(i_Expression));
    if (parser.status() != 0)
    {
        XPathTokenizer tokenizer(wide(i_Expression));
        EXPECT_EQ(tokenizer.start(), parser.status());
        return "refused at " + std::to_string(tokenizer.recognisedUpTo());
    }
    std::string details;
    for (const XPathExpression* pElement : parser.postfix())
    {
        details += '[' + pElement->text().toNarrow() + ']';
        details += pElement->isOperator() ? " operator " + std::to_string(pElement->getArgumentsCount()) + '/' +
                                                std::to_string(pElement->getPriority())
                                          : " operand " + std::to_string(pElement->GetDataType());
        details += pElement->isNegativeZero() ? " -0 " : " ";
    }
    return details;
}

bool isQuick(const std::string& i_Expression)
{
    XPathElements elements;
    const String text = wide(i_Expression);
    XPathTokenizer tokenizer(viewOf(text), elements);
    XPathExpressionsVector postfix;
    return tokenizer.readPostfix(postfix);
}

std::string generalDetailsOf(const std::string& i_Expression)
{
    const XPathQuickCode::Forbidden general;
    EXPECT_FALSE(isQuick(i_Expression));
    return detailsOf(i_Expression);
}

void expectTheSame(const std::string& i_Text)
{
    EXPECT_EQ(detailsOf(i_Text), generalDetailsOf(i_Text)) << "[" << i_Text << "]";
}

struct QuickRow
{
    const char* expression;
    bool isQuick;
};

const QuickRow s_Rows[] = {
    {"1", true},
    {"1+2*3", true},
    {"concat('a','b','c')", true},
    {"-(1 div 2)", true},
    {"/root/group[2]/item[3]/@id", true},
    {"a div b", true},
    {"a | b", true},
    {"count(a|b) > 2 and not(//c[@x='1'])", true},
    {"a[position()=2]", true},
    {"a[b='c']/d", true}, // no plain path, but an operand whose length is asked for
    {"a and b", true},
    {"a and b and c", false}, // D-08
    {"a - b", false},         // D-02
    {"'|'", false},           // read as the operator
    {"a | (b)", false},
    {"(a)[1]", false},
    {"$x", false},
    {"1 +", false},
    {"", false},
};

TEST(XPathQuickReader, ReadsWhatIsOfTheCommonShape)
{
    for (const QuickRow& row : s_Rows)
    {
        EXPECT_EQ(isQuick(row.expression), row.isQuick) << row.expression;
        expectTheSame(row.expression);
    }
}

/// The text of a union is that of the operands, joined: without the spaces before a bar.
TEST(XPathQuickReader, JoinsTheTextsOfUnions)
{
    for (const auto& [expression, text] : {std::pair{"a|b", "a|b"}, {" a  | b ", " a| b"}, {"a |b| c", "a|b| c"}})
    {
        const XPathExpressionsParser parser(wide(expression));
        ASSERT_EQ(parser.postfix().size(), 1U);
        EXPECT_EQ(parser.postfix().front()->text().toNarrow(), text);
        expectTheSame(expression);
    }
}

TEST(XPathQuickReader, ChangesNothingForShortTexts)
{
    constexpr std::string_view alphabet = "a1(/|'-* [@.)";
    std::vector<std::string> texts = {""};
    for (std::size_t begin = 0, length = 0; length < 4; ++length)
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
        expectTheSame(text);
    }
}

TEST(XPathQuickReader, ChangesNothingForMixesOfTokens)
{
    const std::vector<std::string> pieces = {"a",     "abcd", "1",     "'s'",     "(",      ")",      "[",      "]",
                                             "/",     "//",   " and ", " or ",    "=",      "+",      "-",      "|",
                                             " div ", "*",    "@b",    "child::", "not(",   ",",      " ",      ".",
                                             "..",    "$",    ":",     "self",    "count(", "text()", "true()", "'|'",
                                             "<=",    "!=",   ">",     " mod ",   "1.5",    "name(",  "[1]",    "(2)",
                                             "orand", "and",  "or",    "last()"};
    std::mt19937 random(20260101);
    int quick = 0;
    const int cases = 20000 * scale();
    for (int i = 0; i < cases; ++i)
    {
        std::string text;
        for (auto count = random() % 7 + 1; count != 0; --count)
        {
            text += pieces[random() % pieces.size()];
        }
        expectTheSame(text);
        quick += isQuick(text) ? 1 : 0;
    }
    EXPECT_GT(quick, cases / 50);
}

/// Texts that are nearly always recognised: operands of every kind between operators of every kind, "and" above all.
std::string recognisable(std::mt19937& io_Random, int i_Depth)
{
    static const char* const s_Operators[] = {
        " and ", " and ", " or ", "=", "!=", "<", ">=", "+", " - ", "*", " div ", "|", "/"};
    static const char* const s_Leaves[] = {"1",   "12.5", "'ab'", "a",        "a/@b",      "//a[b and c and d]", ".",
                                           "'|'", "-1",   "--a",  "last()",   "and",       "a[1]/b['x']",        "*",
                                           "..",  "@a",   "a -b", "(1)[2]/b", "name(a)/bc"};
    const auto inner = [&] { return recognisable(io_Random, i_Depth - 1); };
    std::string text;
    for (auto count = io_Random() % 4 + 1; count != 0; --count)
    {
        if (!text.empty())
        {
            text += s_Operators[io_Random() % std::size(s_Operators)];
        }
        switch (i_Depth > 0 ? io_Random() % 8 : 0)
        {
        case 1:
            text += "(" + inner() + " )";
            break;
        case 2:
            text += "concat(" + inner() + ", " + inner() + ")";
            break;
        case 3:
            text += "-not ( " + inner() + ")";
            break;
        case 4:
            text += "a[" + inner() + "]";
            break;
        default:
            text += s_Leaves[io_Random() % std::size(s_Leaves)];
            break;
        }
    }
    return text;
}

TEST(XPathQuickReader, ChangesNothingForExpressions)
{
    std::mt19937 random(20260102);
    int refused = 0;
    int quick = 0;
    const int count = 10000 * scale();
    for (int i = 0; i < count; ++i)
    {
        const std::string text = recognisable(random, i % 4);
        expectTheSame(text);
        refused += detailsOf(text).starts_with("refused") ? 1 : 0;
        quick += isQuick(text) ? 1 : 0;
    }
    EXPECT_LT(refused, count * 3 / 4);
    EXPECT_GT(quick, count / 20);
}

TEST(XPathQuickReader, ChangesNothingForPaths)
{
    const std::vector<std::string> names = {"a",
                                            "item",
                                            "b.c-d_1",
                                            "_x",
                                            "*",
                                            "@id",
                                            "@*",
                                            "parent",
                                            "selfish",
                                            "@child",
                                            ".",
                                            "..",
                                            "text()",
                                            "child::a",
                                            "@",
                                            "p:a",
                                            "\xC3\xA9t\xC3\xA9",
                                            "a\xC3\xA9",
                                            "1a",
                                            "comment()",
                                            "a b",
                                            "a -b",
                                            "a (",
                                            "node()",
                                            "child::*",
                                            "child::parent",
                                            "child ::a",
                                            "children",
                                            "child-x",
                                            "attribute::id",
                                            "attribute::*",
                                            "@ id"};
    const std::vector<std::string> predicates = {"",
                                                 "",
                                                 "",
                                                 "[1]",
                                                 "[12][3]",
                                                 "[]",
                                                 "[@a]",
                                                 "[@a='x']",
                                                 "[@a=\"x\"]",
                                                 "[@a='|']",
                                                 "[@]",
                                                 "[@a=]",
                                                 "[@a='x]",
                                                 "[@a='x' ]",
                                                 "[ 1]",
                                                 " [1]",
                                                 "[1.5]",
                                                 "[last()]",
                                                 "[a[1]]",
                                                 "[@a='=']",
                                                 "[@a.b]",
                                                 "[1",
                                                 "[@a:b]",
                                                 "[1][@a='x]']",
                                                 "[@a!='x']",
                                                 "[@a<5]",
                                                 "[@a >= '5']",
                                                 "[@a=1.5]",
                                                 "[@a=.5]",
                                                 "[@a='a/b']",
                                                 "[position()=2]",
                                                 "[position()=0]",
                                                 "[ position() = 12 ]",
                                                 "[position()<2]",
                                                 "[ last() ]",
                                                 "[@a='x'][2]",
                                                 "[1][last()]",
                                                 "[@a\n]"};
    const std::vector<std::string> separators = {"/", "/", "//", "//", "///", " / ", "|", " | "};
    const std::vector<std::string> ends = {"", "", "", " ", "*2", " + 1", "-1", " -1", "=3", "/", "//", " and a", " 5"};
    std::mt19937 random(20260103);
    const auto any = [&](const std::vector<std::string>& i_Of) { return i_Of[random() % i_Of.size()]; };
    int quick = 0;
    const int cases = 60000 * scale();
    for (int i = 0; i < cases; ++i)
    {
        std::string text = random() % 2 ? any(separators) : "";
        for (auto count = random() % 3 + 1; count != 0; --count)
        {
            text += any(names) + any(predicates) + (count > 1 ? any(separators) : "");
        }
        text += any(ends);
        expectTheSame(text);
        quick += isQuick(text) ? 1 : 0;
    }
    EXPECT_GT(quick, cases / 20);
}

TEST(XPathQuickReader, ReadsNumbersAsTheirTexts)
{
    for (const char* pText :
         {"7", "0", "007", "123456789012345", "1234567890123456", "12.", "1 .5", "1.5", "4\xD9\xA1"})
    {
        expectTheSame(pText);
        const XPathExpressionsParser parser(wide(pText));
        if (!parser.postfix().empty())
        {
            const XPathExpression& token = *parser.postfix().front();
            EXPECT_EQ(token.GetExpressionNumb(), XPathArgument(token.text()).GetExpressionNumb()) << pText;
        }
    }
}

/// The reader looks for the end only where its text may be cut off: after every character, and one parenthesis late.
TEST(XPathQuickReader, ChangesNothingForTextsCutShort)
{
    for (const std::string whole :
         {"concat ( 'a' , substring(\"12345\" , 2 ,3 ) , - ( 1 ) )", "count( //a[@b = 'c'] ) >= - -1 and true( ) or $x",
          "1 != 2 div 3 mod (4*string-length( 'x' ))", " //a[ 1 ][@b]/ @c | .."})
    {
        for (std::size_t length = 0; length <= whole.size(); ++length)
        {
            const std::string text = whole.substr(0, length);
            for (const std::string& end : {std::string(), std::string(")"), std::string("))"), std::string("  "),
                                           std::string(1, '\0'), std::string("\0)", 2), std::string("\0 1", 3)})
            {
                expectTheSame(text + end);
            }
        }
    }
}

TEST(XPathQuickReader, ChangesNothingForDeepNesting)
{
    for (const unsigned depth : {255u, 256u, 257u})
    {
        for (const auto& [open, close] : {std::pair{"(", ")"}, {"not(", ")"}, {"a[", "]"}, {"-(", ")"}})
        {
            std::string text;
            for (unsigned i = 0; i < depth; ++i)
            {
                text += open;
            }
            text += "1";
            for (unsigned i = 0; i < depth; ++i)
            {
                text += close;
            }
            expectTheSame(text);
        }
    }
}

} // namespace
