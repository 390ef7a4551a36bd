#include "values/XPathOutputList.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

using namespace XmlPlugin;

namespace
{

XPathOutputElement record(std::int32_t i_Key)
{
    XPathOutputElement made;
    made.m_OrderKey = i_Key;
    return made;
}

std::string keys(const XPathOutputList& i_List)
{
    std::string text;
    for (const XPathOutputElement* pRecord : i_List)
    {
        text += (text.empty() ? "" : " ") + std::to_string(pRecord->m_OrderKey);
    }
    return text;
}

TEST(XPathOutputList, KeepsRecordsWhereTheyAre)
{
    constexpr std::int32_t count = 5000; // several blocks, also of the largest size
    XPathOutputList list;
    std::vector<const XPathOutputElement*> places;
    for (std::int32_t i = 0; i < count; ++i)
    {
        places.push_back(&list.add(record(i)));
    }
    XPathOutputList moved(std::move(list));
    ASSERT_EQ(moved.size(), places.size());
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        ASSERT_EQ(moved[i], places[i]);
        ASSERT_EQ(moved[i]->m_OrderKey, static_cast<std::int32_t>(i));
    }
}

TEST(XPathOutputList, KeepsTheTextsOfScalars)
{
    XPathOutputList list;
    for (const char* pText : {"a", "", "a text that is longer than what fits beside a length"})
    {
        list.addScalar(String(pText));
    }
    XPathOutputList other;
    other.addScalar(String("first"));
    other.append(std::move(list));
    ASSERT_EQ(other.size(), 4U);
    EXPECT_STREQ(other[1]->m_Value.c_str(), L"a");
    EXPECT_STREQ(other[1]->m_NodeText.c_str(), L""); // a view of nothing
    EXPECT_EQ(other[0]->m_Value.toNarrow(), "first");
    EXPECT_EQ(other[1]->m_Value.toNarrow(), "a");
    EXPECT_TRUE(other[2]->m_Value.isEmpty());
    EXPECT_EQ(other[3]->m_Value.view(), L"a text that is longer than what fits beside a length");
    EXPECT_TRUE(other[1]->m_NodeText.isEmpty());
    EXPECT_EQ(other[1]->m_pNode, nullptr);
}

TEST(XPathOutputList, AppendsAndGoesOn)
{
    XPathOutputList list;
    XPathOutputElement outside = record(7);
    list.push_back(&outside);
    list.add(record(1));
    XPathOutputList second;
    second.add(record(2));
    list.append(std::move(second));
    list.append(XPathOutputList());
    list.add(record(3));
    EXPECT_EQ(keys(list), "7 1 2 3");
    EXPECT_EQ(list.front(), &outside);
    list.truncate(list.begin() + 2);
    EXPECT_EQ(keys(list), "7 1");
    list.clear();
    EXPECT_TRUE(list.empty());
    list.add(record(4));
    EXPECT_EQ(keys(list), "4");
    EXPECT_EQ(outside.m_OrderKey, 7);
}

} // namespace
