// Rules about numbers, arithmetic and comparisons. They look at values where these are known.
#include "advice/ExpressionText.h"
#include "explain/DialectRules.h"
#include "explain/FactQueries.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>

namespace Text = ExpressionText;
using FactQueries::anyNode;
using FactQueries::anyToken;
using FactQueries::isPath;

namespace
{

using Facts = const ExpressionFacts&;

/// What is known about an operand.
struct Operand
{
    ValueType type = ValueType::None;
    bool isPath = false;
    std::optional<std::string> text;

    bool is(std::string_view i_Text) const { return text && *text == i_Text; }
    bool isPlus() const { return is("Infinity"); }
    bool isMinus() const { return is("-Infinity"); }
    bool isInfinite() const { return isPlus() || isMinus(); }
    bool isNaN() const { return is("NaN"); }
    bool isFinite() const { return text && Text::isNumber(*text); }
    /// Whether the operand is not a number where one is wanted.
    bool isNotNumber() const { return isNaN() || (text && !isInfinite() && !isFinite() && type != ValueType::Boolean); }
    bool isZero() const { return isFinite() && number() == 0; }

    /// The value as a number, in the classic locale whatever the user's is; 0 if it is not a number.
    double number() const
    {
        std::istringstream stream(text.value_or(""));
        stream.imbue(std::locale::classic());
        double value = 0;
        stream >> value;
        return value;
    }
};

Operand operandAt(Facts i_Facts, std::size_t i_Node)
{
    const TreeNode& node = i_Facts.nodes[i_Node];
    return {node.type, isPath(node), FactQueries::lastingValueOf(i_Facts, i_Node)};
}

using PairTest = bool (*)(const Operand& i_Left, const Operand& i_Right);

/// Which operators a rule is about.
using OperatorTest = std::function<bool(std::string_view i_Operator)>;

OperatorTest is(std::string_view i_Operator)
{
    return [i_Operator](std::string_view i_Other) { return i_Other == i_Operator; };
}

bool isSumOrProduct(std::string_view i_Operator)
{
    return i_Operator == "*" || XPathLanguage::levelOf(i_Operator) == XPathLanguage::Level::Additive;
}

/// Whether such an operator with two operands passes the test.
bool anyPair(Facts i_Facts, const OperatorTest& i_IsMeant, PairTest i_Test)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       return i_Node.isOperator && i_Node.children.size() == 2 && i_IsMeant(i_Node.text) &&
                              i_Test(operandAt(i_Facts, i_Node.children[0]), operandAt(i_Facts, i_Node.children[1]));
                   });
}

/// Same, with the operands in either order.
bool anyMixedPair(Facts i_Facts, const OperatorTest& i_IsMeant, PairTest i_Test)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       if (!i_Node.isOperator || i_Node.children.size() != 2 || !i_IsMeant(i_Node.text))
                       {
                           return false;
                       }
                       const Operand left = operandAt(i_Facts, i_Node.children[0]);
                       const Operand right = operandAt(i_Facts, i_Node.children[1]);
                       return i_Test(left, right) || i_Test(right, left);
                   });
}

bool anyValue(Facts i_Facts, std::initializer_list<std::string_view> i_Texts)
{
    for (std::size_t i = 0; i < i_Facts.nodes.size(); ++i)
    {
        const std::optional<std::string> value = FactQueries::lastingValueOf(i_Facts, i);
        const bool isComputed = i_Facts.nodes[i].isOperator && value;
        if (isComputed && std::find(i_Texts.begin(), i_Texts.end(), *value) != i_Texts.end())
        {
            return true;
        }
    }
    return false;
}

// --- Texts of numbers ---------------------------------------------------------------------------

/// Whether "substring" with \p i_Count arguments begins at -Infinity.
bool beginsAtMinus(Facts i_Facts, std::size_t i_Count)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       return i_Node.isOperator && i_Node.text == "substring" && i_Node.children.size() == i_Count &&
                              operandAt(i_Facts, i_Node.children[1]).isMinus();
                   });
}

bool cutsFromMinus(Facts i_Facts)
{
    return beginsAtMinus(i_Facts, 2);
}

bool cutsLengthFromMinus(Facts i_Facts)
{
    return beginsAtMinus(i_Facts, 3);
}

