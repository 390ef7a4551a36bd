// The quick way through expressions of the common shape.
//
// In such an expression every operator has both its operands, and then the levels of the grammar have nothing to
// decide: its tokens are its operands and operators as they follow each other, whatever the operators' order of binding
// is, which the parser finds out from the tokens. So they are read in one pass that emits as it goes. Everything that
// this language reads in a way of its own is left to the productions, which then begin anew; so is every text that is
// not recognised. XPathTokenizerTest.cpp holds both ways against each other.
#include "XPathTokenizer.h"

#include "XPathCharacters.h"
#include "XPathOperator.h"

namespace XmlPlugin
{

bool XPathTokenizer::readQuickly()
{
    const std::uint32_t closing = static_cast<std::uint32_t>(m_Text.size()) - 1;
    m_IsQuick = true;
    const std::uint32_t length = quickExpr(1, true);
    m_IsQuick = false;
    const std::uint32_t end = 1 + length;
    if (length != 0 && end + spaces(end) == closing && !isGivenUp())
        return true;
    m_ExprVector.clear();
    m_TokensExceeded = false;
    m_Furthest = 0;
    return false;
}

/// Expr ::= Operand (operator Operand)*; 0 also where the productions must decide.
std::uint32_t XPathTokenizer::quickExpr(std::uint32_t i_Offset, bool i_Consume)
{
    if (m_Nesting > s_MaximumNesting)
        return 0;
    ++m_Nesting;
    std::uint32_t end = i_Offset;
    if (const std::uint32_t first = quickOperand(end, i_Consume))
        end = quickChain(i_Offset, end + first, i_Consume);
    --m_Nesting;
    return end - i_Offset;
}

/// The operators behind the operand that ends at \p i_End, with their operands. Returns the end; i_Offset: see above.
std::uint32_t XPathTokenizer::quickChain(std::uint32_t i_Offset, std::uint32_t i_End, bool i_Consume)
{
    AndChain chain{i_Offset, 0, 0};
    std::uint32_t end = i_End;
    for (;;)
    {
        const std::uint32_t begin = end + spaces(end);
        const std::wstring_view oper = operatorAt(begin);
        if (oper.empty())
            return isPlainAnd(chain, end) ? end : i_Offset;
        const std::uint32_t behind = begin + static_cast<std::uint32_t>(oper.size());
        if (oper == L"and")
        {
            if (chain.m_And != 0)
                return i_Offset;
            chain.m_And = end;
            chain.m_Second = behind;
        }
        else if (oper == L"or")
        {
            if (!isPlainAnd(chain, end))
                return i_Offset;
            chain = {behind, 0, 0};
        }
        if (i_Consume)
            emitToken(oper, {});
        const std::uint32_t operand = quickOperand(behind, i_Consume);
        if (operand == 0)
            return i_Offset;
        end = behind + operand;
    }
}

/// True unless the emission of the chain that ends at \p i_End would find one more "and" at the place where it goes on
/// (see emitAndExpr).
bool XPathTokenizer::isPlainAnd(const AndChain& i_Chain, std::uint32_t i_End) const noexcept
{
    if (i_Chain.m_And == 0)
        return true;
    const std::uint32_t first = i_Chain.m_And - i_Chain.m_Begin;
    const std::uint32_t operand = i_End - i_Chain.m_Second;
    return terminalLength(i_Chain.m_And + operand + first, L"and") == 0;
}

/// The operator whose text begins at \p i_Begin; empty: none. "|" is none here: the productions join unions.
std::wstring_view XPathTokenizer::operatorAt(std::uint32_t i_Begin) const noexcept
{
    const auto known = [&](std::wstring_view i_Text)
    { return standsAt(i_Begin, i_Text) ? i_Text : std::wstring_view(); };
    switch (at(i_Begin))
    {
    case L'+':
        return L"+";
    case L'-':
        return L"-";
    case L'*':
        return L"*";
    case L'=':
        return L"=";
    case L'<':
        return at(i_Begin + 1) == L'=' ? L"<=" : L"<";
    case L'>':
        return at(i_Begin + 1) == L'=' ? L">=" : L">";
    case L'!':
        return known(L"!=");
    case L'a':
        return known(L"and");
    case L'd':
        return known(L"div");
    case L'm':
        return known(L"mod");
    case L'o':
        return known(L"or");
    default:
        return {};
    }
}

/// Operand ::= "-"* Primary
std::uint32_t XPathTokenizer::quickOperand(std::uint32_t i_Offset, bool i_Consume)
{
    bool isOdd = false;
    std::uint32_t signs = 0;
    if (at(i_Offset + spaces(i_Offset)) == L'-')
        signs = minusSigns(i_Offset, isOdd);
    if (isOdd && i_Consume)
        emitZeroMinus();
    const std::uint32_t primary = quickPrimary(i_Offset + signs, i_Consume);
    if (isOdd && i_Consume)
        emitToken(L")", {});
    return primary ? signs + primary : 0;
}

/// Primary ::= "(" Expr ")" | FunctionCall | Literal | Number | LocationPath
std::uint32_t XPathTokenizer::quickPrimary(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t begin = i_Offset + spaces(i_Offset);
    const wchar_t first = at(begin);
    std::uint32_t length = 0;
    if (first == L'(')
        length = quickParenthesised(begin, i_Consume);
    else if (first == L'"' || first == L'\'')
        length = quickLiteral(begin, i_Consume);
    else if (isDigit(first))
        length = isNumber(begin, i_Consume);
    else if (const std::uint32_t name = callAt(begin))
        length = quickCall(begin, name, i_Consume);
    else
    {
        length = isLocationPath(i_Offset, false);
        if (length != 0 && i_Consume)
            emitArgument(i_Offset, length);
        return length;
    }
    const std::uint32_t end = begin + length;
    const wchar_t next = at(end + spaces(end));
    return length == 0 || next == L'[' || next == L'/' ? 0 : end - i_Offset;
}

std::uint32_t XPathTokenizer::quickParenthesised(std::uint32_t i_Begin, bool i_Consume)
{
    if (i_Consume)
        emitToken(L"(", {});
    const std::uint32_t expr = quickExpr(i_Begin + 1, i_Consume);
    const std::uint32_t close = expr ? unitLength(i_Begin + 1 + expr, L')') : 0;
    if (close == 0)
        return 0;
    if (i_Consume)
        emitToken(L")", {});
    return 1 + expr + close;
}

std::uint32_t XPathTokenizer::quickLiteral(std::uint32_t i_Begin, bool i_Consume)
{
    const bool isBar = at(i_Begin + 1) == L'|' && at(i_Begin + 2) == at(i_Begin); // joined as if it were the operator
    return isBar ? 0 : isLiteral(i_Begin, i_Consume);
}

/// Length of the function name that begins at \p i_Begin when a parenthesis follows it.
std::uint32_t XPathTokenizer::callAt(std::uint32_t i_Begin)
{
    const std::uint32_t name = isLetter(at(i_Begin)) ? isFunctionName(i_Begin, false) : 0;
    return name && unitLength(i_Begin + name, L'(') ? name : 0;
}

std::uint32_t XPathTokenizer::quickCall(std::uint32_t i_Begin, std::uint32_t i_Name, bool i_Consume)
{
    if (i_Consume)
    {
        isFunctionName(i_Begin, true);
        emitToken(L"(", {});
    }
    XPathOperator* pFunction = i_Consume ? static_cast<XPathOperator*>(m_ExprVector.end()[-2]) : nullptr;
    std::uint32_t end = i_Begin + i_Name;
    end += unitLength(end, L'(');
    for (int count = 1; unitLength(end, L')') == 0; ++count)
    {
        if (count > 1)
        {
            const std::uint32_t comma = unitLength(end, L',');
            if (comma == 0)
                return 0;
            if (i_Consume)
                emitToken(L",", {});
            end += comma;
        }
        const std::uint32_t argument = quickExpr(end, i_Consume);
        if (argument == 0)
            return 0;
        end += argument;
        if (pFunction)
            pFunction->setArgumentsCount(count);
    }
    if (i_Consume)
        emitToken(L")", {});
    return end + unitLength(end, L')') - i_Begin;
}

} // namespace XmlPlugin
