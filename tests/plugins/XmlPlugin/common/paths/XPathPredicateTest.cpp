#include "paths/XPathPredicate.h"

#include "PathSupport.h"
#include "QuerySupport.h"
#include "RecordedTrace.h"
#include "compile/XPathExpressionsParser.h"
#include "paths/XPathPlaces.h"
#include "paths/XPathStep.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

// --- One predicate over one list ----------------------------------------------------------------

struct FilterRow
{
    const char* predicate;
    const char* kept; ///< places in the list, from 1
    TErrorCode code;
};

/// Over the list b c b b of s_Document.
const FilterRow s_Filters[] = {
    {"[1]", "1", 0},
    {"[2]", "2", 0},
    {"[3]", "3", 0},
    {"[5]", "", 0},
    {"[0]", "", 0},
    {"[-1]", "", 0},
    {"[2.0]", "", 0},
    {"[2.5]", "", 0},
    {"['2']", "2", 0},
    {"[1+1]", "2", 0},
    {"[@id]", "1 3", 0},
    {"[@x]", "", 0},
    {"[@id='2']", "3", 0},
    {"[@id>1]", "3", 0},
    {"[d]", "2", 0},
    {"[true()]", "1 2 3 4", 0},
    {"[false()]", "", 0},
    {"[not(@id)]", "2 4", 0},
    {"[name()]", "1 2 3 4", 0},
    {"['']", "1 2 3 4", 0},
    {"['x']", "1 2 3 4", 0},
    {"[string(@x)]", "1 2 3 4", 0},
    {"[name()='b']", "1 3 4", 0},
    {"[position()]", "1 2 3 4", 0},
    {"[position()=2]", "2", 0},
    {"[position()>2]", "3 4", 0},
    {"[last()]", "4", 0},
    {"[position()=last()]", "4", 0},
    {"[last()-1]", "3", 0},
    {"[count(d)]", "", 0},
    {"[count(d)=1]", "2", 0},
    {"[..]", "1 2 3 4", 0},
    {"[]", "1 2 3 4", XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION},
    {"[+]", "", XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED},
    {"[local-name()]", "", XML_ERROR_NOT_IMPLEMENTED},
};

constexpr const char* s_Document = R"(<a><b id="1"/><c><d/></c><b id="2"/><b/></a>)";

std::string placesOf(const NodeVector& i_Nodes, const NodeVector& i_All)
{
    std::string text;
    for (const Node* pNode : i_Nodes)
    {
        text += (text.empty() ? "" : " ") +
                std::to_string(std::find(i_All.begin(), i_All.end(), pNode) - i_All.begin() + 1);
    }
    return text;
}

TEST(XPathPredicate, KeepsTheNodesForWhichItIsTrue)
{
    const TestDocument document(s_Document);
    NodeVector all;
    XPathStep::listElementChildren(document.root(), all);
    for (const FilterRow& row : s_Filters)
    {
        const String text(row.predicate);
        XPathPredicate predicate(viewOf(text));
        EXPECT_EQ(predicate.expression().toNarrow(), row.predicate);
        for (int round = 0; round < 2; ++round) // compiled at the first, used again at the second
        {
            NodeVector nodes = all;
            EXPECT_EQ(predicate.fiterNodes(nodes), row.code) << row.predicate;
            EXPECT_EQ(placesOf(nodes, all), row.kept) << row.predicate;
        }
        NodeVector none;
        EXPECT_EQ(predicate.fiterNodes(none), std::string(row.predicate) == "[]" ? row.code : 0) << row.predicate;
    }
}

/// A failure counts only when it is the last node's.
TEST(XPathPredicate, AnswersWithTheCodeOfTheLastNode)
{
    const TestDocument document(s_Document);
    NodeVector all;
    XPathStep::listElementChildren(document.root(), all);
    // Without a value where a node has no id; the text of its name elsewhere.
    XPathPredicate predicate(L"[name(@id)]");
    NodeVector nodes = all;
    const TErrorCode code = predicate.fiterNodes(nodes);
    EXPECT_EQ(placesOf(nodes, all), "1 3");
    NodeVector firstThree(all.begin(), all.begin() + 3);
    EXPECT_EQ(predicate.fiterNodes(firstThree), 0);
    EXPECT_EQ(placesOf(firstThree, all), "1 3");
    NodeVector last(1, all.back());
    EXPECT_EQ(predicate.fiterNodes(last), code) << "the last node's alone";
    EXPECT_TRUE(last.empty());
}

struct TraceRow
{
    const char* predicate;
    std::vector<const char*> records; ///< level and how the text begins, in this order, with others between them
};

