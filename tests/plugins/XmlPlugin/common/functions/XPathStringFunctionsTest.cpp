#include "functions/XPathStringFunctions.h"

#include "ValueSupport.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

using namespace XmlPlugin;

namespace
{

const CallRow s_Rows[] = {
    // string
    {"string", {}, "string "},
    {"string", {"5"}, "string 5"},
    {"string", {"1234567"}, "string 1.23457e+06"},
    {"string", {"-0"}, "string 0"},
    {"string", {"raw -0"}, "string -0"},
    {"string", {"nan"}, "string NaN"},
    {"string", {"inf"}, "string Infinity"},
    {"string", {"-inf"}, "string -Infinity"},
    {"string", {"zero"}, "string 0"},
    {"string", {"raw nan"}, "string nan"},
    {"string", {"raw -inf"}, "string -inf"},
    {"string", {"true"}, "string true"},
    {"string", {"false"}, "string false"},
    {"string", {"'abc'"}, "string abc"},
    {"string", {"''"}, "string "},
    {"string", {"'5.0'"}, "string 5.0"},
    {"string", {"\"'abc'\""}, "string abc"},
    {"string", {"nodes"}, "string "},
    {"string", {"nodes 3|7"}, "string 3"},
    {"string", {"nodes |7"}, "string "},
    {"string", {"none"}, "string "},
    {"string", {"'a'", "'b'"}, "-15005"},
    // concat
    {"concat", {"'a'", "'b'", "'c'"}, "string abc"},
    {"concat", {"'a'", "'b'", "'c'", "'d'", "'e'"}, "string abcde"},
    {"concat", {"''", "''"}, "string "},
    {"concat", {"1", "true"}, "string 1true"},
    {"concat", {"nodes 3|7", "inf"}, "string 3Infinity"},
    {"concat", {"none", "'x'"}, "string x"},
    {"concat", {"\"'\"", "'a'", "\"'\""}, "string a"},
    {"concat", {"'a'"}, "-15005"},
    {"concat", {}, "-15005"},
    // starts-with
    {"starts-with", {"'abc'", "'ab'"}, "boolean 1"},
    {"starts-with", {"'abc'", "'abc'"}, "boolean 1"},
    {"starts-with", {"'abc'", "'abcd'"}, "boolean 0"},
    {"starts-with", {"'abc'", "'bc'"}, "boolean 0"},
    {"starts-with", {"'abc'", "''"}, "boolean 1"},
    {"starts-with", {"''", "''"}, "boolean 1"},
    {"starts-with", {"'Abc'", "'a'"}, "boolean 0"},
    {"starts-with", {"true", "'tr'"}, "boolean 1"},
    {"starts-with", {"inf", "'Inf'"}, "boolean 1"},
    {"starts-with", {"nodes 37", "3"}, "boolean 1"},
    {"starts-with", {"'a'"}, "-15005"},
    {"starts-with", {}, "-15005"},
    {"starts-with", {"'x'", "'ab'", "'a'"}, "boolean 1"},
    // contains
    {"contains", {"'abc'", "'bc'"}, "boolean 1"},
    {"contains", {"'abc'", "'cb'"}, "boolean 0"},
    {"contains", {"'abc'", "''"}, "boolean 1"},
    {"contains", {"''", "'a'"}, "boolean 0"},
    {"contains", {"12345", "34"}, "boolean 1"},
    {"contains", {"nodes x|abc", "'b'"}, "boolean 0"},
    {"contains", {"none", "''"}, "boolean 1"},
    {"contains", {"'a'"}, "-15005"},
    // substring-before and substring-after
    {"substring-before", {"'1999/04/01'", "'/'"}, "string 1999"},
    {"substring-before", {"'1999/04/01'", "'-'"}, "string "},
    {"substring-before", {"'/04'", "'/'"}, "string "},
    {"substring-before", {"'abc'", "''"}, "string "},
    {"substring-before", {"123", "3"}, "string 12"},
    {"substring-before", {"'a'"}, "-15005"},
    {"substring-after", {"'1999/04/01'", "'/'"}, "string 04/01"},
    {"substring-after", {"'1999/04/01'", "'-'"}, "string "},
    {"substring-after", {"'04/'", "'/'"}, "string "},
    {"substring-after", {"'abc'", "''"}, "string abc"},
    {"substring-after", {"'abc'", "'bc'"}, "string "},
    {"substring-after", {"nodes a=b", "'='"}, "string b"},
    {"substring-after", {"'a'"}, "-15005"},
    // substring with a start
    {"substring", {"'12345'", "2"}, "string 2345"},
    {"substring", {"'12345'", "1"}, "string 12345"},
    {"substring", {"'12345'", "0"}, "string 12345"},
    {"substring", {"'12345'", "-7"}, "string 12345"},
    {"substring", {"'12345'", "5"}, "string 5"},
    {"substring", {"'12345'", "6"}, "string "},
    {"substring", {"'12345'", "1.5"}, "string 2345"},
    {"substring", {"'12345'", "1.4"}, "string 12345"},
    {"substring", {"'12345'", "nan"}, "string "},
    {"substring", {"'12345'", "inf"}, "string "},
    {"substring", {"'12345'", "-inf"}, "string "},
    {"substring", {"'12345'", "zero"}, "string 12345"},
    {"substring", {"'12345'", "'x'"}, "string "},
    {"substring", {"'12345'", "none"}, "string "},
    {"substring", {"'12345'", "true"}, "string 12345"},
    {"substring", {"'12345'", "nodes 4"}, "string 45"},
    {"substring", {"12345", "2"}, "string 2345"},
    {"substring", {"'12345'", "1e300"}, "string "},
    {"substring", {"'12345'", "-1e300"}, "string 12345"},
    {"substring", {"'12345'", "raw inf"}, "string "},
    {"substring", {"'12345'", "raw -inf"}, "string 12345"},
    {"substring", {"'12345'", "raw nan"}, "string "},
    // substring with a start and a length
    {"substring", {"'12345'", "2", "3"}, "string 234"},
    {"substring", {"'12345'", "0", "3"}, "string 12"},
    {"substring", {"'12345'", "1.5", "2.6"}, "string 234"},
    {"substring", {"'12345'", "-1", "3"}, "string 1"},
    {"substring", {"'12345'", "-1", "2"}, "string "},
    {"substring", {"'12345'", "4", "9"}, "string 45"},
    {"substring", {"'12345'", "6", "1"}, "string "},
    {"substring", {"'12345'", "2", "0"}, "string "},
    {"substring", {"'12345'", "2", "-1"}, "string "},
    {"substring", {"'12345'", "2", "0.5"}, "string 2"},
    {"substring", {"'12345'", "2", "inf"}, "string 2345"},
    {"substring", {"'12345'", "-2", "inf"}, "string 12345"},
    {"substring", {"'12345'", "2", "-inf"}, "string "},
    {"substring", {"'12345'", "2", "nan"}, "string "},
    {"substring", {"'12345'", "nan", "3"}, "string "},
    {"substring", {"'12345'", "inf", "3"}, "string "},
    {"substring", {"'12345'", "inf", "inf"}, "string "},
    {"substring", {"'12345'", "-inf", "3"}, "string 12"},
    {"substring", {"'12345'", "-inf", "inf"}, "string 12345"},
    {"substring", {"'12345'", "zero", "3"}, "string 12"},
    {"substring", {"'12345'", "2", "zero"}, "string "},
    {"substring", {"'12345'", "2", "raw nan"}, "string "},
    {"substring", {"'12345'", "2", "raw inf"}, "string 2345"},
    {"substring", {"'12345'", "2", "raw -inf"}, "string "},
    {"substring", {"'12345'", "2", "1e300"}, "string 2345"},
    {"substring", {"'12345'", "-1e300", "1e300"}, "string "},
    {"substring", {"'12345'", "1e300", "1e300"}, "string "},
    {"substring", {"''", "1", "1"}, "string "},
    {"substring", {"'12345'"}, "-15005"},
    {"substring", {}, "-15005"},
    {"substring", {"'12345'", "1", "1", "1"}, "-15005"},
    // string-length
    {"string-length", {"'abc'"}, "number 3"},
    {"string-length", {"''"}, "number 0"},
    {"string-length", {"12345"}, "number 5"},
    {"string-length", {"true"}, "number 4"},
    {"string-length", {"nodes abcd|x"}, "number 4"},
    {"string-length", {"-inf"}, "number 9"},
    {"string-length", {"none"}, "number 0"},
    {"string-length", {"\"'a'\""}, "number 1"},
    {"string-length", {"'\xC3\xA9\xF0\x9F\x98\x80'"}, "number 3"},
    {"string-length", {}, "-15005"},
    {"string-length", {"'a'", "'b'"}, "-15005"},
    // normalize-space
    {"normalize-space", {"'  a   b  '"}, "string a b"},
    {"normalize-space", {"'a\tb'"}, "string a\tb"},
    {"normalize-space", {"'a \t b'"}, "string a \t b"},
    {"normalize-space", {"'\t\r\n a \n'"}, "string a"},
    {"normalize-space", {"'   '"}, "string "},
    {"normalize-space", {"''"}, "string "},
    {"normalize-space", {"5"}, "string 5"},
    {"normalize-space", {"nodes  x  y "}, "string x y"},
    {"normalize-space", {}, "string "},
    {"normalize-space", {"'a'", "'b'"}, "-15005"},
    // not implemented
    {"translate", {"'abc'", "'a'", "'b'"}, "-102"},
    {"translate", {"none", "5", "nodes"}, "-102"},
    {"translate", {"'abc'", "'a'"}, "-15005"},
    {"translate", {}, "-15005"},
};

TEST(XPathStringFunctions, Answer)
{
    for (const CallRow& row : s_Rows)
    {
        EXPECT_EQ(call(row.name, row.arguments), row.expected) << print(row.name, row.arguments);
    }
}

class TextTree : public testing::Test
{
protected:
    TextTree()
    {
        m_Tree.text(m_Tree.root(), " a  ");
        Node* pB = m_Tree.element(m_Tree.root(), "b");
        m_Tree.text(pB, "x");
        m_Tree.element(pB, "c");
        m_Tree.text(pB, "y");
        m_Tree.text(m_Tree.root(), "  z ");
        m_pB = pB;
        m_pEmpty = m_Tree.element(m_Tree.root(), "e");
    }

