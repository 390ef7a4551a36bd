#pragma once

#include "xpathlanguage/XPathWord.h"

#include <cstddef>
#include <string>
#include <string_view>

/// Every function, in the order of all lists of functions: X(name, class, parameters, initial, maximum, minimum,
/// priority, result, types, reads, answer).
///
/// - parameters: as a user writes them; "?" marks an optional one, "..." means that more may follow
/// - initial: the argument count of a call without arguments
/// - maximum, minimum: how many arguments are accepted; see below for `CallCount` and `NoLimit`
/// - priority: see `XPATH_OPERATORS`
/// - result, types: the type of the result, and the types to which arguments are converted, the first argument first.
///   The last type also applies to all further arguments. (): arguments are not converted
/// - reads: see `Reads`
/// - answer: what it returns, in one line, as in docs/dialect.md
///
/// D-22, D-23: the priorities are irregular. All but one are those of "*" or of "or". In XPath 1.0 a call binds tighter
/// than any operator; here "2 * count(a)" applies the "*" before the call.
// clang-format off
#define XPATH_FUNCTIONS(X)                                                                                             \
    X("position",         XPathFunction_position,        "",                       0, CallCount, CallCount, 5,         \
      NumberType,  (),                                   ReadsContext,                                                 \
      "number: position in the list that the predicate filters; 1 outside a predicate")                                \
    X("count",            XPathFunction_count,           "nodes",                  1, CallCount, CallCount, 4,         \
      NumberType,  (),                                   ReadsNothing,                                                 \
      "number of nodes")                                                                                               \
    X("last",             XPathFunction_last,            "",                       0, CallCount, CallCount, 4,         \
      NumberType,  (),                                   ReadsContext,                                                 \
      "number: size of the list that the predicate filters; 1 outside a predicate")                                    \
    X("local-name",       XPathFunction_localname,       "nodes?",                 0,         1,         0, 4,         \
      StringType,  (),                                   ReadsNothing,                                                 \
      "NOT SUPPORTED: error -102")                                                                                     \
    X("name",             XPathFunction_name,            "nodes?",                 1,         1,         0, 4,         \
      StringType,  (),                                   ReadsContext,                                                 \
      "string: name of the first node, or of the context node of a predicate")                                         \
    X("string",           XPathFunction_string,          "value?",                 0,         1,         0, 4,         \
      StringType,  (),                                   ReadsValues,                                                  \
      "string; for a node set, its first value")                                                                       \
    X("concat",           XPathFunction_concat,          "string, string, ...",    1,   NoLimit,         2, 4,         \
      StringType,  (StringType),                         ReadsValues,                                                  \
      "string: the arguments, joined")                                                                                 \
    X("starts-with",      XPathFunction_startsWith,      "string, string",         1, CallCount, CallCount, 1,         \
      BooleanType, (StringType, StringType),             ReadsValues,                                                  \
      "boolean")                                                                                                       \
    X("contains",         XPathFunction_contains,        "string, string",         1, CallCount, CallCount, 1,         \
      BooleanType, (StringType, StringType),             ReadsValues,                                                  \
      "boolean")                                                                                                       \
    X("substring-before", XPathFunction_substringBefore, "string, string",         1, CallCount, CallCount, 1,         \
      StringType,  (StringType, StringType),             ReadsValues,                                                  \
      "string: the text before the first occurrence; empty without one")                                               \
    X("substring-after",  XPathFunction_substringAfter,  "string, string",         1, CallCount, CallCount, 4,         \
      StringType,  (StringType, StringType),             ReadsValues,                                                  \
      "string: the text after the first occurrence; empty without one")                                                \
    X("substring",        XPathFunction_substring,       "string, number, number?", 1,        3,         2, 1,         \
      StringType,  (StringType, NumberType, NumberType), ReadsValues,                                                  \
      "string: the part from a position, counted from 1, with a length")                                               \
    X("string-length",    XPathFunction_stringlength,    "string",                 1,         1,         0, 4,         \
      NumberType,  (StringType),                         ReadsValues,                                                  \
      "number of UTF-16 code units")                                                                                   \
    X("normalize-space",  XPathFunction_normalizespace,  "string?",                1,         1,         0, 4,         \
      StringType,  (StringType),                         ReadsValues,                                                  \
      "string without blanks at either end and with single spaces inside")                                             \
    X("translate",        XPathFunction_translate,       "string, string, string", 1,         3,         3, 4,         \
      StringType,  (),                                   ReadsNothing,                                                 \
      "NOT SUPPORTED: error -102")                                                                                     \
    X("boolean",          XPathFunction_boolean,         "value",                  1, CallCount, CallCount, 4,         \
      BooleanType, (),                                   ReadsNothing,                                                 \
      "boolean")                                                                                                       \
    X("true",             XPathFunction_true,            "",                       0, CallCount, CallCount, 4,         \
      BooleanType, (),                                   ReadsNothing,                                                 \
      "boolean")                                                                                                       \
    X("false",            XPathFunction_false,           "",                       0, CallCount, CallCount, 4,         \
      BooleanType, (),                                   ReadsNothing,                                                 \
      "boolean")                                                                                                       \
    X("not",              XPathFunction_not,             "value",                  1, CallCount, CallCount, 4,         \
      BooleanType, (),                                   ReadsNothing,                                                 \
      "boolean")                                                                                                       \
    X("number",           XPathFunction_number,          "value?",                 0,         1,         0, 4,         \
      NumberType,  (),                                   ReadsValues,                                                  \
      "number; NaN without an argument")                                                                               \
    X("sum",              XPathFunction_sum,             "nodes",                  1,         1,         1, 4,         \
      NumberType,  (),                                   ReadsValues,                                                  \
      "number: sum of the values")                                                                                     \
    X("floor",            XPathFunction_floor,           "number",                 1,         1,         1, 4,         \
      NumberType,  (NumberType),                         ReadsValues,                                                  \
      "number: largest integer not above the argument")                                                                \
    X("ceiling",          XPathFunction_ceiling,         "number",                 1,         1,         1, 4,         \
      NumberType,  (NumberType),                         ReadsValues,                                                  \
      "number: smallest integer not below the argument")                                                               \
    X("round",            XPathFunction_round,           "number",                 1,         1,         1, 4,         \
      NumberType,  (NumberType),                         ReadsValues,                                                  \
      "number: nearest integer; a half is rounded up")
