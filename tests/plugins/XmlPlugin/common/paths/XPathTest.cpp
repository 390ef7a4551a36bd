#include "paths/XPath.h"

#include "PathSupport.h"
#include "QuerySupport.h"
#include "RecordedTrace.h"
#include "values/XPathQuickCode.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory_resource>
#include <string>
#include <vector>

using namespace XmlPlugin;

namespace
{

// --- Steps of a branch --------------------------------------------------------------------------

struct CountRow
{
    const char* branch;
    unsigned count;
};

const CountRow s_Counts[] = {
    {"", 0},       {"a", 0},      {"a/b", 1},       {"a//b", 1}, {"a/b/c", 2},  {"a//b//@c", 2},
    {"//a", 0},    {"//a/b", 1},  {"a///b", 2},     {"a/", 1},   {"a[b/c]", 1}, {"a/b/endfunction()", 2},
    {"a////b", 2}, {"//a//b", 1}, {"a['/']/@b", 2},
};

TEST(XPathStepSplitter, CountsSeparators)
{
    for (const CountRow& row : s_Counts)
    {
        EXPECT_EQ(XPathStepSplitter::getStepCount(String(row.branch)), row.count) << row.branch;
    }
}

struct StepRow
{
    const char* branch;
    unsigned index;
    const char* expected; ///< `type axis name`, "deep" where it is, after "<" the text of the step before it
};

const StepRow s_Steps[] = {
    {"a", 0, "0 1 a"},
    {"a", 1, "error -103"},
    {"//a", 0, "0 1 a deep"},
    {"//a", 1, "error -103"},
    {"a/b", 0, "0 1 a"},
    {"a/b", 1, "2 1 b <a"},
    {"a//b", 1, "2 1 b deep <a"},
    {"a/b/@c", 1, "1 1 b <a"},
    {"a/b/@c", 2, "2 0 c <b"},
    {"a/b/@c", 3, "error -103"},
    {"//a//b/@c", 0, "0 1 a deep"},
    {"//a//b/@c", 1, "1 1 b deep <a"},
    {"//a//b/@c", 2, "2 0 c <b"},
    {"a[@x]/b", 1, "2 1 b <a[@x]"},
    {"", 0, "error -15100"},
    {"a/", 1, "error -15100"},
    {"a///b", 1, "error -15100"},
    {"a/ /b", 1, "error -15100"},
    {"a[b/c]", 0, "error -15101"},
    {"a[b/c]", 1, "error -15101"},
    {"a/ b /@ c", 1, "1 1 b <a"},
    {"a/ b /@ c", 2, "2 0 c < b "},
};

TEST(XPathStepSplitter, BuildsTheStepOfAnIndex)
{
    for (const StepRow& row : s_Steps)
    {
        const String branch(row.branch);
        std::pmr::monotonic_buffer_resource memory;
        XPathStepPointer pStep;
        const TErrorCode code = XPathStepSplitter::getStep(branch, row.index, memory, pStep);
        std::string text = "error " + std::to_string(code);
        EXPECT_EQ(pStep == nullptr, code != 0) << row.branch;
        if (pStep)
        {
            text = std::to_string(pStep->type()) + " " + std::to_string(pStep->axis()) + " " + pStep->name().toNarrow();
            text += pStep->isDeep() ? " deep" : "";
            text += pStep->previousText().isEmpty() ? "" : " <" + pStep->previousText().toNarrow();
        }
        EXPECT_EQ(text, row.expected) << row.branch << " " << row.index;
    }
}

// --- Branches -----------------------------------------------------------------------------------

struct BranchRow
{
    const char* path;
    const char* branches; ///< `text:count`, with " ; " between
};

const BranchRow s_Branches[] = {
    {"a/b", "a/b/endfunction():2"},
    {"/a/b", "a/b/endfunction():2"},
    {"//b", "//b/endfunction():1"},
    {"a/@id", "a/@id:1"},
    {"a/attribute::id", "a/attribute::id:1"},
    {"a/text()", "a/text():1"},
    {"a/child::text()", "a/child::text():1"},
    {"@id", "@id:0"},
    {"  /a  ", "a/endfunction():1"},
    {"a|b", "a/endfunction():1 ; b/endfunction():1"},
    {"a||b", "a/endfunction():1 ; b/endfunction():1"},
    {"|a|", "a/endfunction():1"},
    {"a | //b/@x | /c", "a/endfunction():1 ; //b/@x:1 ; c/endfunction():1"},
    {"a['|']", "a['/endfunction():1 ; ']/endfunction():1"},
    {"", ""},
    {"|", ""},
    {" ", "/endfunction():1"},
    {"/", "//endfunction():1"},
    {"//", "///endfunction():1"},
    {"a/", "a//endfunction():1"},
    {"a//", "a///endfunction():2"},
    {"a///", "a////endfunction():2"},
    {"///", "////endfunction():1"},
    {"a[1", "a[1/endfunction():1"},
    {"a/@", "a/@/endfunction():2"},
};

std::string printStep(const XPathStep& i_Step)
{
    return std::to_string(i_Step.type()) + " " + std::to_string(i_Step.axis()) + " " + i_Step.name().toNarrow() +
           (i_Step.isDeep() ? " deep" : "") + " <" + i_Step.previousText().toNarrow();
}

/// Also the step that is not written is the one that the text has there.
void expectStepsOfItsText(const XPathBranch& i_Branch)
{
    const String text = i_Branch.text();
    if (i_Branch.m_Written == L"/")
    {
        return; // with the step behind it, it looks like a deep branch
    }
    std::pmr::monotonic_buffer_resource memory;
    EXPECT_EQ(i_Branch.m_StepCount, XPathStepSplitter::getStepCount(text)) << text.toNarrow();
    for (unsigned i = 0; i <= i_Branch.m_StepCount; ++i)
    {
        const XPathBranch::Slot& slot = i_Branch.m_Steps[i];
        XPathStepPointer pStep;
        EXPECT_EQ(slot.m_Code, XPathStepSplitter::getStep(text, i, memory, pStep)) << text.toNarrow() << " " << i;
        ASSERT_EQ(slot.m_pStep == nullptr, pStep == nullptr) << text.toNarrow() << " " << i;
        if (pStep)
        {
            EXPECT_EQ(printStep(*slot.m_pStep), printStep(*pStep)) << text.toNarrow() << " " << i;
        }
    }
}

TEST(XPath, CutsAPathIntoBranches)
{
    for (const BranchRow& row : s_Branches)
    {
        XPath path{String(row.path)};
        path.splitXPath();
        std::string text;
        for (const XPathBranch& branch : path.branches())
        {
            text += (text.empty() ? "" : " ; ") + branch.text().toNarrow() + ":" + std::to_string(branch.m_StepCount);
            EXPECT_EQ(branch.m_Steps.size(), branch.m_StepCount + 1) << row.path;
            expectStepsOfItsText(branch);
        }
        EXPECT_EQ(text, row.branches) << row.path;
    }
}

// --- Values -------------------------------------------------------------------------------------

/// Numbers: a 1, b 3, c 4, b 6; each attribute has the number before its element.
constexpr const char* s_Document = R"(<a id="1"><b id="3"><c/></b><b id="6"/></a>)";

struct ValueRow
{
    const char* name;
    const char* path;
    const char* expected;
};

const ValueRow s_Values[] = {
    {"absolute", "/a/b", "b#3 b#6"},
    {"relative", "a/b", "b#3 b#6"},
    {"deep", "//b", "b#3 b#6"},
    {"deep_finds_the_root", "//a", "a#1"},
    {"attribute", "a/b/@id", "3 6"},
    {"parsed_trees_have_no_text", "a/text()", "-"},
    {"root_of_another_name", "x/b", "-"},
    {"attribute_alone", "@id", "-"},
    {"union_with_itself", "a/b | a/b", "b#3 b#6"},
    {"union_in_document_order", "a/b/c | a/b", "b#3 c#4 b#6"},
    {"union_of_attributes", "a/b/@id | a/@id | a/b/@id", "1 3 6"},
    {"union_of_kinds", "a/b/@id | //c", "3 c#4 6"},
    {"unknown_axis", "a/foo::b", "b#3 b#6"},
    {"axis_without_a_name", "a/::b", "b#3 b#6"},
    {"spaces", " a / child :: b / @ id ", "3 6"},
    {"root_predicate", "a[@id]/b/@id", "3 6"},
    {"root_predicate_drops", "a[@x]/b/@id", "-"},
    {"deep_root_predicate_goes_on", "//a[@x]/b/@id", "-"},
    {"deep_root_predicate_finds_below", "//b[c]/@id", "3"},
    {"nothing", "", "-"},
    {"bars_only", "||", "-"},
    {"empty_first_step", " ", "error -15006"},
    {"slash", "/", "error -15006"},
    {"two_slashes", "//", "error -15006"},
    {"three_slashes", "///a", "error -15006"},
    {"malformed_first_step", "a[1", "error -15006"},
    {"malformed_first_step_close", "a]/b", "error -15006"},
    {"malformed_first_step_alone", "[1]", "error -15006"},
    {"blank_branch", "a | | a", "error -15006"},
    {"second_branch_fails", "a/b | a[", "error -15006"},
    {"malformed_step", "a/b[1", "error -15101"},
    {"malformed_step_close", "a/b]", "error -15101"},
    {"malformed_later_step", "a/b/c[1", "error -15101"},
    {"malformed_step_out_of_reach", "a/x/c[1", "-"},
    {"slash_in_a_predicate", "a/b[c/d]", "error -15101"},
    {"empty_step", "a///b", "error -15100"},
    {"slash_at_the_end", "a/", "a#1"},
    {"empty_attribute_name", "a/@", "error -15101"},
    {"empty_axis_name", "a/child::", "error -15101"},
    {"second_branch_fails_later", "a/b | a/b[", "error -15101"},
    {"empty_predicate", "a/b[]", "error -15106"},
    {"failing_predicate", "a/b[local-name()]", "error -102"},
};

TEST(XPath, SelectsInDocumentOrderWithoutDuplicates)
{
    const TestDocument document(s_Document);
    for (const ValueRow& row : s_Values)
    {
        EXPECT_EQ(select(document.root(), row.path), row.expected) << row.name;
    }
}

TEST(XPath, WithoutANodeSelectsNothing)
{
    EXPECT_EQ(select(nullptr, "//a"), "-");
    EXPECT_EQ(select(nullptr, "a["), "-");
}

TEST(XPath, ReplacesWhatTheOutputHeld)
{
    const TestDocument document(s_Document);
    XPathOutputElement former;
    XPathOutputList output;
    XPath path(String(L"a/b/@id"));
    for (int i = 0; i < 3; ++i)
    {
        output.push_back(&former);
        ASSERT_EQ(path.getValues(document.root(), output), 0);
        EXPECT_EQ(printRecords(output), "2|3|3|b\n5|6|6|b\n");
        EXPECT_TRUE(path.branches().empty()) << "quick code needs none";
    }
    const XPathQuickCode::Forbidden general;
    for (int i = 0; i < 3; ++i)
    {
        output.push_back(&former);
        ASSERT_EQ(path.getValues(document.root(), output), 0);
        EXPECT_EQ(printRecords(output), "2|3|3|b\n5|6|6|b\n");
        EXPECT_EQ(path.branches().size(), 1U) << "cut once only";
    }
    XPath broken(String(L"a/b | a["));
    EXPECT_EQ(broken.getValues(document.root(), output), XML_PLUGIN_ERROR_XPATH_FIRST_STEP);
    EXPECT_TRUE(output.empty());
}

TEST(XPath, TracesWhatItDoes)
{
    const TestDocument document(s_Document);
    RecordedTrace trace;
    EXPECT_EQ(select(document.root(), "a/b"), "b#3 b#6");
    EXPECT_EQ(select(nullptr, "a"), "-");
    for (const char* pText : {"|XPath query = a/b", "| m_XPathParser.getStepCount = 2",
                              "|Evaluating the xpath [a/b] for the XML file ", "|No nodes available for the XML file ",
                              "|Step matched against node [b]", "|Node match. EvaluateNode", "|Evaluate result = 0"})
    {
        EXPECT_TRUE(std::any_of(trace.lines.begin(), trace.lines.end(),
                                [&](const std::string& i_Line) { return i_Line.ends_with(pText); }))
            << pText;
    }
}

} // namespace
