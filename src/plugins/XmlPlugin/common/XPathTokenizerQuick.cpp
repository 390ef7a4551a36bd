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
#include "XmlTrace.h"

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
    m_Waiting.clear();
    m_TokensExceeded = false;
    m_Furthest = 0;
    m_MayBeQuick = false;
    return false;
}

bool XPathTokenizer::readPostfix(XPathExpressionsVector& o_Postfix)
{
    if (!m_MayBeQuick || Trace::isEnabled(TraceInformation))
        return false;
    m_IsPostfix = true;
    const bool isRead = readQuickly();
    m_IsPostfix = false;
    if (!isRead)
        return false;
    while (!m_Waiting.empty())
        releaseWaiting();
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
        m_Waiting.push_back({nullptr, 0});
    else
        emitToken(L"(", {});
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
        releaseWaiting();
    if (i_IsEnd)
        m_Waiting.pop_back();
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
        releaseWaiting();
    m_Waiting.push_back({&made, priority});
    return made;
}

// --- The grammar --------------------------------------------------------------------------------

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
            quickOperator(XPathFunctionFactory::choose(oper, {}));
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
    const bool isNegated = isOdd && i_Consume;
    if (isNegated)
    {
        quickOpen();
        emitNegativeZero();
        quickOperator(XPathFunctionFactory::choose(L"-", {}));
    }
    const std::uint32_t primary = quickPrimary(i_Offset + signs, i_Consume);
    if (isNegated && primary)
        quickClose(true);
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
    else if (const XPathFunctionRow* pRow = callAt(begin))
        length = quickCall(begin, *pRow, i_Consume);
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
        quickOpen();
    const std::uint32_t expr = quickExpr(i_Begin + 1, i_Consume);
    const std::uint32_t close = expr ? unitLength(i_Begin + 1 + expr, L')') : 0;
    if (close == 0)
        return 0;
    if (i_Consume)
        quickClose(true);
    return 1 + expr + close;
}

std::uint32_t XPathTokenizer::quickLiteral(std::uint32_t i_Begin, bool i_Consume)
{
    const wchar_t quote = at(i_Begin);
    std::uint32_t end = i_Begin + 1;
    while (end < m_Text.size() && m_Text[end] != quote)
        ++end;
    const bool isBar = end == i_Begin + 2 && at(i_Begin + 1) == L'|'; // joined as if it were the operator
    if (end == m_Text.size() || isBar)
        return 0;
    const std::uint32_t length = end + 1 - i_Begin;
    if (i_Consume)
        emitArgument(i_Begin, length);
    return length;
}

/// The function whose name begins at \p i_Begin, with a parenthesis behind it; null: there is none.
const XPathFunctionRow* XPathTokenizer::callAt(std::uint32_t i_Begin) const noexcept
{
    const std::wstring_view name = functionNameAt(i_Begin);
    if (name.empty() || unitLength(i_Begin + static_cast<std::uint32_t>(name.size()), L'(') == 0)
        return nullptr;
    return XPathFunctionFactory::find(name);
}

std::uint32_t XPathTokenizer::quickCall(std::uint32_t i_Begin, const XPathFunctionRow& i_Row, bool i_Consume)
{
    const XPathFunctionChoice choice{nullptr, &i_Row};
    XPathOperator* const pFunction = i_Consume ? &quickOperator(choice) : nullptr;
    if (i_Consume)
        quickOpen();
    std::uint32_t end = i_Begin + static_cast<std::uint32_t>(choice.token().size());
    end += unitLength(end, L'(');
    std::uint32_t close = unitLength(end, L')');
    for (int count = 1; close == 0; ++count)
    {
        const std::uint32_t comma = count > 1 ? unitLength(end, L',') : 0;
        if (count > 1 && comma == 0)
            return 0;
        if (comma && i_Consume)
            quickClose(false);
        const std::uint32_t argument = quickExpr(end + comma, i_Consume);
        if (argument == 0)
            return 0;
        end += comma + argument;
        if (pFunction)
            pFunction->setArgumentsCount(count);
        close = unitLength(end, L')');
    }
    if (i_Consume)
        quickClose(true);
    return end + close - i_Begin;
}

} // namespace XmlPlugin
