#include "compile/XPathQuickReader.h"

#include "compile/StackLeft.h"
#include "compile/XPathCharacters.h"
#include "compile/XPathPlainReader.h"
#include "compile/XPathTokenizer.h"
#include "functions/XPathOperator.h"

#include <string>
#include <utility>

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

namespace
{

constexpr wchar_t s_FirstBeyondAscii = 0x80;

bool isQuote(wchar_t i_Unit) noexcept
{
    return i_Unit == L'"' || i_Unit == L'\'';
}

} // namespace

bool XPathQuickReader::read()
{
    const std::uint32_t closing = m_Source.size() - 1;
    const std::uint32_t length = readExpr(1);
    if (length == 0 || m_Source.skip(1 + length) != closing)
    {
        return false;
    }
    m_Operators.finish(m_Postfix);
    return true;
}

std::uint32_t XPathQuickReader::measure(std::uint32_t i_Offset)
{
    const bool wasMeasuring = std::exchange(m_IsMeasuring, true);
    const std::uint32_t length = readExpr(i_Offset);
    m_IsMeasuring = wasMeasuring;
    return length;
}

// --- Where the elements go ----------------------------------------------------------------------

void XPathQuickReader::open()
{
    if (!m_IsMeasuring)
    {
        m_Operators.open();
    }
}

void XPathQuickReader::comma()
{
    if (!m_IsMeasuring)
    {
        m_Operators.comma(m_Postfix);
    }
}

void XPathQuickReader::close()
{
    if (!m_IsMeasuring)
    {
        m_Operators.close(m_Postfix);
    }
}

/// Null while only measuring.
XPathOperator* XPathQuickReader::addOperator(const XPathFunctionChoice& i_Choice)
{
    if (m_IsMeasuring)
    {
        return nullptr;
    }
    XPathOperator& made = m_Elements.addOperator(i_Choice);
    m_Operators.oper(made, i_Choice.priority(), m_Postfix);
    return &made;
}

// --- The grammar --------------------------------------------------------------------------------

std::uint32_t XPathQuickReader::readExpr(std::uint32_t i_Offset)
{
    if (m_Nesting > XPathTokenizer::s_MaximumNesting || i_Offset > m_Source.text().size())
    {
        return 0;
    }
    if (m_Nesting >= XPathTokenizer::s_UsualNesting && !hasStackLeft())
    {
        return 0;
    }
    ++m_Nesting;
    std::uint32_t end = i_Offset;
    if (const std::uint32_t first = readOperand(end))
    {
        end = readChain(i_Offset, end + first);
    }
    --m_Nesting;
    return end - i_Offset;
}

/// The operators after the operand that ends at \p i_End, with their operands. Returns the end; i_Offset: see above.
std::uint32_t XPathQuickReader::readChain(std::uint32_t i_Offset, std::uint32_t i_End)
{
    AndChain chain{i_Offset, 0, 0};
    std::uint32_t end = i_End;
    for (;;)
    {
        const std::uint32_t begin = m_Source.skip(end);
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
        addOperator(XPathFunctionFactory::choose(oper, {}));
        const std::uint32_t operand = readOperand(behind);
        if (operand == 0)
        {
            return i_Offset;
        }
        end = behind + operand;
    }
}

/// True unless the emission of the chain that ends at \p i_End would find one more "and" at the place where it goes on
/// (see emitAndExpr).
bool XPathQuickReader::isPlainAnd(const AndChain& i_Chain, std::uint32_t i_End) const noexcept
{
    if (i_Chain.m_And == 0)
    {
        return true;
    }
    const std::uint32_t first = i_Chain.m_And - i_Chain.m_Begin;
    const std::uint32_t operand = i_End - i_Chain.m_Second;
    return m_Source.terminalLength(i_Chain.m_And + operand + first, L"and"sv) == 0;
}

