#pragma once

#include "explain/ExpressionFacts.h"
#include "xpathlanguage/XPathFunctionTable.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// Questions about the facts of an expression, for the rules and the printers.
/// Tested by: tests/host/explain/DialectTouchesTest.cpp
namespace FactQueries
{

bool isPath(const TreeNode& i_Node);
/// The function that a token or a node calls; null for an operand, a sign or a word between operands.
const XPathLanguage::Function* functionOf(const TokenFact& i_Token);
const XPathLanguage::Function* functionOf(const TreeNode& i_Node);
bool isEquality(std::string_view i_Operator);
bool isOrdering(std::string_view i_Operator);
bool isComparison(std::string_view i_Operator);
/// Whether it is "or" or "and".
bool isLogic(std::string_view i_Operator);

/// The value of a node as text, where it is known: of a literal, of what was computed from a document or from
/// literals alone, and of a path the first value when it was asked for.
std::optional<std::string> valueOf(const ExpressionFacts& i_Facts, std::size_t i_Node);

/// The value that a rule may rely on: as `valueOf`, but in a predicate, which has other values for each node, only what
/// is the same for all.
std::optional<std::string> lastingValueOf(const ExpressionFacts& i_Facts, std::size_t i_Node);

/// Finds out which nodes are constant.
void markConstants(ExpressionFacts& io_Facts);

/// Null when there is none of this text.
const PathFact* pathOf(const ExpressionFacts& i_Facts, const TreeNode& i_Node);

bool anyToken(const ExpressionFacts& i_Facts, const std::function<bool(const TokenFact&)>& i_Test);
bool hasToken(const ExpressionFacts& i_Facts, std::string_view i_Text);
bool anyNode(const ExpressionFacts& i_Facts, const std::function<bool(const TreeNode&)>& i_Test);
bool anyBranch(const ExpressionFacts& i_Facts, const std::function<bool(const BranchFact&)>& i_Test);
/// For each step with its index in its branch.
bool anyStep(const ExpressionFacts& i_Facts,
             const std::function<bool(const BranchFact&, const StepFact&, std::size_t)>& i_Test);

} // namespace FactQueries
