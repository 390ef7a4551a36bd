// The quick way through expressions of the common shape.
//
// In such an expression every operator has both its operands, and then the levels of the grammar have nothing to
// decide: its tokens are its operands and operators as they follow each other, whatever the operators' order of binding
// is, which the parser finds out from the tokens. So they are read in one pass that emits as it goes. Everything that
// this language reads in a way of its own is left to the productions, which then begin anew; so is every text that is
// not recognised. XPathTokenizerTest.cpp holds both ways against each other.
#include "compile/XPathTokenizer.h"

#include "compile/XPathCharacters.h"
#include "functions/XPathOperator.h"
#include "values/XmlTrace.h"

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

bool XPathTokenizer::readQuickly()
{
    const std::uint32_t closing = static_cast<std::uint32_t>(m_Text.size()) - 1;
    m_IsQuick = true;
    const std::uint32_t length = quickExpr(1, true);
    m_IsQuick = false;
    const std::uint32_t end = 1 + length;
    if (length != 0 && end + spaces(end) == closing && !isGivenUp())
    {
        return true;
    }
    m_ExprVector.clear();
    m_Waiting.clear();
    m_TokensExceeded = false;
    m_Furthest = 0;
    m_MayBeQuick = false;
    return false;
}

bool XPathTokenizer::readPostfix(XPathExpressionsVector& o_Postfix)
{
    if (!m_MayBeQuick || Trace::isEnabled(TraceInformation))
    {
        return false;
    }
    m_IsPostfix = true;
    const bool isRead = readQuickly();
    m_IsPostfix = false;
    if (!isRead)
    {
        return false;
    }
    while (!m_Waiting.empty())
    {
        releaseWaiting();
    }
    o_Postfix = m_ExprVector;
    return true;
}

// --- Where the tokens go ------------------------------------------------------------------------
//
// Into the list of tokens, or at once into postfix order as XPathExpressionsParser puts it, where parentheses and
// commas leave no element behind.

void XPathTokenizer::releaseWaiting()
{
    m_ExprVector.push_back(m_Waiting.back().m_pOperator);
    m_Waiting.pop_back();
}

void XPathTokenizer::quickOpen()
{
    if (m_IsPostfix)
    {
        m_Waiting.push_back({nullptr, 0});
    }
    else
    {
        emitToken(L"(", {});
    }
}

/// A comma or, with \p i_IsEnd, the closing parenthesis: the operators behind the opening one are complete.
void XPathTokenizer::quickClose(bool i_IsEnd)
{
    if (!m_IsPostfix)
    {
        emitToken(i_IsEnd ? L")" : L",", {});
        return;
    }
    while (m_Waiting.back().m_pOperator)
    {
        releaseWaiting();
    }
    if (i_IsEnd)
    {
        m_Waiting.pop_back();
    }
}

XPathOperator& XPathTokenizer::quickOperator(const XPathFunctionChoice& i_Choice)
{
    XPathOperator& made = m_Elements.addOperator(i_Choice);
    if (!m_IsPostfix)
    {
        emit(made);
        return made;
    }
    const int priority = i_Choice.priority();
    while (!m_Waiting.empty() && m_Waiting.back().m_pOperator && m_Waiting.back().m_Priority >= priority)
    {
        releaseWaiting();
    }
    m_Waiting.push_back({&made, priority});
    return made;
}

// --- The grammar --------------------------------------------------------------------------------

/// Expr ::= Operand (operator Operand)*; 0 also where the productions must decide.
std::uint32_t XPathTokenizer::quickExpr(std::uint32_t i_Offset, bool i_Consume)
{
    if (m_Nesting > s_MaximumNesting || i_Offset > m_Text.size())
    {
        return 0;
    }
    ++m_Nesting;
    std::uint32_t end = i_Offset;
    if (const std::uint32_t first = quickOperand(end, i_Consume))
    {
        end = quickChain(i_Offset, end + first, i_Consume);
    }
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
        const std::uint32_t begin = skip(end);
        const std::wstring_view oper = operatorAt(begin);
        if (oper.empty())
        {
            return isPlainAnd(chain, end) ? end : i_Offset;
        }
        const std::uint32_t behind = begin + static_cast<std::uint32_t>(oper.size());
        if (oper == L"and"sv)
        {
            if (chain.m_And != 0)
            {
                return i_Offset;
            }
            chain.m_And = end;
            chain.m_Second = behind;
        }
        else if (oper == L"or"sv)
        {
            if (!isPlainAnd(chain, end))
            {
                return i_Offset;
            }
            chain = {behind, 0, 0};
        }
        if (i_Consume)
        {
            quickOperator(XPathFunctionFactory::choose(oper, {}));
        }
        const std::uint32_t operand = quickOperand(behind, i_Consume);
        if (operand == 0)
        {
            return i_Offset;
        }
        end = behind + operand;
    }
}