// clang-format on

namespace XPathLanguage
{

constexpr int CallCount = -2; ///< limit: the call's own number of arguments, so any number is accepted
constexpr int NoLimit = -1;

/// What the result of a function depends on, apart from the arguments as such.
enum Reads
{
    ReadsNothing,
    ReadsValues, ///< the text or the number of its arguments, including node sets
    ReadsContext ///< the node that a predicate tests, or the list that it filters
};

struct Function
{
    Word name;
    std::string_view parameters;
    int maximum;
    int priority;
    Reads reads;
    std::string_view answer;

    /// The number of required and of optional arguments.
    constexpr std::size_t required() const noexcept { return count(false); }
    constexpr std::size_t optional() const noexcept { return count(true); }
    constexpr bool mayGoOn() const noexcept { return parameters.ends_with("..."); }
    /// Whether a call with any number of arguments is accepted.
    constexpr bool takesAnyNumber() const noexcept { return maximum == CallCount; }

    /// How a call is written: `substring(string, number, number?)`.
    std::string call() const { return std::string(name.text()) + '(' + std::string(parameters) + ')'; }

    /// The number of arguments in words: `2 or 3`, `none; any number`.
    std::string arguments() const
    {
        std::string text = required() + optional() == 0 ? "none" : std::to_string(required());
        if (mayGoOn())
        {
            text += " or more";
        }
        else if (optional() > 0)
        {
            text += " or " + std::to_string(required() + optional());
        }
        return takesAnyNumber() ? text + "; any number" : text;
    }

private:
    constexpr std::size_t count(bool i_IsOptional) const noexcept
    {
        std::size_t found = 0;
        std::string_view left = parameters;
        while (!left.empty() && left != "...")
        {
            const std::string_view parameter = left.substr(0, left.find(", "));
            left.remove_prefix(parameter.size() < left.size() ? parameter.size() + 2 : left.size());
            found += parameter.ends_with('?') == i_IsOptional ? 1U : 0U;
        }
        return found;
    }
};

#define XPATH_FUNCTION_ROW(name, function, parameters, initial, maximum, minimum, priority, result, types, reads,      \
                           answer)                                                                                     \
    {name, parameters, maximum, priority, reads, answer},
/// Tested by: tests/common/xpathlanguage/XPathTablesTest.cpp
inline constexpr Function s_Functions[] = {XPATH_FUNCTIONS(XPATH_FUNCTION_ROW)};
#undef XPATH_FUNCTION_ROW

/// Returns null if no function has this name.
constexpr const Function* findFunction(std::string_view i_Name) noexcept
{
    for (const Function& function : s_Functions)
    {
        if (function.name == i_Name)
        {
            return &function;
        }
    }
    return nullptr;
}

} // namespace XPathLanguage
