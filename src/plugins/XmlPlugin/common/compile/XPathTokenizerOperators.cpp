// The productions with operators: from "or" down to the minus signs and the union.
#include "compile/XPathTokenizer.h"

#include "compile/XPathTokenizerTrace.h"
#include "values/XPathArgument.h"
#include "xpathlanguage/XPathOperatorTable.h"

namespace XmlPlugin
{

using XPathLanguage::Level;
using XPathLanguage::s_Texts;

namespace
{

constexpr std::wstring_view s_Bar[] = {L"|"};

} // namespace

/// Operand (operator operand)*. A pair counts only when both match; an operator without an operand
/// behind it drops all pairs, and the length is the first operand's alone.
std::uint32_t XPathTokenizer::measureChain(std::uint32_t i_Offset, Operators i_Operators, Recogniser i_Operand)
{
    const std::uint32_t first = (this->*i_Operand)(i_Offset, false);
    if (first == 0)
    {
        return 0;
    }
    std::uint32_t end = i_Offset + first;
    for (bool isPair = true; isPair;)
    {
        isPair = false;
        for (const std::wstring_view oper : i_Operators)
        {
            const std::uint32_t length = isCharacter(end, oper, false);
            if (length == 0)
            {
                continue;
            }
            const std::uint32_t operand = (this->*i_Operand)(end + length, false);
            if (operand == 0)
            {
                return first;
            }
            end += length + operand;
            isPair = true;
            break;
        }
    }
    return end - i_Offset;
}

/// The first operand, then each operator and operand in turn.
void XPathTokenizer::emitChain(std::uint32_t i_Offset, std::uint32_t i_Length, Operators i_Operators,
                               Recogniser i_Operand)
{
    const std::uint32_t end = i_Offset + i_Length;
    std::uint32_t position = i_Offset + (this->*i_Operand)(i_Offset, true);
    while (position < end && !isGivenUp())
    {
        for (const std::wstring_view oper : i_Operators)
        {
            const std::uint32_t length = isCharacter(position, oper, false);
            if (length == 0)
            {
                continue;
            }
            isCharacter(position, oper, true);
            position += length;
            break;
        }
        position += (this->*i_Operand)(position, true);
    }
}

/// Expr ::= OrExpr. Arguments and predicates are the same production.
std::uint32_t XPathTokenizer::isExpr(std::uint32_t i_Offset, bool i_Consume)
{
    if (m_IsQuick)
    {
        return quickExpr(i_Offset, i_Consume);
    }
    if (m_Nesting > s_MaximumNesting)
    {
        m_NestingExceeded = true;
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

/// OrExpr ::= AndExpr ("or" AndExpr)*
std::uint32_t XPathTokenizer::measureOrExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, s_Texts<Level::Or>, &XPathTokenizer::isAndExpr);
}

void XPathTokenizer::emitOrExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, s_Texts<Level::Or>, &XPathTokenizer::isAndExpr);
}

/// AndExpr ::= EqualityExpr ("and" EqualityExpr)*
std::uint32_t XPathTokenizer::measureAndExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, s_Texts<Level::And>, &XPathTokenizer::isEqualityExpr);
}

/// D-08: behind each operand the emission goes on by the length of the first operand where
/// it should go on by that of the "and". From the second "and" on it looks at a shifted place,
/// and what it does not find there is left out: "a and b and c" is read as "a and b".
/// XPath 1.0 says that all three count. A place
/// behind the chain's own end counts too, so that a text can be read more than once.
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

/// EqualityExpr ::= RelationalExpr (("!=" | "=") RelationalExpr)*
std::uint32_t XPathTokenizer::measureEqualityExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, s_Texts<Level::Equality>, &XPathTokenizer::isRelationalExpr);
}

void XPathTokenizer::emitEqualityExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, s_Texts<Level::Equality>, &XPathTokenizer::isRelationalExpr);
}

/// RelationalExpr ::= AdditiveExpr (("<=" | ">=" | "<" | ">") AdditiveExpr)*
std::uint32_t XPathTokenizer::measureRelationalExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, s_Texts<Level::Relational>, &XPathTokenizer::isAdditiveExpr);
}

void XPathTokenizer::emitRelationalExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, s_Texts<Level::Relational>, &XPathTokenizer::isAdditiveExpr);
}

/// AdditiveExpr ::= MultiplicativeExpr (("+" | "-") MultiplicativeExpr)*
std::uint32_t XPathTokenizer::measureAdditiveExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, s_Texts<Level::Additive>, &XPathTokenizer::isMultiplicativeExpr);
}

void XPathTokenizer::emitAdditiveExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, s_Texts<Level::Additive>, &XPathTokenizer::isMultiplicativeExpr);
}

/// MultiplicativeExpr ::= UnaryExpr (("*" | "div" | "mod") UnaryExpr)*
std::uint32_t XPathTokenizer::measureMultiplicativeExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, s_Texts<Level::Multiplicative>, &XPathTokenizer::isUnaryExpr);
}

void XPathTokenizer::emitMultiplicativeExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, s_Texts<Level::Multiplicative>, &XPathTokenizer::isUnaryExpr);
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

void XPathTokenizer::emitZeroMinus()
{
    emitToken(L"(", {});
    emitNegativeZero();
    emitToken(L"-", {});
}

void XPathTokenizer::emitNegativeZero()
{
    XPathArgument& zero = m_Elements.addArgument(L"0");
    zero.setNegativeZero(true);
    emit(zero);
}

/// An odd number of signs becomes "( 0 - x )" with a negative zero; an even number leaves nothing.
void XPathTokenizer::emitUnaryExpr(std::uint32_t i_Offset, std::uint32_t)
{
    bool isOdd = false;
    const std::uint32_t signs = minusSigns(i_Offset, isOdd);
    if (isOdd)
    {
        emitZeroMinus();
    }
    isUnionExpr(i_Offset + signs, true);
    if (isOdd)
    {
        emitToken(L")", {});
    }
}

/// UnionExpr ::= PathExpr ("|" PathExpr)*
std::uint32_t XPathTokenizer::measureUnionExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, s_Bar, &XPathTokenizer::isPathExpr);
}

void XPathTokenizer::emitUnionExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, s_Bar, &XPathTokenizer::isPathExpr);
}

} // namespace XmlPlugin
