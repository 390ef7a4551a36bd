// Names, literals, numbers, single terminals, and the tables of axes, functions and node types.
#include "compile/XPathTokenizer.h"

#include "compile/XPathCharacters.h"
#include "compile/XPathTerminals.h"
#include "compile/XPathTokenizerTrace.h"
#include "functions/XPathLetterIndex.h"
#include "xpathlanguage/XPathAxisTable.h"
#include "xpathlanguage/XPathFunctionTable.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace XmlPlugin
{

namespace
{

// Looked up by prefix, first match first.

constexpr auto s_AxisNames = []
{
    std::array<std::wstring_view, std::size(XPathLanguage::s_Axes)> names;
    std::transform(std::begin(XPathLanguage::s_Axes), std::end(XPathLanguage::s_Axes), names.begin(),
                   [](const XPathLanguage::Axis& i_Axis) { return i_Axis.name.wide(); });
    return names;
}();

/// Long names first, so that none hides another.
constexpr auto s_FunctionNames = []
{
    std::array<std::wstring_view, std::size(XPathLanguage::s_Functions)> names;
    std::transform(std::begin(XPathLanguage::s_Functions), std::end(XPathLanguage::s_Functions), names.begin(),
                   [](const XPathLanguage::Function& i_Function) { return i_Function.name.wide(); });
    std::sort(names.begin(), names.end(),
              [](std::wstring_view i_Left, std::wstring_view i_Right) { return i_Left.size() > i_Right.size(); });
    return names;
}();

/// Stored with their parentheses. D-14, D-15: the node test wants a further "()", so "text()" is
/// not recognised as a node type, and "node()" is not in the table. XPath 1.0 accepts both.
constexpr std::array<std::wstring_view, 3> s_NodeTypes = {L"comment()", L"text()", L"processing-instruction()"};

/// The index of a table by first letters; the order in the table decides within one letter.
template <std::size_t Size>
constexpr XPathLetterIndex<Size> lettersOf(const std::array<std::wstring_view, Size>& i_Table)
{
    return XPathLetterIndex<Size>([&](std::size_t i_Index) { return i_Table[i_Index].front(); });
}

constexpr auto s_AxisLetters = lettersOf(s_AxisNames);
constexpr auto s_FunctionLetters = lettersOf(s_FunctionNames);
constexpr auto s_NodeTypeLetters = lettersOf(s_NodeTypes);

/// The first entry that the text begins with, whatever follows it; empty: none.
template <std::size_t Size>
std::wstring_view entryOf(std::wstring_view i_Text, const std::array<std::wstring_view, Size>& i_Table,
                          const XPathLetterIndex<Size>& i_Letters) noexcept
{
    const std::size_t first = i_Text.empty() ? Size : i_Letters.first(i_Text.front());
    for (std::size_t i = first; i != i_Letters.s_None; i = i_Letters.next(i))
    {
        if (i_Text.starts_with(i_Table[i]))
        {
            return i_Table[i];
        }
    }
    return {};
}

/// Same, after any number of spaces; returns how many characters it takes with them.
template <std::size_t Size>
std::uint32_t entryLength(const XPathSource& i_Source, std::uint32_t i_Offset,
                          const std::array<std::wstring_view, Size>& i_Table, const XPathLetterIndex<Size>& i_Letters,
                          std::wstring_view& o_Entry) noexcept
{
    const std::uint32_t skipped = i_Source.spaces(i_Offset);
    const std::uint32_t begin = i_Offset + skipped;
    o_Entry =
        begin < i_Source.size() ? entryOf(i_Source.text().substr(begin), i_Table, i_Letters) : std::wstring_view();
    return o_Entry.empty() ? 0 : skipped + static_cast<std::uint32_t>(o_Entry.size());
}

/// D-02: spaces before a full stop, a hyphen or an underscore are taken into the name, so
/// that "a -b" is one name and "a - b" is not recognised. XPath 1.0 says that both subtract.
std::uint32_t nameLength(const XPathSource& i_Source, std::uint32_t i_Offset) noexcept
{
    std::uint32_t end = i_Offset + i_Source.spaces(i_Offset);
    if (!isLetter(i_Source.at(end)) && i_Source.at(end) != L'_')
    {
        return 0;
    }
    ++end;
    for (;;)
    {
        const wchar_t unit = i_Source.at(end);
        if (isLetter(unit) || isDigit(unit) || unit == L'.' || unit == L'-' || unit == L'_')
        {
            ++end;
            continue;
        }
        if (unit == L' ')
        {
            const std::uint32_t next = end + i_Source.spaces(end);
            const wchar_t after = i_Source.at(next);
            if (after != L'.' && after != L'-' && after != L'_')
            {
                break;
            }
            end = next + 1;
            continue;
        }
        if (!isCombiningChar(unit) && !isExtender(unit))
        {
            break;
        }
        ++end;
    }
    return end - i_Offset;
}

} // namespace

// --- Names, literals, numbers -------------------------------------------------------------------

/// QName ::= PrefixedName | NCName
std::uint32_t XPathTokenizer::isQName(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t skipped = m_Source.spaces(i_Offset);
    std::uint32_t length = isPrefixedName(i_Offset + skipped, i_Consume);
    if (length == 0)
    {
        length = isNCName(i_Offset + skipped, i_Consume);
    }
    return length ? skipped + length : 0;
}

/// PrefixedName ::= NCName ":" NCName
/// D-12: it takes the length of its local part alone, so that a prefixed name never spans
/// its own text: "p:item" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::isPrefixedName(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t prefix = isNCName(i_Offset, false);
    const std::uint32_t colon = prefix ? isCharacter(i_Offset + prefix, L":", false) : 0;
    const std::uint32_t local = colon ? isNCName(i_Offset + prefix + colon, false) : 0;
    if (local && i_Consume)
    {
        isNCName(i_Offset, true);
        isCharacter(i_Offset + prefix, L":", true);
        isNCName(i_Offset + prefix + colon, true);
    }
    return local;
}

