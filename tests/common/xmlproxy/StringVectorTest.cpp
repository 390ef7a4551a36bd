#include "xmlproxy/StringVector.h"

#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlText.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <random>
#include <string>
#include <vector>

namespace
{

constexpr int s_IntMax = std::numeric_limits<int>::max();

std::vector<std::wstring> textsOf(const StringVector& i_Vector)
{
    std::vector<std::wstring> texts;
    for (int index = 0; index < i_Vector.count(); ++index)
    {
        texts.emplace_back(i_Vector.at(index));
    }
    return texts;
}

/// Blocks as they are counted operation by operation.
struct Model
{
    explicit Model(int i_BlockSize) : blockSize(i_BlockSize) {}

    void insert(int i_Index, const std::wstring& i_Text)
    {
        const int needed = static_cast<int>(i_Text.size()) + 1;
        if (freeCharacters < needed)
        {
            const int added = (needed - freeCharacters + blockSize - 1) / blockSize;
            blocks += added;
            freeCharacters += added * blockSize;
        }
        freeCharacters -= needed;
        texts.insert(texts.begin() + i_Index, i_Text);
    }
    void remove(int i_Index)
    {
        freeCharacters += static_cast<int>(texts[static_cast<std::size_t>(i_Index)].size()) + 1;
        blocks -= freeCharacters / blockSize;
        freeCharacters %= blockSize;
        texts.erase(texts.begin() + i_Index);
    }

