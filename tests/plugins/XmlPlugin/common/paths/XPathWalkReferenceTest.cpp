// The walk, the predicates and the paths of operands against plain, slow ways to the same answers,
// on random trees.
#include "PathSupport.h"
#include "RandomQueries.h"
#include "ReferenceWalk.h"
#include "compile/XPathExpressionsParser.h"
#include "paths/XPathAxisIndex.h"
#include "paths/XPathPredicate.h"
#include "values/XPathArgument.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>

using namespace XmlPlugin;

namespace
{

std::string print(const Node& i_Tree)
{
    std::ostringstream out;
    i_Tree.write(out, 0);
    return out.str();
}

class WalkReference : public testing::TestWithParam<unsigned>
{
};

TEST_P(WalkReference, SelectsTheSameRecords)
{
    RandomSource random(GetParam());
    unsigned found = 0;
    unsigned failed = 0;
    for (int tree = 0; tree < 1000; ++tree)
    {
        const RandomTree document(random, 1 + random.below(10));
        for (int i = 0; i < 10; ++i)
        {
            const std::string path = randomPath(random);
            const std::string expected = ReferenceWalk::select(document.root(), String(path.c_str()));
            ASSERT_EQ(selectRecords(document.root(), String(path.c_str())), expected) << path << " on\n"
                                                                                      << print(*document.root());
            failed += expected.starts_with("error") ? 1 : 0;
            found += !expected.empty() && !expected.starts_with("error") ? 1 : 0;
        }
    }
    EXPECT_GT(found, 500U);
    EXPECT_GT(failed, 10U);
}

TEST_P(WalkReference, SelectsTheSameAlongLongAxes)
{
    RandomSource random(GetParam());
    unsigned found = 0;
    for (int tree = 0; tree < 300; ++tree)
    {
        const RandomTree document(random, 5 + random.below(15));
        for (int i = 0; i < 10; ++i)
        {
            const std::string path = randomLongPath(random);
            const std::string expected = ReferenceWalk::select(document.root(), String(path.c_str()));
            ASSERT_EQ(selectRecords(document.root(), String(path.c_str())), expected) << path << " on\n"
                                                                                      << print(*document.root());
            found += !expected.empty() && !expected.starts_with("error") ? 1 : 0;
        }
    }
    EXPECT_GT(found, 500U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, WalkReference, testing::Values(1U, 2U, 3U, 4U, 5U));

// --- Paths of operands --------------------------------------------------------------------------

class OperandReference : public testing::TestWithParam<unsigned>
{
};

TEST_P(OperandReference, SelectsTheSameFromItsOwnPlace)
{
    RandomSource random(GetParam());
    unsigned found = 0;
    for (int tree = 0; tree < 400; ++tree)
    {
        const RandomTree document(random, 1 + random.below(10));
        for (int i = 0; i < 5; ++i)
        {
            const String path(randomPath(random).c_str());
            XPathArgument operand(path);
            if (operand.GetDataType() != NodeSetType)
            {
                continue; // "." alone is read as a number
            }
            for (Node* pNode : document.elements())
            {
                operand.setStartNode(pNode);
                operand.setRootPosition(XPathExpression::OwnPlace);
                operand.EvaluateXPath();
                const std::string text = printRecords(operand.takeNodes());
                ASSERT_EQ(text, selectWithPrefix(pNode, path)) << path.toNarrow() << " at " << pNode->name().toNarrow()
                                                               << " " << placeAmongNamesakes(*pNode) << " of\n"
                                                               << print(*document.root());
                found += text.empty() ? 0 : 1;
            }
        }
    }
    EXPECT_GT(found, 1000U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, OperandReference, testing::Values(11U, 12U));

// --- Predicates ---------------------------------------------------------------------------------

bool isKept(XPathExpressionsParser& i_Parser, std::size_t i_ListIndex)
{
    XPathOutputList values;
    if (i_Parser.getValues(values) != 0 || values.empty())
    {
        return false;
    }
    const std::string value = values.front()->m_Value.toNarrow();
    switch (i_Parser.getOutputType())
    {
    case BooleanType:
        return value == "true";
    case NumberType:
        return value == std::to_string(i_ListIndex);
    case StringType:
    case NodeSetType:
        return true;
    default:
        return false;
    }
}

/// Each node with an expression compiled for it alone, and its place counted per name in the list.
TErrorCode filterTheLongWay(const String& i_Expression, NodeVector& io_Nodes)
{
    const NodeVector nodes = io_Nodes;
    io_Nodes.clear();
    std::map<std::string, int> places;
    TErrorCode code = 0;
    for (std::size_t i = 0; i < nodes.size(); ++i)
    {
        const XPathEvalContext context{&nodes, i};
        XPathExpressionsParser parser(i_Expression);
        parser.setEvalContext(&context);
        parser.setRootPosition(++places[nodes[i]->name().toNarrow()]);
        code = parser.runParser(nodes[i]);
        if (code == 0 && isKept(parser, i + 1))
        {
            io_Nodes.push_back(nodes[i]);
        }
    }
    return code;
}

class PredicateReference : public testing::TestWithParam<unsigned>
{
};

/// Returns how many nodes were kept.
std::size_t expectTheSame(unsigned i_Seed, std::string (*i_pMakePredicate)(RandomSource&), bool i_HasTexts)
{
    RandomSource random(i_Seed);
    std::size_t kept = 0;
    for (int tree = 0; tree < 500; ++tree)
    {
        const RandomTree document(random, 2 + random.below(12), i_HasTexts);
        for (int i = 0; i < 4; ++i)
        {
            const String text(i_pMakePredicate(random).c_str());
            if (text == L"[]")
            {
                continue;
            }
            const Node* pParent = document.elements()[random.below(static_cast<unsigned>(document.elements().size()))];
            NodeVector nodes;
            XPathStep::listElementChildren(pParent, nodes);
            NodeVector expected = nodes;
            const TErrorCode code = filterTheLongWay(text.substring(1, text.length() - 2), expected);
            XPathPredicate predicate(viewOf(text));
            EXPECT_EQ(predicate.fiterNodes(nodes), code) << text.toNarrow() << " on\n" << print(*document.root());
            EXPECT_EQ(nodes, expected) << text.toNarrow() << " on\n" << print(*document.root());
            kept += nodes.size();
        }
    }
    return kept;
}

TEST_P(PredicateReference, KeepsTheSameNodes)
{
    EXPECT_GT(expectTheSame(GetParam(), randomPredicate, true), 500U);
}

/// Mostly a condition with a step along a long axis.
std::string randomAxisPredicate(RandomSource& io_Random)
{
    const std::string step =
        std::string(io_Random.pick({"preceding::", "following::", "ancestor::", "ancestor-or-self::", "descendant::",
                                    "preceding-sibling::"})) +
        io_Random.pick({"a", "b", "*", "c", "node()"});
    const std::string number(io_Random.pick({"0", "1", "2", "3"}));
    switch (io_Random.below(10))
    {
    case 0:
        return "[" + step + "]";
    case 1:
        return "[not(" + step + ")]";
    case 2:
        return "[count(" + step + ")" + io_Random.pick({"=", "<", ">="}) + number + "]";
    case 3:
        return "[count(" + step + ")]";
    case 4:
        return "[name(" + step + ")='" + io_Random.pick({"a", "b"}) + "']";
    case 5:
        return "[" + step + io_Random.pick({"=''", "!=''", "='t'", "!='t'", "<'t'", ">''", "=1", "!=1", "=@x", "=b"}) +
               "]";
    case 6:
        return "[" + step + io_Random.pick({" and @x", " or @y", " and 5", " = true()", " and (1 div 0)"}) + "]";
    case 7:
        return "[" + std::string(io_Random.pick({"string(", "sum(", "number(", "string-length(", "boolean("})) + step +
               ")" + io_Random.pick({"", "=0", "=''"}) + "]";
    case 8:
        return "[count(" + step + ", " + step + ")=" + number + "]";
    default:
        return "[count(" + step + ")=count(" + io_Random.pick({"preceding", "following"}) + "::*)]";
    }
}

TEST_P(PredicateReference, KeepsTheSameNodesByAnIndex)
{
    XPathAxisIndex::setPatience(0);
    const std::size_t kept =
        expectTheSame(GetParam(), randomAxisPredicate, false) + expectTheSame(GetParam(), randomAxisPredicate, true);
    XPathAxisIndex::setPatience(XPathAxisIndex::s_UsualPatience);
    EXPECT_GT(kept, 500U);
}

INSTANTIATE_TEST_SUITE_P(Seeds, PredicateReference, testing::Values(21U, 22U));

} // namespace
