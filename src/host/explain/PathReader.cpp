#include "explain/PathReader.h"

#include "advice/ExpressionText.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xpathlanguage/XPathAxisTable.h"

#include <algorithm>
#include <string_view>

namespace Text = ExpressionText;

namespace
{

constexpr std::size_t s_None = std::string_view::npos;

/// A path is split at every bar. The pieces that are not empty are its branches.
std::vector<std::string> branchesOf(std::string_view i_Path)
{
    std::vector<std::string> branches;
    while (!i_Path.empty())
    {
        const std::size_t end = std::min(i_Path.find('|'), i_Path.size());
        if (end > 0)
        {
            branches.emplace_back(Text::trim(i_Path.substr(0, end)));
        }
        i_Path.remove_prefix(std::min(end + 1, i_Path.size()));
    }
    return branches;
}

/// A branch is split at every slash.
std::vector<StepFact> stepsOf(std::string_view i_Branch)
{
    std::vector<StepFact> steps;
    bool isDeep = i_Branch.starts_with("//");
    i_Branch.remove_prefix(isDeep ? 2U : (i_Branch.starts_with("/") ? 1U : 0U));
    for (;;)
    {
        const std::size_t end = std::min(i_Branch.find('/'), i_Branch.size());
        StepFact step;
        step.text = Text::trim(i_Branch.substr(0, end));
        step.isDeep = isDeep;
        steps.push_back(std::move(step));
        if (end == i_Branch.size())
        {
            return steps;
        }
        isDeep = i_Branch.substr(end).starts_with("//");
        i_Branch.remove_prefix(end + (isDeep ? 2U : 1U));
    }
}

/// Each bracket is paired with the next closing bracket.
void cutPredicates(std::string_view i_Text, StepFact& io_Step)
{
    for (std::size_t open = i_Text.find('['); open != s_None; open = i_Text.find('[', open + 1))
    {
        const std::size_t close = i_Text.find(']', open);
        if (close == s_None)
        {
            return;
        }
        io_Step.predicates.emplace_back(i_Text.substr(open + 1, close - open - 1));
    }
}

void cutStep(StepFact& io_Step)
{
    const std::string_view text = io_Step.text;
    cutPredicates(text, io_Step);
    std::string test(Text::trim(text.substr(0, text.find('['))));
    io_Step.axis = "child";
    if (test == "." || test == "..")
    {
        io_Step.axis = test == "." ? "self" : "parent";
        test = "*";
    }
    else if (const std::size_t colons = test.find("::"); colons != s_None)
    {
        const std::string_view axis = Text::trim(std::string_view(test).substr(0, colons));
        io_Step.axis = XPathLanguage::axisName(XPathLanguage::axisCode(axis));
        test = Text::trim(std::string_view(test).substr(colons + 2));
    }
    else if (test.starts_with('@'))
    {
        io_Step.axis = "attribute";
        test = Text::trim(std::string_view(test).substr(1));
    }
    io_Step.test = test;
}

} // namespace

PathFact readPathFact(const std::string& i_Path,
                      const std::vector<std::vector<std::pair<std::string, TErrorCode>>>& i_Records)
{
    PathFact path;
    path.text = Text::trim(i_Path);
    const std::vector<std::string> branches = branchesOf(i_Path);
    for (std::size_t i = 0; i < branches.size(); ++i)
    {
        BranchFact branch{branches[i], stepsOf(branches[i])};
        std::size_t record = 0;
        for (StepFact& step : branch.steps)
        {
            cutStep(step);
            const bool isTold =
                i < i_Records.size() && record < i_Records[i].size() && i_Records[i][record].first == step.text;
            step.code = isTold ? i_Records[i][record++].second : 0;
            step.code = step.text.empty() ? static_cast<TErrorCode>(XML_PLUGIN_ERROR_XPATH_EMPTY_STEP) : step.code;
        }
        path.branches.push_back(std::move(branch));
    }
    return path;
}