    Tree m_Tree{"r"};
    Node* m_pB = nullptr;
    Node* m_pEmpty = nullptr;
};

TEST_F(TextTree, StringOfTheStartNode)
{
    EXPECT_EQ(call("string", {}, {m_Tree.root()}), "string  a  xy  z ");
    EXPECT_EQ(call("string", {}, {m_pB}), "string xy");
    EXPECT_EQ(call("string", {}, {m_pEmpty}), "string ");
    EXPECT_EQ(call("string", {"'q'"}, {m_pB}), "string q");
}

TEST_F(TextTree, NormalizeSpaceOfTheStartNodeTakesItsOwnTextOnly)
{
    EXPECT_EQ(call("normalize-space", {}, {m_Tree.root()}), "string a z");
    EXPECT_EQ(call("normalize-space", {}, {m_pB}), "string xy");
    EXPECT_EQ(call("normalize-space", {}, {m_pEmpty}), "string ");
}

TEST_F(TextTree, StringOfANodeSet)
{
    struct Row
    {
        const char* value;
        const Node* node;
        const char* expected;
    };
    const Row rows[] = {
        {"v", m_pB, "string v"}, {"", m_pB, "string xy"}, {"", m_pEmpty, "string "}, {"", nullptr, "string "}};
    for (const Row& row : rows)
    {
        Values values;
        XPathExpression* pNodes = values("nodes");
        values.addRecord(*pNodes, row.value, row.node, "node text is not read");
        values.addRecord(*pNodes, "second");
        EXPECT_EQ(callWith("string", {pNodes}), row.expected);
    }
}

TEST_F(TextTree, TextIsAppendedInDocumentOrder)
{
    String text(L"<");
    XPathFunction_string::getTextFromNode(m_Tree.root(), text);
    EXPECT_EQ(text.toNarrow(), "< a  xy  z ");
    XPathFunction_string::getTextFromNode(nullptr, text);
    EXPECT_EQ(text.toNarrow(), "< a  xy  z ");

    text = String();
    XPathFunction_string::getTextFromNode(m_pB->children().front(), text);
    EXPECT_EQ(text.toNarrow(), "x"); // its siblings are not below it
}

TEST(XPathStringFunctions, TextOfADeepTree)
{
    constexpr int depth = 1000000;
    Tree tree("a");
    Node* pNode = tree.root();
    for (int i = 0; i < depth; ++i)
    {
        pNode = tree.element(pNode, "a");
    }
    tree.text(pNode, "deep");
    tree.text(tree.root(), "!");
    EXPECT_EQ(call("string", {}, {tree.root()}), "string deep!");
}

} // namespace
