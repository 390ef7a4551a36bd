#include "xmlproxy/plain/PlainInput.h"

#include "xmlproxy/plain/PlainSource.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>

namespace
{

TEST(PlainInput, ReadsOnAndForgetsWhatIsBefore)
{
    PlainBytesSource source("0123456789");
    PlainInput input(source, 4);
    const char* pPlace = input.end();
    EXPECT_EQ(0, input.offsetOf(pPlace));
    ASSERT_TRUE(input.readMore(pPlace));
    EXPECT_EQ("0123", std::string_view(pPlace, input.end()));
    EXPECT_EQ('\0', *input.end());
    pPlace += 3;
    ASSERT_TRUE(input.readMore(pPlace));
    EXPECT_EQ("3456", std::string_view(pPlace, input.end()));
    EXPECT_EQ(3, input.offsetOf(pPlace));
    ASSERT_TRUE(input.readMore(pPlace));
    EXPECT_EQ("3456789", std::string_view(pPlace, input.end()));
    EXPECT_TRUE(input.isComplete());
    EXPECT_FALSE(input.readMore(pPlace));
    EXPECT_EQ("3456789", std::string_view(pPlace, input.end()));
    EXPECT_EQ(3, input.offsetOf(pPlace));
    EXPECT_TRUE(
        std::all_of(input.end(), input.end() + PlainInput::s_Padding, [](char i_Byte) { return i_Byte == '\0'; }));
}

TEST(PlainInput, ProvidesWhatThereIs)
{
    PlainBytesSource source("0123456789");
    PlainInput input(source, 1);
    const char* pPlace = input.end();
    EXPECT_TRUE(input.provide(pPlace, 0));
    EXPECT_TRUE(input.provide(pPlace, 7));
    EXPECT_EQ("01234567", std::string_view(pPlace, input.end()));
    EXPECT_FALSE(input.provide(pPlace, 11));
    EXPECT_EQ("0123456789", std::string_view(pPlace, input.end()));
}

TEST(PlainInput, CountsColumnsFromTheStartOfALine)
{
    PlainBytesSource source("ab\ncd");
    PlainInput input(source, 16);
    const char* pPlace = input.end();
    ASSERT_TRUE(input.provide(pPlace, 5));
    EXPECT_EQ(1U, input.columnOf(pPlace, {1, 0}));
    EXPECT_EQ(2U, input.columnOf(pPlace + 4, {2, 3}));
}

class BrokenSource final : public PlainSource
{
public:
    std::size_t read(char* o_pBuffer, std::size_t) override
    {
        *o_pBuffer = 'x';
        return ++m_Reads == 1 ? 1 : s_Failed;
    }

private:
    int m_Reads = 0;
};

TEST(PlainInput, IsNotCompleteAfterAFailure)
{
    BrokenSource source;
    PlainInput input(source, 8);
    const char* pPlace = input.end();
    EXPECT_TRUE(input.readMore(pPlace));
    EXPECT_EQ("x", std::string_view(pPlace, input.end()));
    EXPECT_FALSE(input.readMore(pPlace));
    EXPECT_FALSE(input.isComplete());
}

} // namespace