bool roundsToNegativeZero(Facts i_Facts)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       if (!i_Node.isOperator || i_Node.text != "round" || i_Node.children.empty())
                       {
                           return false;
                       }
                       const Operand operand = operandAt(i_Facts, i_Node.children.back());
                       return operand.isFinite() && operand.number() < 0 && operand.number() >= -0.5;
                   });
}

/// Whether XPath 1.0 would print the literal in another form.
bool isOddNumber(const TreeNode& i_Node)
{
    const std::string& text = i_Node.text;
    if (i_Node.isOperator || i_Node.type != ValueType::Number || !Text::isDigit(text.front()))
    {
        return false;
    }
    const bool hasStop = text.find('.') != std::string::npos;
    const bool isPadded = text.size() > 1 && text[0] == '0' && Text::isDigit(text[1]);
    return isPadded || (hasStop && (text.back() == '.' || text.back() == '0'));
}

bool printsLiteral(Facts i_Facts)
{
    const TreeNode* const pResult = i_Facts.result();
    if (!i_Facts.isPredicate && pResult != nullptr && isOddNumber(*pResult))
    {
        return true;
    }
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       const bool isTextFunction =
                           i_Node.isOperator && (i_Node.text == "string" || i_Node.text == "concat");
                       return isTextFunction &&
                              std::any_of(i_Node.children.begin(), i_Node.children.end(),
                                          [&](std::size_t i_Child) { return isOddNumber(i_Facts.nodes[i_Child]); });
                   });
}

/// A result with six digits may have had more.
bool isShortened(const std::string& i_Number)
{
    if (i_Number.find('e') != std::string::npos)
    {
        return Text::isDigit(i_Number.front()) || i_Number.front() == '-';
    }
    std::string digits;
    std::copy_if(i_Number.begin(), i_Number.end(), std::back_inserter(digits), Text::isDigit);
    const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size());
    return Text::isNumber(i_Number) && digits.size() - first >= 6 && i_Number.find('.') != std::string::npos;
}

bool shortensNumber(Facts i_Facts)
{
    for (std::size_t i = 0; i < i_Facts.nodes.size(); ++i)
    {
        const TreeNode& node = i_Facts.nodes[i];
        const std::optional<std::string> value = FactQueries::lastingValueOf(i_Facts, i);
        if (node.isOperator && node.type == ValueType::Number && value && !value->empty() && isShortened(*value))
        {
            return true;
        }
    }
    return false;
}

bool printsNegativeZero(Facts i_Facts)
{
    return anyValue(i_Facts, {"-0"});
}

bool dividesByNegativeZero(Facts i_Facts)
{
    return anyPair(i_Facts, is("div"), [](const Operand&, const Operand& i_Right) { return i_Right.is("-0"); });
}

bool overflows(Facts i_Facts)
{
    return anyValue(i_Facts, {"inf", "-inf"});
}

bool computesUnmarkedNaN(Facts i_Facts)
{
    return anyValue(i_Facts, {"nan", "-nan"});
}

bool quotesSign(Facts i_Facts)
{
    return anyToken(i_Facts,
                    [](const TokenFact& i_Token)
                    {
                        const std::string_view inner = Text::trim(Text::withoutQuotes(i_Token.text));
                        const bool isSign =
                            inner == "-" || inner == "." || (inner.starts_with("- ") && Text::isNumber(inner));
                        return Text::isLiteral(i_Token.text) && isSign;
                    });
}

bool readsQuotedAttribute(Facts i_Facts)
{
    return std::any_of(i_Facts.nodes.begin(), i_Facts.nodes.end(),
                       [](const TreeNode& i_Node) {
                           return i_Node.first && Text::isLiteral(*i_Node.first) &&
                                  Text::isNumber(Text::withoutQuotes(*i_Node.first));
                       });
}

// --- Arithmetic ---------------------------------------------------------------------------------

bool calculatesWithNaN(Facts i_Facts)
{
    return anyMixedPair(i_Facts, isSumOrProduct,
                        [](const Operand& i_Left, const Operand&) { return i_Left.isNotNumber(); });
}

bool addsNegativeInfinities(Facts i_Facts)
{
    return anyPair(i_Facts, is("+"),
                   [](const Operand& i_Left, const Operand& i_Right) { return i_Left.isMinus() && i_Right.isMinus(); });
}

