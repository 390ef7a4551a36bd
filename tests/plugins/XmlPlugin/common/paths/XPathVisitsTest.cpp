#include "paths/XPathVisits.h"

#include "xmlproxy/Node.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <set>
#include <tuple>
#include <vector>

using namespace XmlPlugin;

namespace
{

std::vector<std::unique_ptr<Node>> makeNodes(unsigned i_Count)
{
    std::vector<std::unique_ptr<Node>> nodes;
    for (unsigned i = 0; i < i_Count; ++i)
    {
        nodes.push_back(std::make_unique<Node>(String(L"a"), nullptr, 1U, 1U, i));
    }
    return nodes;
}

TEST(XPathVisits, RememberEachOnce)
{
    const auto nodes = makeNodes(100);
    XPathVisits<8> visits;
    std::set<std::tuple<const Node*, unsigned, unsigned>> expected;
    unsigned state = 1;
    for (int i = 0; i < 20000; ++i)
    {
        state = state * 1103515245U + 12345U;
        const Node& node = *nodes[(state >> 16U) % nodes.size()];
        const unsigned step = (state >> 8U) % 70U;
        const unsigned number = (state >> 24U) % 8U;
        EXPECT_EQ(visits.contains(node, step, number), expected.contains({&node, step, number}));
        EXPECT_EQ(visits.add(node, step, number), expected.insert({&node, step, number}).second);
        EXPECT_TRUE(visits.contains(node, step, number));
    }
}

TEST(XPathVisits, ContainNothingAtFirst)
{
    const auto nodes = makeNodes(1);
    const XPathVisits<4> visits;
    EXPECT_FALSE(visits.contains(*nodes.front(), 0, 0));
    EXPECT_EQ(visits.bytes(), 0U);
}

/// A node at 64 steps takes eight entries, however many of the numbers there are.
TEST(XPathVisits, TakeLittleForManySteps)
{
    constexpr unsigned count = 2000;
    constexpr unsigned steps = 64;
    const auto nodes = makeNodes(count);
    XPathVisits<8> visits;
    for (const auto& pNode : nodes)
    {
        for (unsigned step = 0; step < steps; ++step)
        {
            visits.add(*pNode, step, step % 8);
        }
    }
    EXPECT_LE(visits.bytes(), std::size_t{8} * count * steps);
}

} // namespace
