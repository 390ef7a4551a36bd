// Rules about operators that fail, and about calls and their arguments.
#include "advice/ExpressionText.h"
#include "explain/DialectRules.h"
#include "explain/FactQueries.h"

#include <algorithm>
#include <string_view>

using FactQueries::anyNode;
using FactQueries::hasToken;

namespace
{

using Facts = const ExpressionFacts&;

bool isCallOf(const TreeNode& i_Node, std::string_view i_Name)
{
    return i_Node.isOperator && i_Node.text == i_Name;
}

bool isAnyCallOf(const TreeNode& i_Node, std::string_view i_Names)
{
    return FactQueries::functionOf(i_Node) != nullptr &&
           i_Names.find(" " + i_Node.text + " ") != std::string_view::npos;
}

bool isUnwritten(const TreeNode& i_Node)
{
    return isAnyCallOf(i_Node, " translate local-name ");
}

bool hasForgottenFailure(Facts i_Facts)
{
    for (std::size_t i = 0; i < i_Facts.nodes.size(); ++i)
    {
        const auto isOperator = [](const TreeNode& i_Node) { return i_Node.isOperator; };
        const auto after = i_Facts.nodes.begin() + static_cast<std::ptrdiff_t>(i) + 1;
        if (i_Facts.nodes[i].failed &&
            (isUnwritten(i_Facts.nodes[i]) || std::any_of(after, i_Facts.nodes.end(), isOperator)))
        {
            return true;
        }
    }
    return false;
}

bool hasFailureBesideLogic(Facts i_Facts)
{
    return (hasToken(i_Facts, "or") || hasToken(i_Facts, "and")) &&
           anyNode(i_Facts, [](const TreeNode& i_Node) { return i_Node.failed; });
}

bool callsLocalName(Facts i_Facts)
{
    return anyNode(i_Facts, [](const TreeNode& i_Node) { return isCallOf(i_Node, "local-name"); });
}

bool callsTranslate(Facts i_Facts)
{
    return anyNode(i_Facts, [](const TreeNode& i_Node) { return isCallOf(i_Node, "translate"); });
}

/// Whether a function of which any number of arguments passes is called with more than it reads.
bool isGivenMore(const TreeNode& i_Node, bool i_IsOfSeveral)
{
    const XPathLanguage::Function* const pFunction = FactQueries::functionOf(i_Node);
    return pFunction != nullptr && pFunction->takesAnyNumber() && (pFunction->required() > 1) == i_IsOfSeveral &&
           i_Node.wanted > pFunction->required();
}

bool hasSurplusArguments(Facts i_Facts)
{
    return anyNode(i_Facts, [](const TreeNode& i_Node) { return isGivenMore(i_Node, false); });
}

bool hasShiftedArguments(Facts i_Facts)
{
    return anyNode(i_Facts, [](const TreeNode& i_Node) { return isGivenMore(i_Node, true); });
}

/// Whether an argument of the function is not a node set.
bool isGivenOther(Facts i_Facts, std::string_view i_Function)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       return isCallOf(i_Node, i_Function) && !i_Node.children.empty() &&
                              i_Facts.nodes[i_Node.children.back()].type != ValueType::NodeSet;
                   });
}

bool countsOther(Facts i_Facts)
{
    return isGivenOther(i_Facts, "count");
}

bool sumsOther(Facts i_Facts)
{
    return isGivenOther(i_Facts, "sum");
}

bool isCalledWithout(Facts i_Facts, std::string_view i_Functions)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node) { return isAnyCallOf(i_Node, i_Functions) && i_Node.children.empty(); });
}

bool namesNothingOutside(Facts i_Facts)
{
    return !i_Facts.isPredicate && isCalledWithout(i_Facts, " name ");
}

bool namesNoNode(Facts i_Facts)
{
    return i_Facts.hasDocument && anyNode(i_Facts,
                                          [&](const TreeNode& i_Node)
                                          {
                                              return isCallOf(i_Node, "name") && !i_Node.children.empty() &&
                                                     i_Node.type == ValueType::None &&
                                                     FactQueries::isPath(i_Facts.nodes[i_Node.children.back()]);
                                          });
}

bool namesAttribute(Facts i_Facts)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       if (!isCallOf(i_Node, "name") || i_Node.children.empty())
                       {
                           return false;
                       }
                       const PathFact* const pPath =
                           FactQueries::pathOf(i_Facts, i_Facts.nodes[i_Node.children.back()]);
                       return pPath != nullptr && !pPath->branches.empty() &&
                              pPath->branches.front().steps.back().axis == "attribute";
                   });
}

bool numbersNothing(Facts i_Facts)
{
    return isCalledWithout(i_Facts, " number ");
}

bool measuresNothing(Facts i_Facts)
{
    return isCalledWithout(i_Facts, " string-length ");
}

bool takesNoText(Facts i_Facts)
{
    return isCalledWithout(i_Facts, " string normalize-space ");
}

bool countsPairs(Facts i_Facts)
{
    const bool isPair = std::any_of(i_Facts.text.begin(), i_Facts.text.end(),
                                    [](char i_Byte) { return static_cast<unsigned char>(i_Byte) >= 0xF0; });
    return isPair && (hasToken(i_Facts, "string-length") || hasToken(i_Facts, "substring"));
}

bool keepsTabs(Facts i_Facts)
{
    return hasToken(i_Facts, "normalize-space") && i_Facts.text.find_first_of("\t\n\r") != std::string::npos;
}

constexpr DialectRule s_Rules[] = {
    {25, hasForgottenFailure}, {26, hasFailureBesideLogic}, {59, callsLocalName}, {60, callsTranslate},
    {61, hasSurplusArguments}, {62, hasShiftedArguments},   {63, countsOther},    {64, sumsOther},
    {65, namesNothingOutside}, {66, namesNoNode},           {67, namesAttribute}, {68, numbersNothing},
    {69, measuresNothing},     {70, takesNoText},           {71, countsPairs},    {72, keepsTabs},
};

} // namespace

std::span<const DialectRule> callRules()
{
    return s_Rules;
}
