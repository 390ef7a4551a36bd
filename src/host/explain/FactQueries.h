#pragma once

#include "explain/ExpressionFacts.h"
#include "xpathlanguage/XPathFunctionTable.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// Queries over the facts of an expression, for the rules and the printers.
/// Tested by: tests/host/explain/DialectTouchesTest.cpp
namespace FactQueries
{

bool isPath(const TreeNode& i_Node);
/// The function that a token or a node calls; null for an operand or an operator between operands.
const XPathLanguage::Function* functionOf(const TokenFact& i_Token);
const XPathLanguage::Function* functionOf(const TreeNode& i_Node);
bool isEquality(std::string_view i_Operator);
bool isOrdering(std::string_view i_Operator);
bool isComparison(std::string_view i_Operator);
/// Whether it is "or" or "and".
bool isLogic(std::string_view i_Operator);

/// The value of a node as text, if it is known: that of a literal, that of an operator or a call if it was computed,
/// and for a path its first value if that was queried.
std::optional<std::string> valueOf(const ExpressionFacts& i_Facts, std::size_t i_Node);

/// The value that a rule may rely on. As `valueOf`, but the values in a predicate may change from node to node, so in a
/// predicate only values that are the same for all nodes count.
std::optional<std::string> lastingValueOf(const ExpressionFacts& i_Facts, std::size_t i_Node);

/// Sets `isConstant` in the nodes that are constant.
void markConstants(ExpressionFacts& io_Facts);

/// The facts of a path, found by its text; null if there are none.
const PathFact* pathOf(const ExpressionFacts& i_Facts, const TreeNode& i_Node);

bool anyToken(const ExpressionFacts& i_Facts, const std::function<bool(const TokenFact&)>& i_Test);
bool hasToken(const ExpressionFacts& i_Facts, std::string_view i_Text);
bool anyNode(const ExpressionFacts& i_Facts, const std::function<bool(const TreeNode&)>& i_Test);
bool anyBranch(const ExpressionFacts& i_Facts, const std::function<bool(const BranchFact&)>& i_Test);
/// Passes each step with its branch and its index in the branch.
bool anyStep(const ExpressionFacts& i_Facts,
             const std::function<bool(const BranchFact&, const StepFact&, std::size_t)>& i_Test);

} // namespace FactQueries