/// The operator whose text begins at \p i_Begin; empty: none. "|" is none here: the productions join unions.
std::wstring_view XPathQuickReader::operatorAt(std::uint32_t i_Begin) const noexcept
{
    const auto known = [&](std::wstring_view i_Text)
    { return m_Source.standsAt(i_Begin, i_Text) ? i_Text : std::wstring_view(); };
    switch (m_Source.unit(i_Begin))
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
        return m_Source.unit(i_Begin + 1) == L'=' ? L"<="sv : L"<"sv;
    case L'>':
        return m_Source.unit(i_Begin + 1) == L'=' ? L">="sv : L">"sv;
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
std::uint32_t XPathQuickReader::readOperand(std::uint32_t i_Offset)
{
    const std::uint32_t begin = m_Source.skip(i_Offset);
    const wchar_t first = m_Source.unit(begin);
    std::uint32_t length = 0;
    if (isQuote(first))
    {
        length = readLiteral(begin);
    }
    else if (first >= L'0' && first <= L'9')
    {
        length = readNumber(begin);
    }
    else if (first == L'(')
    {
        length = readParenthesised(begin);
    }
    else
    {
        return first == L'-' ? readNegated(i_Offset) : readNamed(i_Offset, begin);
    }
    return length == 0 || isContinued(begin + length) ? 0 : begin + length - i_Offset;
}

/// An odd number of signs is "(0 - x)" with a negative zero; an even number leaves nothing.
std::uint32_t XPathQuickReader::readNegated(std::uint32_t i_Offset)
{
    bool isOdd = false;
    std::uint32_t begin = i_Offset;
    for (std::uint32_t sign = m_Source.skip(begin); m_Source.unit(sign) == L'-'; sign = m_Source.skip(begin))
    {
        begin = sign + 1;
        isOdd = !isOdd;
    }
    if (isOdd)
    {
        open();
        addNegativeZero();
        addOperator(XPathFunctionFactory::choose(L"-"sv, {}));
    }
    const std::uint32_t primary = readOperand(begin);
    if (isOdd && primary)
    {
        close();
    }
    return primary ? begin - i_Offset + primary : 0;
}

void XPathQuickReader::addNegativeZero()
{
    if (!m_IsMeasuring)
    {
        XPathArgument& zero = m_Elements.addNumber(L"0"sv, 0.0);
        zero.setNegativeZero(true);
        m_Postfix.push_back(&zero);
    }
}

/// What begins with none of the characters above, at \p i_Begin after spaces: FunctionCall | LocationPath, which takes
/// these spaces too, or a number with digits beyond ASCII.
std::uint32_t XPathQuickReader::readNamed(std::uint32_t i_Offset, std::uint32_t i_Begin)
{
    std::uint32_t length = 0;
    if (const XPathFunctionRow* pRow = callAt(i_Begin))
    {
        length = readCall(i_Begin, *pRow);
    }
    else if (isDigit(m_Source.unit(i_Begin)))
    {
        length = readLongNumber(i_Begin);
    }
    else
    {
        return readPath(i_Offset);
    }
    return length == 0 || isContinued(i_Begin + length) ? 0 : i_Begin + length - i_Offset;
}

std::uint32_t XPathQuickReader::readPath(std::uint32_t i_Offset)
{
    if (m_Nesting <= XPathTokenizer::s_MaximumNesting) // a predicate nests
    {
        XPathPlainReader reader(m_Source.text(), i_Offset, m_Elements);
        if (const XPathPlan* pPlan = reader.readPath())
        {
            if (!m_IsMeasuring)
            {
                const bool isAsWritten = !pPlan->m_HasSpaceBeforeBar;
                m_Postfix.push_back(&m_Elements.addPath(
                    isAsWritten ? m_Source.text().substr(i_Offset, reader.end() - i_Offset) : joined(*pPlan), *pPlan));
            }
            return static_cast<std::uint32_t>(reader.end()) - i_Offset;
        }
    }
    const std::uint32_t length = m_Tokenizer.isLocationPath(i_Offset, false);
    if (length != 0 && !m_IsMeasuring)
    {
        m_Postfix.push_back(&m_Elements.addArgument(m_Source.text().substr(i_Offset, length)));
    }
    return length;
}

/// The text of a union as the general code joins it: what stands before a bar as written, without the spaces there.
std::wstring_view XPathQuickReader::joined(const XPathPlan& i_Plan)
{
    std::wstring text;
    for (const XPathPlanBranch* pBranch = &i_Plan.m_First; pBranch; pBranch = pBranch->m_pNext)
    {
        text += text.empty() ? L""sv : L"|"sv;
        text += pBranch->m_Text;
    }
    return m_Elements.keep(text);
}

std::uint32_t XPathQuickReader::readParenthesised(std::uint32_t i_Begin)
{
    open();
    const std::uint32_t expr = readExpr(i_Begin + 1);
    const std::uint32_t end = m_Source.skip(i_Begin + 1 + expr);
    if (expr == 0 || m_Source.unit(end) != L')')
    {
        return 0;
    }
    close();
    return end + 1 - i_Begin;
}

/// Few digits of ASCII are an operand whose type and value need not be looked for in its text.
std::uint32_t XPathQuickReader::readNumber(std::uint32_t i_Begin)
{
    constexpr std::uint32_t mostDigits = 15; // a double holds all of them exactly
    std::int64_t number = 0;
    std::uint32_t end = i_Begin;
    for (; m_Source.unit(end) >= L'0' && m_Source.unit(end) <= L'9' && end - i_Begin <= mostDigits; ++end)
    {
        number = 10 * number + (m_Source.unit(end) - L'0');
    }
    const std::uint32_t length = end - i_Begin;
    if (length == 0 || length > mostDigits || m_Source.unit(end) >= s_FirstBeyondAscii ||
        m_Source.unit(m_Source.skip(end)) == L'.')
    {
        return readLongNumber(i_Begin);
    }
    if (!m_IsMeasuring)
    {
        m_Postfix.push_back(
            &m_Elements.addNumber(m_Source.text().substr(i_Begin, length), static_cast<double>(number)));
    }
    return length;
}

std::uint32_t XPathQuickReader::readLongNumber(std::uint32_t i_Begin)
{
    const std::uint32_t length = m_Tokenizer.isNumber(i_Begin, false);
    if (length != 0 && !m_IsMeasuring)
    {
        m_Postfix.push_back(&m_Elements.addArgument(m_Source.text().substr(i_Begin, length)));
    }
    return length;
}

/// With its quotes; 0 also for a literal that is joined with its neighbours as if it were the operator "|".
std::uint32_t XPathQuickReader::readLiteral(std::uint32_t i_Begin)
{
    const std::size_t end = m_Source.text().find(m_Source.unit(i_Begin), i_Begin + 1);
    if (end == std::wstring_view::npos || m_Source.text().substr(i_Begin + 1, end - i_Begin - 1) == L"|"sv)
    {
        return 0;
    }
    const std::uint32_t length = static_cast<std::uint32_t>(end) + 1 - i_Begin;
    if (!m_IsMeasuring)
    {
        m_Postfix.push_back(&m_Elements.addArgument(m_Source.text().substr(i_Begin, length)));
    }
    return length;
}

/// The function whose name begins at \p i_Begin, with a parenthesis after it; null: there is none.
const XPathFunctionRow* XPathQuickReader::callAt(std::uint32_t i_Begin) const noexcept
{
    std::uint32_t end = i_Begin;
    while ((m_Source.unit(end) >= L'a' && m_Source.unit(end) <= L'z') || m_Source.unit(end) == L'-')
    {
        ++end;
    }
    if (end == i_Begin || m_Source.unit(m_Source.skip(end)) != L'(')
    {
        return nullptr;
    }
    return XPathFunctionFactory::find(m_Source.text().substr(i_Begin, end - i_Begin));
}

std::uint32_t XPathQuickReader::readCall(std::uint32_t i_Begin, const XPathFunctionRow& i_Row)
{
    XPathOperator* const pFunction = addOperator({nullptr, &i_Row});
    open();
    // Where the next argument begins, spaces included; callAt has seen the parenthesis.
    std::uint32_t begin = m_Source.skip(i_Begin + static_cast<std::uint32_t>(i_Row.name.size())) + 1;
    std::uint32_t end = m_Source.skip(begin);
    int count = 0;
    while (m_Source.unit(end) != L')')
    {
        if (count > 0)
        {
            if (m_Source.unit(end) != L',')
            {
                return 0;
            }
            comma();
            begin = end + 1;
        }
        const std::uint32_t argument = readExpr(begin);
        if (argument == 0)
        {
            return 0;
        }
        end = m_Source.skip(begin + argument);
        ++count;
    }
    if (pFunction && count > 0)
    {
        pFunction->setArgumentsCount(count);
    }
    close();
    return end + 1 - i_Begin;
}

} // namespace XmlPlugin
