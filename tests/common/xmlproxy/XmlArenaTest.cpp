#include "xmlproxy/XmlArena.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>
#include <vector>

namespace
{

struct PieceRow
{
    const char* name;
    std::size_t bytes;
    int pieces;
};

const PieceRow s_PieceRows[] = {
    {"empty", 0, 3},
    {"one_byte", 1, 5000},
    {"odd", 77, 5000},
    {"aligned", 80, 50000},
    {"more_than_the_first_block", 5000, 3},
    {"half_a_large_page", std::size_t{1} << 20, 5},
    {"a_large_page", std::size_t{2} << 20, 3},
    {"more_than_the_largest_block", (std::size_t{9} << 20) + 3, 2},
};

class ArenaPieces : public testing::TestWithParam<PieceRow>
{
};

// What lies outside of a block shows under the sanitizers.
TEST_P(ArenaPieces, AreAlignedAndApart)
{
    XmlArena arena;
    std::vector<unsigned char*> pieces;
    for (int number = 0; number < GetParam().pieces; ++number)
    {
        pieces.push_back(static_cast<unsigned char*>(arena.allocate(GetParam().bytes)));
        ASSERT_EQ(0U, reinterpret_cast<std::uintptr_t>(pieces.back()) % XmlArena::s_Alignment);
        std::fill_n(pieces.back(), GetParam().bytes, static_cast<unsigned char>(number % 251));
    }
    for (int number = 0; number < GetParam().pieces; ++number)
    {
        const unsigned char* pPiece = pieces[static_cast<std::size_t>(number)];
        for (const std::size_t place : {std::size_t{0}, GetParam().bytes / 2, GetParam().bytes - 1})
        {
            ASSERT_TRUE(GetParam().bytes == 0 || pPiece[place] == number % 251) << number;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, ArenaPieces, testing::ValuesIn(s_PieceRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST(XmlArena, SizesMayBeMixed)
{
    XmlArena arena;
    std::vector<std::pair<unsigned char*, std::size_t>> pieces;
    std::size_t bytes = 1;
    for (int number = 0; number < 60; ++number, bytes = bytes * 7 % 3000017)
    {
        pieces.emplace_back(static_cast<unsigned char*>(arena.allocate(bytes)), bytes);
        std::memset(pieces.back().first, number, bytes);
    }
    for (std::size_t number = 0; number < pieces.size(); ++number)
    {
        const auto& [pPiece, size] = pieces[number];
        EXPECT_TRUE(pPiece[0] == number && pPiece[size - 1] == number) << number;
    }
}

TEST(XmlArena, WhatCannotBeHadThrowsAndChangesNothing)
{
    XmlArena arena;
    EXPECT_THROW(arena.allocate(std::numeric_limits<std::size_t>::max()), std::bad_alloc);
    std::memset(arena.allocate(100), 0xFF, 100);
}

} // namespace