TEST(XPathPredicate, SaysWhatItKeeps)
{
    const TestDocument document(s_Document);
    NodeVector all;
    XPathStep::listElementChildren(document.root(), all);
    const TraceRow rows[] = {
        {"[2]",
         {"3|m_Expression 2", "3|io_Nodes.size() = 4",
          // places among the namesakes, whatever stands between
          "3|Node to check = b", "3|root position = 1 prevNodeName = b", "3|result after runParser = 0",
          "3|result OK. values.size() = 1", "3|NumberType, value = 2 Node = b", "3|Node to check = c",
          "3|root position = 1 prevNodeName = c", "3|NumberType, value = 2 Node = c", "3|Node to check = b",
          "3|root position = 2 prevNodeName = b", "3|Node to check = b", "3|root position = 3 prevNodeName = b",
          "3|FilteredNodes.size() = 1", "3|result = 0"}},
        {"[@id]",
         {"3|m_Expression @id", "3|result OK. values.size() = 1", "3|NodeSetType, Node = b", "3|Node to check = c",
          "3|result OK. values.size() = 0", "3|FilteredNodes.size() = 2", "3|result = 0"}},
        {"[local-name()]",
         {"3|Node to check = b", "3|result after runParser = -102", "3|FilteredNodes.size() = 0", "3|result = -102"}},
        {"[@id='2']",
         {"3|BooleanType, Node = b", "3|BooleanType, Node = c", "3|BooleanType, Node = b", "3|BooleanType, Node = b",
          "3|FilteredNodes.size() = 1"}},
        {"[name()]",
         {"3|StringType, Node = b", "3|StringType, Node = c", "3|StringType, Node = b", "3|StringType, Node = b",
          "3|FilteredNodes.size() = 4"}},
        {"[]", {"3|m_Expression ", "1|XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION"}},
    };
    for (const TraceRow& row : rows)
    {
        NodeVector nodes = all;
        const String predicate(row.predicate);
        const RecordedTrace trace;
        XPathPredicate(viewOf(predicate)).fiterNodes(nodes);
        std::size_t found = 0;
        for (const std::string& line : trace.lines)
        {
            const std::string begin = "5|XPathPredicate::fiterNodes|";
            if (found == row.records.size() || !line.starts_with(begin))
            {
                continue;
            }
            const std::string record = line.substr(begin.size(), 2) + line.substr(line.rfind('|') + 1);
            found += record.starts_with(row.records[found]) ? 1 : 0;
        }
        EXPECT_EQ(found, row.records.size())
            << row.predicate << ": " << (found < row.records.size() ? row.records[found] : "");
    }
}

/// The expression is compiled for the first node, and not at all without one.
TEST(XPathPredicate, SaysWhatItFiltersFirst)
{
    const TestDocument document(s_Document);
    const char* const compiling = "XPathTokenizer::XPathTokenizer(String xpath)| xpath to XPathTokenizer @id";
    NodeVector nodes;
    XPathStep::listElementChildren(document.root(), nodes);
    XPathPredicate predicate(L"[@id]");
    NodeVector none;
    const std::vector<const char*> empty = {
        "XPathPredicate::fiterNodes|m_Expression @id", "XPathPredicate::fiterNodes|io_Nodes.size() = 0",
        "XPathPredicate::fiterNodes|FilteredNodes.size() = 0", "XPathPredicate::fiterNodes|result = 0"};
    const std::vector<const char*> full = {"XPathPredicate::fiterNodes|m_Expression @id",
                                           "XPathPredicate::fiterNodes|io_Nodes.size() = 4",
                                           "XPathPredicate::fiterNodes|Node to check = b", compiling,
                                           "XPathPredicate::fiterNodes|root position = 1 prevNodeName = b"};
    {
        const RecordedTrace trace;
        EXPECT_EQ(predicate.fiterNodes(none), 0);
        EXPECT_EQ(countInOrder(trace, empty), empty.size());
        EXPECT_EQ(trace.lines.size(), empty.size());
    }
    const RecordedTrace trace;
    EXPECT_EQ(predicate.fiterNodes(nodes), 0);
    EXPECT_EQ(countInOrder(trace, full), full.size());
}

/// The path of a predicate stands behind the place of the node that it begins at.
TEST(XPathPredicate, SaysThePathFromItsNode)
{
    const TestDocument document(s_Document);
    NodeVector nodes;
    XPathStep::listElementChildren(document.root(), nodes);
    nodes.erase(nodes.begin(), nodes.begin() + 2); // the second b and the third
    const std::vector<const char*> records = {"XPathExpressionsParser::doParse()|pExpression =@idStart Node = ",
                                              "PathArgument::EvaluateXPath()|XPath query = a/b[position()=2]/@id",
                                              "XPath::XPath(const String &)|XPath query = a/b[position()=2]/@id",
                                              "PathArgument::EvaluateXPath()|XPath query = a/b[position()=3]/@id"};
    const RecordedTrace trace;
    EXPECT_EQ(XPathPredicate(L"[@id]").fiterNodes(nodes), 0);
    EXPECT_EQ(nodes.size(), 1u);
    EXPECT_EQ(countInOrder(trace, records), records.size());
    std::vector<std::string> places;
    for (const std::string& line : trace.lines)
    {
        if (isRecord(line, "XPathExpressionsParser::doParse()|pExpression ="))
        {
            places.push_back(line.substr(line.rfind(' ') + 1));
        }
    }
    EXPECT_EQ(places, (std::vector<std::string>{"2", "3"}));
}