bool subtractsFromInfinity(Facts i_Facts)
{
    return anyPair(i_Facts, is("-"),
                   [](const Operand& i_Left, const Operand& i_Right) { return i_Left.isPlus() && i_Right.isFinite(); });
}

bool subtractsFromMinusInfinity(Facts i_Facts)
{
    return anyPair(i_Facts, is("-"),
                   [](const Operand& i_Left, const Operand& i_Right)
                   { return i_Left.isMinus() && i_Right.isFinite(); });
}

bool multipliesByInfinity(Facts i_Facts)
{
    return anyPair(i_Facts, is("*"),
                   [](const Operand& i_Left, const Operand& i_Right)
                   { return i_Left.isFinite() && !i_Left.isZero() && i_Right.isPlus(); });
}

bool multipliesMinusInfinity(Facts i_Facts)
{
    return anyMixedPair(i_Facts, is("*"),
                        [](const Operand& i_Left, const Operand& i_Right)
                        { return i_Left.isMinus() && i_Right.isFinite() && i_Right.number() < 0; });
}

bool multipliesInfinities(Facts i_Facts)
{
    return anyPair(i_Facts, is("*"),
                   [](const Operand& i_Left, const Operand& i_Right)
                   { return i_Left.isInfinite() && i_Right.isInfinite(); });
}

bool multipliesZeroAndMinusInfinity(Facts i_Facts)
{
    return anyMixedPair(i_Facts, is("*"),
                        [](const Operand& i_Left, const Operand& i_Right)
                        { return i_Left.isZero() && i_Right.isMinus(); });
}

bool dividesZeroByInfinity(Facts i_Facts)
{
    return anyPair(i_Facts, is("div"),
                   [](const Operand& i_Left, const Operand& i_Right)
                   { return i_Left.isZero() && i_Right.isInfinite(); });
}

bool dividesInfinity(Facts i_Facts)
{
    return anyPair(i_Facts, is("div"),
                   [](const Operand& i_Left, const Operand& i_Right)
                   { return i_Left.isInfinite() && i_Right.isFinite() && !i_Right.isZero(); });
}

bool dividesInfinityByZero(Facts i_Facts)
{
    return anyPair(i_Facts, is("div"),
                   [](const Operand& i_Left, const Operand& i_Right)
                   { return i_Left.isInfinite() && i_Right.isZero(); });
}

bool dividesNaN(Facts i_Facts)
{
    return anyPair(i_Facts, is("div"),
                   [](const Operand& i_Left, const Operand& i_Right)
                   { return i_Left.isNotNumber() && i_Right.isFinite(); });
}

/// Whether the number is an integer that `mod` can represent.
bool isPlainInteger(const Operand& i_Operand)
{
    constexpr double limit = 2147483648.0;
    const double number = i_Operand.number();
    return i_Operand.isFinite() && number > -limit && number < limit && std::trunc(number) == number;
}

bool truncatesRemainder(Facts i_Facts)
{
    return anyMixedPair(i_Facts, is("mod"),
                        [](const Operand& i_Left, const Operand&)
                        { return i_Left.isFinite() && !isPlainInteger(i_Left); });
}

bool takesRemainderOfInfinity(Facts i_Facts)
{
    return anyMixedPair(i_Facts, is("mod"), [](const Operand& i_Left, const Operand&) { return i_Left.isInfinite(); });
}

// --- Comparisons --------------------------------------------------------------------------------

/// A comparison with the result of dividing a finite number by an infinity.
bool comparesVanished(Facts i_Facts)
{
    const auto isVanished = [&](std::size_t i_Child)
    {
        const TreeNode& node = i_Facts.nodes[i_Child];
        return node.isOperator && node.text == "div" && node.children.size() == 2 &&
               operandAt(i_Facts, node.children[0]).isFinite() && operandAt(i_Facts, node.children[1]).isInfinite();
    };
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       return i_Node.isOperator && FactQueries::isComparison(i_Node.text) &&
                              std::any_of(i_Node.children.begin(), i_Node.children.end(), isVanished);
                   });
}

bool isDifferentFromNaN(Facts i_Facts)
{
    return anyMixedPair(i_Facts, is("!="), [](const Operand& i_Left, const Operand&) { return i_Left.isNaN(); });
}