/// True unless the emission of the chain that ends at \p i_End would find one more "and" at the place where it goes on
/// (see emitAndExpr).
bool XPathTokenizer::isPlainAnd(const AndChain& i_Chain, std::uint32_t i_End) const noexcept
{
    if (i_Chain.m_And == 0)
    {
        return true;
    }
    const std::uint32_t first = i_Chain.m_And - i_Chain.m_Begin;
    const std::uint32_t operand = i_End - i_Chain.m_Second;
    return terminalLength(i_Chain.m_And + operand + first, L"and"sv) == 0;
}

/// The operator whose text begins at \p i_Begin; empty: none. "|" is none here: the productions join unions.
std::wstring_view XPathTokenizer::operatorAt(std::uint32_t i_Begin) const noexcept
{
    const auto known = [&](std::wstring_view i_Text)
    { return standsAt(i_Begin, i_Text) ? i_Text : std::wstring_view(); };
    switch (unit(i_Begin))
    {
    case L'+':
        return L"+"sv;
    case L'-':
        return L"-"sv;
    case L'*':
        return L"*"sv;
    case L'=':
        return L"="sv;
    case L'<':
        return unit(i_Begin + 1) == L'=' ? L"<="sv : L"<"sv;
    case L'>':
        return unit(i_Begin + 1) == L'=' ? L">="sv : L">"sv;
    case L'!':
        return known(L"!="sv);
    case L'a':
        return known(L"and"sv);
    case L'd':
        return known(L"div"sv);
    case L'm':
        return known(L"mod"sv);
    case L'o':
        return known(L"or"sv);
    default:
        return {};
    }
}

/// Operand ::= "-"* Primary
std::uint32_t XPathTokenizer::quickOperand(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t begin = skip(i_Offset);
    const wchar_t first = unit(begin);
    std::uint32_t length = 0;
    if (first == L'"' || first == L'\'')
    {
        length = quickLiteral(begin, i_Consume);
    }
    else if (first >= L'0' && first <= L'9')
    {
        length = quickNumber(begin, i_Consume);
    }
    else if (first == L'(')
    {
        length = quickParenthesised(begin, i_Consume);
    }
    else
    {
        return first == L'-' ? quickNegated(i_Offset, i_Consume) : quickNamed(i_Offset, begin, i_Consume);
    }
    return length == 0 || isContinued(begin + length) ? 0 : begin + length - i_Offset;
}

std::uint32_t XPathTokenizer::quickNegated(std::uint32_t i_Offset, bool i_Consume)
{
    bool isOdd = false;
    const std::uint32_t signs = minusSigns(i_Offset, isOdd);
    const bool isNegated = isOdd && i_Consume;
    if (isNegated)
    {
        quickOpen();
        emitNegativeZero();
        quickOperator(XPathFunctionFactory::choose(L"-"sv, {}));
    }
    const std::uint32_t primary = quickOperand(i_Offset + signs, i_Consume);
    if (isNegated && primary)
    {
        quickClose(true);
    }
    return primary ? signs + primary : 0;
}

/// What begins with none of the characters above, at \p i_Begin behind spaces: FunctionCall | LocationPath, which takes
/// these spaces too, or a number with digits beyond ASCII.
std::uint32_t XPathTokenizer::quickNamed(std::uint32_t i_Offset, std::uint32_t i_Begin, bool i_Consume)
{
    std::uint32_t length = 0;
    if (const XPathFunctionRow* pRow = callAt(i_Begin))
    {
        length = quickCall(i_Begin, *pRow, i_Consume);
    }
    else if (isDigit(unit(i_Begin)))
    {
        length = isNumber(i_Begin, i_Consume);
    }
    else
    {
        return quickPathOperand(i_Offset, i_Begin, i_Consume);
    }
    return length == 0 || isContinued(i_Begin + length) ? 0 : i_Begin + length - i_Offset;
}

