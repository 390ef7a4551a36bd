#include "advice/RefusalAdvisor.h"

#include "advice/ExpressionText.h"
#include "advice/Suspects.h"
#include "plugin/PluginLibrary.h"
#include "plugin/TraceLog.h"

#include <gtest/gtest.h>

#include <ostream>

namespace
{

struct AdviceRow
{
    const char* name;
    const char* expression;
    const char* differences; ///< their names with a blank between
    const char* text = "";   ///< stands in the hints
};

void PrintTo(const AdviceRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class Advice : public testing::TestWithParam<AdviceRow>
{
protected:
    TraceLog m_Trace{TraceOff};
    PluginLibrary m_Library{PLUGIN_MODULE};
    Evaluator m_Evaluator{m_Library, m_Trace, {}};
    RefusalAdvisor m_Advisor{m_Evaluator};
};

} // namespace

TEST_P(Advice, NamesTheCause)
{
    std::string names;
    std::string texts;
    for (const Hint& hint : m_Advisor.whyRefused(GetParam().expression))
    {
        names += (names.empty() ? "" : " ") + differenceName(hint.difference);
        texts += hint.text + '\n';
    }
    EXPECT_EQ(names, GetParam().differences);
    EXPECT_NE(texts.find(GetParam().text), std::string::npos) << texts;
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(All, Advice, testing::Values(
    AdviceRow{"text", "a/text()", "D-14", "'text()' is not a node test here"},
    AdviceRow{"text_with_spaces", "a/text ( )", "D-14", "'text ( )'"},
    AdviceRow{"text_in_a_predicate", "a[text()='x']/@b", "D-14"},
    AdviceRow{"node", "a/node()", "D-14", "write '*' for the elements"},
    AdviceRow{"comment", "comment()", "D-14"},
    AdviceRow{"instruction", "processing-instruction('x')", "D-14", "'processing-instruction('x')'"},
    AdviceRow{"text_then_a_step", "a/text()/b", "D-14"},
    AdviceRow{"child", "child/@x", "D-18", "'child' is an axis name here; write *[name()='child']"},
    AdviceRow{"name_goes_on_behind_axis", "a/parent-id/@x", "D-18", "write *[name()='parent-id']"},
    AdviceRow{"axis_alone", "self", "D-18"},
    AdviceRow{"child_axis_is_known", "child::a[", ""},
    AdviceRow{"descendant_or_self", "a/descendant-or-self::b", "D-17", "hidden by 'descendant'"},
    AdviceRow{"following_sibling", "a/following-sibling::b/@c", "D-17", "write following::"},
    AdviceRow{"prefix", "p:a/@b", "D-12", "write *[name()='p:a']"},
    AdviceRow{"prefixed_attribute", "a/@p:b", "D-12", "@* reaches the attribute 'p:b'"},
    AdviceRow{"prefix_and_star", "p:*/@b", "D-13"},
    AdviceRow{"root", "/", "D-16", "'/*' is the document element"},
    AdviceRow{"root_in_a_call", "count(/)", "D-16"},
    AdviceRow{"path_behind_parenthesis", "(//a)/@b", "D-11", "no path can follow"},
    AdviceRow{"path_behind_call", "string(a)//b", "D-11"},
    AdviceRow{"predicate_behind_parenthesis", "(//a)[1]", "D-11", "no predicate can follow"},
    AdviceRow{"predicate_behind_literal", "'abc'[1]", "D-11"},
    AdviceRow{"tab", "1 +\t1", "D-01"},
    AdviceRow{"line_feed", "a\n= 1", "D-01"},
    AdviceRow{"minus_behind_a_name", "//a/@b - 80", "D-02"},
    AdviceRow{"number_without_zero", ".5 + 1", "D-04"},
    AdviceRow{"id", "id('b1')", "D-58", "there is no function 'id'"},
    AdviceRow{"lang", "lang('en')", "D-58"},
    AdviceRow{"namespace_uri", "namespace-uri()", "D-58"},
    AdviceRow{"several", "p:a/text() = .5", "D-12 D-14 D-04"},
    AdviceRow{"the_same_twice", "p:a/p:a", "D-12"},
    AdviceRow{"only_those_at_fault", "concat('a/text()', p:a)", "D-12"},
    AdviceRow{"nothing_open", "a/b[", ""},
    AdviceRow{"nothing_known", "a/#", ""},
    AdviceRow{"nothing_there", "", ""},
    AdviceRow{"literal_not_closed", "'abc", ""},
    AdviceRow{"unknown_function", "foo(1)", ""},
    AdviceRow{"other_mistake_remains", "a/text()[", ""},
    AdviceRow{"not_ascii", "\xC3\xA9/text()", "D-14"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });
// clang-format on

TEST(Nesting, IsNamedAsTheCause)
{
    TraceLog trace(TraceOff);
    PluginLibrary library(PLUGIN_MODULE);
    Evaluator evaluator(library, trace, {});
    const std::string deep = std::string(257, '(') + '1' + std::string(257, ')');
    const std::vector<Hint> hints = RefusalAdvisor(evaluator).whyRefused(deep);
    ASSERT_EQ(hints.size(), 1U);
    EXPECT_EQ(hints[0].difference, 19);
}

TEST(Suspicions, DoNotOverlapAndAreBounded)
{
    std::string text;
    for (int i = 0; i < 1000; ++i)
    {
        text += "p:a/text()/child | ";
    }
    std::size_t end = 0;
    for (const Suspect& suspect : findSuspects(text))
    {
        EXPECT_GE(suspect.begin, end);
        end = suspect.begin + suspect.length;
        EXPECT_LE(end, text.size());
    }
}

TEST(ExpressionText, LiteralsAreHidden)
{
    EXPECT_EQ(ExpressionText::withoutLiterals("a='b' \"c'd\"e"), "a='.' \"...\"e");
    EXPECT_EQ(ExpressionText::withoutLiterals("'ab"), "'..");
}

TEST(ExpressionText, Numbers)
{
    for (const char* pText : {"1", "1.5", ".5", "5.", "-1", "- 1", " 12 "})
    {
        EXPECT_TRUE(ExpressionText::isNumber(pText)) << pText;
    }
    for (const char* pText : {"", "-", ".", "1.2.3", "1e3", "+1", "--1", "x"})
    {
        EXPECT_FALSE(ExpressionText::isNumber(pText)) << pText;
    }
}

TEST(ExpressionText, LeadingAxes)
{
    EXPECT_EQ(ExpressionText::leadingAxis("child"), "child");
    EXPECT_EQ(ExpressionText::leadingAxis("child-1"), "child");
    EXPECT_EQ(ExpressionText::leadingAxis("self.x"), "self");
    EXPECT_EQ(ExpressionText::leadingAxis("descendant-or-self"), "descendant-or-self");
    EXPECT_EQ(ExpressionText::leadingAxis("children"), "");
    EXPECT_EQ(ExpressionText::leadingAxis("a"), "");
}