    int blockSize;
    int blocks = 0;
    int freeCharacters = 0;
    std::vector<std::wstring> texts;
};

/// One operation: the text goes in at the index, or the text there goes out when it is null.
struct Operation
{
    int index;
    const wchar_t* text;
};

struct BlockRow
{
    const char* name;
    int blockSize;
    std::vector<Operation> operations;
    std::vector<std::wstring> texts;
    int blocks;
    int freeCharacters;
};

const BlockRow s_BlockRows[] = {
    {"empty", 4, {}, {}, 0, 0},
    {"one_block_left_over", 4, {{0, L"ab"}}, {L"ab"}, 1, 1},
    {"one_block_exactly", 4, {{0, L"abc"}}, {L"abc"}, 1, 0},
    {"two_blocks", 4, {{0, L"abcd"}}, {L"abcd"}, 2, 3},
    {"fits_into_rest", 8, {{0, L"ab"}, {1, L"cd"}}, {L"ab", L"cd"}, 1, 2},
    {"grows_by_what_is_missing", 4, {{0, L"ab"}, {1, L"cde"}}, {L"ab", L"cde"}, 2, 1},
    {"empty_text_takes_its_null", 4, {{0, L""}}, {L""}, 1, 3},
    {"block_size_1_grows_exactly", 1, {{0, L"ab"}, {1, L"c"}}, {L"ab", L"c"}, 5, 0},
    {"block_size_1_shrinks_exactly", 1, {{0, L"ab"}, {1, L"c"}, {0, nullptr}}, {L"c"}, 2, 0},
    {"block_size_1_shrinks_to_nothing", 1, {{0, L"ab"}, {1, L"c"}, {1, nullptr}, {0, nullptr}}, {}, 0, 0},
    {"insert_in_front", 4, {{0, L"b"}, {0, L"a"}}, {L"a", L"b"}, 1, 0},
    {"insert_between", 4, {{0, L"a"}, {1, L"c"}, {1, L"b"}}, {L"a", L"b", L"c"}, 2, 2},
    {"remove_keeps_block_that_is_used", 4, {{0, L"a"}, {1, L"b"}, {0, nullptr}}, {L"b"}, 1, 2},
    {"remove_drops_whole_blocks", 2, {{0, L"abcde"}, {1, L"f"}, {0, nullptr}}, {L"f"}, 1, 0},
    {"remove_in_the_middle", 4, {{0, L"a"}, {1, L"bb"}, {2, L"c"}, {1, nullptr}}, {L"a", L"c"}, 1, 0},
    {"removed_all_then_again", 4, {{0, L"abc"}, {0, nullptr}, {0, L"x"}}, {L"x"}, 1, 2},
    {"equal_texts", 4, {{0, L"a"}, {1, L"a"}}, {L"a", L"a"}, 1, 0},
    {"largest_block_size", s_IntMax, {{0, L"a"}, {1, L"b"}}, {L"a", L"b"}, 1, s_IntMax - 4},
};

class StringVectorBlocks : public testing::TestWithParam<BlockRow>
{
};

TEST_P(StringVectorBlocks, AreCountedAsStated)
{
    const BlockRow& row = GetParam();
    StringVector vector(row.blockSize);
    for (const Operation& operation : row.operations)
    {
        const TErrorCode code =
            operation.text ? vector.insert(operation.index, operation.text) : vector.remove(operation.index);
        ASSERT_EQ(XML_SUCCESS, code);
    }
    EXPECT_EQ(row.texts, textsOf(vector));
    EXPECT_EQ(static_cast<int>(row.texts.size()), vector.count());
    EXPECT_EQ(row.blocks, vector.blocks());
    EXPECT_EQ(row.freeCharacters, vector.freeCharacters());
    EXPECT_EQ(row.blockSize, vector.blockSize());
}

INSTANTIATE_TEST_SUITE_P(Rows, StringVectorBlocks, testing::ValuesIn(s_BlockRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

/// What one operation on the vector (a, bb) answers; "get" and "find" also what they deliver.
struct CodeRow
{
    const char* name;
    TErrorCode (*run)(StringVector& io_Vector, String& o_Text, int& o_Index);
    TErrorCode code;
    const wchar_t* text = L"untouched";
    int index = 77;
};

const CodeRow s_CodeRows[] = {
    {"insert_null", [](auto& v, auto&, auto&) { return v.insert(0, nullptr); }, XML_ERROR_NULL_TEXT},
    {"insert_null_at_bad_index", [](auto& v, auto&, auto&) { return v.insert(9, nullptr); }, XML_ERROR_NULL_TEXT},
    {"insert_before_begin", [](auto& v, auto&, auto&) { return v.insert(-1, L"x"); }, XML_ERROR_INDEX_RANGE},
    {"insert_past_count", [](auto& v, auto&, auto&) { return v.insert(3, L"x"); }, XML_ERROR_INDEX_RANGE},
    {"get_first", [](auto& v, auto& t, auto&) { return v.get(0, t); }, XML_SUCCESS, L"a"},
    {"get_last", [](auto& v, auto& t, auto&) { return v.get(1, t); }, XML_SUCCESS, L"bb"},
    {"get_negative_is_first", [](auto& v, auto& t, auto&) { return v.get(-1, t); }, XML_SUCCESS, L"a"},
    {"get_most_negative_is_first", [](auto& v, auto& t, auto&) { return v.get(-s_IntMax - 1, t); }, XML_SUCCESS, L"a"},
    {"get_at_count", [](auto& v, auto& t, auto&) { return v.get(2, t); }, XML_ERROR_INDEX_RANGE},
    {"get_largest", [](auto& v, auto& t, auto&) { return v.get(s_IntMax, t); }, XML_ERROR_INDEX_RANGE},
    {"find_first", [](auto& v, auto&, auto& i) { return v.find(L"a", i); }, XML_SUCCESS, L"untouched", 0},
    {"find_last", [](auto& v, auto&, auto& i) { return v.find(L"bb", i); }, XML_SUCCESS, L"untouched", 1},
    {"find_prefix_only", [](auto& v, auto&, auto& i) { return v.find(L"b", i); }, XML_ERROR_NOT_FOUND},
    {"find_longer", [](auto& v, auto&, auto& i) { return v.find(L"bbb", i); }, XML_ERROR_NOT_FOUND},
    {"find_other_case", [](auto& v, auto&, auto& i) { return v.find(L"A", i); }, XML_ERROR_NOT_FOUND},
    {"find_empty_text", [](auto& v, auto&, auto& i) { return v.find(L"", i); }, XML_ERROR_NOT_FOUND},
    {"remove_negative", [](auto& v, auto&, auto&) { return v.remove(-1); }, XML_ERROR_INDEX_RANGE},
    {"remove_at_count", [](auto& v, auto&, auto&) { return v.remove(2); }, XML_ERROR_INDEX_RANGE},
};

class StringVectorCodes : public testing::TestWithParam<CodeRow>
{
};

TEST_P(StringVectorCodes, AreAnsweredAndNothingElseChanges)
{
    const CodeRow& row = GetParam();
    StringVector vector(4);
    vector.insert(0, L"a");
    vector.insert(1, L"bb");
    String text(L"untouched");
    int index = 77;
    EXPECT_EQ(row.code, row.run(vector, text, index));
    EXPECT_EQ(String(row.text), text);
    EXPECT_EQ(row.index, index);
    EXPECT_EQ((std::vector<std::wstring>{L"a", L"bb"}), textsOf(vector));
    EXPECT_EQ(2, vector.blocks());
    EXPECT_EQ(3, vector.freeCharacters());
}

INSTANTIATE_TEST_SUITE_P(Rows, StringVectorCodes, testing::ValuesIn(s_CodeRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST(StringVector, EmptyHasNothingToFindGetOrRemove)
{
    const StringVector vector(1);
    int index = 77;
    String text(L"untouched");
    EXPECT_EQ(XML_ERROR_NOT_FOUND, vector.find(L"", index));
    EXPECT_EQ(XML_ERROR_INDEX_RANGE, vector.get(0, text));
    EXPECT_EQ(XML_ERROR_INDEX_RANGE, vector.get(-1, text));
    EXPECT_EQ(XML_ERROR_INDEX_RANGE, StringVector(1).remove(0));
    EXPECT_EQ(77, index);
    EXPECT_EQ(String(L"untouched"), text);
    EXPECT_TRUE(vector.at(0).empty());
    EXPECT_TRUE(vector.at(-1).empty());
}

TEST(StringVector, ClearFreesEverythingButTheBlockSize)
{
    StringVector vector(3);
    vector.insert(0, L"abcdef");
    vector.clear();
    EXPECT_EQ(0, vector.count());
    EXPECT_EQ(0, vector.blocks());
    EXPECT_EQ(0, vector.freeCharacters());
    EXPECT_EQ(3, vector.blockSize());
    EXPECT_EQ(XML_SUCCESS, vector.insert(0, L"g"));
    EXPECT_EQ(L"g", vector.at(0));
}

TEST(StringVector, FindGivesTheFirstOfEqualTexts)
{
    StringVector vector(1);
    vector.insert(0, L"x");
    vector.insert(1, L"y");
    vector.insert(2, L"y");
    int index = -1;
    EXPECT_EQ(XML_SUCCESS, vector.find(L"y", index));
    EXPECT_EQ(1, index);
}

TEST(StringVector, ReserveMakesNoBlocks)
{
    StringVector vector(4);
    vector.reserve(10, 100);
    EXPECT_EQ(0, vector.blocks());
    EXPECT_EQ(0, vector.freeCharacters());
    vector.insert(0, L"a");
    EXPECT_EQ(1, vector.blocks());
}

TEST(StringVector, SizesThatCannotBeCountedAreRefused)
{
    StringVector vector(1);
    vector.insert(0, L"abc");
    EXPECT_THROW(vector.reserve(1, std::size_t{s_IntMax} - 3), std::bad_alloc);
    EXPECT_THROW(vector.reserve(1, std::numeric_limits<std::size_t>::max()), std::bad_alloc);
    EXPECT_THROW(vector.reserve(s_IntMax, 1), std::bad_alloc);
    EXPECT_EQ(1, vector.count());
    EXPECT_EQ(4, vector.blocks());
    EXPECT_EQ(L"abc", vector.at(0));
}

TEST(StringVector, RandomOperationsKeepTheCount)
{
    for (const int blockSize : {1, 2, 3, 7, 16, 1000})
    {
        std::mt19937 random(static_cast<unsigned>(blockSize));
        StringVector vector(blockSize);
        Model model(blockSize);
        for (int step = 0; step < 2000; ++step)
        {
            const int count = vector.count();
            const bool insert = count == 0 || random() % 5 < (step % 400 < 200 ? 3U : 2U);
            if (insert)
            {
                const std::wstring text(random() % 12, static_cast<wchar_t>(L'a' + random() % 3));
                const int index = static_cast<int>(random() % static_cast<unsigned>(count + 1));
                ASSERT_EQ(XML_SUCCESS, vector.insert(index, text.c_str()));
                model.insert(index, text);
            }
            else
            {
                const int index = static_cast<int>(random() % static_cast<unsigned>(count));
                ASSERT_EQ(XML_SUCCESS, vector.remove(index));
                model.remove(index);
            }
            ASSERT_EQ(model.blocks, vector.blocks());
            ASSERT_EQ(model.freeCharacters, vector.freeCharacters());
            ASSERT_EQ(model.texts, textsOf(vector));
        }
    }
}

TEST(StringVector, AppendsAndReadsAMillionTexts)
{
    constexpr int count = 1000000;
    StringVector vector(1);
    for (int index = 0; index < count; ++index)
    {
        ASSERT_EQ(XML_SUCCESS, vector.insert(index, String::valueOf(index).c_str()));
    }
    for (int index = count - 1; index >= 0; index -= 7)
    {
        ASSERT_EQ(viewOf(String::valueOf(index)), vector.at(index));
    }
    EXPECT_EQ(count, vector.count());
    EXPECT_EQ(5888890 + count, vector.blocks());
}

using StringVectorDeathTest = testing::TestWithParam<int>;

TEST_P(StringVectorDeathTest, BlockSizeMustBePositive)
{
    EXPECT_DEATH(StringVector vector(GetParam()), "m_BlockSize > 0.*xmlproxy/StringVector.*31");
}

INSTANTIATE_TEST_SUITE_P(Rows, StringVectorDeathTest, testing::Values(0, -1, -s_IntMax - 1));

} // namespace