std::uint32_t XPathTokenizer::quickPathOperand(std::uint32_t i_Offset, std::uint32_t i_Begin, bool i_Consume)
{
    const std::uint32_t plain = quickPath(i_Begin);
    const std::uint32_t length = plain ? i_Begin - i_Offset + plain : isLocationPath(i_Offset, false);
    if (length != 0 && i_Consume)
    {
        emitArgument(i_Offset, length);
    }
    return length;
}

/// Path ::= ("//" | "/")? Step (("//" | "/") Step)*, without spaces and nested paths in it, and no part of a longer
/// one. 0: the productions decide.
std::uint32_t XPathTokenizer::quickPath(std::uint32_t i_Begin) const noexcept
{
    std::uint32_t end = i_Begin + slashesAt(i_Begin);
    for (;;)
    {
        const std::uint32_t step = quickStep(end);
        if (step == 0)
        {
            return 0;
        }
        end += step;
        const std::uint32_t separator = slashesAt(end);
        if (separator == 0)
        {
            break;
        }
        end += separator;
    }
    return isContinued(end) ? 0 : end - i_Begin;
}

/// Step ::= "@"? (Name | "*") Predicate*
std::uint32_t XPathTokenizer::quickStep(std::uint32_t i_Begin) const noexcept
{
    const bool isAttribute = unit(i_Begin) == L'@';
    const std::uint32_t test = i_Begin + (isAttribute ? 1 : 0);
    std::uint32_t end = test;
    if (unit(test) == L'*')
    {
        ++end;
    }
    else if (isAttribute || !isAxisAt(test)) // D-18: an axis name counts without its "::"
    {
        end += quickName(test);
    }
    if (end == test)
    {
        return 0;
    }
    while (unit(end) == L'[')
    {
        const std::uint32_t predicate = quickPredicate(end);
        if (predicate == 0)
        {
            return 0;
        }
        end += predicate;
    }
    return end - i_Begin;
}

/// Predicate ::= "[" (Digits | "@" Name ("=" Literal)?) "]"
std::uint32_t XPathTokenizer::quickPredicate(std::uint32_t i_Begin) const noexcept
{
    if (m_Nesting > s_MaximumNesting)
    {
        return 0;
    }
    std::uint32_t end = i_Begin + 1;
    if (unit(end) == L'@')
    {
        const std::uint32_t name = quickName(end + 1);
        end += name ? 1 + name : 0;
        if (name && unit(end) == L'=')
        {
            end += 1 + literalLength(end + 1);
        }
    }
    else
    {
        while (unit(end) >= L'0' && unit(end) <= L'9')
        {
            ++end;
        }
    }
    return unit(end) == L']' && end != i_Begin + 1 && unit(end - 1) != L'=' ? end + 1 - i_Begin : 0;
}

/// Name ::= [A-Za-z_] [A-Za-z0-9_.-]*; 0 also where a character follows that makes it more than this name.
std::uint32_t XPathTokenizer::quickName(std::uint32_t i_Begin) const noexcept
{
    const auto isStart = [](wchar_t i_Unit)
    { return (i_Unit >= L'a' && i_Unit <= L'z') || (i_Unit >= L'A' && i_Unit <= L'Z') || i_Unit == L'_'; };
    const auto isInner = [&](wchar_t i_Unit)
    { return isStart(i_Unit) || (i_Unit >= L'0' && i_Unit <= L'9') || i_Unit == L'.' || i_Unit == L'-'; };
    constexpr wchar_t firstBeyondAscii = 0x80;
    if (!isStart(unit(i_Begin)))
    {
        return 0;
    }
    std::uint32_t end = i_Begin + 1;
    while (isInner(unit(end)))
    {
        ++end;
    }
    // D-02: spaces before some characters are taken into the name.
    const wchar_t next = unit(skip(end));
    const bool isMore =
        next == L':' || next == L'(' || next >= firstBeyondAscii || (next != unit(end) && isInner(next));
    return isMore ? 0 : end - i_Begin;
}

std::uint32_t XPathTokenizer::slashesAt(std::uint32_t i_Begin) const noexcept
{
    if (unit(i_Begin) != L'/')
    {
        return 0;
    }
    return unit(i_Begin + 1) == L'/' ? 2 : 1;
}

