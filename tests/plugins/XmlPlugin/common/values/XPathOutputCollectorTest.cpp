#include "values/XPathOutputCollector.h"

#include "values/XPathOutputList.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>
#include <set>
#include <string>

using namespace XmlPlugin;

namespace
{

constexpr std::int32_t s_Lowest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t s_Highest = std::numeric_limits<std::int32_t>::max();

struct Addition
{
    std::int32_t key;
    const char* text;
    bool isUnlessPresent;
};

/// The texts of all records, as a tree would keep them.
XPathLentText keep(const char* i_Text)
{
    static std::set<String> s_Texts;
    return XPathLentText(viewOf(*s_Texts.insert(String(i_Text)).first));
}

XPathOutputElement record(const Addition& i_Addition)
{
    return {keep(i_Addition.text), XPathLentText(), i_Addition.key, nullptr};
}

void addAll(XPathOutputCollector& io_Collector, const std::vector<Addition>& i_Additions)
{
    for (const Addition& addition : i_Additions)
    {
        if (addition.isUnlessPresent)
        {
            io_Collector.addUnlessPresent(record(addition));
        }
        else
        {
            io_Collector.add(record(addition));
        }
    }
}

std::string print(const XPathOutputList& i_Records)
{
    std::string text;
    for (const XPathOutputElement* pRecord : i_Records)
    {
        text += (text.empty() ? "" : " ") + std::to_string(pRecord->m_OrderKey) + pRecord->m_NodeText.toNarrow();
    }
    return text;
}

struct Row
{
    const char* name;
    std::vector<Addition> additions;
    const char* added; ///< before the records are ordered
    const char* ordered;
};

const Row s_Rows[] = {
    {"nothing", {}, "", ""},
    {"ascending", {{1, "a", false}, {2, "b", true}}, "1a 2b", "1a 2b"},
    {"descending", {{2, "b", false}, {1, "a", true}}, "2b 1a", "1a 2b"},
    {"same_key_and_text", {{1, "a", true}, {1, "a", true}}, "1a", "1a"},
    {"same_key_other_text", {{1, "a", true}, {1, "b", true}}, "1a 1b", "1a"},
    {"the_first_of_a_key_stays", {{1, "b", true}, {1, "a", true}, {0, "c", true}}, "1b 1a 0c", "0c 1b"},
    {"other_key_same_text", {{1, "a", true}, {2, "a", true}}, "1a 2a", "1a 2a"},
    {"added_without_a_look", {{1, "a", false}, {1, "a", false}}, "1a 1a", "1a"},
    {"meets_one_added_without_a_look", {{1, "a", false}, {1, "a", true}}, "1a", "1a"},
    {"not_the_last_one", {{1, "a", true}, {2, "b", true}, {1, "a", true}}, "1a 2b", "1a 2b"},
    {"not_the_last_one_of_a_key", {{1, "a", true}, {1, "b", true}, {1, "a", true}}, "1a 1b", "1a"},
    {"new_after_a_step_back", {{5, "a", true}, {3, "b", true}, {4, "c", true}, {3, "b", true}}, "5a 3b 4c", "3b 4c 5a"},
    {"higher_key_after_a_step_back", {{5, "a", true}, {3, "b", true}, {5, "a", true}}, "5a 3b", "3b 5a"},
    {"limits",
     {{s_Highest, "h", true}, {0, "z", true}, {s_Lowest, "l", true}},
     "2147483647h 0z -2147483648l",
     "-2147483648l 0z 2147483647h"},
};

TEST(XPathOutputCollector, KeepsTheFirstOfAKeyInOrder)
{
    for (const Row& row : s_Rows)
    {
        XPathOutputList records;
        XPathOutputCollector collector(records);
        EXPECT_EQ(collector.last(), nullptr) << row.name;
        addAll(collector, row.additions);
        EXPECT_EQ(print(records), row.added) << row.name;
        EXPECT_EQ(collector.size(), records.size()) << row.name;
        if (!records.empty())
        {
            EXPECT_EQ(collector.last(), records.back()) << row.name;
        }
        collector.orderByKey();
        EXPECT_EQ(print(records), row.ordered) << row.name;
    }
}

TEST(XPathOutputCollector, GoesOnAfterItHasBeenOrdered)
{
    XPathOutputList records;
    XPathOutputCollector collector(records);
    addAll(collector, {{2, "b", true}, {1, "a", true}, {2, "c", true}});
    collector.orderByKey();
    addAll(collector, {{1, "a", true}, {2, "c", true}, {3, "d", true}});
    EXPECT_EQ(print(records), "1a 2b 2c 3d");
    collector.orderByKey();
    EXPECT_EQ(print(records), "1a 2b 3d");
}

/// Each record is looked for among those before it, which takes minutes when it is done one by one.
TEST(XPathOutputCollector, TakesManyRecordsInAnyOrder)
{
    constexpr std::int32_t count = 300000;
    XPathOutputList records;
    XPathOutputCollector collector(records);
    for (int round = 0; round < 2; ++round)
    {
        for (std::int32_t i = 0; i < count; ++i)
        {
            collector.addUnlessPresent(record({static_cast<std::int32_t>(std::int64_t{i} * 7919 % count), "", true}));
        }
    }
    EXPECT_EQ(records.size(), std::size_t{count});
    collector.orderByKey();
    EXPECT_EQ(records.front()->m_OrderKey, 0);
    EXPECT_EQ(records.back()->m_OrderKey, count - 1);
}

/// Few ascending runs are merged, many are sorted.
TEST(XPathOutputCollector, OrdersRuns)
{
    for (const std::int32_t runs : {1, 2, 3, 8, 9, 10, 40})
    {
        XPathOutputList records;
        XPathOutputCollector collector(records, XPathOutputCollector::Purpose::Records);
        for (std::int32_t run = 0; run < runs; ++run)
        {
            for (std::int32_t key = run; key < 100; key += 2)
            {
                collector.addUnlessPresent(record({key, run % 2 == 0 ? "even" : "odd", true}));
            }
        }
        EXPECT_EQ(collector.isAscending(), runs == 1);
        collector.orderByKey();
        ASSERT_EQ(records.size(), runs == 1 ? 50U : 100U) << runs;
        for (std::size_t i = 0; i < records.size(); ++i)
        {
            ASSERT_EQ(records[i]->m_OrderKey, static_cast<std::int32_t>(runs == 1 ? 2 * i : i)) << runs;
        }
        EXPECT_EQ(collector.size(), records.size());
        EXPECT_EQ(collector.lastKey(), runs == 1 ? 98 : 99);
    }
}

TEST(XPathOutputCollector, CountsWithoutRecords)
{
    XPathOutputList records;
    XPathOutputCollector collector(records, XPathOutputCollector::Purpose::Count);
    addAll(collector, {{1, "a", true}, {3, "b", false}});
    EXPECT_TRUE(collector.isAscending());
    addAll(collector, {{3, "b", true}});
    EXPECT_FALSE(collector.isAscending());
    EXPECT_EQ(collector.size(), 3U);
    EXPECT_EQ(collector.lastKey(), 3);
    EXPECT_TRUE(records.empty());
}

} // namespace
