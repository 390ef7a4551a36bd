#include "explain/DialectDocument.h"

#include "base/String.h"
#include "functions/XPathFunction.h"

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

TEST(DialectDocument, ReadsTheTableOfFunctions)
{
    const DialectDocument document(
        "| `x(1)` | a | 4 | b |\n## Functions\n\n| function | arguments | priority | answers |\n"
        "|---|---|---|---|\n| `f(a, b?)` | 1 or 2 | 4 | `true` or not |\n"
        "| `g` | | | NOT SUPPORTED |\n## Next\n| `h()` | none | 1 | text |\n");
    ASSERT_EQ(document.functions().size(), 1U);
    EXPECT_EQ(document.functionList(), "FUNCTION  ARGUMENTS  PRIORITY  ANSWER\n"
                                       "f(a, b?)  1 or 2     4         true or not\n");
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

TEST(DialectDocument, ListsEveryFunctionOfTheEngine)
{
    const auto& listed = DialectDocument::own().functions();
    const auto rows = XmlPlugin::XPathFunctionFactory::functions();
    ASSERT_EQ(listed.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i)
    {
        EXPECT_TRUE(listed[i].call.starts_with(String(rows[i].name.data()).toNarrow() + "(")) << listed[i].call;
        EXPECT_EQ(listed[i].priority, std::to_string(rows[i].priority)) << listed[i].call;
    }
}
