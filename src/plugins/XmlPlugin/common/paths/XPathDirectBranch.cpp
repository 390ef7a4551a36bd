#include "paths/XPathDirectBranch.h"

#include "paths/XPath.h"
#include "paths/XPathPredicate.h"
#include "values/XPathText.h"
#include "xmlproxy/Node.h"

#include <algorithm>

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

namespace
{

bool takeSlash(std::wstring_view& io_Text) noexcept
{
    if (!io_Text.starts_with(L'/'))
    {
        return false;
    }
    io_Text.remove_prefix(1);
    return true;
}

/// NameTest ::= Name | "*", with a part of what names may be. Empty when there is none.
std::wstring_view takeNameTest(std::wstring_view& io_Text) noexcept
{
    std::size_t length = io_Text.starts_with(L'*') ? 1 : plainNameLength(io_Text);
    const std::wstring_view name = io_Text.substr(0, length);
    io_Text.remove_prefix(length);
    return name;
}

/// The text from a "[" up to the next "]", wherever that stands: brackets are not nested. Empty when there is none.
std::wstring_view takePredicate(std::wstring_view& io_Text) noexcept
{
    const std::wstring_view text = io_Text.substr(0, io_Text.find(L']') + 1);
    io_Text.remove_prefix(text.size());
    return text;
}

} // namespace

bool XPathDirectStep::add(const XPathDirectPredicate& i_Predicate)
{
    if (!i_Predicate.isCommon())
    {
        return false;
    }
    // Of several predicates that ask for places only the first one's list is known without looking ahead.
    const auto isPlace = [](const XPathDirectPredicate& i_Before) { return i_Before.isPlace(); };
    if (i_Predicate.isPlace() && std::any_of(m_Predicates.begin(), m_Predicates.end(), isPlace))
    {
        return false;
    }
    m_Predicates.push_back(i_Predicate);
    return true;
}

/// A text node's name is its text.
bool XPathDirectStep::matches(const Node& i_Node) const noexcept
{
    return (m_IsAnyName || m_Name == i_Node.nameEntry()) && i_Node.getType() == Node::ElementNode;
}

bool XPathDirectBranch::keepIf(bool i_IsDirect)
{
    if (!i_IsDirect || m_Steps.size() > s_MostSteps)
    {
        m_Steps.clear();
    }
    return isDirect();
}

XPathDirectStep& XPathDirectBranch::addStep(const XmlNameView& i_Name, bool i_IsAnyName, bool i_IsDeep)
{
    constexpr std::size_t usualSteps = 4;
    if (m_Steps.empty())
    {
        m_Steps.reserve(usualSteps);
    }
    return m_Steps.emplace_back(i_Name, i_IsAnyName, i_IsDeep, *m_Steps.get_allocator().resource());
}

// --- From the text ------------------------------------------------------------------------------

bool XPathDirectBranch::read(std::wstring_view i_Text)
{
    return keepIf(readAll(i_Text));
}

/// Branch ::= "//"? Step (("/" | "//") Step)* (("/" | "//") Leaf)?
bool XPathDirectBranch::readAll(std::wstring_view i_Text)
{
    std::wstring_view text = i_Text;
    const bool isDeep = takeSlash(text);
    if (isDeep && !takeSlash(text))
    {
        return false;
    }
    if (!readStep(text, isDeep))
    {
        return false;
    }
    while (!text.empty())
    {
        if (!takeSlash(text))
        {
            return false;
        }
        const bool isNextDeep = takeSlash(text);
        if (readLeaf(text))
        {
            return true;
        }
        if (!readStep(text, isNextDeep))
        {
            return false;
        }
    }
    return true;
}

/// Step ::= NameTest Predicate*
bool XPathDirectBranch::readStep(std::wstring_view& io_Text, bool i_IsDeep)
{
    const std::wstring_view name = takeNameTest(io_Text);
    if (name.empty())
    {
        return false;
    }
    XPathDirectStep& step = addStep(XmlNameView(name), name == L"*"sv, i_IsDeep);
    while (io_Text.starts_with(L'['))
    {
        const std::wstring_view predicate = takePredicate(io_Text);
        // A "/" ends the step, also within brackets and quotes.
        if (predicate.find(L'/') != std::wstring_view::npos || !step.add(XPathDirectPredicate(predicate)))
        {
            return false;
        }
    }
    return true;
}

/// Leaf ::= "@" Name | "text()", with nothing behind it. Where there is none, the node itself is taken.
bool XPathDirectBranch::readLeaf(std::wstring_view i_Text)
{
    if (i_Text.starts_with(L'@'))
    {
        const std::wstring_view name = i_Text.substr(1);
        if (name.empty() || plainNameLength(name) != name.size())
        {
            return false;
        }
        m_Leaf = XPathLeafValue(XmlNameView(name));
        return true;
    }
    if (i_Text != L"text()"sv)
    {
        return false;
    }
    m_Leaf = XPathLeafValue(XPathLeafValue::Kind::Text);
    return true;
}

// --- From steps ---------------------------------------------------------------------------------

bool XPathDirectBranch::take(const XPathBranch& i_Branch)
{
    return keepIf(takeAll(i_Branch));
}

bool XPathDirectBranch::takeAll(const XPathBranch& i_Branch)
{
    const auto& slots = i_Branch.m_Steps;
    const auto isBuilt = [](const XPathBranch::Slot& i_Slot) { return i_Slot.m_pStep != nullptr; };
    if (!std::all_of(slots.begin(), slots.end(), isBuilt))
    {
        return false;
    }
    for (std::size_t i = 0; i < i_Branch.m_StepCount; ++i)
    {
        const XPathStep& step = *slots[i].m_pStep;
        if (step.axis() != ChildAxis)
        {
            return false;
        }
        XPathDirectStep& direct = addStep(step.nameKey(), step.isAnyName(), step.isDeep());
        const auto add = [&direct](const XPathPredicate& i_Predicate) { return direct.add(i_Predicate.direct()); };
        if (!std::all_of(step.predicates().begin(), step.predicates().end(), add))
        {
            return false;
        }
    }
    const XPathStep& leaf = *slots.back().m_pStep;
    m_Leaf = leaf.leafValue();
    // The keys of "@*" may meet others, and then the order in which the other walk adds records counts.
    return leaf.axis() == ChildAxis || (leaf.axis() == AttributeAxis && leaf.nameView() != L"*");
}

} // namespace XmlPlugin
