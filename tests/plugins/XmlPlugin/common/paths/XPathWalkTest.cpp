#include "paths/XPathWalk.h"

#include "PathSupport.h"
#include "QuerySupport.h"
#include "RecordedTrace.h"
#include "common/xmlproxy/TestTrees.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace XmlPlugin;

namespace
{

struct Row
{
    const char* name;
    const char* path;
    const char* expected;
};

void expectAll(const char* i_Document, std::initializer_list<Row> i_Rows)
{
    const TestDocument document(i_Document);
    for (const Row& row : i_Rows)
    {
        EXPECT_EQ(select(document.root(), row.path), row.expected) << row.name << ": " << row.path;
    }
}

/// Element numbers: r 0, a 1, b 2, d 3, e 4, c 5, a 6, b 7.
constexpr const char* s_Plain = "<r><a><b><d/><e/></b><c/></a><a><b/></a></r>";

TEST(XPathWalk, GoesAlongEveryAxis)
{
    expectAll(s_Plain, {
                           {"child", "r/child::a", "a#1 a#6"},
                           {"descendant", "r/descendant::b", "b#2 b#7"},
                           {"descendant_any", "r/a/descendant::*", "b#2 d#3 e#4 c#5 b#7"},
                           {"descendant_without_itself", "r/a/descendant::a", "-"},
                           {"descendant_or_self", "r/a/descendant-or-self::*", "a#1 b#2 d#3 e#4 c#5 a#6 b#7"},
                           {"descendant_or_self_name", "r/a/b/descendant-or-self::b", "b#2 b#7"},
                           {"self_goes_to_children_too", "r/a/self::a", "a#1 a#6"},
                           {"self_any_goes_to_children_too", "r/a/self::*", "a#1 b#2 c#5 a#6 b#7"},
                           {"self_of_another_name_takes_children", "r/a/self::b", "b#2 b#7"},
                           {"dot", "r/a/b/.", "b#2 d#3 e#4 b#7"},
                           {"parent", "r/a/b/parent::a", "a#1 a#6"},
                           {"parent_any", "r/a/b/parent::*", "a#1 a#6"},
                           {"parent_one_level", "r/a/b/d/parent::a", "-"},
                           {"parent_node_test_is_a_name", "r/a/b/parent::node()", "-"},
                           {"dots", "r/a/b/d/..", "b#2"},
                           {"dots_twice", "r/a/b/d/../..", "a#1"},
                           {"parent_of_the_root", "r/..", "-"},
                           {"ancestor", "r/a/b/d/ancestor::*", "r#0 a#1 b#2"},
                           {"ancestor_name", "r/a/b/d/ancestor::a", "a#1"},
                           {"ancestor_or_self", "r/a/b/d/ancestor-or-self::*", "r#0 a#1 b#2 d#3"},
                           {"following", "r/a/b/d/following::*", "e#4 c#5 a#6 b#7"},
                           {"following_name", "r/a/b/d/following::b", "b#7"},
                           {"following_searches_below", "r/a/following::b", "b#7"},
                           {"preceding", "r/a/c/preceding::*", "b#2 d#3 e#4"},
                           {"preceding_name", "r/a/b/preceding::d", "d#3"},
                           {"following_of_the_root", "r/following::*", "-"},
                           {"following_sibling", "r/a/b/following-sibling::*", "c#5"},
                           {"following_sibling_leaf_is_not_name_tested", "r/a/b/following-sibling::x", "c#5"},
                           {"preceding_sibling", "r/a/c/preceding-sibling::*", "b#2"},
                           {"preceding_sibling_leaf_is_not_name_tested", "r/a/preceding-sibling::x", "a#1"},
                           {"siblings_of_the_root", "r/following-sibling::*", "-"},
                           {"sibling_step_tests_the_parent", "r/a/b/d/following-sibling::b/d", "d#3"},
                           {"sibling_step_does_not_test_the_sibling", "r/a/b/d/following-sibling::e/d", "-"},
                           {"sibling_step_without_siblings", "r/a/b/e/following-sibling::b/d", "-"},
                           {"attribute_step_goes_to_children", "r/@a/b", "b#2 b#7"},
                           {"attribute_step_hands_nothing_to_the_leaf", "r/@a", "-"},
                           {"unknown_axis", "r/namespace::a", "a#1 a#6"},
                           {"walker_before_a_text_leaf", "r/a/self::text()", "-"},
                           {"deep_and_descendant", "r//b", "b#2 b#7"},
                           {"deep_twice", "//a//*", "b#2 d#3 e#4 c#5 b#7"},
                           {"deep_root", "//r", "r#0"},
                           {"two_routes_one_record", "//*/ancestor::a", "a#1 a#6"},
                       });
}

TEST(XPathWalk, MarksWhatPredicatesDrop)
{
    // r 1; a(x) 3; b 4; a 5; a(x) 7; c(x) 9; c(x) 11
    expectAll("<r><a x='1'><b/></a><a><a x='2'><c x='3'/></a></a><c x='4'/></r>",
              {
                  {"deep_goes_on_below_a_dropped_node", "r//a[@x]/c/@x", "3"},
                  {"nothing_through_a_dropped_node", "r/a[b]/c/@x", "-"},
                  {"parent_rule", "r//a[@x]/@x", "1"},
                  {"parent_rule_of_the_root", "//*[@x]/@x", "3"},
                  {"parent_rule_needs_deep", "r/descendant::a[@x]/@x", "1 2"},
                  {"parent_rule_is_the_leafs_only", "//*[@x]/c/@x", "3"},
                  {"ancestor", "//c/ancestor::a[@x]/@x", "2"},
                  {"parent", "//c/parent::*[@x]/@x", "2"},
                  {"parent_drops", "r/c/parent::r[@x]/a/@x", "-"},
                  {"following_sibling", "r/a/following-sibling::c[@x='4']/@x", "4"},
                  {"following_sibling_drops", "r/a/following-sibling::c[@x='3']/@x", "-"},
                  {"sibling_of_another_name_is_not_filtered", "r/c/preceding-sibling::x[false()]/@x", "1"},
                  {"following", "r/a/following::c[@x]/@x", "3 4"},
                  {"preceding", "r/c/preceding::a[@x]/@x", "1 2"},
                  {"self_drops_itself", "r/a/self::a[@x]/@x", "1 2"},
                  {"root_drops", "r[@x]/a/@x", "-"},
                  {"leaf_predicate_without_effect", "r/c/@x[false()]", "4"},
                  {"leaf_predicate_error_without_effect", "r/c/@x[]", "4"},
              });
}

TEST(XPathWalk, OfTwoRecordsWithOneKeyTheFirstStays)
{
    // x 1, y 2, r 3; x 4, a 5; x 6, b 7
    expectAll("<r x='r1' y='r2'><a x='a1'/><b x='b1'/></r>",
              {
                  {"all_attributes_of_one", "r/@*", "r1 r2"},
                  {"attribute_step_alone", "//@*", "-"},
                  {"all_attributes_of_all", "//*/@*", "r1 r2 a1 b1"},
                  {"first_of_the_union", "r/@* | r/a/@x", "r1 r2"},
                  {"first_of_the_union_reversed", "r/a/@x | r/@*", "r1 a1"},
                  {"meets_a_whole_node", "r | r/@*", "r#2 r2"},
                  {"meets_a_whole_node_reversed", "r/@* | r", "r1 r2"},
              });
}

TEST(XPathWalk, ErrorsUnderWalkersComeToNothing)
{
    const char* const document = "<r><a n='1'><b/></a><a n='2'/></r>";
    expectAll(document, {
                            {"child", "r/a[]/@n", "error -15106"},
                            {"child_below", "r/a/b[]/@n", "error -15106"},
                            {"self", "r/self::r/a[]/@n", "error -15106"},
                            {"self_own_predicate", "r/self::r[]/@n", "error -15106"},
                            {"deep", "r//a[]/@n", "-"},
                            {"descendant", "r/descendant::a[]/@n", "error -15106"},
                            {"descendant_children_are_outside", "r/a/descendant::b/x[]/@n", "error -15106"},
                            {"ancestor_below", "r/a/ancestor::r/a[]/@n", "-"},
                            {"malformed_behind_parent", "r/a/parent::r/x[", "-"},
                            {"following_below", "r/a/following::a/b[]/@n", "-"},
                            {"sibling_below", "r/a/following-sibling::r/a[]/@n", "-"},
                            {"malformed_below_a_walker", "r/a/ancestor::r/a/x[/y", "-"},
                            {"others_go_on", "r/a/ancestor::r/a/b[local-name()]/@n | r/a/@n", "1 2"},
                        });
}

// --- Traces -------------------------------------------------------------------------------------

struct TraceRow
{
    const char* path;
    const char* record; ///< scope, level and text with bars between; "~" stands for the scope of a step
};

TEST(XPathWalk, SaysWhereItGoes)
{
    constexpr const char* const stepScope =
        "XPath::evaluateStep(Node*, unsigned int, std::list<XPathOutputElement *> &)";
    const TestDocument document("<r x='1'><a x='2'><b/></a><a><b x='3'/></a></r>");
    const TraceRow rows[] = {
        {"r/a", "~|3|i_StepPosition = 0 i_absoluteDeepSearch = false i_StepPositionMax = 2"},
        {"r/descendant::b", "~|3|i_StepPosition = 1 i_absoluteDeepSearch = true i_StepPositionMax = 2"},
        {"r/a", "~|3|Evaluating node [a]"},
        {"r/a", "~|3|Step matched against node [a]"},
        {"r/a", "~|3|Step name = a"},
        {"r/a", "~|3|Evaluating descendant of node [r]"},
        {"r/a[1]", "~|3|Evaluate step"},
        {"r/a", "~|3|Node match. EvaluateNode"},
        {"r/a", "~|3|Evaluate result = 0"},
        {"r/a/@x", "~|3|Last added element = 2"},
        {"r/a/@x", "~|3|Evaluate result = -15104"},
        {"r/a/@x", "~|3|Node [a] has no value "},
        {"r/a[]/b", "~|1|Unable to get descendants from node [r]"},
        {"r/a/ancestor::*", "XPath::ancestorStep|3|step != NULL"},
        {"r/a/ancestor::*", "XPath::ancestorStep|3|evaluateNode"},
        {"r/a/ancestor::r/a", "XPath::ancestorStep|3|evaluateStep"},
        {"r/a/..", "XPath::ancestorStep|3|parent"},
        {"r/a/following-sibling::*", "XPath::siblingsStep|3|XPath::siblingsStep"},
        {"r/a/following-sibling::*", "XPath::siblingsStep|3| evaluate Node "},
        {"r/a/preceding-sibling::r/a", "XPath::siblingsStep|3| evaluate Step "},
        {"r/a/b/following::b", "XPath::followprescStep|3|node matched"},
        {"r/a/b/preceding::b", "XPath::followprescStep|3|node matched"},
        {"r/descendant::b", "XPath::descendantStep|3|descendant"},
        {"r/.", "XPath::selfStep|3|XPath::selfStep"},
        {"r/a", "XPath::prevPredicateCheck|3|XPath::prevPredicateCheck"},
        {"//a", "XPath::isParentNodeMarked(MarkedNode i_Node)|3|result = false"},
        {"//*[b]", "XPath::isParentNodeMarked(MarkedNode i_Node)|3|result = true"},
    };
    for (const TraceRow& row : rows)
    {
        RecordedTrace trace;
        select(document.root(), row.path);
        std::string record = row.record;
        if (record.starts_with('~'))
        {
            record.replace(0, 1, stepScope);
        }
        const std::size_t scopeEnd = record.find('|');
        const std::string begin = "5|" + record.substr(0, scopeEnd + 3); // behind the level
        const std::string text = record.substr(scopeEnd + 2);
        EXPECT_TRUE(std::any_of(trace.lines.begin(), trace.lines.end(),
                                [&](const std::string& i_Line)
                                { return i_Line.starts_with(begin) && i_Line.ends_with(text); }))
            << row.path << ": " << row.record;
    }
}

/// The records that say where the walk goes, and nothing else of it.
std::vector<std::string> wayOf(const RecordedTrace& i_Trace)
{
    static const std::vector<std::string> texts = {"Evaluating node [",
                                                   "Evaluating descendant of node [",
                                                   "Evaluate step",
                                                   "Node match. EvaluateNode",
                                                   "evaluateNode",
                                                   "evaluateStep",
                                                   "parent",
                                                   " evaluate Node ",
                                                   " evaluate Step ",
                                                   "pParent != NUL",
                                                   "node matched",
                                                   "follownig",
                                                   "prev"};
    std::vector<std::string> way;
    for (const std::string& line : i_Trace.lines)
    {
        const std::string text = line.substr(line.rfind('|') + 1);
        if (std::any_of(texts.begin(), texts.end(),
                        [&](const std::string& i_Start) { return text.starts_with(i_Start); }))
        {
            way.push_back(text);
        }
    }
    return way;
}

struct WayRow
{
    const char* path;
    std::vector<std::string> way;
};

TEST(XPathWalk, SaysInWhichOrderItGoes)
{
    const TestDocument document("<r x='1'><a x='2'><b/></a><a><b x='3'/></a></r>");
    const std::string r = "Evaluating node [r]";
    const std::string a = "Evaluating node [a]";
    const std::string b = "Evaluating node [b]";
    const std::string belowB = "Evaluating descendant of node [b]";
    const std::string belowA = "Evaluating descendant of node [a]";
    const std::string belowR = "Evaluating descendant of node [r]";
    const std::string step = "Evaluate step";
    const std::string leaf = "Node match. EvaluateNode";
    const WayRow rows[] = {
        {"r/a", {r, belowR, step, a, leaf, step, a, leaf}},
        {"r/a[2]", {r, belowR, step, a, leaf}},
        {"r/a[9]", {r, belowR}},
        {"r/x", {r, belowR, step, a, step, a}},
        {"r//b[2]", {r, belowR, step, a, b, step, a, b}},
        {"r//b", {r, belowR, step, a, b, leaf, step, a, b, leaf}},
        {"//a", {r, a, leaf, b, a, leaf, b}},
        {"r/a/..", {r, belowR, step, a, "evaluateNode", "parent", belowA, step, b, step, a, belowA, step, b}},
        {"r/a[1]/parent::r/a",
         {r, belowR, step, a, "evaluateStep", r, belowR, step, a, leaf, step, a, leaf, "parent", belowA, step, b}},
        {"r/a[1]/following-sibling::*", {r, belowR, step, a, " evaluate Node ", belowA, step, b}},
        {"r/a[1]/following-sibling::r/a",
         {r, belowR, step, a, " evaluate Step ", r, belowR, step, a, leaf, step, a, leaf, belowA, step, b}},
        {"r/a[1]/following::b",
         {r, belowR, step, a, "pParent != NUL", "node matched", "follownig", a, b, leaf, belowA, step, b}},
        {"r/a[2]/preceding::b",
         {r, belowR, step, a, "pParent != NUL", "node matched", "prev", a, b, leaf, belowA, step, b}},
        {"r/a[1]/b/following::b",
         {r, belowR, step, a, belowA, step, b, "pParent != NUL", "node matched", a, b, leaf, belowB}},
    };
    for (const WayRow& row : rows)
    {
        const RecordedTrace trace;
        select(document.root(), row.path);
        EXPECT_EQ(wayOf(trace), row.way) << row.path;
    }
}

// --- Depth and cost -----------------------------------------------------------------------------

std::unique_ptr<Node> makeChain(unsigned i_Depth)
{
    auto pRoot = std::make_unique<Node>(String(L"a"), nullptr, 1U, 1U, 1U);
    Node* pLast = pRoot.get();
    for (unsigned i = 1; i < i_Depth; ++i)
    {
        auto pAttributes = std::make_unique<AttributeTable>(8);
        pAttributes->add(String(L"id"), String::valueOf(i), String::valueOf(2 * i));
        Node* pNode = new Node(String(L"a"), pAttributes.release(), 1, 1, 2 * i + 1);
        pNode->setParent(pLast);
        pLast->addChild(pNode);
        pLast = pNode;
    }
    return pRoot;
}

std::size_t countOf(Node* i_pRoot, const char* i_Path)
{
    XPath path{String(i_Path)};
    XPathOutputList records;
    EXPECT_EQ(path.getValues(i_pRoot, records), 0) << i_Path;
    return records.size();
}

TEST(XPathWalk, AMillionLevelsFitASmallStack)
{
    constexpr unsigned depth = 1000000;
    runOnSmallStack(
        []
        {
            const std::unique_ptr<Node> pRoot = makeChain(depth);
            EXPECT_EQ(countOf(pRoot.get(), "//a/@id"), depth - 1);
            EXPECT_EQ(countOf(pRoot.get(), "a/descendant::a/@id"), depth - 1);
            EXPECT_EQ(countOf(pRoot.get(), "//a[@id='999999']/ancestor::*"), depth - 1);
        });
}

struct CostRow
{
    const char* path;
    std::size_t count;
};

/// Each of these takes hours where a node is walked again for each way that leads to it, or runs out
/// of memory where each way adds a record of its own.
TEST(XPathWalk, GoesThroughADeepTreeOnce)
{
    const std::unique_ptr<Node> pRoot = makeChain(50000);
    const CostRow rows[] = {
        {"//*//*//*//*/@id", 49997},
        {"//a//a//a//a//a//a", 49995},
        {"//a/ancestor::a/@id", 49998},
        {"//a/ancestor-or-self::*/@id", 49999},
        {"//a/ancestor::*/a/@id", 49999},
        {"//a/descendant::a/descendant-or-self::a/@id", 49999},
        {"//a/following::a", 0},
        {"//a/preceding::a", 0},
        {"//a/descendant::a/ancestor::a/descendant::a/@id", 49999},
    };
    for (const CostRow& row : rows)
    {
        EXPECT_EQ(countOf(pRoot.get(), row.path), row.count) << row.path;
    }
}

TEST(XPathWalk, GoesThroughManySiblingsOnce)
{
    constexpr int count = 50000;
    std::string xml = "<r>";
    for (int i = 1; i <= count; ++i)
    {
        xml += "<a n='1'/>";
    }
    const TestDocument document(xml + "</r>");
    const CostRow rows[] = {
        {"r/a/following-sibling::a/@n", count - 1},
        {"r/a/preceding-sibling::a/@n", count - 1},
        {"r/a/following-sibling::r/a/@n", count},
        {"r/a/preceding-sibling::*", count - 1},
        {"//a/following::a/@n", count - 1},
        {"//a/preceding::a/@n", count - 1},
        {"r/a/parent::r/a/@n", count},
        {"r/a/ancestor::r/a/parent::r[a]/a/@n", count},
    };
    for (const CostRow& row : rows)
    {
        EXPECT_EQ(countOf(document.root(), row.path), row.count) << row.path;
    }
}

} // namespace
