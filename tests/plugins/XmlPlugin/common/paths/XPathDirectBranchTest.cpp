#include "paths/XPathDirectBranch.h"

#include "RandomQueries.h"
#include "paths/XPath.h"

#include <gtest/gtest.h>

#include <memory_resource>
#include <string>

using namespace XmlPlugin;

namespace
{

/// A branch with all that it needs, read from its text or, if that is wanted, taken from its steps.
class OwnBranch
{
public:
    enum class From
    {
        Text,
        Steps
    };

    OwnBranch(const std::string& i_Text, From i_From) : m_Text(i_Text.c_str()), m_Branch(m_Text.view(), m_Memory)
    {
        if (i_From == From::Text)
        {
            m_IsDirect = m_Branch.m_Direct.read(m_Text.view());
            return;
        }
        m_Branch.buildSteps();
        m_IsDirect = m_Branch.m_Direct.take(m_Branch);
    }

    bool isDirect() const { return m_IsDirect; }
    const XPathDirectBranch& get() const { return m_Branch.m_Direct; }

private:
    const String m_Text;
    std::pmr::monotonic_buffer_resource m_Memory;
    XPathBranch m_Branch;
    bool m_IsDirect = false;
};

std::string print(const XPathDirectBranch& i_Branch)
{
    std::string text;
    for (const XPathDirectStep& step : i_Branch.steps())
    {
        text += (step.m_IsDeep ? "//" : "/") + String(step.m_Name.text().data(), step.m_Name.text().size()).toNarrow() +
                (step.m_IsAnyName ? "!" : "") + std::string(step.m_Predicates.size(), '+');
    }
    return text + (i_Branch.leaf().isWholeNode() ? "" : " value");
}

struct Row
{
    const char* branch;
    const char* fromText;  ///< steps, "!" behind one of any name, "+" for each predicate; "-": not direct
    const char* fromSteps; ///< the same; "=": what it is from the text
};

const Row s_Rows[] = {
    {"a", "/a", "="},
    {"//a", "//a", "="},
    {"a/b//c", "/a/b//c", "="},
    {"a/*", "/a/*!", "="},
    {"A_1-x/_", "/A_1-x/_", "="},
    {"a/@x", "/a value", "="},
    {"//*//@a-b", "//*! value", "="},
    {"a/text()", "/a value", "="},
    {"a//text()", "/a value", "="},
    {"a[1]/b[@x][last()]", "/a+/b++", "="},
    {"a[ 1 ][@x = '1']", "/a++", "="},
    {"node/text/child", "/node/text/child", "="},
    {"a/node()", "-", "/a/node()!"},
    {"a/text()/b", "-", "/a/text()/b"},
    {"child::a", "-", "/a"},
    {"a / b", "-", "/a/b"},
    {"a/ @x", "-", "/a value"},
    {"a/attribute::x", "-", "/a value"},
    {"a/@x[1]", "-", "/a value"},
    {"a/@node()", "-", "/a value"},
    {"p:a/a.b", "-", "/p:a/a.b"},
    {"\xc3\xa4", "-", "/\xc3\xa4"},
    {"1a", "-", "/1a"},
    {"a'b", "-", "/a'b"},
    {"a[1]x", "-", "/a+"},
    {"a[1] ", "-", "/a+"},
    {"a/xtext()", "-", "/a"},
    {"a/", "-", "/a"},
    {"//a/", "-", "//a"},
    {"a/@", "-", "-"},
    {"a/@*", "-", "-"},
    {"a/@x/b", "-", "-"},
    {"a/.", "-", "-"},
    {"..", "-", "-"},
    {"a//", "-", "-"},
    {"a///b", "-", "-"},
    {"////a", "-", "-"},
    {"", "-", "-"},
    {"/", "-", "-"},
    {"@x", "-", "-"},
    {"text()", "-", "-"},
    {"a[", "-", "-"},
    {"a[1", "-", "-"},
    {"a[]", "-", "-"},
    {"a[b]", "-", "-"},
    {"a[1][2]", "-", "-"},
    {"a[1][@x][last()]", "-", "-"},
    {"a[@x='/']", "-", "-"},
    {"a[[1]", "-", "-"},
    {"a[1]]", "-", "/a+"},
};

TEST(XPathDirectBranch, IsReadOrTaken)
{
    for (const Row& row : s_Rows)
    {
        const OwnBranch read(row.branch, OwnBranch::From::Text);
        EXPECT_EQ(read.isDirect() ? print(read.get()) : "-", row.fromText) << row.branch;
        EXPECT_EQ(read.get().isDirect(), read.isDirect()) << row.branch;
        const OwnBranch taken(row.branch, OwnBranch::From::Steps);
        const std::string expected = row.fromSteps == std::string("=") ? row.fromText : row.fromSteps;
        EXPECT_EQ(taken.isDirect() ? print(taken.get()) : "-", expected) << row.branch;
        EXPECT_EQ(taken.get().isDirect(), taken.isDirect()) << row.branch;
    }
}

TEST(XPathDirectBranch, HasNoMoreStepsThanBits)
{
    for (const OwnBranch::From from : {OwnBranch::From::Text, OwnBranch::From::Steps})
    {
        std::string text = "a";
        for (std::size_t steps = 1; steps < XPathDirectBranch::s_MostSteps; ++steps)
        {
            text += "/a";
        }
        EXPECT_TRUE(OwnBranch(text, from).isDirect());
        EXPECT_TRUE(OwnBranch(text + "/@x", from).isDirect());
        EXPECT_FALSE(OwnBranch(text + "/a", from).isDirect());
    }
}

/// The quick reading against that of the steps, on texts of pieces that mean something to either.
TEST(XPathDirectBranch, IsReadAsItsStepsAre)
{
    RandomSource random(81);
    unsigned read = 0;
    for (int i = 0; i < 200000; ++i)
    {
        std::string text = random.pick({"", "", "//", "/"});
        for (unsigned left = 1 + random.below(7); left > 0; --left)
        {
            text += random.pick({"a",        "b",        "*",        "/",      "/",       "/a",
                                 "//",       "//b",      "/@x",      "/@",     "/text()", "[1]",
                                 "[2]",      "[@x]",     "[@x='1']", "[@x=5]", "[",       "]",
                                 "[last()]", "[@x='/']", "'",        " ",      "child::", "node()",
                                 ".",        "position", "-",        "7",      ":",       "[position()=3]",
                                 "@y",       "\xc3\xa4"});
        }
        const OwnBranch fromText(text, OwnBranch::From::Text);
        if (!fromText.isDirect())
        {
            continue;
        }
        ++read;
        const OwnBranch fromSteps(text, OwnBranch::From::Steps);
        ASSERT_TRUE(fromSteps.isDirect()) << text;
        ASSERT_TRUE(fromText.get() == fromSteps.get()) << text;
    }
    EXPECT_GT(read, 4000U);
}

} // namespace
