#include "values/XPathSmallVector.h"

#include <gtest/gtest.h>

#include <string_view>
#include <utility>
#include <vector>

using namespace XmlPlugin;

namespace
{

using Small = XPathSmallVector<int, 4>;

std::vector<int> copy(const Small& i_Vector)
{
    return {i_Vector.begin(), i_Vector.end()};
}

TEST(XPathSmallVector, HoldsWhatAVectorHoldsAroundItsInlineSize)
{
    Small small;
    std::vector<int> expected;
    EXPECT_TRUE(small.empty());
    for (int value = 0; value < 20; ++value)
    {
        small.push_back(value);
        expected.push_back(value);
        EXPECT_EQ(copy(small), expected);
        EXPECT_EQ(small.size(), expected.size());
        EXPECT_EQ(small.front(), 0);
        EXPECT_EQ(small.back(), value);
        EXPECT_EQ(small[expected.size() / 2], expected[expected.size() / 2]);
    }
    for (; !expected.empty(); expected.pop_back(), small.pop_back())
    {
        EXPECT_EQ(copy(small), expected);
    }
    EXPECT_TRUE(small.empty());
}

TEST(XPathSmallVector, StaysInItselfUpToItsInlineSize)
{
    Small small{1, 2, 3, 4};
    const auto* pBegin = reinterpret_cast<const char*>(&small);
    const auto isInside = [&]
    {
        const auto* pData = reinterpret_cast<const char*>(small.data());
        return pData >= pBegin && pData < pBegin + sizeof(small);
    };
    EXPECT_TRUE(isInside());
    small.push_back(5);
    EXPECT_FALSE(isInside());
    EXPECT_EQ(copy(small), (std::vector<int>{1, 2, 3, 4, 5}));
}

TEST(XPathSmallVector, IsMovedWhereverItsValuesAre)
{
    for (const int left : {0, 3, 4, 5, 9})
    {
        for (const int right : {0, 3, 4, 5, 9})
        {
            Small small;
            Small other;
            for (int value = 0; value < left; ++value)
            {
                small.push_back(value);
            }
            for (int value = 0; value < right; ++value)
            {
                other.push_back(100 + value);
            }
            const std::vector<int> expected = copy(small);
            const std::vector<int> expectedOther = copy(other);
            std::swap(small, other);
            EXPECT_EQ(copy(small), expectedOther) << left << " and " << right;
            EXPECT_EQ(copy(other), expected) << left << " and " << right;
            const Small taken(std::move(other));
            EXPECT_EQ(copy(taken), expected) << left << " and " << right;
            EXPECT_TRUE(other.empty());
            small.push_back(-1);
            other.push_back(-2);
            EXPECT_EQ(small.size(), expectedOther.size() + 1);
            EXPECT_EQ(copy(other), std::vector<int>{-2});
        }
    }
}

TEST(XPathSmallVector, LeavesOutItsEnd)
{
    Small small{1, 2, 3, 4, 5};
    small.truncate(small.begin() + 2);
    EXPECT_EQ(copy(small), (std::vector<int>{1, 2}));
    small.truncate(small.begin());
    EXPECT_TRUE(small.empty());
}

TEST(XPathSmallVector, CopiesAreIndependent)
{
    for (const std::size_t size : {0u, 3u, 4u, 5u, 9u})
    {
        Small original;
        for (std::size_t i = 0; i < size; ++i)
        {
            original.push_back(static_cast<int>(i));
        }
        Small copied(original);
        Small assigned{7, 8, 9, 10, 11, 12};
        assigned = original;
        EXPECT_EQ(copied, original);
        EXPECT_EQ(assigned, original);
        original.push_back(99);
        EXPECT_EQ(copied.size(), size);
        EXPECT_FALSE(copied == original);
        const Small& self = assigned;
        assigned = self;
        EXPECT_EQ(assigned, copied);
    }
}

TEST(XPathSmallVector, AppendsRangesAndKeepsItsMemoryWhenCleared)
{
    XPathSmallVector<wchar_t, 4> text;
    text.append(std::wstring_view(L"ab"));
    text.append(std::wstring_view());
    text.append(std::wstring_view(L"cdefgh"));
    EXPECT_EQ(std::wstring_view(text.data(), text.size()), L"abcdefgh");
    const wchar_t* pData = text.data();
    text.clear();
    EXPECT_TRUE(text.empty());
    text.append(std::wstring_view(L"x"));
    EXPECT_EQ(text.data(), pData);
    text.reserve(100);
    EXPECT_EQ(std::wstring_view(text.data(), text.size()), L"x");
}

TEST(XPathSmallVector, ResizedHoldsZerosAtItsEnd)
{
    Small values{1, 2, 3};
    values.resize(1);
    EXPECT_EQ(values, (Small{1}));
    values.resize(3); // where other values were
    EXPECT_EQ(values, (Small{1, 0, 0}));
    values.resize(9); // more than it has room for
    EXPECT_EQ(values, (Small{1, 0, 0, 0, 0, 0, 0, 0, 0}));
    values.resize(0);
    EXPECT_TRUE(values.empty());
}

} // namespace