bool comparesNumberAndWord(Facts i_Facts)
{
    return anyMixedPair(i_Facts, FactQueries::isComparison,
                        [](const Operand& i_Left, const Operand& i_Right)
                        {
                            return i_Left.type == ValueType::Number && i_Left.isFinite() &&
                                   i_Right.type == ValueType::String && i_Right.text && !i_Right.isFinite() &&
                                   !i_Right.text->empty();
                        });
}

bool comparesNumbersAsTexts(Facts i_Facts)
{
    return anyPair(i_Facts, FactQueries::isEquality,
                   [](const Operand& i_Left, const Operand& i_Right)
                   {
                       return i_Left.type == ValueType::String && i_Right.type == ValueType::String &&
                              i_Left.isFinite() && i_Right.isFinite() && i_Left.text != i_Right.text;
                   });
}

bool ordersNodesAndText(Facts i_Facts)
{
    return anyMixedPair(i_Facts, FactQueries::isOrdering,
                        [](const Operand& i_Left, const Operand& i_Right)
                        { return i_Left.isPath && i_Right.type == ValueType::String; });
}

bool ordersNodesAndInfinity(Facts i_Facts)
{
    return anyMixedPair(i_Facts, FactQueries::isOrdering,
                        [](const Operand& i_Left, const Operand& i_Right)
                        { return i_Left.isPath && i_Right.isInfinite(); });
}

bool ordersTextAndInfinity(Facts i_Facts)
{
    return anyMixedPair(i_Facts, FactQueries::isOrdering,
                        [](const Operand& i_Left, const Operand& i_Right)
                        { return i_Left.isInfinite() && i_Right.type == ValueType::String; });
}

bool ordersTextAndBoolean(Facts i_Facts)
{
    return anyMixedPair(i_Facts, FactQueries::isOrdering,
                        [](const Operand& i_Left, const Operand& i_Right)
                        { return i_Left.type == ValueType::Boolean && i_Right.type == ValueType::String; });
}

bool decidesByQuotedZero(Facts i_Facts)
{
    return anyNode(i_Facts,
                   [&](const TreeNode& i_Node)
                   {
                       const auto isZero = [&](std::size_t i_Child)
                       {
                           const TreeNode& node = i_Facts.nodes[i_Child];
                           return !node.isOperator && Text::isLiteral(node.text) && node.type == ValueType::Number &&
                                  operandAt(i_Facts, i_Child).isZero();
                       };
                       return i_Node.isOperator && FactQueries::isLogic(i_Node.text) &&
                              std::any_of(i_Node.children.begin(), i_Node.children.end(), isZero);
                   });
}

bool comparesZeroAndEmpty(Facts i_Facts)
{
    return anyMixedPair(i_Facts, FactQueries::isComparison,
                        [](const Operand& i_Left, const Operand& i_Right)
                        {
                            return i_Left.type == ValueType::Number && i_Left.isZero() &&
                                   i_Right.type == ValueType::String &&
                                   (!i_Right.text || i_Right.text->empty() || !i_Right.isFinite());
                        });
}

constexpr DialectRule s_Rules[] = {
    {73, cutsFromMinus},
    {74, cutsLengthFromMinus},
    {75, roundsToNegativeZero},
    {76, printsLiteral},
    {77, shortensNumber},
    {78, printsNegativeZero},
    {79, dividesByNegativeZero},
    {80, overflows},
    {81, computesUnmarkedNaN},
    {82, quotesSign},
    {83, readsQuotedAttribute},
    {84, calculatesWithNaN},
    {85, addsNegativeInfinities},
    {86, subtractsFromInfinity},
    {87, subtractsFromMinusInfinity},
    {88, multipliesByInfinity},
    {89, multipliesMinusInfinity},
    {90, multipliesInfinities},
    {91, multipliesZeroAndMinusInfinity},
    {92, dividesZeroByInfinity},
    {93, dividesInfinity},
    {94, dividesInfinityByZero},
    {95, dividesNaN},
    {96, truncatesRemainder},
    {97, takesRemainderOfInfinity},
    {98, comparesVanished},
    {99, isDifferentFromNaN},
    {100, comparesNumberAndWord},
    {101, comparesNumbersAsTexts},
    {102, ordersNodesAndText},
    {103, ordersNodesAndInfinity},
    {104, ordersTextAndInfinity},
    {105, ordersTextAndBoolean},
    {106, decidesByQuotedZero},
    {107, comparesZeroAndEmpty},
};

} // namespace

std::span<const DialectRule> valueRules()
{
    return s_Rules;
}
