#include "xmlproxy/Node.h"

#include "TestTrees.h"
#include "support/VirtualSlot.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlTreeMemory.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <vector>

namespace
{

Node* element(const wchar_t* i_Name, std::vector<Node*> i_Children = {}, AttributeTable* i_pAttributes = nullptr)
{
    auto* pNode = new Node(i_Name, i_pAttributes, 3, 5, 9);
    for (Node* pChild : i_Children)
    {
        pChild->setParent(pNode);
        pNode->addChild(pChild);
    }
    return pNode;
}

/// A text node has no parent pointer, as in a tree that the tree builder made.
Node* text(const wchar_t* i_Text)
{
    return new TextNode(i_Text, 1, 2, 3);
}

/// An element whose children have no parent pointers.
Node* detached(const wchar_t* i_Name, std::vector<Node*> i_Children)
{
    Node* pNode = element(i_Name);
    for (Node* pChild : i_Children)
    {
        pNode->addChild(pChild);
    }
    return pNode;
}

AttributeTable* attributes(std::vector<std::pair<const wchar_t*, const wchar_t*>> i_Attributes)
{
    auto* pTable = new AttributeTable(2);
    unsigned ordinal = 0;
    for (const auto& [name, value] : i_Attributes)
    {
        pTable->add(name, value, String::valueOf(ordinal++));
    }
    return pTable;
}

std::string write(const Node& i_Node, int i_Depth = 0)
{
    std::ostringstream out;
    EXPECT_EQ(XML_SUCCESS, i_Node.write(out, i_Depth));
    return out.str();
}

TEST(Node, KeepsWhatItIsMadeOf)
{
    auto* pTable = new AttributeTable(1);
    const Node node(L"p:a", pTable, 3, 5, 9);
    EXPECT_EQ(String(L"p:a"), node.name());
    EXPECT_EQ(3U, node.line());
    EXPECT_EQ(5U, node.column());
    EXPECT_EQ(9U, node.sequence());
    EXPECT_EQ(pTable, node.attributes());
    EXPECT_EQ(Node::ElementNode, node.getType());
    EXPECT_EQ(0, node.getType());
    EXPECT_EQ(0U, node.childCount());
    EXPECT_EQ(nullptr, node.getParent());
    EXPECT_TRUE(node.children().empty());
}

TEST(Node, AddChildKeepsTheOrderAndLeavesTheParentAlone)
{
    Node root(L"a", nullptr, 0, 0, 0);
    std::vector<Node*> children;
    for (const wchar_t* name : {L"b", L"c", L"d"})
    {
        children.push_back(element(name));
        EXPECT_EQ(XML_SUCCESS, root.addChild(children.back()));
        EXPECT_EQ(nullptr, children.back()->getParent());
    }
    const NodeList* pList = nullptr;
    EXPECT_EQ(XML_SUCCESS, root.getChildren(pList));
    ASSERT_EQ(&root.children(), pList);
    EXPECT_EQ(children, std::vector<Node*>(pList->begin(), pList->end()));
    EXPECT_EQ(3U, root.childCount());

    std::vector<Node*> backwards;
    for (auto place = pList->end(); place != pList->begin();)
    {
        backwards.push_back(*--place);
    }
    EXPECT_EQ((std::vector<Node*>{children[2], children[1], children[0]}), backwards);
}

TEST(Node, SiblingsAreTheNeighboursInTheList)
{
    const std::unique_ptr<Node> pRoot(element(L"a", {element(L"b"), text(L"t"), element(L"c")}));
    const Node* pFirst = pRoot->children().front();
    const Node* pLast = pRoot->children().back();
    EXPECT_EQ(nullptr, pFirst->previousSibling());
    EXPECT_EQ(nullptr, pLast->nextSibling());
    EXPECT_EQ(pLast->previousSibling(), pFirst->nextSibling());
    EXPECT_EQ(Node::CharacterDataNode, pFirst->nextSibling()->getType());
    EXPECT_EQ(nullptr, pRoot->nextSibling());
    EXPECT_EQ(nullptr, pRoot->previousSibling());
}

TEST(TextNode, HoldsItsTextInTheNameAndAnEmptyTable)
{
    const TextNode node(L"some text", 3, 5, 9);
    EXPECT_EQ(String(L"some text"), node.name());
    EXPECT_EQ(1, node.getType());
    EXPECT_EQ(3U, node.line());
    EXPECT_EQ(5U, node.column());
    EXPECT_EQ(9U, node.sequence());
    ASSERT_NE(nullptr, node.attributes());
    EXPECT_EQ(0, node.attributes()->count());
    EXPECT_EQ(1, node.attributes()->blockSize());
    EXPECT_TRUE(node.children().empty());
}

struct WriteRow
{
    const char* name;
    Node* (*make)();
    int depth;
    const char* expected;
};

const WriteRow s_WriteRows[] = {
    {"empty_element", [] { return element(L"a"); }, 0, "<a/>"},
    {"empty_element_indented", [] { return element(L"a"); }, 3, "   <a/>"},
    {"negative_depth_is_none", [] { return element(L"a"); }, -3, "<a/>"},
    {"two_empty_children",
     [] {
         return element(L"a", {element(L"b"), element(L"c")});
     },
     0, "<a>\n <b/> <c/></a>\n"},
    {"children_indented",
     [] {
         return element(L"a", {element(L"b"), element(L"c")});
     },
     2, "  <a>\n   <b/>   <c/>  </a>\n"},
    {"grandchild",
     [] {
         return element(L"a", {element(L"b", {element(L"c")}), element(L"d")});
     },
     0, "<a>\n <b>\n  <c/> </b>\n <d/></a>\n"},
    {"text_first",
     [] {
         return element(L"a", {text(L"x"), element(L"b")});
     },
     0, "<a>x <b/></a>\n"},
    {"text_last",
     [] {
         return element(L"a", {element(L"b"), text(L"x")});
     },
     1, " <a>\n  <b/>x </a>\n"},
    {"text_deep", [] { return element(L"a", {element(L"b", {text(L"x")})}); }, 0, "<a>\n <b>x</b>\n</a>\n"},
    {"text_escaped", [] { return element(L"a", {text(L"<&>\t")}); }, 0, "<a>&lt;&amp;&gt;&#9;</a>\n"},
    {"text_alone", [] { return text(L"a<b"); }, 5, "a&lt;b"},
    {"no_parent_pointers",
     [] {
         return detached(L"a", {detached(L"b", {element(L"c")}), element(L"d")});
     },
     0, "<a>\n <b>\n  <c/> </b>\n <d/></a>\n"},
    {"attributes",
     [] {
         return element(L"a", {}, attributes({{L"x", L"1"}, {L"y", L""}}));
     },
     0, "<a x=\"1\" y=\"\"/>"},
    {"attributes_and_child",
     [] {
         return element(L"a", {element(L"b")}, attributes({{L"x", L"1"}}));
     },
     0, "<a x=\"1\">\n <b/></a>\n"},
    // What is left out of a value brings the halves of a pair together; a name has lost them by then.
    {"halves_of_a_pair_apart",
     [] {
         return element(L"\xD83D\x01\xDE00", {}, attributes({{L"x\xD83D\x01\xDE00", L"\xD83D\x01\xDE00"}}));
     },
     0, "<\uFFFD\uFFFD x\uFFFD\uFFFD=\"\U0001F600\"/>"},
    {"empty_table", [] { return element(L"a", {}, new AttributeTable(1)); }, 0, "<a/>"},
    {"value_escaped",
     [] {
         return element(L"a", {}, attributes({{L"x", L"<&\"'>\t\n"}}));
     },
     0, "<a x=\"&lt;&amp;&quot;&apos;&gt;&#9;&#10;\"/>"},
    {"wide_names",
     [] {
         return element(L"\u00e4", {}, attributes({{L"\xd83d\xde00", L"\u20ac"}}));
     },
     0, "<\xc3\xa4 \xf0\x9f\x98\x80=\"\xe2\x82\xac\"/>"},
};

class NodeWrite : public testing::TestWithParam<WriteRow>
{
};

TEST_P(NodeWrite, LaysOutAsStated)
{
    const std::unique_ptr<Node> pNode(GetParam().make());
    EXPECT_EQ(GetParam().expected, write(*pNode, GetParam().depth));
}

TEST_P(NodeWrite, IsTheSameForACopyAndTheCopyOfACopy)
{
    const std::unique_ptr<Node> pNode(GetParam().make());
    const std::unique_ptr<Node> pCopy(pNode->clone());
    const std::unique_ptr<Node> pSecond(pCopy->clone());
    EXPECT_EQ(GetParam().expected, write(*pCopy, GetParam().depth));
    EXPECT_EQ(GetParam().expected, write(*pSecond, GetParam().depth));
}

INSTANTIATE_TEST_SUITE_P(Rows, NodeWrite, testing::ValuesIn(s_WriteRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST(Node, WriteStopsAtTheFirstFailureAndClosesWhatIsOpen)
{
    struct Failing final : Node
    {
        Failing() : Node(L"f", nullptr, 0, 0, 0) {}
        TErrorCode write(std::ostream& o_Out, int i_Depth) const override
        {
            o_Out << "!" << i_Depth;
            return XML_ERROR_NO_VALUE;
        }
    };
    const std::unique_ptr<Node> pRoot(element(L"a", {element(L"b", {new Failing, element(L"c")}), element(L"d")}));
    std::ostringstream out;
    EXPECT_EQ(XML_ERROR_NO_VALUE, pRoot->write(out, 0));
    EXPECT_EQ("<a>\n <b>\n!2 </b>\n</a>\n", out.str());
}

TEST(Node, CloneIsADetachedCopy)
{
    const std::unique_ptr<Node> pRoot(
        element(L"a", {element(L"b", {text(L"t")}, attributes({{L"x", L"1"}, {L"y", L"2"}})), element(L"c")}));
    EXPECT_EQ("a#9(b#9{x=1#0 y=2#1}(\"t\") c#9)", printTree(*pRoot));

    const std::unique_ptr<Node> pCopy(pRoot->clone());
    EXPECT_EQ("a#0(b#0{x=1#0 y=2#0}(\"t\") c#0)", printTree(*pCopy));
    EXPECT_EQ(nullptr, pCopy->getParent());
    EXPECT_EQ(2U, pCopy->childCount());
    EXPECT_EQ(nullptr, pCopy->attributes());

    const Node* pB = pCopy->children().front();
    EXPECT_EQ(nullptr, pB->getParent());
    EXPECT_EQ(3U, pB->line());
    EXPECT_EQ(5U, pB->column());
    EXPECT_EQ(2, pB->attributes()->blockSize());

    const Node* pText = pB->children().front();
    EXPECT_EQ(Node::CharacterDataNode, pText->getType());
    EXPECT_EQ(nullptr, pText->getParent());
    EXPECT_EQ(1U, pText->line());
    EXPECT_EQ(2U, pText->column());
    EXPECT_EQ(0U, pText->sequence());
    EXPECT_EQ(1, pText->attributes()->blockSize());
}

TEST(Node, CloneOfAnInnerNodeLeavesItsSiblingsOut)
{
    const std::unique_ptr<Node> pRoot(element(L"a", {element(L"b"), element(L"c", {element(L"d")}), element(L"e")}));
    const std::unique_ptr<Node> pCopy(pRoot->children().front()->nextSibling()->clone());
    EXPECT_EQ("c#0(d#0)", printTree(*pCopy));
    EXPECT_EQ(nullptr, pCopy->nextSibling());
    EXPECT_EQ(nullptr, pCopy->previousSibling());
}

TEST(Node, DestroysOneSubtreeOnly)
{
    // A leak or a double deletion shows under the sanitizers.
    auto* pInner = element(L"b", {element(L"c", {text(L"x"), element(L"d")}), element(L"e")});
    const std::unique_ptr<Node> pRoot(element(L"a", {pInner, element(L"f", {element(L"g")}), text(L"y")}));
    EXPECT_EQ(3U, pRoot->childCount());
}

/// Counts what is written.
class CountingBuffer final : public std::streambuf
{
public:
    std::size_t count = 0;

protected:
    int_type overflow(int_type i_Char) override
    {
        ++count;
        return traits_type::not_eof(i_Char);
    }
    std::streamsize xsputn(const char*, std::streamsize i_Count) override
    {
        count += static_cast<std::size_t>(i_Count);
        return i_Count;
    }
};

std::unique_ptr<Node> chain(int i_Depth, bool i_WithText)
{
    auto pRoot = std::make_unique<Node>(L"a", nullptr, 0U, 0U, 0U);
    Node* pTop = pRoot.get();
    for (int depth = 1; depth < i_Depth; ++depth)
    {
        if (i_WithText)
        {
            pTop->addChild(text(L"t"));
        }
        Node* pChild = element(L"a");
        pChild->setParent(pTop);
        pTop->addChild(pChild);
        pTop = pChild;
    }
    return pRoot;
}

/// Far above the depth of the tree, so that nothing is indented: the blanks of a deep tree grow with
/// the square of its depth.
constexpr int s_NoIndent = -2000000;

using NodeDepth = testing::TestWithParam<bool>;

TEST_P(NodeDepth, AMillionLevelsFitASmallStack)
{
    constexpr std::size_t depth = 1000000;
    runOnSmallStack(
        []
        {
            std::unique_ptr<Node> pRoot = chain(depth, GetParam());
            const std::unique_ptr<Node> pCopy(pRoot->clone());
            pRoot.reset();
            CountingBuffer buffer;
            std::ostream out(&buffer);
            EXPECT_EQ(XML_SUCCESS, pCopy->write(out, s_NoIndent));
            // "<a>t" or "<a>" and a line feed, later "</a>" and a line feed.
            EXPECT_EQ((depth - 1) * 9 + 4, buffer.count);
        });
}

INSTANTIATE_TEST_SUITE_P(Rows, NodeDepth, testing::Bool(),
                         [](const auto& i_Info) { return i_Info.param ? "with_text" : "elements_only"; });

TEST(Node, ADeepTreeIsIndentedByItsDepth)
{
    constexpr std::size_t depth = 2000;
    CountingBuffer buffer;
    std::ostream out(&buffer);
    EXPECT_EQ(XML_SUCCESS, chain(depth, false)->write(out, 0));
    const std::size_t startBlanks = depth * (depth - 1) / 2;
    const std::size_t endBlanks = (depth - 1) * (depth - 2) / 2;
    EXPECT_EQ((depth - 1) * 9 + 4 + startBlanks + endBlanks, buffer.count);
}

TEST(Node, AMillionSiblings)
{
    auto pRoot = std::make_unique<Node>(L"a", nullptr, 0U, 0U, 0U);
    for (int index = 0; index < 1000000; ++index)
    {
        pRoot->addChild(new Node(L"b", nullptr, 0, 0, 0));
    }
    const std::unique_ptr<Node> pCopy(pRoot->clone());
    EXPECT_EQ(1000000U, pCopy->childCount());
}

/// `root(child child)`, all in one memory, which the root owns.
Node* treeInMemory(const wchar_t* i_Root, const wchar_t* i_Child)
{
    auto* pMemory = new XmlTreeMemory;
    Node* pRoot = Node::create(*pMemory, pMemory->nameOf(i_Root), nullptr, 1, 2, 3);
    for (int index = 0; index < 2; ++index)
    {
        Node* pChild = Node::create(*pMemory, pMemory->nameOf(i_Child), nullptr, 1, 2, 3);
        pChild->setParent(pRoot);
        pRoot->addChild(pChild);
    }
    return pRoot;
}

struct MixedRow
{
    const char* name;
    Node* (*make)();
    const char* expected;
};

// A leak or a double deletion shows under the sanitizers.
const MixedRow s_MixedRows[] = {
    {"alone", [] { return treeInMemory(L"a", L"b"); }, "a#3(b#3 b#3)"},
    {"text_below_a_parsed_node",
     []
     {
         Node* pRoot = treeInMemory(L"a", L"b");
         pRoot->children().front()->addChild(text(L"t"));
         return pRoot;
     },
     "a#3(b#3(\"t\") b#3)"},
    {"heap_tree_below_a_parsed_root",
     []
     {
         Node* pRoot = treeInMemory(L"a", L"b");
         pRoot->addChild(element(L"c", {element(L"d", {text(L"t")})}));
         return pRoot;
     },
     "a#3(b#3 b#3 c#9(d#9(\"t\")))"},
    {"parsed_tree_below_a_heap_node",
     [] {
         return element(L"x", {treeInMemory(L"a", L"b"), element(L"y")});
     },
     "x#9(a#3(b#3 b#3) y#9)"},
    {"parsed_tree_below_a_parsed_tree",
     []
     {
         Node* pRoot = treeInMemory(L"a", L"b");
         pRoot->children().back()->addChild(treeInMemory(L"c", L"d"));
         return pRoot;
     },
     "a#3(b#3 b#3(c#3(d#3 d#3)))"},
    {"parsed_tree_below_a_heap_node_below_a_parsed_tree",
     []
     {
         Node* pRoot = treeInMemory(L"a", L"b");
         pRoot->children().front()->addChild(element(L"x", {treeInMemory(L"c", L"d"), text(L"t")}));
         return pRoot;
     },
     "a#3(b#3(x#9(c#3(d#3 d#3) \"t\")) b#3)"},
    {"heap_attributes_of_a_parsed_node",
     []
     {
         auto* pMemory = new XmlTreeMemory;
         Node* pRoot = Node::create(*pMemory, pMemory->nameOf(L"a"), attributes({{L"x", L"1"}}), 1, 2, 3);
         pRoot->addChild(Node::create(*pMemory, pMemory->nameOf(L"b"), attributes({{L"y", L"2"}}), 1, 2, 3));
         return pRoot;
     },
     "a#3{x=1#0}(b#3{y=2#0})"},
};

class MixedTree : public testing::TestWithParam<MixedRow>
{
};

TEST_P(MixedTree, IsDestroyedWhole)
{
    const std::unique_ptr<Node> pRoot(GetParam().make());
    EXPECT_EQ(GetParam().expected, printTree(*pRoot));
}

TEST_P(MixedTree, IsOutlivedByItsCopy)
{
    std::unique_ptr<Node> pRoot(GetParam().make());
    const std::string before = write(*pRoot);
    const std::unique_ptr<Node> pCopy(pRoot->clone());
    pRoot.reset();
    EXPECT_EQ(before, write(*pCopy));
}

INSTANTIATE_TEST_SUITE_P(Rows, MixedTree, testing::ValuesIn(s_MixedRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

#if defined(TEST_VIRTUAL_SLOTS)
TEST(Node, KeepsTheOrderOfItsOperations)
{
    EXPECT_EQ(1U, slotOf(&Node::getType));
    EXPECT_EQ(2U, slotOf(&Node::clone));
    EXPECT_EQ(3U, slotOf(&Node::write));
}
#endif

} // namespace
