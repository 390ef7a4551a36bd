#pragma once

#include "base/ErrorCode.h"
#include "plugin/Hint.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// How the plug-in understood an expression. All texts are UTF-8.

/// Types of values, with the numbers that the plug-in's trace records use.
enum class ValueType
{
    None = -1,
    Boolean = 0,
    String = 1,
    Number = 2,
    NodeSet = 3
};

struct TokenFact
{
    std::string text;
    bool isOperator = false; ///< operators, names of functions, parentheses and commas
    ValueType type = ValueType::None;
};

/// An operand or an operator of the tree.
struct TreeNode
{
    std::string text;
    bool isOperator = false;
    ValueType type = ValueType::None;
    std::size_t wanted = 0;            ///< number of arguments that an operator expects
    std::vector<std::size_t> children; ///< the arguments that it found, as indices of nodes, in the order as written
    bool failed = false;               ///< an operator that left no result
    bool isConstant = false;           ///< has the same value in all documents
    std::optional<std::string> value;  ///< the result; for a path, the number of nodes
    std::optional<std::string> first;  ///< for a path: its first value, if that was queried
};

struct ConversionFact
{
    std::string function;     ///< the operator or function whose argument was converted
    std::size_t argument = 0; ///< which one, counted from 1
    std::string kind;         ///< "string()", "number()" or "boolean()"
    std::string result;
};

struct StepFact
{
    std::string text; ///< as split off
    std::string axis; ///< in full; "child" if the axis is not known
    std::string test;
    std::vector<std::string> predicates; ///< texts between the brackets
    bool isDeep = false;                 ///< after "//"
    TErrorCode code = 0;
};

struct BranchFact
{
    std::string text;
    std::vector<StepFact> steps; ///< without the artificial last one
};

struct PathFact
{
    std::string text;
    std::vector<BranchFact> branches;
};

/// What an evaluation answers.
struct AnswerFact
{
    TErrorCode code = 0;
    std::vector<std::string> values; ///< empty after an error
};

struct ExpressionFacts
{
    std::string text;
    TErrorCode code = 0;
    std::optional<int> recognisedUpTo; ///< for a rejected expression, in UTF-16 code units
    std::string reason;                ///< why a document cannot be read
    std::vector<TokenFact> tokens;
    std::vector<TreeNode> nodes;    ///< the postfix list: each node comes after its arguments
    std::vector<std::size_t> stack; ///< indices of the nodes left at the end; the last one is the result
    std::vector<ConversionFact> conversions;
    std::vector<PathFact> paths;             ///< one for each text
    std::vector<ExpressionFacts> predicates; ///< one per text, including those inside predicates
    std::vector<std::string> values;         ///< the answer
    std::optional<AnswerFact> unobserved;    ///< the answer without trace records, if it differs
    std::map<TErrorCode, std::size_t> codes; ///< for a predicate: number of nodes per answer code
    std::vector<Hint> differences;           ///< those that the expression touches
    bool isPredicate = false;
    bool hasDocument = false;         ///< false if only a document with one element was used
    bool hasDefaultNamespace = false; ///< of that document

    /// The result of the expression; null if nothing is left.
    const TreeNode* result() const { return stack.empty() ? nullptr : &nodes[stack.back()]; }
    bool isRefused() const { return tokens.empty(); }
};
