// How a production runs, the levels of operators as a table, and the minus signs.
#include "compile/XPathTokenizer.h"

#include "compile/StackLeft.h"
#include "compile/XPathQuickReader.h"
#include "compile/XPathTokenizerTrace.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <span>

namespace XmlPlugin
{

using XPathLanguage::Level;
using XPathLanguage::s_Texts;

namespace
{

// No operator of the postfix list: the paths that it joins are one operand.
constexpr std::wstring_view s_Bar[] = {L"|"};

} // namespace

/// A production whose lengths are remembered: a level of operators, Level ::= Operand (Operator Operand)*, or one with
/// operations of its own.
struct XPathTokenizer::Production
{
    Remembered remembered;
    const wchar_t* traceName;
    std::span<const std::wstring_view> operators;
    Recogniser operand;                                                   ///< of a level
    std::uint32_t (XPathTokenizer::*measure)(std::uint32_t) = nullptr;    ///< null: that of a level
    void (XPathTokenizer::*emit)(std::uint32_t, std::uint32_t) = nullptr; ///< null: that of a level

    static const Production s_All[RememberedCount];
};

// clang-format off
#define XPATH_NAME(name) L" XPathTokenizer::is" #name "()"
#define XPATH_LEVEL(level, operand) \
    {level##Expr, XPATH_NAME(level##Expr), s_Texts<Level::level>, &XPathTokenizer::is##operand}
#define XPATH_OWN(name) {name, XPATH_NAME(name), {}, nullptr, &XPathTokenizer::measure##name, &XPathTokenizer::emit##name}

constexpr XPathTokenizer::Production XPathTokenizer::Production::s_All[RememberedCount] = {
    XPATH_LEVEL(Or,             AndExpr),
    {AndExpr, XPATH_NAME(AndExpr), s_Texts<Level::And>, &XPathTokenizer::isEqualityExpr, nullptr, &XPathTokenizer::emitAndExpr},
    XPATH_LEVEL(Equality,       RelationalExpr),
    XPATH_LEVEL(Relational,     AdditiveExpr),
    XPATH_LEVEL(Additive,       MultiplicativeExpr),
    XPATH_LEVEL(Multiplicative, UnaryExpr),
    XPATH_OWN(UnaryExpr),
    {UnionExpr, XPATH_NAME(UnionExpr), s_Bar, &XPathTokenizer::isPathExpr},
    XPATH_OWN(PathExpr),
    XPATH_OWN(FilterExpr),
    XPATH_OWN(FunctionCall),
    XPATH_OWN(LocationPath),
    XPATH_OWN(RelativeLocationPath),
    XPATH_OWN(Step)};
// clang-format on

#define XPATH_REMEMBERED(name)                                                                                         \
    std::uint32_t XPathTokenizer::is##name(std::uint32_t i_Offset, bool i_Consume)                                     \
    {                                                                                                                  \
        return recognise(name, i_Offset, i_Consume);                                                                   \
    }
XPATH_REMEMBERED(OrExpr)
XPATH_REMEMBERED(AndExpr)
XPATH_REMEMBERED(EqualityExpr)
XPATH_REMEMBERED(RelationalExpr)
XPATH_REMEMBERED(AdditiveExpr)
XPATH_REMEMBERED(MultiplicativeExpr)
XPATH_REMEMBERED(UnaryExpr)
XPATH_REMEMBERED(UnionExpr)
XPATH_REMEMBERED(PathExpr)
XPATH_REMEMBERED(FilterExpr)
XPATH_REMEMBERED(FunctionCall)
XPATH_REMEMBERED(LocationPath)
XPATH_REMEMBERED(RelativeLocationPath)
XPATH_REMEMBERED(Step)

// --- How a production runs ----------------------------------------------------------------------

std::uint32_t XPathTokenizer::recognise(Remembered i_Production, std::uint32_t i_Offset, bool i_Consume)
{
    const Production& production = Production::s_All[i_Production];
    return traced(production.traceName, i_Offset, i_Consume,
                  [&]
                  {
                      const std::uint32_t length = measure(production, i_Offset);
                      if (!i_Consume || length == 0 || isGivenUp())
                      {
                          return length;
                      }
                      if (production.emit)
                      {
                          (this->*production.emit)(i_Offset, length);
                      }
                      else
                      {
                          emitChain(production, i_Offset, length);
                      }
                      return length;
                  });
}

std::uint32_t XPathTokenizer::measure(const Production& i_Production, std::uint32_t i_Offset)
{
    if (i_Offset >= m_Source.size())
    {
        return 0;
    }
    const auto anew = [&]
    { return i_Production.measure ? (this->*i_Production.measure)(i_Offset) : measureChain(i_Production, i_Offset); };
    if (!m_Remember || m_pQuickReader)
    {
        return anew();
    }
    std::uint32_t& length = m_LookAhead.lengthAt(i_Production.remembered, i_Offset, m_Source.size());
    if (length == 0)
    {
        length = anew() + 1;
    }
    return length - 1;
}

/// The length of the first operator of the level that stands at the offset; 0: none.
std::uint32_t XPathTokenizer::operatorAt(const Production& i_Production, std::uint32_t i_Offset,
                                         std::wstring_view& o_Operator)
{
    for (const std::wstring_view oper : i_Production.operators)
    {
        if (const std::uint32_t length = isCharacter(i_Offset, oper, false))
        {
            o_Operator = oper;
            return length;
        }
    }
    return 0;
}

/// A pair of operator and operand counts only when both match; an operator without an operand
/// after it drops all pairs, and the length is the first operand's alone.
std::uint32_t XPathTokenizer::measureChain(const Production& i_Production, std::uint32_t i_Offset)
{
    const std::uint32_t first = (this->*i_Production.operand)(i_Offset, false);
    if (first == 0)
    {
        return 0;
    }
    std::uint32_t end = i_Offset + first;
    std::wstring_view oper;
    while (const std::uint32_t length = operatorAt(i_Production, end, oper))
    {
        const std::uint32_t operand = (this->*i_Production.operand)(end + length, false);
        if (operand == 0)
        {
            return first;
        }
        end += length + operand;
    }
    return end - i_Offset;
}

/// The first operand, then each operator and operand in turn.
void XPathTokenizer::emitChain(const Production& i_Production, std::uint32_t i_Offset, std::uint32_t i_Length)
{
    const std::uint32_t end = i_Offset + i_Length;
    std::uint32_t position = i_Offset + (this->*i_Production.operand)(i_Offset, true);
    while (position < end && !isGivenUp())
    {
        std::wstring_view oper;
        if (const std::uint32_t length = operatorAt(i_Production, position, oper))
        {
            isCharacter(position, oper, true);
            position += length;
        }
        position += (this->*i_Production.operand)(position, true);
    }
}

// --- What is no plain level ---------------------------------------------------------------------

/// Expr ::= OrExpr. Arguments and predicates are the same production.
std::uint32_t XPathTokenizer::isExpr(std::uint32_t i_Offset, bool i_Consume)
{
    if (m_pQuickReader)
    {
        return m_pQuickReader->measure(i_Offset);
    }
    if (m_Nesting > s_MaximumNesting)
    {
        m_NestingExceeded = true;
        return 0;
    }
    if (m_Nesting >= s_UsualNesting && !hasStackLeft())
    {
        m_NestingExceeded = true;
        m_StackExceeded = true;
        return 0;
    }
    ++m_Nesting;
    const std::uint32_t length = isOrExpr(i_Offset, i_Consume);
    --m_Nesting;
    return length;
}

std::uint32_t XPathTokenizer::isArgument(std::uint32_t i_Offset, bool i_Consume)
{
    return isExpr(i_Offset, i_Consume);
}

std::uint32_t XPathTokenizer::isPredicateExpr(std::uint32_t i_Offset, bool i_Consume)
{
    return isExpr(i_Offset, i_Consume);
}

/// D-08: after each operand the emission goes on by the length of the first operand where
/// it should go on by that of the "and". From the second "and" on it looks at a shifted place,
/// and what it does not find there is left out: "a and b and c" is read as "a and b".
/// XPath 1.0 says that all three count. A place
/// after the chain's own end counts too, so that a text can be read more than once.
void XPathTokenizer::emitAndExpr(std::uint32_t i_Offset, std::uint32_t)
{
    const std::uint32_t first = isEqualityExpr(i_Offset, true);
    std::uint32_t position = i_Offset + first;
    for (;;)
    {
        const std::uint32_t length = isCharacter(position, L"and", false);
        const std::uint32_t operand = length ? isEqualityExpr(position + length, false) : 0;
        if (operand == 0)
        {
            return;
        }
        isCharacter(position, L"and", true);
        isEqualityExpr(position + length, true);
        position += operand + first;
    }
}

std::uint32_t XPathTokenizer::minusSigns(std::uint32_t i_Offset, bool& o_Odd)
{
    o_Odd = false;
    std::uint32_t position = i_Offset;
    while (const std::uint32_t length = isCharacter(position, L"-", false))
    {
        position += length;
        o_Odd = !o_Odd;
    }
    return position - i_Offset;
}

/// UnaryExpr ::= "-"* UnionExpr
std::uint32_t XPathTokenizer::measureUnaryExpr(std::uint32_t i_Offset)
{
    bool isOdd = false;
    const std::uint32_t signs = minusSigns(i_Offset, isOdd);
    const std::uint32_t operand = isUnionExpr(i_Offset + signs, false);
    return operand ? signs + operand : 0;
}

/// An odd number of signs becomes "( 0 - x )" with a negative zero; an even number leaves nothing.
void XPathTokenizer::emitUnaryExpr(std::uint32_t i_Offset, std::uint32_t)
{
    bool isOdd = false;
    const std::uint32_t signs = minusSigns(i_Offset, isOdd);
    if (isOdd)
    {
        m_Emitter.token(L"(");
        m_Emitter.negativeZero();
        m_Emitter.token(L"-");
    }
    isUnionExpr(i_Offset + signs, true);
    if (isOdd)
    {
        m_Emitter.token(L")");
    }
}

} // namespace XmlPlugin
