// Rules about the text of an expression and its tokens.
#include "advice/ExpressionText.h"
#include "explain/DialectRules.h"
#include "explain/FactQueries.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <string_view>
#include <vector>

namespace Text = ExpressionText;
using FactQueries::anyStep;
using FactQueries::anyToken;
using FactQueries::functionOf;
using FactQueries::isLogic;
using XPathLanguage::Level;

namespace
{

using Facts = const ExpressionFacts&;

/// Whether a call of this function is put off as far as "or" is.
bool isLowest(const TokenFact& i_Token)
{
    constexpr int lowest = XPathLanguage::operatorsOf(Level::Or).front().priority;
    const XPathLanguage::Function* const pFunction = functionOf(i_Token);
    return pFunction != nullptr && pFunction->priority == lowest;
}

bool isInfix(const TokenFact& i_Token)
{
    return i_Token.isOperator && XPathLanguage::levelOf(i_Token.text) != Level::None;
}

bool isWordOperator(const TokenFact& i_Token)
{
    return isInfix(i_Token) && Text::isNameStart(i_Token.text.front());
}

/// The text without literals and without the contents of brackets.
std::string outsideOfBrackets(Facts i_Facts)
{
    std::string result;
    int depth = 0;
    for (const char byte : Text::withoutLiterals(i_Facts.text))
    {
        depth -= byte == ']' && depth > 0 ? 1 : 0;
        result += depth == 0 ? byte : '.';
        depth += byte == '[' ? 1 : 0;
    }
    return result;
}

bool hasSpaceInName(Facts i_Facts)
{
    return anyStep(i_Facts, [](const BranchFact&, const StepFact& i_Step, std::size_t)
                   { return i_Step.test.find(' ') != std::string::npos; });
}

bool hasGluedOperator(Facts i_Facts)
{
    const std::string text = outsideOfBrackets(i_Facts);
    for (std::size_t i = 0; i + 1 < i_Facts.tokens.size(); ++i)
    {
        const std::string& word = i_Facts.tokens[i].text;
        const std::string& next = i_Facts.tokens[i + 1].text;
        const bool isWord = isWordOperator(i_Facts.tokens[i]);
        if (isWord && Text::isNameByte(next.front()) &&
            text.find(word + next.substr(0, next.find('['))) != std::string::npos)
        {
            return true;
        }
    }
    return false;
}

bool hasLoneFullStop(Facts i_Facts)
{
    return anyToken(i_Facts, [](const TokenFact& i_Token) { return Text::trim(i_Token.text) == "."; });
}

bool hasQuotesInQuotes(Facts i_Facts)
{
    return anyToken(i_Facts, [](const TokenFact& i_Token)
                    { return Text::isLiteral(i_Token.text) && Text::isLiteral(Text::withoutQuotes(i_Token.text)); });
}

bool hasQuotedNumber(Facts i_Facts)
{
    return anyToken(i_Facts, [](const TokenFact& i_Token)
                    { return Text::isLiteral(i_Token.text) && i_Token.type == ValueType::Number; });
}

/// Counts "and" separately for each pair of parentheses and each argument.
bool hasSeveralAnds(Facts i_Facts)
{
    const std::string text = outsideOfBrackets(i_Facts);
    std::vector<int> counts{0};
    for (std::size_t i = 0; i < text.size();)
    {
        const std::size_t end = Text::nameEnd(text, i);
        if (end > i)
        {
            const bool isAnd = text.compare(i, end - i, "and") == 0 && text.find_first_not_of(' ') != i;
            counts.back() += isAnd ? 1 : 0;
            counts.back() = text.compare(i, end - i, "or") == 0 ? 0 : counts.back();
            if (counts.back() > 1)
            {
                return true;
            }
            i = end;
            continue;
        }
        if (text[i] == '(')
        {
            counts.push_back(0);
        }
        else if (text[i] == ')' && counts.size() > 1)
        {
            counts.pop_back();
        }
        else if (text[i] == ',')
        {
            counts.back() = 0;
        }
        ++i;
    }
    return false;
}

/// The minus signs before an operand. The first one after another operand is a subtraction.
bool hasEvenSigns(Facts i_Facts)
{
    const std::string text = outsideOfBrackets(i_Facts);
    char previous = 0;
    int signs = 0;
    for (const char byte : text)
    {
        if (byte == ' ')
        {
            continue;
        }
        if (byte == '-')
        {
            const bool isSubtraction =
                signs == 0 && (Text::isNameByte(previous) ||
                               (previous != 0 && std::string_view(")]'\"*").find(previous) != std::string_view::npos));
            signs += isSubtraction ? 0 : 1;
            previous = '-';
            continue;
        }
        if (signs > 0 && signs % 2 == 0)
        {
            return true;
        }
        signs = 0;
        previous = byte;
    }
    return false;
}

bool hasVariable(Facts i_Facts)
{
    return Text::withoutLiterals(i_Facts.text).find('$') != std::string::npos;
}

/// Whether an operator of the level \p i_First is followed by one of the adjacent level \p i_Second in the same pair of
/// parentheses. An operator of a level outside both restarts the search.
bool areInOrder(Facts i_Facts, Level i_First, Level i_Second)
{
    std::vector<bool> isSeen{false};
    for (const TokenFact& token : i_Facts.tokens)
    {
        if (!token.isOperator)
        {
            continue;
        }
        if (token.text == "(")
        {
            isSeen.push_back(false);
        }
        else if (token.text == ")" && isSeen.size() > 1)
        {
            isSeen.pop_back();
        }
        else if (token.text == "," || (isInfix(token) && XPathLanguage::levelOf(token.text) < i_First))
        {
            isSeen.back() = false;
        }
        else if (isSeen.back() && XPathLanguage::levelOf(token.text) == i_Second)
        {
            return true;
        }
        else if (XPathLanguage::levelOf(token.text) == i_First)
        {
            isSeen.back() = true;
        }
    }
    return false;
}

bool hasOrBeforeAnd(Facts i_Facts)
{
    return areInOrder(i_Facts, Level::Or, Level::And);
}

bool hasEqualityBeforeOrdering(Facts i_Facts)
{
    return areInOrder(i_Facts, Level::Equality, Level::Relational);
}

bool hasCallBehindProduct(Facts i_Facts)
{
    constexpr int product = XPathLanguage::operatorsOf(Level::Multiplicative).front().priority;
    for (std::size_t i = 1; i < i_Facts.tokens.size(); ++i)
    {
        const TokenFact& before = i_Facts.tokens[i - 1];
        const XPathLanguage::Function* const pFunction = functionOf(i_Facts.tokens[i]);
        const bool isProduct = before.isOperator && XPathLanguage::levelOf(before.text) == Level::Multiplicative;
        if (isProduct && pFunction != nullptr && pFunction->priority == product)
        {
            return true;
        }
    }
    return false;
}

/// The index of the parenthesis that closes the call at \p i_Call.
std::size_t endOfCall(Facts i_Facts, std::size_t i_Call)
{
    int depth = 0;
    for (std::size_t i = i_Call + 1; i < i_Facts.tokens.size(); ++i)
    {
        depth += i_Facts.tokens[i].isOperator && i_Facts.tokens[i].text == "(" ? 1 : 0;
        depth -= i_Facts.tokens[i].isOperator && i_Facts.tokens[i].text == ")" ? 1 : 0;
        if (depth == 0)
        {
            return i;
        }
    }
    return i_Facts.tokens.size();
}

bool hasOperatorBesideLowestCall(Facts i_Facts)
{
    for (std::size_t i = 0; i < i_Facts.tokens.size(); ++i)
    {
        if (!isLowest(i_Facts.tokens[i]))
        {
            continue;
        }
        const std::size_t after = endOfCall(i_Facts, i) + 1;
        const bool isBefore = i > 0 && isInfix(i_Facts.tokens[i - 1]) && !isLogic(i_Facts.tokens[i - 1].text);
        const bool isAfter =
            after < i_Facts.tokens.size() && isInfix(i_Facts.tokens[after]) && !isLogic(i_Facts.tokens[after].text);
        if (isBefore || isAfter)
        {
            return true;
        }
    }
    return false;
}

bool hasConditionBeforeLowestCall(Facts i_Facts)
{
    for (std::size_t i = 1; i < i_Facts.tokens.size(); ++i)
    {
        if (isLowest(i_Facts.tokens[i]) && isLogic(i_Facts.tokens[i - 1].text))
        {
            return true;
        }
    }
    return false;
}

bool hasUnionBesideParenthesis(Facts i_Facts)
{
    const std::string text = outsideOfBrackets(i_Facts);
    for (std::size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|', bar + 1))
    {
        const std::size_t before = bar == 0 ? std::string::npos : text.find_last_not_of(' ', bar - 1);
        const std::size_t after = Text::skipSpaces(text, bar + 1);
        const std::size_t open = Text::skipSpaces(text, Text::nameEnd(text, after));
        const bool isBefore = before != std::string::npos && text[before] == ')';
        if (isBefore || (open < text.size() && text[open] == '('))
        {
            return true;
        }
    }
    return false;
}

/// Whether a literal or a number ends just before \p i_End.
bool isValueBefore(std::string_view i_Text, std::size_t i_End)
{
    const std::string_view front = Text::trim(i_Text.substr(0, i_End));
    const std::size_t last = front.find_last_not_of("0123456789.");
    const bool isNumber =
        last != front.size() - 1 && (last == std::string_view::npos || !Text::isNameByte(front[last]));
    return !front.empty() && (front.back() == '\'' || front.back() == '"' || isNumber);
}

bool isValueBehind(std::string_view i_Text, std::size_t i_Begin)
{
    const std::size_t next = Text::skipSpaces(i_Text, i_Begin);
    return next < i_Text.size() && (i_Text[next] == '\'' || i_Text[next] == '"' || Text::isDigit(i_Text[next]));
}

bool hasUnionOfValues(Facts i_Facts)
{
    const std::string text = outsideOfBrackets(i_Facts);
    for (std::size_t bar = text.find('|'); bar != std::string::npos; bar = text.find('|', bar + 1))
    {
        if (isValueBefore(text, bar) || isValueBehind(text, bar + 1))
        {
            return true;
        }
    }
    return false;
}

constexpr DialectRule s_Rules[] = {
    {2, hasSpaceInName},
    {3, hasGluedOperator},
    {5, hasLoneFullStop},
    {6, hasQuotesInQuotes},
    {7, hasQuotedNumber},
    {8, hasSeveralAnds},
    {9, hasEvenSigns},
    {10, hasVariable},
    {20, hasOrBeforeAnd},
    {21, hasEqualityBeforeOrdering},
    {22, hasCallBehindProduct},
    {23, hasOperatorBesideLowestCall},
    {24, hasConditionBeforeLowestCall},
    {43, hasUnionOfValues},
    {44, hasUnionBesideParenthesis},
};

} // namespace

std::span<const DialectRule> readingRules()
{
    return s_Rules;
}