/// NCName ::= (Letter | "_") (NameChar but not ":")*
std::uint32_t XPathTokenizer::isNCName(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t length = nameLength(m_Source, i_Offset);
    if (length)
    {
        note(i_Offset + length);
        if (i_Consume)
        {
            m_Emitter.argument(m_Source.text().substr(i_Offset, length));
        }
    }
    return length;
}

/// Literal ::= '"' [^"]* '"' | "'" [^']* "'"
std::uint32_t XPathTokenizer::isLiteral(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t skipped = m_Source.spaces(i_Offset);
    const wchar_t quote = m_Source.at(i_Offset + skipped);
    if (quote != L'"' && quote != L'\'')
    {
        return 0;
    }
    const std::size_t close = m_Source.text().find(quote, i_Offset + skipped + 1);
    if (close == std::wstring_view::npos)
    {
        return 0;
    }
    const std::uint32_t end = static_cast<std::uint32_t>(close) + 1;
    note(end);
    if (i_Consume)
    {
        m_Emitter.argument(m_Source.text().substr(i_Offset + skipped, end - i_Offset - skipped));
    }
    return end - i_Offset;
}

/// Number ::= Digits ("." Digits?)? | "." Digits
/// D-04: the second form looks for its digits at the full stop itself and so never matches:
/// ".5" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::isNumber(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t skipped = m_Source.spaces(i_Offset);
    std::uint32_t end = i_Offset + skipped;
    const std::uint32_t digits = isDigits(end, false);
    if (digits == 0)
    {
        return 0;
    }
    end += digits;
    if (const std::uint32_t stop = m_Source.terminalLength(end, L"."))
    {
        end += stop + isDigits(end + stop, false);
    }
    note(end);
    if (i_Consume)
    {
        m_Emitter.argument(m_Source.text().substr(i_Offset + skipped, end - i_Offset - skipped));
    }
    return end - i_Offset;
}

std::uint32_t XPathTokenizer::isDigits(std::uint32_t i_Offset, bool)
{
    std::uint32_t end = i_Offset;
    while (isDigit(m_Source.at(end)))
    {
        ++end;
    }
    return end - i_Offset;
}

// --- Terminals and tables -----------------------------------------------------------------------

std::uint32_t XPathTokenizer::isCharacter(std::uint32_t i_Offset, std::wstring_view i_Text, bool i_Consume)
{
    const std::uint32_t length = m_Source.terminalLength(i_Offset, i_Text);
    XML_TRACE_VALUE(L" XPathTokenizer::isCharacter()", L"isCharacter return value = ", length);
    if (length)
    {
        note(i_Offset + length);
        if (i_Consume)
        {
            m_Emitter.token(m_Source.text().substr(i_Offset + length - i_Text.size(), i_Text.size()));
        }
    }
    return length;
}

std::wstring_view axisNameOf(std::wstring_view i_Text) noexcept
{
    return entryOf(i_Text, s_AxisNames, s_AxisLetters);
}

std::uint32_t XPathTokenizer::isAxisName(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isAxisName()", i_Offset, i_Consume,
                  [&]
                  {
                      std::wstring_view entry;
                      return entryLength(m_Source, i_Offset, s_AxisNames, s_AxisLetters, entry);
                  });
}

std::uint32_t XPathTokenizer::isNodeType(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isNodeType()", i_Offset, i_Consume,
                  [&]
                  {
                      std::wstring_view entry;
                      return entryLength(m_Source, i_Offset, s_NodeTypes, s_NodeTypeLetters, entry);
                  });
}

std::uint32_t XPathTokenizer::isFunctionName(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isFunctionName()", i_Offset, i_Consume,
                  [&]
                  {
                      std::wstring_view entry;
                      const std::uint32_t length =
                          entryLength(m_Source, i_Offset, s_FunctionNames, s_FunctionLetters, entry);
                      if (length && i_Consume)
                      {
                          m_Emitter.token(entry, L"(");
                      }
                      return length;
                  });
}

} // namespace XmlPlugin
