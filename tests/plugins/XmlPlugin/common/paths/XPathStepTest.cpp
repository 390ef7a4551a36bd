#include "paths/XPathStep.h"

#include "QuerySupport.h"
#include "common/xmlproxy/TestTrees.h"
#include "paths/XPathPredicate.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <memory_resource>
#include <string>

using namespace XmlPlugin;

namespace
{

/// A step with all that it needs.
class OwnStep
{
public:
    explicit OwnStep(const char* i_Text, unsigned i_Type = XPathStep::mid, const char* i_PreviousText = "")
        : m_Text(i_Text),
          m_PreviousText(i_PreviousText),
          m_Code(XPathStep::create({viewOf(m_Text), viewOf(m_PreviousText)}, i_Type, m_Memory, m_pStep))
    {
    }

    TErrorCode code() const { return m_Code; }
    XPathStep* get() const { return m_pStep.get(); }
    XPathStep* operator->() const { return m_pStep.get(); }
    XPathStep& operator*() const { return *m_pStep; }

private:
    const String m_Text;
    const String m_PreviousText;
    std::pmr::monotonic_buffer_resource m_Memory;
    XPathStepPointer m_pStep;
    const TErrorCode m_Code;
};

// --- Cutting ------------------------------------------------------------------------------------

struct CutRow
{
    const char* text;
    const char* expected; ///< `axis name`, then the predicates; or "error CODE"
};

const CutRow s_Cuts[] = {
    {"a", "1 a"},
    {"*", "1 *"},
    {"node()", "1 node()"},
    {"text()", "1 text()"},
    {"ns:a", "1 ns:a"},
    {"@a", "0 a"},
    {"@*", "0 *"},
    {"..", "11 *"},
    {".", "3 *"},
    {"attribute::a", "0 a"},
    {"child::a", "1 a"},
    {"descendant::a", "2 a"},
    {"self::a", "3 a"},
    {"descendant-or-self::a", "4 a"},
    {"following::a", "5 a"},
    {"preceding::a", "6 a"},
    {"ancestor::a", "7 a"},
    {"ancestor-or-self::a", "8 a"},
    {"following-sibling::a", "9 a"},
    {"preceding-sibling::a", "10 a"},
    {"parent::a", "11 a"},
    {"namespace::a", "1 a"},
    {"foo::a", "1 a"},
    {"Parent::a", "1 a"},
    {"::a", "1 a"},
    {"@::a", "1 a"},
    {"parent::a::b", "11 a::b"},
    {"parent::@a", "11 @a"},
    {"  a  ", "1 a"},
    {" @ a ", "0 a"},
    {" parent :: a ", "11 a"},
    {" .. ", "11 *"},
    {"a[1]", "1 a [1]"},
    {" a [1] ", "1 a [1]"},
    {"a[1][@x='2']", "1 a [1] [@x='2']"},
    {"..[1]", "11 * [1]"},
    {".[1]", "3 * [1]"},
    {"@a[1]", "0 a [1]"},
    {"parent::a[b]", "11 a [b]"},
    {"a[parent::b]", "1 a [parent::b]"},
    {"a[]", "1 a []"},
    {"a[b[1]]", "1 a [b[1] [1]"},
    {"a[b[1", "error -15101"},
    {"a[[1]", "1 a [[1] [1]"},
    {"a[1]x", "1 a [1]"},
    {"a[1]]", "1 a [1]"},
    {"a[']']", "1 a [']"},
    {"", "error -15100"},
    {"   ", "error -15100"},
    {"a[1", "error -15101"},
    {"a[", "error -15101"},
    {"a]", "error -15101"},
    {"]", "error -15101"},
    {"[", "error -15101"},
    {"[1]", "error -15101"},
    {"[1][2]", "error -15101"},
    {"a][", "error -15101"},
    {"a][1]", "1 a] [1]"},
    {"a[1][2", "error -15101"},
    {"@", "error -15101"},
    {"@ ", "error -15101"},
    {"child::", "error -15101"},
    {"child::[1]", "error -15101"},
    {"::", "error -15101"},
};

TEST(XPathStep, CutsAText)
{
    for (const CutRow& row : s_Cuts)
    {
        const OwnStep step(row.text);
        std::string text = "error " + std::to_string(step.code());
        EXPECT_EQ(step.get() == nullptr, step.code() != 0) << row.text;
        if (step.get())
        {
            text = std::to_string(step->axis()) + " " + step->name().toNarrow();
            for (const XPathPredicate& predicate : step->predicates())
            {
                text += " " + predicate.expression().toNarrow();
            }
            EXPECT_EQ(step->hasPredicates(), !step->predicates().empty()) << row.text;
            EXPECT_FALSE(step->isDeep()) << row.text;
        }
        EXPECT_EQ(text, row.expected) << row.text;
    }
}

TEST(XPathStep, KeepsItsPlaceInTheBranch)
{
    for (const unsigned type : {XPathStep::root, XPathStep::mid, XPathStep::leaf})
    {
        const OwnStep step("b", type, " a[1] ");
        ASSERT_EQ(step.code(), 0);
        EXPECT_EQ(step->type(), type);
        EXPECT_EQ(step->previousText().toNarrow(), " a[1] ");
        EXPECT_EQ(dynamic_cast<XPathLeafStep*>(step.get()) != nullptr, type == XPathStep::leaf);
    }
}

TEST(XPathStep, LeavesNoStepOfAnEarlierCallBehind)
{
    std::pmr::monotonic_buffer_resource memory;
    XPathStepPointer pStep;
    ASSERT_EQ(XPathStep::create({L"b", L""}, XPathStep::root, memory, pStep), 0);
    EXPECT_EQ(XPathStep::create({L"b[", L""}, XPathStep::root, memory, pStep), XML_PLUGIN_ERROR_XPATH_MALFORMED_STEP);
    EXPECT_EQ(pStep, nullptr);
}

TEST(XPathStepDeathTest, AnotherTypeIsAnAssertionFailure)
{
    EXPECT_DEATH(OwnStep("a", 3), "i_StepType == root \\|\\| i_StepType == mid \\|\\| i_StepType== leaf");
}

// --- Node test, candidates and filters ----------------------------------------------------------

/// Names with the places among all children; a marked one in parentheses.
std::string print(const NodeVector& i_Nodes)
{
    std::string text;
    for (const Node* pNode : i_Nodes)
    {
        text += (text.empty() ? "" : " ") + pNode->name().toNarrow() + std::to_string(pNode->sequence());
    }
    return text;
}

std::string print(const std::vector<MarkedNode>& i_Nodes)
{
    std::string text;
    for (const MarkedNode& node : i_Nodes)
    {
        const std::string name = node.m_pNode->name().toNarrow() + std::to_string(node.m_pNode->sequence());
        text += (text.empty() ? "" : " ") + (node.m_IsMarked ? "(" + name + ")" : name);
    }
    return text;
}

TEST(XPathStep, MatchesByNameOnly)
{
    const TestDocument document("<a/>");
    const TextNode text(String(L"a"), 1, 1, 1);
    struct Row
    {
        const char* step;
        bool isMatch;
    };
    for (const Row& row : {Row{"a", true}, Row{"*", true}, Row{"node()", true}, Row{"@a", true}, Row{"parent::a", true},
                           Row{"b", false}, Row{"A", false}, Row{"text()", false}, Row{"a[false()]", true}})
    {
        EXPECT_EQ(OwnStep(row.step)->matches(*document.root()), row.isMatch) << row.step;
        EXPECT_EQ(OwnStep(row.step)->matches(text), row.isMatch) << row.step;
    }
}

struct FilterRow
{
    const char* step;
    const char* filtered;
    const char* marked;
    TErrorCode code;
};

const FilterRow s_Filters[] = {
    {"b", "b2 c3 b5 b6", "b2 c3 b5 b6", 0},
    {"x", "b2 c3 b5 b6", "b2 c3 b5 b6", 0},
    {"b[@x]", "b2 b5", "b2 c3 b5 (b6)", 0},
    {"*[@x]", "b2 b5", "b2 (c3) b5 (b6)", 0},
    {"node()[@x]", "b2 b5", "b2 (c3) b5 (b6)", 0},
    {"b[2]", "b5", "(b2) c3 b5 (b6)", 0},
    {"*[2]", "c3", "(b2) c3 (b5) (b6)", 0},
    {"c[1]", "c3", "b2 c3 b5 b6", 0},
    {"x[1]", "", "b2 c3 b5 b6", 0},
    {"b[@x][2]", "b5", "(b2) c3 b5 (b6)", 0},
    {"b[2][@x]", "b5", "(b2) c3 b5 (b6)", 0},
    {"b[3][@x]", "", "(b2) c3 (b5) (b6)", 0},
    {"b[false()]", "", "(b2) c3 (b5) (b6)", 0},
    {"b[]", "b2 b5 b6", "(b2) c3 (b5) (b6)", XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION},
    {"x[]", "", "b2 c3 b5 b6", XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION},
    {"b[false()][]", "", "(b2) c3 (b5) (b6)", XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION},
    {"b[@x][]", "b2 b5", "(b2) c3 (b5) (b6)", XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION},
    {"b[local-name()]", "", "(b2) c3 (b5) (b6)", XML_ERROR_NOT_IMPLEMENTED},
    {"b[local-name()][@x]", "", "(b2) c3 (b5) (b6)", XML_ERROR_NOT_IMPLEMENTED},
    {"b[+]", "", "(b2) c3 (b5) (b6)", XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED},
};

TEST(XPathStep, FiltersAndMarks)
{
    const TestDocument document(R"(<a><b x="1"/><c/><b x="2"/><b/></a>)");
    NodeVector children;
    ASSERT_EQ(XPathStep::listElementChildren(document.root(), children), 0);
    ASSERT_EQ(print(children), "b2 c3 b5 b6");
    for (const FilterRow& row : s_Filters)
    {
        NodeVector nodes = children;
        EXPECT_EQ(OwnStep(row.step)->filter(nodes), row.code) << row.step;
        EXPECT_EQ(print(nodes), row.filtered) << row.step;
        EXPECT_EQ(print(OwnStep(row.step)->mark(children)), row.marked) << row.step;

        EXPECT_EQ(OwnStep(row.step)->listCandidates(document.root(), nodes), row.code) << row.step;
        EXPECT_EQ(print(nodes), row.code == 0 ? row.filtered : "") << row.step;
        EXPECT_EQ(OwnStep(row.step, XPathStep::root)->listCandidates(document.root(), nodes), 0) << row.step;
        EXPECT_EQ(print(nodes), "b2 c3 b5 b6") << row.step;
        EXPECT_EQ(OwnStep(row.step, XPathStep::leaf)->listCandidates(document.root(), nodes), 0) << row.step;
        EXPECT_TRUE(nodes.empty()) << row.step;
    }
}

TEST(XPathStep, NodeOperationsNeedANode)
{
    NodeVector nodes(1, nullptr);
    EXPECT_EQ(XPathStep::listElementChildren(nullptr, nodes), XML_ERROR_NULL_ARGUMENT);
    EXPECT_TRUE(nodes.empty());
    nodes.assign(1, nullptr);
    EXPECT_EQ(OwnStep("a")->listCandidates(nullptr, nodes), XML_ERROR_NULL_ARGUMENT);
    EXPECT_TRUE(nodes.empty());
    const TextNode text(String(L"a"), 1, 1, 1);
    const Node* pText = &text;
    EXPECT_EQ(XPathStep::findTextChild(nullptr, pText), XML_ERROR_NULL_ARGUMENT);
    EXPECT_EQ(pText, nullptr);
    XPathOutputList records;
    XPathOutputCollector output(records);
    EXPECT_EQ(OwnStep("@a", XPathStep::leaf)->evaluate(nullptr, output), XML_ERROR_NULL_ARGUMENT);
    EXPECT_EQ(output.size(), 0U);
}

// --- Values -------------------------------------------------------------------------------------

/// <a x="1" y="" z="3">one<b/>two</a>: x 1, y 2, z 3, a 4, "one" 5, b 6, "two" 7.
std::unique_ptr<Node> makeTreeWithText()
{
    XmlNodeSink sink;
    DefaultSAXHandler handler(&sink, 0);
    auto pAttributes = std::make_unique<AttributeTable>(8);
    pAttributes->add(String(L"x"), String(L"1"), String(L"1"));
    pAttributes->add(String(L"y"), String(L""), String(L"2"));
    pAttributes->add(String(L"z"), String(L"3"), String(L"3"));
    handler.startDocument();
    handler.startElement(String(L"a"), pAttributes.release(), 1, 1, 4);
    handler.characters(String(L"one"), 1, 1, 5);
    handler.startElement(String(L"b"), nullptr, 1, 1, 6);
    handler.endElement(String(L"b"));
    handler.characters(String(L"two"), 1, 1, 7);
    handler.endElement(String(L"a"));
    handler.endDocument();
    return std::unique_ptr<Node>(sink.release());
}

struct LeafRow
{
    const char* step;
    const char* ofA;
    const char* ofB;
};

const LeafRow s_Leaves[] = {
    {"text()", "5|one|one|a\n", "error -15104"},
    {"@x", "1|1|1|a\n", "error -15104"},
    {"@y", "2|||a\n", "error -15104"},
    {"attribute::z", "3|3|3|a\n", "error -15104"},
    {"@w", "error -15104", "error -15104"},
    {"@*", "4|1|1|a\n5|||a\n6|3|3|a\n", ""},
    {"@node()", "error -15104", "error -15104"},
    {"endfunction()", "4|one||a\n", "6|||b\n"},
    {"anything", "4|one||a\n", "6|||b\n"},
    {"self::text()", "4|one||a\n", "6|||b\n"},
    {"@x[false()]", "1|1|1|a\n", "error -15104"},
};

std::string evaluate(XPathStep& i_Step, const Node& i_Node)
{
    XPathOutputList records;
    XPathOutputCollector output(records);
    if (const TErrorCode code = i_Step.evaluate(&i_Node, output); code != 0)
    {
        return "error " + std::to_string(code);
    }
    std::string text;
    for (const XPathOutputElement* pRecord : records)
    {
        text += std::to_string(pRecord->m_OrderKey) + "|" + pRecord->m_NodeText.toNarrow() + "|" +
                pRecord->m_Value.toNarrow() + "|" + pRecord->m_pNode->name().toNarrow() + "\n";
    }
    return text;
}

TEST(XPathStep, TheLeafAddsTheValuesOfANode)
{
    const std::unique_ptr<Node> pRoot = makeTreeWithText();
    NodeVector children;
    ASSERT_EQ(XPathStep::listElementChildren(pRoot.get(), children), 0);
    ASSERT_EQ(print(children), "b6");
    for (const LeafRow& row : s_Leaves)
    {
        EXPECT_EQ(evaluate(*OwnStep(row.step, XPathStep::leaf), *pRoot), row.ofA) << row.step;
        EXPECT_EQ(evaluate(*OwnStep(row.step, XPathStep::leaf), *children.front()), row.ofB) << row.step;
        EXPECT_EQ(evaluate(*OwnStep(row.step, XPathStep::root), *pRoot), "error -15104") << row.step;
    }
}

TEST(XPathStep, TheLeafAddsTextsAndNodesOnceAndAttributesEachTime)
{
    const std::unique_ptr<Node> pRoot = makeTreeWithText();
    struct Row
    {
        const char* step;
        std::size_t count;
    };
    for (const Row& row : {Row{"text()", 1}, Row{"endfunction()", 1}, Row{"@x", 2}, Row{"@*", 6}})
    {
        const OwnStep step(row.step, XPathStep::leaf);
        XPathOutputList records;
        XPathOutputCollector output(records);
        EXPECT_EQ(step->evaluate(pRoot.get(), output), 0);
        EXPECT_EQ(step->evaluate(pRoot.get(), output), 0);
        EXPECT_EQ(output.size(), row.count) << row.step;
    }
}

} // namespace
