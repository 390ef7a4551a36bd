// Quick code against the general code: what they select and keep on generated documents must be the same.
#include "paths/XPathDirectWalk.h"
#include "CaseScale.h"
#include "PathSupport.h"
#include "RandomQueries.h"
#include "compile/XPathExpressionsParser.h"
#include "paths/XPath.h"
#include "paths/XPathDirectPredicate.h"
#include "paths/XPathPredicate.h"
#include "values/XPathQuickCode.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/NodeSink.h"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

std::string print(const Node& i_Tree)
{
    std::ostringstream out;
    i_Tree.write(out, 0);
    return out.str();
}

bool isQuick(const std::string& i_Path)
{
    return XPath(String(i_Path.c_str())).isQuick();
}

// --- Which paths --------------------------------------------------------------------------------

struct PathRow
{
    const char* path;
    bool isQuick;
};

const PathRow s_PathRows[] = {
    {"/a/b/@x", true},
    {"//a//b//c", true},
    {"//*", true},
    {"//a/child::b/@x", true},
    {"//a[@x='v']/@y", true},
    {"//a[@x][2]/@y", true},
    {"//a[2][@x]/@y", true},
    {"//a | b/@x", true},
    {"//a[2][last()]/@y", false}, // the length of the second list is not known on the way
    {"//a[b]/@y", false},
    {"//a | b[c]", false},
    {"//a[]", false},
    {"a/@*", false}, // its keys may meet others
    {"a/text()", false},
    {"a/node()", false},
    {"a/descendant::b", false},
    {"a/../b", false},
    {"a/.", false},
    {"a/@x/b", false},
    {"a[/b", false},
    {"a/b[", false},
};

TEST(XPathDirectWalk, TakesPlainPaths)
{
    for (const PathRow& row : s_PathRows)
    {
        EXPECT_EQ(isQuick(row.path), row.isQuick) << row.path;
    }
}

TEST(XPathDirectWalk, LeavesLongPathsToTheGeneralCode)
{
    std::string path = "a";
    for (int steps = 1; steps < 63; ++steps)
    {
        path += "/a";
    }
    EXPECT_TRUE(isQuick(path)) << "63 steps and the leaf";
    EXPECT_FALSE(isQuick(path + "/a"));
}

// --- What predicates keep ------------------------------------------------------------------------

/// Values that an attribute may have, among them such as a literal may be.
const std::vector<const char*> s_Values{"",    "1",   "2",  "5",      "05", "5.0", " 5 ", "'5'", "v",
                                        "x y", "-5",  ".",  "a=b",    "v ", "@a",  "{v}", "it",  "日本",
                                        "1e3", "x,y", "(v", "last()", "*",  "<>",  "&",   "or",  "\U0001F600"};
/// Names that the language uses otherwise, too.
const std::vector<const char*> s_Names{"a",        "id",     "or",    "and",       "div",     "mod",     "order",
                                       "android",  "divide", "model", "text",      "node",    "self",    "last",
                                       "position", "child",  "count", "attribute", "comment", "_x",      "x-y",
                                       "A1",       "not",    "true",  "id-5",      "string",  "parent-x"};

const std::vector<const char*> s_Comparisons{"=", "=", "=", "!=", "!=", "<", "<=", ">", ">="};
const std::vector<const char*> s_Numbers{"0", "1", "2", "5", "05", "5.0", "1.5", "0.50", "1000000"};

/// A parent with children that have one or two of the attributes.
std::unique_ptr<Node> makeList(RandomSource& io_Random, const char* i_Attribute)
{
    unsigned sequence = 0;
    auto pParent = std::make_unique<Node>(String("r"), nullptr, 1, 1, sequence);
    for (unsigned left = 1 + io_Random.below(6); left > 0; --left)
    {
        auto pAttributes = std::make_unique<AttributeTable>(8);
        if (!io_Random.oneIn(4))
        {
            pAttributes->add(String(i_Attribute), String(io_Random.pick(s_Values)), String::valueOf(++sequence));
        }
        pAttributes->add(String("other"), String(io_Random.pick(s_Values)), String::valueOf(++sequence));
        Node* pChild = new Node(String(io_Random.pick({"b", "c"})), pAttributes.release(), 1, 1, ++sequence);
        pParent->addChild(pChild);
        pChild->setParent(pParent.get());
        if (io_Random.oneIn(4))
        {
            pChild->addChild(new TextNode(String(io_Random.pick(s_Values)), 1, 1, ++sequence));
        }
    }
    return pParent;
}

