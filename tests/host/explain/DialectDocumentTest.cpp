#include "explain/DialectDocument.h"

#include <gtest/gtest.h>

TEST(DialectDocument, ReadsDifferences)
{
    const DialectDocument document("# A\n\n#### D-07 A `quoted` number\n\nIt is\na number.\n\nNext.\n\n"
                                   "#### D-104 Last\n```xpath\n> 1\n```\n");
    ASSERT_EQ(document.differences().size(), 2U);
    EXPECT_EQ(document.differences().at(7).title, "A `quoted` number");
    EXPECT_EQ(document.differences().at(7).summary, "It is a number.");
    EXPECT_EQ(document.differences().at(104).title, "Last");
    EXPECT_EQ(document.differences().at(104).summary, "");
}

TEST(DialectDocument, OwnOneIsWhole)
{
    const auto& differences = DialectDocument::own().differences();
    ASSERT_FALSE(differences.empty());
    EXPECT_EQ(static_cast<std::size_t>(differences.rbegin()->first), differences.size()) << "numbered without gaps";
    for (const auto& [number, difference] : differences)
    {
        EXPECT_NE(difference.title, "") << number;
        EXPECT_NE(difference.summary, "") << number;
    }
}
