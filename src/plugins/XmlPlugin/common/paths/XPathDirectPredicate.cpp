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

using Kind = XPathPlanPredicate::Kind;

bool XPathDirectPredicate::holds(const Node& i_Node) const
{
    const AttributeTable* pAttributes = i_Node.attributes();
    const int index = pAttributes ? pAttributes->indexOf(m_Plan.m_Attribute) : -1;
    if (index < 0)
    {
        return false;
    }
    switch (m_Plan.m_Kind)
    {
    case Kind::Number:
        return holdsForNumber(pAttributes->valueAt(index));
    case Kind::Text:
        return holdsForText(i_Node, pAttributes->valueAt(index));
    default:
        return true;
    }
}

bool XPathDirectPredicate::holdsForNumber(std::wstring_view i_Value) const
{
    double number = 0.0;
    if (!XPathNumberText::readOperand(i_Value, number))
    {
        return m_Plan.m_Comparison == XPathComparison::NotEqual;
    }
    switch (m_Plan.m_Comparison)
    {
    case XPathComparison::Equal:
        return number == m_Plan.m_Number;
    case XPathComparison::NotEqual:
        return number != m_Plan.m_Number;
    case XPathComparison::Less:
        return number < m_Plan.m_Number;
    case XPathComparison::LessOrEqual:
        return number <= m_Plan.m_Number;
    case XPathComparison::Greater:
        return number > m_Plan.m_Number;
    case XPathComparison::GreaterOrEqual:
        return number >= m_Plan.m_Number;
    }
    return false;
}

/// D-102: texts have no order: "<" and "<=" hold for any value, ">" and ">=" for none.
bool XPathDirectPredicate::holdsForText(const Node& i_Node, std::wstring_view i_Value) const
{
    switch (m_Plan.m_Comparison)
    {
    case XPathComparison::Less:
    case XPathComparison::LessOrEqual:
        return true;
    case XPathComparison::Greater:
    case XPathComparison::GreaterOrEqual:
        return false;
    default:
        break;
    }
    const bool isWanted = m_Plan.m_Comparison == XPathComparison::Equal;
    if (!i_Value.empty())
    {
        return (i_Value == m_Plan.m_Text) == isWanted;
    }
    // A record without a value is compared by the text of its node.
    String text;
    XPathFunction_string::getTextFromNode(&i_Node, text);
    return (viewOf(text) == m_Plan.m_Text) == isWanted;
}

bool XPathDirectPredicate::holdsAt(const Node& i_Node, std::size_t i_Place, bool i_IsLast) const noexcept
{
    // D-50: compared as text, with the place in the whole list. The length of a list of a million nodes
    // or more is printed with an exponent, which no place is.
    constexpr std::size_t firstWithExponent = 1000000;
    // A node without a parent counts as the only one for position() and last().
    const bool isAlone = !i_Node.getParent();
    switch (m_Plan.m_Kind)
    {
    case Kind::Place:
        return i_Place == m_Plan.m_Place;
    case Kind::Position:
        return (isAlone ? 1 : i_Place) == m_Plan.m_Place;
    case Kind::Last:
        return isAlone ? i_Place == 1 : i_IsLast && i_Place < firstWithExponent;
    default:
        return false;
    }
}

bool XPathDirectPredicate::isPast(const Node& i_Node, std::size_t i_Place) const noexcept
{
    return i_Place >= m_Plan.m_Place &&
           (m_Plan.m_Kind == Kind::Place || (m_Plan.m_Kind == Kind::Position && i_Node.getParent()));
}

bool XPathDirectPredicate::isPlainName(const XmlName& i_Name) noexcept
{
    return viewOf(i_Name.text()).find(L"::"sv) == std::wstring_view::npos;
}

bool XPathDirectPredicate::isReadAsItStands(const Node& i_Node) noexcept
{
    const Node* pParent = i_Node.getParent();
    return isPlainName(i_Node.nameEntry()) && (!pParent || isPlainName(pParent->nameEntry()));
}

bool XPathDirectPredicate::filter(NodeVector& io_Nodes) const
{
    if (!m_Plan.asksForPlace() &&
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
                      return m_Plan.asksForPlace() ? !holdsAt(*i_pNode, place, place == size) : !holds(*i_pNode);
                  });
    return true;
}

} // namespace XmlPlugin
