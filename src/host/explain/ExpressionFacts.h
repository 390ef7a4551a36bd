#pragma once

#include "base/ErrorCode.h"
#include "plugin/Hint.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// What the plug-in made of an expression. All texts are UTF-8.

/// Types of values, with the numbers that the plug-in's records have.
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
    std::size_t wanted = 0;            ///< number of arguments that an operator asks for
    std::vector<std::size_t> children; ///< the arguments that it found, in the order in which they were written
    bool failed = false;               ///< an operator that left nothing behind
    bool isConstant = false;           ///< the same in all documents
    std::optional<std::string> value;  ///< what came out; of a path the number of nodes
    std::optional<std::string> first;  ///< of a path: its first value, where that was asked for
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
    std::string text; ///< as cut
    std::string axis; ///< in full; "child" where none is known
    std::string test;
    std::vector<std::string> predicates; ///< texts between the brackets
    bool isDeep = false;                 ///< behind "//"
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
    std::optional<int> recognisedUpTo; ///< of a refused expression, in UTF-16 code units
    std::string reason;                ///< why a document cannot be read
    std::vector<TokenFact> tokens;
    std::vector<TreeNode> nodes;    ///< the postfix list, so that each stands behind its arguments
    std::vector<std::size_t> stack; ///< what is left at the end; the last one is the result
    std::vector<ConversionFact> conversions;
    std::vector<PathFact> paths;             ///< one for each text
    std::vector<ExpressionFacts> predicates; ///< one for each text; those of a predicate stand here, too
    std::vector<std::string> values;         ///< the answer
    std::optional<AnswerFact> unobserved;    ///< what nobody who traces gets to see, where that is another answer
    std::map<TErrorCode, std::size_t> codes; ///< of a predicate: how many nodes it answered with a code
    std::vector<Hint> differences;           ///< that the expression touches
    bool isPredicate = false;
    bool hasDocument = false;         ///< false where only a document of one element was asked
    bool hasDefaultNamespace = false; ///< of that document

    /// Null when nothing is left.
    const TreeNode* result() const { return stack.empty() ? nullptr : &nodes[stack.back()]; }
    bool isRefused() const { return tokens.empty(); }
};
