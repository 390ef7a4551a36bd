#include "values/XPathPrinter.h"

#include "QuerySupport.h"
#include "compile/XPathTokenizer.h"
#include "values/XPathArgument.h"
#include "xmlproxy/Node.h"

#include <gtest/gtest.h>

using namespace XmlPlugin;

namespace
{

TEST(XPathPrinter, ElementsHaveOneBlankBetween)
{
    XPathTokenizer tokenizer(L"1 + 'a'");
    ASSERT_EQ(tokenizer.start(), 0);
    EXPECT_EQ(printElements(tokenizer.outVector()), L"1 + 'a'");
    const XPathExpressionsParser parser(L"1 + 2 * 3");
    EXPECT_EQ(printElements(parser.postfix()), L"1 2 3 * +");
    EXPECT_EQ(printElements(XPathExpressionsVector()), L"");
}

TEST(XPathPrinter, DumpHasTextKindAndType)
{
    XPathArgument number(L"5");
    XPathArgument text(L"'a'");
    XPathArgument path(L"a/b");
    EXPECT_EQ(dumpElements({&number, &text, &path}), L"(5,0,2)|(a,0,1)|(a/b,0,3)|");
    EXPECT_EQ(dumpElements({}), L"");
}

TEST(XPathPrinter, RecordsHaveOneLineEach)
{
    XPathOutputElement value;
    value.m_Value = XPathLentText(L"v");
    value.m_NodeText = XPathLentText(L"v");
    value.m_OrderKey = 3;
    XPathOutputElement node;
    node.m_NodeText = XPathLentText(L"n");
    node.m_OrderKey = 12;
    XPathOutputList records;
    EXPECT_EQ(printRecords(records), L"");
    records.add(value);
    records.add(node);
    EXPECT_EQ(printRecords(records), L"3: v\n12:  = n\n");
}

TEST(XPathPrinter, TreeHasOneNodeALine)
{
    const TestDocument document("<r><a x='1' y='2'><b/></a><c/></r>");
    EXPECT_EQ(printTree(*document.root()).toNarrow(), "0 r\n  3 a @x=1(1) @y=2(2)\n    4 b\n  5 c\n");
}

TEST(XPathPrinter, TreeHasTextsInQuotes)
{
    Node tree(String(L"a"), nullptr, 1, 1, 1);
    tree.addChild(new TextNode(String(L"t"), 1, 2, 2));
    EXPECT_EQ(printTree(tree).toNarrow(), "1 a\n  2 \"t\"\n");
}

} // namespace
