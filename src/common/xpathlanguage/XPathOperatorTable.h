#pragma once

#include "xpathlanguage/XPathWord.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <span>
#include <string_view>

/// Every operator, and the signs that are in a list of tokens only for their priority:
/// X(text, class of its function, level of the grammar, priority).
///
/// The operators of a level are grouped, in the order in which the tokenizer tries them: "<=" before "<".
/// D-20, D-21: "or" and "and" have the same priority, and so do all comparisons. In XPath 1.0 "and" binds tighter than
/// "or", and "<" tighter than "=".
// clang-format off
#define XPATH_OPERATORS(X)                                            \
    X("or",  XPathFunction_logical,           Or,             1)      \
    X("and", XPathFunction_logical,           And,            1)      \
    X("!=",  XPathFunction_logical_eq,        Equality,       2)      \
    X("=",   XPathFunction_logical_eq,        Equality,       2)      \
    X("<=",  XPathFunction_logical_eq,        Relational,     2)      \
    X(">=",  XPathFunction_logical_eq,        Relational,     2)      \
    X("<",   XPathFunction_logical_eq,        Relational,     2)      \
    X(">",   XPathFunction_logical_eq,        Relational,     2)      \
    X("+",   XPathFunction_aritmetical_plus,  Additive,       3)      \
    X("-",   XPathFunction_aritmetical_plus,  Additive,       3)      \
    X("*",   XPathFunction_aritmetical_multi, Multiplicative, 4)      \
    X("div", XPathFunction_aritmetical_multi, Multiplicative, 4)      \
    X("mod", XPathFunction_aritmetical_multi, Multiplicative, 4)      \
    X("(",   XPathFunction_logical_eq,        None,           2)      \
    X(")",   XPathFunction_logical_eq,        None,           2)      \
    X(",",   XPathFunction_logical_eq,        None,           2)
// clang-format on

namespace XPathLanguage
{

/// The production of an operator, from the outermost inwards.
enum class Level
{
    None, ///< a parenthesis or a comma
    Or,
    And,
    Equality,
    Relational,
    Additive,
    Multiplicative
};

struct Operator
{
    Word text;
    Level level;
    int priority; ///< a higher one is applied earlier
};

#define XPATH_OPERATOR_ROW(text, function, level, priority) {text, Level::level, priority},
/// Tested by: tests/common/xpathlanguage/XPathTablesTest.cpp
inline constexpr Operator s_Operators[] = {XPATH_OPERATORS(XPATH_OPERATOR_ROW)};
#undef XPATH_OPERATOR_ROW

/// The operators of one level.
constexpr std::span<const Operator> operatorsOf(Level i_Level) noexcept
{
    std::size_t begin = 0;
    while (begin < std::size(s_Operators) && s_Operators[begin].level != i_Level)
    {
        ++begin;
    }
    std::size_t end = begin;
    while (end < std::size(s_Operators) && s_Operators[end].level == i_Level)
    {
        ++end;
    }
    return std::span<const Operator>(s_Operators).subspan(begin, end - begin);
}

/// The texts of the operators of one level.
template <Level t_Level>
inline constexpr auto s_Texts = []
{
    std::array<std::wstring_view, operatorsOf(t_Level).size()> texts;
    std::transform(operatorsOf(t_Level).begin(), operatorsOf(t_Level).end(), texts.begin(),
                   [](const Operator& i_Operator) { return i_Operator.text.wide(); });
    return texts;
}();

/// `None` for a text that is not an operator.
constexpr Level levelOf(std::string_view i_Text) noexcept
{
    for (const Operator& row : s_Operators)
    {
        if (row.text == i_Text)
        {
            return row.level;
        }
    }
    return Level::None;
}

} // namespace XPathLanguage
