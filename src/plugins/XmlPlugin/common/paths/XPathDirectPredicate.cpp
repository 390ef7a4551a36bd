#include "paths/XPathDirectPredicate.h"

#include "functions/XPathStringFunctions.h"
#include "values/XPathArgument.h"
#include "values/XPathNumberText.h"
#include "values/XPathText.h"
#include "xmlproxy/Node.h"

#include <algorithm>

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

namespace
{

void skipBlanks(std::wstring_view& io_Text) noexcept
{
    io_Text.remove_prefix(std::min(io_Text.find_first_not_of(L' '), io_Text.size()));
}

/// Takes \p i_Symbol, a character or a text, and the blanks behind it from the text; false when something else stands
/// there.
bool take(std::wstring_view& io_Text, wchar_t i_Symbol) noexcept
{
    if (!io_Text.starts_with(i_Symbol))
    {
        return false;
    }
    io_Text.remove_prefix(1);
    skipBlanks(io_Text);
    return true;
}

bool take(std::wstring_view& io_Text, std::wstring_view i_Symbol) noexcept
{
    if (!io_Text.starts_with(i_Symbol))
    {
        return false;
    }
    io_Text.remove_prefix(i_Symbol.size());
    skipBlanks(io_Text);
    return true;
}

/// The same for a number of characters.
std::wstring_view takeUnits(std::wstring_view& io_Text, std::size_t i_Count) noexcept
{
    const std::wstring_view taken = io_Text.substr(0, i_Count);
    io_Text.remove_prefix(i_Count);
    skipBlanks(io_Text);
    return taken;
}

/// Empty when there is no name.
std::wstring_view takeName(std::wstring_view& io_Text) noexcept
{
    return takeUnits(io_Text, plainNameLength(io_Text));
}

/// Digits ::= [1-9] [0-9]*, at most nine. Empty when there are none.
std::wstring_view takeDigits(std::wstring_view& io_Text) noexcept
{
    constexpr std::size_t mostDigits = 9;
    if (io_Text.starts_with(L'0'))
    {
        return {};
    }
    const auto end = std::find_if_not(io_Text.begin(), io_Text.end(), isPlainDigit);
    const auto count = static_cast<std::size_t>(end - io_Text.begin());
    return count > mostDigits ? std::wstring_view() : takeUnits(io_Text, count);
}

/// Literal ::= a quoted text without quotes and brackets in it. Empty, with its quotes, when there is none.
std::wstring_view takeLiteral(std::wstring_view& io_Text) noexcept
{
    if (io_Text.empty() || (io_Text.front() != L'\'' && io_Text.front() != L'"'))
    {
        return {};
    }
    const std::size_t end = io_Text.find_first_of(L"'\"[]"sv, 1);
    if (end == std::wstring_view::npos || io_Text[end] != io_Text.front())
    {
        return {};
    }
    return takeUnits(io_Text, end + 1);
}

} // namespace

// --- Reading ------------------------------------------------------------------------------------

/// Predicate ::= "[" ("@" Name ("=" (Literal | Digits))? | Digits | "position()" "=" Digits | "last()") "]"
/// with spaces between. Anything else, also what means the same, is of another shape.
XPathDirectPredicate::XPathDirectPredicate(std::wstring_view i_Text)
{
    std::wstring_view text = i_Text;
    if (!take(text, L'['))
    {
        return;
    }
    Kind kind = Kind::Other;
    if (take(text, L'@'))
    {
        kind = readAttribute(text);
    }
    else if (!text.empty() && isPlainDigit(text.front()))
    {
        kind = readPlace(text);
    }
    else
    {
        kind = readCall(text);
    }
    if (text == L"]"sv)
    {
        m_Kind = kind;
    }
}

XPathDirectPredicate::Kind XPathDirectPredicate::readAttribute(std::wstring_view& io_Text)
{
    const std::wstring_view name = takeName(io_Text);
    if (name.empty())
    {
        return Kind::Other;
    }
    m_Attribute = XmlNameView(name);
    if (!take(io_Text, L'='))
    {
        return Kind::HasAttribute;
    }
    std::wstring_view operand = takeLiteral(io_Text);
    if (operand.empty())
    {
        operand = takeDigits(io_Text);
    }
    if (operand.empty())
    {
        return Kind::Other;
    }
    if (XPathNumberText::readOperand(operand, m_Number))
    {
        return Kind::AttributeIsNumber;
    }
    m_Text = removeQuotes(operand);
    return Kind::AttributeIsText;
}