std::string randomPlainPredicate(RandomSource& io_Random, const char* i_Name)
{
    const char* const pGap = io_Random.oneIn(4) ? " " : "";
    const std::string attribute = std::string("[") + pGap + "@" + i_Name + pGap;
    const char* const pQuote = io_Random.oneIn(2) ? "'" : "\"";
    switch (io_Random.below(5))
    {
    case 0:
        return attribute + "]";
    case 1:
        return attribute + io_Random.pick(s_Comparisons) + pGap + io_Random.pick(s_Numbers) + "]";
    case 2:
        return io_Random.pick(
            {"[1]", "[2]", "[3]", "[ 4 ]", "[last()]", "[ last() ]", "[position()=1]", "[position() = 3]"});
    default:
        return attribute + io_Random.pick(s_Comparisons) + pGap + pQuote + io_Random.pick(s_Values) + pQuote + pGap +
               "]";
    }
}

TEST(XPathDirectPredicate, KeepsWhatTheExpressionKeeps)
{
    RandomSource random(31);
    unsigned plain = 0;
    std::size_t kept = 0;
    for (int i = 0; i < 4000 * scale(); ++i)
    {
        const char* const pName = random.pick(s_Names);
        const String text(randomPlainPredicate(random, pName).c_str());
        const std::unique_ptr<Node> pParent = makeList(random, pName);
        NodeVector quick;
        XPathStep::listElementChildren(pParent.get(), quick);
        NodeVector expected = quick;
        XPathPredicate predicate(viewOf(text));
        plain += predicate.plan().isPlain() ? 1 : 0;
        const TErrorCode code = predicate.fiterNodes(quick);
        {
            const XPathQuickCode::Forbidden general;
            EXPECT_EQ(XPathPredicate(viewOf(text)).fiterNodes(expected), code) << text.toNarrow();
        }
        ASSERT_EQ(quick, expected) << text.toNarrow() << " on\n" << print(*pParent);
        kept += quick.size();
    }
    EXPECT_GT(plain, 3000U);
    EXPECT_GT(kept, 2000U);
}

// --- What they select ---------------------------------------------------------------------------

std::string randomPlainBranch(RandomSource& io_Random)
{
    std::string text = io_Random.pick({"", "/", "//", "//"});
    for (unsigned left = 1 + io_Random.below(4); left > 0; --left)
    {
        text += io_Random.pick({"a", "a", "b", "c", "*", "*", "node()", "child::a"});
        while (io_Random.oneIn(3))
        {
            text += io_Random.oneIn(3) ? randomPredicate(io_Random)
                                       : randomPlainPredicate(io_Random, io_Random.pick({"x", "y"}));
        }
        if (left > 1)
        {
            text += io_Random.pick({"/", "/", "//"});
        }
    }
    return text + io_Random.pick({"", "", "", "/@x", "/@x", "/@y", "//@x", "/text()", "/@x[1]", "/@*"});
}

std::string randomPlainPath(RandomSource& io_Random)
{
    std::string text = randomPlainBranch(io_Random);
    while (io_Random.oneIn(5))
    {
        text += "|" + randomPlainBranch(io_Random);
    }
    return text;
}

class DirectWalk : public testing::TestWithParam<unsigned>
{
};