std::uint32_t XPathTokenizer::quickParenthesised(std::uint32_t i_Begin, bool i_Consume)
{
    if (i_Consume)
    {
        quickOpen();
    }
    const std::uint32_t expr = quickExpr(i_Begin + 1, i_Consume);
    const std::uint32_t end = skip(i_Begin + 1 + expr);
    if (expr == 0 || unit(end) != L')')
    {
        return 0;
    }
    if (i_Consume)
    {
        quickClose(true);
    }
    return end + 1 - i_Begin;
}

/// Few digits of ASCII are an operand whose type and value need not be looked for in its text.
std::uint32_t XPathTokenizer::quickNumber(std::uint32_t i_Begin, bool i_Consume)
{
    constexpr std::uint32_t mostDigits = 15; // a double holds all of them exactly
    constexpr wchar_t firstBeyondAscii = 0x80;
    std::int64_t number = 0;
    std::uint32_t end = i_Begin;
    for (; unit(end) >= L'0' && unit(end) <= L'9' && end - i_Begin <= mostDigits; ++end)
    {
        number = 10 * number + (unit(end) - L'0');
    }
    const std::uint32_t length = end - i_Begin;
    if (length == 0 || length > mostDigits || unit(end) >= firstBeyondAscii || unit(skip(end)) == L'.')
    {
        return isNumber(i_Begin, i_Consume);
    }
    if (i_Consume)
    {
        emit(m_Elements.addNumber(m_Text.substr(i_Begin, length), static_cast<double>(number)));
    }
    return length;
}

std::uint32_t XPathTokenizer::quickLiteral(std::uint32_t i_Begin, bool i_Consume)
{
    const std::uint32_t length = literalLength(i_Begin);
    if (length != 0 && i_Consume)
    {
        emitArgument(i_Begin, length);
    }
    return length;
}

/// Of a literal with its quotes; 0 also for one that is joined with its neighbours as if it were the operator "|".
std::uint32_t XPathTokenizer::literalLength(std::uint32_t i_Begin) const noexcept
{
    const wchar_t quote = unit(i_Begin);
    if (quote != L'"' && quote != L'\'')
    {
        return 0;
    }
    std::uint32_t end = i_Begin + 1;
    while (end < m_Text.size() && m_Text[end] != quote)
    {
        ++end;
    }
    const bool isBar = end == i_Begin + 2 && unit(i_Begin + 1) == L'|';
    return end == m_Text.size() || isBar ? 0 : end + 1 - i_Begin;
}

/// The function whose name begins at \p i_Begin, with a parenthesis behind it; null: there is none.
const XPathFunctionRow* XPathTokenizer::callAt(std::uint32_t i_Begin) const noexcept
{
    std::uint32_t end = i_Begin;
    while ((unit(end) >= L'a' && unit(end) <= L'z') || unit(end) == L'-')
    {
        ++end;
    }
    if (end == i_Begin || unit(skip(end)) != L'(')
    {
        return nullptr;
    }
    return XPathFunctionFactory::find(m_Text.substr(i_Begin, end - i_Begin));
}

std::uint32_t XPathTokenizer::quickCall(std::uint32_t i_Begin, const XPathFunctionRow& i_Row, bool i_Consume)
{
    const XPathFunctionChoice choice{nullptr, &i_Row};
    XPathOperator* const pFunction = i_Consume ? &quickOperator(choice) : nullptr;
    if (i_Consume)
    {
        quickOpen();
    }
    // Where the next argument begins, spaces included; callAt has seen the parenthesis.
    std::uint32_t begin = skip(i_Begin + static_cast<std::uint32_t>(i_Row.name.size())) + 1;
    std::uint32_t end = skip(begin);
    int count = 0;
    while (unit(end) != L')')
    {
        if (count > 0)
        {
            if (unit(end) != L',')
            {
                return 0;
            }
            if (i_Consume)
            {
                quickClose(false);
            }
            begin = end + 1;
        }
        const std::uint32_t argument = quickExpr(begin, i_Consume);
        if (argument == 0)
        {
            return 0;
        }
        end = skip(begin + argument);
        ++count;
    }
    if (pFunction && count > 0)
    {
        pFunction->setArgumentsCount(count);
    }
    if (i_Consume)
    {
        quickClose(true);
    }
    return end + 1 - i_Begin;
}

} // namespace XmlPlugin