XPathDirectPredicate::Kind XPathDirectPredicate::readPlace(std::wstring_view& io_Text)
{
    const std::wstring_view digits = takeDigits(io_Text);
    for (const wchar_t digit : digits)
    {
        m_Place = m_Place * 10 + static_cast<std::size_t>(digit - L'0');
    }
    return digits.empty() ? Kind::Other : Kind::Place;
}

XPathDirectPredicate::Kind XPathDirectPredicate::readCall(std::wstring_view& io_Text)
{
    if (take(io_Text, L"last()"sv))
    {
        return Kind::Last;
    }
    const bool isPosition = take(io_Text, L"position()"sv) && take(io_Text, L'=') && readPlace(io_Text) == Kind::Place;
    return isPosition ? Kind::Position : Kind::Other;
}

// --- Answering ----------------------------------------------------------------------------------

bool XPathDirectPredicate::holds(const Node& i_Node) const
{
    const AttributeTable* pAttributes = i_Node.attributes();
    const int index = pAttributes ? pAttributes->indexOf(m_Attribute) : -1;
    if (index < 0 || m_Kind == Kind::HasAttribute)
    {
        return index >= 0;
    }
    const std::wstring_view value = pAttributes->valueAt(index);
    if (m_Kind == Kind::AttributeIsNumber)
    {
        double number = 0.0;
        return XPathNumberText::readOperand(value, number) && number == m_Number;
    }
    if (!value.empty())
    {
        return value == m_Text;
    }
    // A record without a value is compared by the text of its node.
    String text;
    XPathFunction_string::getTextFromNode(&i_Node, text);
    return text.view() == m_Text;
}

bool XPathDirectPredicate::holdsAt(const Node& i_Node, std::size_t i_Place, bool i_IsLast) const noexcept
{
    // D-50: compared as text, with the place in the whole list. The length of a list of a million nodes
    // or more is printed with an exponent, which no place is.
    constexpr std::size_t firstWithExponent = 1000000;
    // A node without a parent counts as the only one for position() and last().
    const bool isAlone = !i_Node.getParent();
    switch (m_Kind)
    {
    case Kind::Place:
        return i_Place == m_Place;
    case Kind::Position:
        return (isAlone ? 1 : i_Place) == m_Place;
    case Kind::Last:
        return isAlone ? i_Place == 1 : i_IsLast && i_Place < firstWithExponent;
    default:
        return false;
    }
}

bool XPathDirectPredicate::isPast(const Node& i_Node, std::size_t i_Place) const noexcept
{
    return i_Place >= m_Place && (m_Kind == Kind::Place || (m_Kind == Kind::Position && i_Node.getParent()));
}

bool XPathDirectPredicate::isPlainName(const XmlName& i_Name) noexcept
{
    return i_Name.text().view().find(L"::"sv) == std::wstring_view::npos;
}

bool XPathDirectPredicate::isReadAsItStands(const Node& i_Node) noexcept
{
    const Node* pParent = i_Node.getParent();
    return isPlainName(i_Node.nameEntry()) && (!pParent || isPlainName(pParent->nameEntry()));
}

bool XPathDirectPredicate::filter(NodeVector& io_Nodes) const
{
    if (!isPlace() &&
        !std::all_of(io_Nodes.begin(), io_Nodes.end(), [](const Node* i_pNode) { return isReadAsItStands(*i_pNode); }))
    {
        return false;
    }
    const std::size_t size = io_Nodes.size();
    std::size_t place = 0;
    std::erase_if(io_Nodes,
                  [&](const Node* i_pNode)
                  {
                      ++place;
                      return isPlace() ? !holdsAt(*i_pNode, place, place == size) : !holds(*i_pNode);
                  });
    return true;
}

} // namespace XmlPlugin
