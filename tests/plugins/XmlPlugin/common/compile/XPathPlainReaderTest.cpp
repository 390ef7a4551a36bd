#include "compile/XPathPlainReader.h"

#include "CaseScale.h"
#include "RandomQueries.h"
#include "compile/XPathTokenizer.h"
#include "values/XPathNumberText.h"

#include <gtest/gtest.h>

#include <string>

using namespace XmlPlugin;

namespace
{

std::string narrow(std::wstring_view i_Text)
{
    return String(i_Text.data(), i_Text.size()).toNarrow();
}

std::string print(const XPathPlanPredicate& i_Predicate)
{
    static const char* const s_Comparisons[] = {"=", "!=", "<", "<=", ">", ">="};
    const std::string compared =
        "@" + narrow(i_Predicate.m_Attribute.text()) + s_Comparisons[static_cast<int>(i_Predicate.m_Comparison)];
    switch (i_Predicate.m_Kind)
    {
    case XPathPlanPredicate::Kind::None:
        return "-";
    case XPathPlanPredicate::Kind::HasAttribute:
        return "@" + narrow(i_Predicate.m_Attribute.text());
    case XPathPlanPredicate::Kind::Text:
        return compared + "'" + narrow(i_Predicate.m_Text) + "'";
    case XPathPlanPredicate::Kind::Number:
        return compared + XPathNumberText::print(i_Predicate.m_Number).toNarrow();
    case XPathPlanPredicate::Kind::Place:
        return std::to_string(i_Predicate.m_Place);
    case XPathPlanPredicate::Kind::Position:
        return "position=" + std::to_string(i_Predicate.m_Place);
    default:
        return "last";
    }
}

/// Steps with their predicates, then the attribute; "!" after a step of any name; ";" between branches.
std::string print(const XPathPlan& i_Plan)
{
    std::string text = i_Plan.m_IsAbsolute ? "root " : "";
    for (const XPathPlanBranch* pBranch = &i_Plan.m_First; pBranch; pBranch = pBranch->m_pNext)
    {
        text += pBranch == &i_Plan.m_First ? "" : " ; ";
        std::size_t steps = 0;
        for (const XPathPlanStep* pStep = pBranch->m_pSteps; pStep; pStep = pStep->m_pNext)
        {
            text += (pStep->m_IsDeep ? "//" : "/") + narrow(pStep->m_Name.text()) + (pStep->m_IsAnyName ? "!" : "");
            for (const XPathPlanPredicate* pOne = pStep->m_pPredicates; pOne; pOne = pOne->m_pNext)
            {
                text += "[" + print(*pOne) + "]";
            }
            ++steps;
        }
        EXPECT_EQ(pBranch->m_StepCount, steps);
        text += pBranch->m_TakesAttribute ? " @" + narrow(pBranch->m_Attribute.text()) : "";
    }
    return text;
}

/// "-" for a text that is not one plain path.
std::string readWhole(const std::string& i_Text)
{
    const String text(i_Text.c_str());
    XPathMemory memory;
    const XPathPlan* const pPlan = XPathPlainReader::readWhole(viewOf(text), memory);
    return pPlan ? print(*pPlan) : "-";
}

struct Row
{
    const char* path;
    const char* plan;
};

const Row s_Paths[] = {
    {"a", "/a"},
    {"/a", "root /a"},
    {"//a", "//a"},
    {"a/b//c", "/a/b//c"},
    {"a/*", "/a/*!"},
    {"A_1-x.y/_", "/A_1-x.y/_"},
    {"\xc3\xa4/a\xc3\xa9", "/\xc3\xa4/a\xc3\xa9"},
    {"a/@x", "/a @x"},
    {"@x", " @x"},
    {"//*//@a-b", "//*! @a-b"},
    {"child::a/attribute::x", "/a @x"},
    {"child::*/child::parent", "/*!/parent"},
    {"children/selfish", "/children/selfish"},
    {"node/text/comment", "/node/text/comment"},
    {" a / b // c [ 1 ] / @ x ", "/a/b//c[1] @x"},
    {"a[1]/b[@x][last()]", "/a[1]/b[@x][last]"},
    {"a[@x][2][@y]", "/a[@x][2][@y]"},
    {"a | /b/@x|//c[1]", "/a ; /b @x ; //c[1]"},
    {"/a|@x", "root /a ;  @x"},
    {"", "-"},
    {"/", "-"},
    {"//", "-"},
    {"a/", "-"},
    {"//a/", "-"},
    {"a//", "-"},
    {"a///b", "-"},
    {"a/ /b", "-"},
    {"////a", "-"},
    {"/@x", "-"},
    {"//@x", "-"},
    {"a/@", "-"},
    {"a/@*", "-"},
    {"a/@x/b", "-"},
    {"a/@x[1]", "-"},
    {"a/attribute::*", "-"},
    {"a/.", "-"},
    {"..", "-"},
    {"a/text()", "-"},
    {"a/node()", "-"},
    {"a (", "-"},
    {"p:a", "-"},
    {"a :b", "-"},
    {"a -b", "-"},
    {"a .b", "-"},
    {"1a", "-"},
    {"a b", "-"},
    {"a'b", "-"},
    {"child", "-"},
    {"child-x", "-"},
    {"self::a", "-"},
    {"child ::a", "-"},
    {"descendant-or-selfish", "-"},
    {"a[", "-"},
    {"a[1", "-"},
    {"a[]", "-"},
    {"a[b]", "-"},
    {"a[1]]", "-"},
    {"a[[1]", "-"},
    {"a[1]x", "-"},
    {"a[1][2]", "-"},
    {"a[1][@x][last()]", "-"},
    {"a[@x='/']", "-"},
    {"a[@x='|']", "-"},
    {"|a", "-"},
    {"a|", "-"},
    {"a||b", "-"},
    {"a|b[c]", "-"},
};

TEST(XPathPlainReader, ReadsPaths)
{
    for (const Row& row : s_Paths)
    {
        EXPECT_EQ(readWhole(row.path), row.plan) << row.path;
    }
}

const Row s_Predicates[] = {
    {"[@a]", "@a"},
    {"[ @a ]", "@a"},
    {"[@ a]", "@a"},
    {"[@div]", "@div"},
    {"[@a.b]", "@a.b"},
    {"[@\xc3\xa9]", "@\xc3\xa9"},
    {"[@a='v']", "@a='v'"},
    {"[@a=\"v\"]", "@a='v'"},
    {"[ @a = 'v' ]", "@a='v'"},
    {"[@a='']", "@a=''"},
    {"[@a!='v']", "@a!='v'"},
    {"[@a<'v']", "@a<'v'"},
    {"[@a<='v']", "@a<='v'"},
    {"[@a > 'v']", "@a>'v'"},
    {"[@a>='v']", "@a>='v'"},
    {"[@or='x y']", "@or='x y'"},
    {"[@a-b_1='v']", "@a-b_1='v'"},
    {"[@a='5']", "@a=5"}, // D-07
    {"[@a=5]", "@a=5"},
    {"[@a=05]", "@a=5"},
    {"[@a!=1.5]", "@a!=1.5"},
    {"[@a>=0]", "@a>=0"},
    {"[1]", "1"},
    {"[12]", "12"},
    {"[ 3 ]", "3"},
    {"[999999999]", "999999999"},
    {"[position()=2]", "position=2"},
    {"[ position() = 2 ]", "position=2"},
    {"[last()]", "last"},
    {"[ last() ]", "last"},
    {"[]", "-"},
    {"[ ]", "-"},
    {"[@]", "-"},
    {"[@*]", "-"},
    {"[@a:b]", "-"},
    {"[@1]", "-"},
    {"[@a -b]", "-"},
    {"[@a='v' or @b]", "-"},
    {"[@a=@b]", "-"},
    {"[@a==5]", "-"},
    {"[@a=!5]", "-"},
    {"[@a!5]", "-"},
    {"[@a=-5]", "-"},
    {"[@a=.5]", "-"},
    {"[@a=5.]", "-"},
    {"[@a=5 .5]", "-"},
    {"[@a=]", "-"},
    {"[@a='v]", "-"},
    {"[@a='v\"]", "-"},
    {"[@a='x\"y']", "-"},
    {"[@a='x[y']", "-"},
    {"[@a='x/y']", "-"},
    {"[@a='v'", "-"},
    {"[a]", "-"},
    {"[0]", "-"},
    {"[02]", "-"},
    {"['2']", "-"},
    {"[2.0]", "-"},
    {"[1234567890]", "-"},
    {"[position()=0]", "-"},
    {"[position()=last()]", "-"},
    {"[position()>1]", "-"},
    {"[position]", "-"},
    {"[position ()=1]", "-"},
    {"[last]", "-"},
    {"[last()-1]", "-"},
    {"[2=position()]", "-"},
    {"['v'=@a]", "-"},
    {"[\t@a]", "-"},
    {"@a", "-"},
    {"[@a]]", "-"},
    {"[@a] ", "-"},
    {"", "-"},
};

TEST(XPathPlainReader, ReadsPredicates)
{
    for (const Row& row : s_Predicates)
    {
        const String text(row.path);
        EXPECT_EQ(print(XPathPlainReader::readPredicate(viewOf(text))), row.plan) << row.path;
    }
}

TEST(XPathPlainReader, ReadsNoMoreStepsThanBits)
{
    std::string text = "a";
    for (std::size_t steps = 1; steps < XPathPlanBranch::s_MostSteps; ++steps)
    {
        text += "/a";
    }
    EXPECT_NE(readWhole(text), "-");
    EXPECT_NE(readWhole(text + "/@x"), "-");
    EXPECT_EQ(readWhole(text + "/a"), "-");
}

struct EndRow
{
    const char* text;
    std::size_t end;
};

/// The end is that of the path, without the spaces after it.
TEST(XPathPlainReader, SaysWhereThePathEnds)
{
    for (const EndRow& row : {EndRow{"a", 1},
                              {"a  ", 1},
                              {" a", 2},
                              {"a + b", 1},
                              {"//a[ 1 ] )", 8},
                              {"a/@x = 5", 4},
                              {"a | b , c", 5},
                              {"a)|b", 1}})
    {
        const String text(row.text);
        XPathMemory memory;
        XPathPlainReader reader(viewOf(text), 0, memory);
        ASSERT_TRUE(reader.readPath()) << row.text;
        EXPECT_EQ(reader.end(), row.end) << row.text;
    }
}

/// The grammar finds every plain path as long as the reader does.
TEST(XPathPlainReader, EndsWhereTheGrammarEnds)
{
    RandomSource random(81);
    unsigned read = 0;
    const int cases = 100000 * scale();
    for (int i = 0; i < cases; ++i)
    {
        std::string text = random.pick({"", "", "//", "/", " "});
        for (unsigned left = 1 + random.below(7); left > 0; --left)
        {
            text += random.pick({"a",        "b",        "*",           "/",      "/",       "/a",
                                 "//",       "//b",      "/@x",         "/@",     "/text()", "[1]",
                                 "[2]",      "[@x]",     "[@x='1']",    "[@x=5]", "[",       "]",
                                 "[last()]", "[@x='/']", "'",           " ",      "child::", "node()",
                                 ".",        "position", "-",           "7",      ":",       "[position()=3]",
                                 "@y",       "\xc3\xa4", "[@x != 'v']", " | ",    "|",       "attribute::",
                                 "self",     "children", " and ",       "(",      ")",       "[@x<1.5]"});
        }
        const String wide(text.c_str());
        XPathMemory memory;
        XPathPlainReader reader(viewOf(wide), 0, memory);
        if (!reader.readPath())
        {
            continue;
        }
        ++read;
        XPathTokenizer tokenizer(wide);
        ASSERT_EQ(tokenizer.isUnionExpr(1, false), reader.end()) << text;
    }
    EXPECT_GT(read, static_cast<unsigned>(cases) / 100);
}

} // namespace