TEST_P(DirectWalk, SelectsTheSameRecords)
{
    RandomSource random(GetParam());
    unsigned quick = 0;
    unsigned found = 0;
    for (int tree = 0; tree < 400 * scale(); ++tree)
    {
        const RandomTree document(random, 1 + random.below(14));
        for (int i = 0; i < 10; ++i)
        {
            const std::string path = randomPlainPath(random);
            // Also from within a tree, where the start has siblings and a parent.
            Node* pStart = random.oneIn(4) ? document.elements().back() : document.root();
            const std::string selected = selectRecords(pStart, String(path.c_str()));
            quick += isQuick(path) ? 1 : 0;
            const XPathQuickCode::Forbidden general;
            ASSERT_EQ(selected, selectRecords(pStart, String(path.c_str()))) << path << " on\n"
                                                                             << print(*document.root());
            found += !selected.empty() && !selected.starts_with("error") ? 1 : 0;
        }
    }
    EXPECT_GT(quick, 1000U);
    EXPECT_GT(found, 500U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, DirectWalk, testing::Values(41U, 42U, 43U));

/// What an operand selects from each element, as operands in a predicate do.
std::string selectedByOperand(const std::string& i_Path, const RandomTree& i_Document)
{
    XPathExpressionsParser parser{String(i_Path.c_str())};
    if (parser.status() != 0)
    {
        return "refused";
    }
    parser.setRootPosition(XPathExpression::OwnPlace);
    std::string text;
    for (Node* pNode : i_Document.elements())
    {
        XPathOutputList records;
        text += std::to_string(parser.runParser(pNode)) + "/" + std::to_string(parser.getValues(records)) + ": ";
        text += printRecords(records) + "\n";
    }
    return text;
}

TEST(XPathDirectWalk, SelectsTheSameFromEveryElement)
{
    RandomSource random(44);
    unsigned quick = 0;
    const int cases = 2000 * scale();
    for (int i = 0; i < cases; ++i)
    {
        const RandomTree document(random, 1 + random.below(14));
        const std::string path = random.oneIn(6) ? "@x" : randomPlainPath(random);
        const std::string selected = selectedByOperand(path, document);
        quick += isQuick(path) ? 1 : 0;
        const XPathQuickCode::Forbidden general;
        ASSERT_EQ(selected, selectedByOperand(path, document)) << path << " on\n" << print(*document.root());
    }
    EXPECT_GT(quick, static_cast<unsigned>(cases) / 4);
}

// --- Counting -----------------------------------------------------------------------------------

TEST(XPathDirectWalk, CountsWhatItWouldSelect)
{
    RandomSource random(61);
    unsigned counted = 0;
    for (int i = 0; i < 2000; ++i)
    {
        const RandomTree document(random, 1 + random.below(12));
        const String text(randomPlainPath(random).c_str());
        XPath path(text);
        std::size_t count = 0;
        if (!path.countValues(document.root(), count))
        {
            continue;
        }
        XPathOutputList records;
        ASSERT_EQ(path.getValues(document.root(), records), 0);
        ASSERT_EQ(count, records.size()) << text.toNarrow() << " on\n" << print(*document.root());
        counted += count > 0 ? 1 : 0;
    }
    EXPECT_GT(counted, 150U);
}

/// Whichever way the expression was compiled.
TEST(XPathDirectWalk, KnowsWhatIsOnlyCounted)
{
    struct Row
    {
        const char* expression;
        bool isOnlyCounted;
    };
    for (const Row& row : {Row{"count(//a)", true}, Row{"count(//a[b])", true}, Row{"count(//a) + 1", true},
                           Row{"sum(//a)", false}, Row{"//a", false}})
    {
        const XPathExpressionsParser parser{String(row.expression)};
        ASSERT_FALSE(parser.postfix().empty()) << row.expression;
        EXPECT_EQ(parser.postfix().front()->isOnlyCounted(), row.isOnlyCounted) << row.expression;
    }
}

std::string evaluated(Node* i_pRoot, const std::string& i_Expression)
{
    XPathExpressionsParser parser{String(i_Expression.c_str())};
    XPathOutputList records;
    TErrorCode code = parser.runParser(i_pRoot);
    if (code == 0)
    {
        code = parser.getValues(records);
    }
    return code != 0 ? "error " + std::to_string(code) : printRecords(records);
}

/// Only the argument of count() is not made, and not when it is wanted for something else as well.
TEST(XPathDirectWalk, CountsInExpressions)
{
    RandomSource random(62);
    const RandomTree document(random, 40);
    for (const char* pExpression : {"count(//a)",
                                    "count(//a/@x)",
                                    "count(//none)",
                                    "count(/a)",
                                    "count(//a) + count(//b)",
                                    "count(//a|//b)",
                                    "//a[count(b)=1]",
                                    "//*[count(@x)=1]/@x",
                                    "count(//*[count(*)>1])",
                                    "count(//a) > count(//c)",
                                    "count()",
                                    "//a + count()",
                                    "count(//a, //b)",
                                    "sum(//*/@x)",
                                    "count(count(//a))",
                                    "(count(//a))",
                                    "count(//a/..)",
                                    "count('a')",
                                    "//a/@x = count(//none)",
                                    "not(count(//a))",
                                    "string(count(//a/@x))",
                                    "count(//a) | //b"})
    {
        const std::string quick = evaluated(document.root(), pExpression);
        const XPathQuickCode::Forbidden general;
        EXPECT_EQ(quick, evaluated(document.root(), pExpression)) << pExpression;
    }
}

// --- Trees with shared names ---------------------------------------------------------------------

/// A tree as a parse makes it, where all elements of a name share its entry, with texts between them
/// that are names as well.
class ParsedTree final : private NodeSink
{
public:
    ParsedTree(RandomSource& io_Random, unsigned i_Elements)
    {
        DefaultSAXHandler handler(this, 0);
        unsigned sequence = 0;
        for (unsigned left = i_Elements; left > 0; --left)
        {
            while (handler.depth() > 1 && io_Random.oneIn(3))
            {
                handler.endElement(String());
            }
            auto pAttributes = std::make_unique<AttributeTable>(1);
            if (io_Random.oneIn(2))
            {
                pAttributes->add(String("x"), String(io_Random.pick({"1", "a"})), String::valueOf(++sequence));
            }
            const String name(io_Random.pick({"a", "a", "b", "c"}));
            handler.startElement(name, pAttributes.release(), 1, 1, ++sequence);
            if (io_Random.oneIn(3))
            {
                handler.characters(String(io_Random.pick({"a", "b", "t"})), 1, 1, ++sequence);
            }
        }
        while (handler.depth() > 0)
        {
            handler.endElement(String());
        }
    }

    Node* root() const { return m_pRoot.get(); }

private:
    TErrorCode setRoot(Node* i_pRoot) override
    {
        m_pRoot.reset(i_pRoot);
        return 0;
    }

    std::unique_ptr<Node> m_pRoot;
};

TEST(XPathDirectWalk, SelectsAndCountsTheSameWhereNamesAreShared)
{
    RandomSource random(71);
    unsigned found = 0;
    for (int i = 0; i < 200; ++i)
    {
        const ParsedTree document(random, 1 + random.below(20));
        for (const std::string path : {"//a", "//b", "//none", "//*", "//node()", "//a/@x", "//a/text()", "//a//a",
                                       "//a/b", "/a/*", "//a[@x='1']", "//*[@x=1]/@x", "//a[2]", "/*"})
        {
            const std::string selected = selectRecords(document.root(), String(path.c_str()));
            const std::string counted = evaluated(document.root(), "count(" + path + ")");
            const XPathQuickCode::Forbidden general;
            ASSERT_EQ(selected, selectRecords(document.root(), String(path.c_str()))) << path << " on\n"
                                                                                      << print(*document.root());
            ASSERT_EQ(counted, evaluated(document.root(), "count(" + path + ")")) << path << " on\n"
                                                                                  << print(*document.root());
            found += selected.empty() ? 0 : 1;
        }
    }
    EXPECT_GT(found, 1000U);
}

// --- What needs the general code ------------------------------------------------------------------

/// Where a name is read as an axis and a name, the general code answers.
TEST(XPathDirectWalk, GivesWayToNamesWithColons)
{
    unsigned found = 0;
    for (const char* pName : {"x::b", "b::", "b", "child::b"})
    {
        for (const char* pPath : {"//*[@x]/@x", "//*[@x]", "/r/*[@x='1']/b/@x", "//b[@x]/@x", "//*[1]/@x", "r[@x]//b"})
        {
            auto pRoot = std::make_unique<Node>(String("r"), nullptr, 1, 1, 1);
            auto pAttributes = std::make_unique<AttributeTable>(8);
            pAttributes->add(String("x"), String("1"), String("2"));
            Node* pOuter = new Node(String(pName), pAttributes.release(), 1, 1, 3);
            pAttributes = std::make_unique<AttributeTable>(8);
            pAttributes->add(String("x"), String("2"), String("4"));
            Node* pInner = new Node(String("b"), pAttributes.release(), 1, 1, 5);
            pRoot->addChild(pOuter);
            pOuter->setParent(pRoot.get());
            pOuter->addChild(pInner);
            pInner->setParent(pOuter);

            const std::string selected = selectRecords(pRoot.get(), String(pPath));
            const XPathQuickCode::Forbidden general;
            EXPECT_EQ(selected, selectRecords(pRoot.get(), String(pPath))) << pPath << " with " << pName;
            found += selected.empty() ? 0 : 1;
        }
    }
    EXPECT_GT(found, 6U);
}

/// Without parent pointers every node counts as alone.
TEST(XPathDirectWalk, CountsPlacesInACopyAsTheExpressionDoes)
{
    RandomSource random(51);
    for (int i = 0; i < 300; ++i)
    {
        const RandomTree document(random, 1 + random.below(12));
        const std::unique_ptr<Node> pCopy(document.root()->clone());
        const std::string path = randomPlainPath(random) + "/@x";
        const std::string selected = selectRecords(pCopy.get(), String(path.c_str()));
        const XPathQuickCode::Forbidden general;
        ASSERT_EQ(selected, selectRecords(pCopy.get(), String(path.c_str()))) << path << " on\n" << print(*pCopy);
    }
}

// --- Growth -------------------------------------------------------------------------------------

/// Elements of one name nested \p i_Depth deep, each with a sibling.
std::unique_ptr<Node> makeDeep(unsigned i_Depth)
{
    unsigned sequence = 1;
    auto pRoot = std::make_unique<Node>(String("a"), nullptr, 1, 1, sequence);
    Node* pParent = pRoot.get();
    for (unsigned depth = 0; depth < i_Depth; ++depth)
    {
        for (const char* pName : {"c", "a"})
        {
            Node* pChild = new Node(String(pName), nullptr, 1, 1, ++sequence);
            pParent->addChild(pChild);
            pChild->setParent(pParent);
        }
        pParent = pParent->children().back();
    }
    return pRoot;
}

/// A walk that came to a node once for each way to it would not end.
TEST(XPathDirectWalk, VisitsANodeOnceHoweverManyWaysLeadThere)
{
    constexpr unsigned depth = 20000;
    const std::unique_ptr<Node> pRoot = makeDeep(depth);
    XPath path(String("//a//a//a//a[1]//c"));
    XPathOutputList records;
    ASSERT_EQ(path.getValues(pRoot.get(), records), 0);
    EXPECT_EQ(records.size(), std::size_t{depth - 3}) << "below four elements and more";
}

/// Each place is found without a look at all siblings before it.
TEST(XPathDirectWalk, FindsPlacesAmongManySiblings)
{
    constexpr unsigned count = 200000;
    auto pRoot = std::make_unique<Node>(String("r"), nullptr, 1, 1, 1);
    for (unsigned i = 0; i < count; ++i)
    {
        Node* pChild = new Node(String(i % 2 == 0 ? "a" : "b"), nullptr, 1, 1, i + 2);
        pRoot->addChild(pChild);
        pChild->setParent(pRoot.get());
    }
    EXPECT_EQ(select(pRoot.get(), "r/a[last()]"), "a#" + std::to_string(count));
    EXPECT_EQ(select(pRoot.get(), "//b[last()]"), "b#" + std::to_string(count + 1));
    EXPECT_EQ(select(pRoot.get(), "r/b[position()=2]"), "b#5");
    EXPECT_EQ(select(pRoot.get(), "r/*[200000]"), "b#" + std::to_string(count + 1));
}

} // namespace
