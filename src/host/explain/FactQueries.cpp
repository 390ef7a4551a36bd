#include "explain/FactQueries.h"

#include "advice/ExpressionText.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <algorithm>

namespace FactQueries
{

using XPathLanguage::Level;

bool isPath(const TreeNode& i_Node)
{
    return !i_Node.isOperator && i_Node.type == ValueType::NodeSet;
}

const XPathLanguage::Function* functionOf(const TokenFact& i_Token)
{
    return i_Token.isOperator ? XPathLanguage::findFunction(i_Token.text) : nullptr;
}

const XPathLanguage::Function* functionOf(const TreeNode& i_Node)
{
    return i_Node.isOperator ? XPathLanguage::findFunction(i_Node.text) : nullptr;
}

bool isEquality(std::string_view i_Operator)
{
    return XPathLanguage::levelOf(i_Operator) == Level::Equality;
}

bool isOrdering(std::string_view i_Operator)
{
    return XPathLanguage::levelOf(i_Operator) == Level::Relational;
}

bool isComparison(std::string_view i_Operator)
{
    return isEquality(i_Operator) || isOrdering(i_Operator);
}

bool isLogic(std::string_view i_Operator)
{
    const Level level = XPathLanguage::levelOf(i_Operator);
    return level == Level::Or || level == Level::And;
}

std::optional<std::string> valueOf(const ExpressionFacts& i_Facts, std::size_t i_Node)
{
    const TreeNode& node = i_Facts.nodes[i_Node];
    if (isPath(node))
    {
        return node.first;
    }
    if (!node.isOperator)
    {
        return std::string(ExpressionText::withoutQuotes(node.text));
    }
    return i_Facts.hasDocument || node.isConstant ? node.value : std::nullopt;
}

std::optional<std::string> lastingValueOf(const ExpressionFacts& i_Facts, std::size_t i_Node)
{
    return i_Facts.isPredicate && !i_Facts.nodes[i_Node].isConstant ? std::nullopt : valueOf(i_Facts, i_Node);
}

void markConstants(ExpressionFacts& io_Facts)
{
    // Every node comes after its arguments.
    for (TreeNode& node : io_Facts.nodes)
    {
        const XPathLanguage::Function* const pFunction = functionOf(node);
        const bool readsContext = pFunction != nullptr && pFunction->reads == XPathLanguage::ReadsContext;
        node.isConstant = !isPath(node) && !readsContext &&
                          std::all_of(node.children.begin(), node.children.end(),
                                      [&](std::size_t i_Child) { return io_Facts.nodes[i_Child].isConstant; });
    }
}

const PathFact* pathOf(const ExpressionFacts& i_Facts, const TreeNode& i_Node)
{
    const auto isSame = [&](const PathFact& i_Path) { return i_Path.text == ExpressionText::trim(i_Node.text); };
    const auto found = std::find_if(i_Facts.paths.begin(), i_Facts.paths.end(), isSame);
    return found == i_Facts.paths.end() ? nullptr : &*found;
}

bool anyToken(const ExpressionFacts& i_Facts, const std::function<bool(const TokenFact&)>& i_Test)
{
    return std::any_of(i_Facts.tokens.begin(), i_Facts.tokens.end(), i_Test);
}

bool hasToken(const ExpressionFacts& i_Facts, std::string_view i_Text)
{
    return anyToken(i_Facts, [&](const TokenFact& i_Token) { return i_Token.text == i_Text; });
}

bool anyNode(const ExpressionFacts& i_Facts, const std::function<bool(const TreeNode&)>& i_Test)
{
    return std::any_of(i_Facts.nodes.begin(), i_Facts.nodes.end(), i_Test);
}

bool anyBranch(const ExpressionFacts& i_Facts, const std::function<bool(const BranchFact&)>& i_Test)
{
    return std::any_of(i_Facts.paths.begin(), i_Facts.paths.end(),
                       [&](const PathFact& i_Path)
                       { return std::any_of(i_Path.branches.begin(), i_Path.branches.end(), i_Test); });
}

bool anyStep(const ExpressionFacts& i_Facts,
             const std::function<bool(const BranchFact&, const StepFact&, std::size_t)>& i_Test)
{
    return anyBranch(i_Facts,
                     [&](const BranchFact& i_Branch)
                     {
                         for (std::size_t i = 0; i < i_Branch.steps.size(); ++i)
                         {
                             if (i_Test(i_Branch, i_Branch.steps[i], i))
                             {
                                 return true;
                             }
                         }
                         return false;
                     });
}

} // namespace FactQueries
