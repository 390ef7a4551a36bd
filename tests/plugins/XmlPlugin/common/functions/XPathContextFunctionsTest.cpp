#include "functions/XPathContextFunctions.h"

#include "ValueSupport.h"

#include <gtest/gtest.h>

using namespace XmlPlugin;

namespace
{

const CallRow s_Rows[] = {
    // count
    {"count", {"nodes"}, "number 0"},
    {"count", {"nodes 3|7|x"}, "number 3"},
    {"count", {"nodes a", "nodes a|b"}, "number 2"},
    {"count", {"5"}, "nothing"},
    {"count", {"nan"}, "nothing"},
    {"count", {"'abc'"}, "nothing"},
    {"count", {"true"}, "nothing"},
    {"count", {"none"}, "nothing"},
    {"count", {}, "-15005"},
    // without a start node and a context
    {"last", {}, "number 1"},
    {"last", {"5"}, "number 1"},
    {"position", {}, "number 1"},
    {"position", {"5"}, "number 1"},
    {"name", {}, "nothing"},
    {"name", {"nodes"}, "nothing"},
    {"name", {"nodes x"}, "nothing"},
    {"name", {"5"}, "nothing"},
    {"name", {"'abc'"}, "nothing"},
    {"name", {"true"}, "nothing"},
    {"name", {"none"}, "nothing"},
    {"name", {"'a'", "'b'"}, "-15005"},
    // not implemented
    {"local-name", {}, "-102"},
    {"local-name", {"nodes x"}, "-102"},
    {"local-name", {"none"}, "-102"},
    {"local-name", {"'a'", "'b'"}, "-15005"},
};

TEST(XPathContextFunctions, Answer)
{
    for (const CallRow& row : s_Rows)
    {
        EXPECT_EQ(call(row.name, row.arguments), row.expected) << print(row.name, row.arguments);
    }
}

class ContextTree : public testing::Test
{
protected:
    Tree m_Tree{"r"};
    Node* m_pFirst = m_Tree.element(m_Tree.root(), "a");
    Node* m_pSecond = m_Tree.element(m_Tree.root(), "x:b");
    Node* m_pThird = m_Tree.element(m_Tree.root(), "a");
    Node* m_pOutside = m_Tree.element(m_Tree.root(), "o");
    NodeVector m_Nodes{m_pFirst, m_pSecond, m_pThird};
    NodeVector m_NoNodes;
    XPathEvalContext m_Context{&m_Nodes, 1};
    XPathEvalContext m_Empty{&m_NoNodes, 0};
    XPathEvalContext m_Unset;
};

TEST_F(ContextTree, FunctionsReadStartNodeAndContext)
{
    struct Row
    {
        const char* name;
        Node* start;
        const XPathEvalContext* context;
        const char* expected;
    };
    const Row rows[] = {
        {"last", nullptr, &m_Context, "number 1"},
        {"last", m_Tree.root(), &m_Context, "number 1"},
        {"last", m_pFirst, &m_Context, "number 3"},
        {"last", m_pOutside, &m_Context, "number 3"},
        {"last", m_pFirst, &m_Empty, "number 0"},
        {"last", m_pFirst, &m_Unset, "number 0"},
        {"last", m_pFirst, nullptr, "number 0"},
        {"position", nullptr, &m_Context, "number 1"},
        {"position", m_Tree.root(), &m_Context, "number 1"},
        {"position", m_pFirst, &m_Context, "number 1"},
        {"position", m_pSecond, &m_Context, "number 2"},
        {"position", m_pThird, &m_Context, "number 3"},
        {"position", m_pOutside, &m_Context, "nothing"},
        {"position", m_pFirst, &m_Empty, "nothing"},
        {"position", m_pFirst, &m_Unset, "nothing"},
        {"position", m_pFirst, nullptr, "nothing"},
        {"name", m_pSecond, &m_Context, "string x:b"},
        {"name", m_pOutside, &m_Context, "string o"},
        {"name", m_Tree.root(), &m_Context, "string r"},
        {"name", nullptr, &m_Context, "nothing"},
        {"name", m_pSecond, &m_Empty, "nothing"},
        {"name", m_pSecond, &m_Unset, "nothing"},
        {"name", m_pSecond, nullptr, "nothing"},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(call(row.name, {}, {row.start, row.context}), row.expected)
            << row.name << ' ' << (row.start ? row.start->name().toNarrow() : "null");
    }
}

TEST_F(ContextTree, ContextIndexIsOnlyAHint)
{
    for (std::size_t current : {std::size_t{0}, std::size_t{2}, std::size_t{99}})
    {
        const XPathEvalContext context{&m_Nodes, current};
        EXPECT_EQ(call("position", {}, {m_pSecond, &context}), "number 2") << current;
    }
}

TEST_F(ContextTree, NameOfTheFirstNode)
{
    Values values;
    XPathExpression* pNodes = values("nodes");
    values.addRecord(*pNodes, "v", m_pSecond);
    values.addRecord(*pNodes, "w", m_pFirst);
    EXPECT_EQ(callWith("name", {pNodes}), "string x:b");
    EXPECT_EQ(callWith("name", {pNodes}, {m_pOutside, &m_Context}), "string x:b");
    EXPECT_EQ(call("name", {"nodes"}, {m_pOutside, &m_Context}), "nothing");
}

} // namespace