TEST(XPathPlaces, CountPerNameWhateverStandsBetween)
{
    const TestDocument document("<a><b/><c/><b/><c/><c/><b/></a>");
    NodeVector all;
    XPathStep::listElementChildren(document.root(), all);
    XPathPlaces places;
    EXPECT_EQ(places.of(*document.root()), 1);
    const int expected[] = {1, 1, 2, 2, 3, 3};
    for (std::size_t i = 0; i < all.size(); ++i)
    {
        EXPECT_EQ(places.of(*all[i]), expected[i]) << i;
    }
    for (std::size_t i = all.size(); i-- > 0;)
    {
        EXPECT_EQ(places.of(*all[i]), expected[i]) << "backwards " << i;
    }
}

// --- In queries ---------------------------------------------------------------------------------

struct QueryRow
{
    const char* query;
    const char* expected;
};

/// Lists below a: b1 c2 b3 b4; below the second b: b5 b6.
constexpr const char* s_Lists =
    R"(<a><b id="1"/><c id="2"/><b id="3" x="1"><b id="5"/><b id="6" x="2"/></b><b id="4" x="3"/></a>)";

const QueryRow s_Queries[] = {
    {"a/b[2]/@id", "3"},
    {"a/*[2]/@id", "2"},
    {"a/*[3]/@id", "3"},
    {"a/node()[3]/@id", "3"},
    {"a/b[last()]/@id", "4"},
    {"a/*[last()]/@id", "4"},
    {"a/b[position()=2]/@id", "3"},
    {"a/b[position()<3]/@id", "1 3"},
    {"a/*[position()=3]/@id", "3"},
    {"a/b[2.0]/@id", "-"},
    {"a/b[2.5]/@id", "-"},
    {"a/b['']/@id", "1 3 4"},
    {"a/b[@x][1]/@id", "3"},
    {"a/b[@x][2]/@id", "4"},
    {"a/b[2][@x]/@id", "3"},
    {"a/b[1][@x]/@id", "-"},
    {"a/b[@x][last()]/@id", "4"},
    {"a/b[@x][position()=2]/@id", "4"},
    {"a/b[2][1]/@id", "3"},
    {"a/b[2][2]/@id", "-"},
    {"a/b[@x][@id]/@id", "3 4"},
    {"a/*[@x][@id='4']/@id", "4"},
    {"a/*[b]/@id", "3"},
    {"a/*[b][@x]/@id", "3"},
    {"a/b[@x][b]/@id", "3"},
    {"a/b[]/@id", "error -15106"},
    {"a/x[]/@id", "error -15106"},
    {"a/b[b[1]]/@id", "error -15105"},
    {"//b[2]/@id", "3 6"},
    {"//b[@id='6']/@id", "-"},
    {"//b[@x]/@id", "3 6 4"},
    {"//*[@x]/@id", "6"},
    {"a//b[2]/@id", "3 6"},
    {"a//b[1]/@id", "1"},
    {"a//*[@x]/@id", "3 6 4"},
    {"a/b/b[2]/@id", "6"},
    {"a/b[2]/b[2]/@id", "6"},
    {"a[1]/b[2]/@id", "3"},
    {"a[2]/b[2]/@id", "-"},
    {"a[last()]/c/@id", "2"},
    {"a[b]/c/@id", "2"},
    {"a/b/@id[2]", "1 3 4"},
};

TEST(XPathPredicate, FiltersTheStepsOfAPath)
{
    const TestDocument document(s_Lists);
    for (const QueryRow& row : s_Queries)
    {
        EXPECT_EQ(select(document.root(), row.query), row.expected) << row.query;
    }
}

// --- Cost ---------------------------------------------------------------------------------------

/// Each of these takes minutes where the work grows with the square of the number of siblings.
TEST(XPathPredicate, GoesThroughManySiblingsOnce)
{
    constexpr int count = 20000;
    std::string xml = "<r>";
    for (int i = 1; i <= count; ++i)
    {
        xml += "<a x='" + std::to_string(i % 10) + "' n='" + std::to_string(i) + "'><b/></a>";
    }
    const TestDocument document(xml + "</r>");
    struct Row
    {
        const char* query;
        const char* expected;
    };
    const Row rows[] = {
        {"count(r/a[b])", "20000"},          {"count(r/a[@x='1'])", "2000"}, {"r/a[position()=2]/@n", "2"},
        {"r/a[last()]/@n", "20000"},         {"r/a[19999]/@n", "19999"},     {"count(r/a[@x][b])", "20000"},
        {"count(r/a[count(b)=1])", "20000"}, {"count(//a[b])", "20000"},     {"count(r/*[position()>last()-5])", "5"},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(answer(document.root(), row.query), row.expected) << row.query;
    }
}

} // namespace
