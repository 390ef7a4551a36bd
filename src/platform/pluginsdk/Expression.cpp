#include "pluginsdk/Expression.h"

#include <algorithm>
#include <array>
#include <cwchar>
#include <string_view>
#include <vector>

namespace PluginSDK
{

namespace
{

/// A name and its value in one piece of memory, which stays where it is as long as the property is set.
struct Property
{
    std::unique_ptr<wchar_t[]> m_pTexts; ///< the name, a null, the value, a null; null pointer: not set
    std::size_t m_NameLength = 0;

    Property() = default;
    Property(std::wstring_view i_Name, std::wstring_view i_Value)
        : m_pTexts(new wchar_t[i_Name.size() + i_Value.size() + 2]), m_NameLength(i_Name.size())
    {
        wchar_t* pNext = std::copy(i_Name.begin(), i_Name.end(), m_pTexts.get());
        *pNext++ = L'\0';
        pNext = std::copy(i_Value.begin(), i_Value.end(), pNext);
        *pNext = L'\0';
    }

    bool isNamed(const wchar_t* i_Name) const noexcept
    {
        return m_pTexts && m_pTexts[0] == i_Name[0] && std::wcscmp(m_pTexts.get(), i_Name) == 0;
    }
    const wchar_t* value() const noexcept { return m_pTexts.get() + m_NameLength + 1; }
};

} // namespace

/// Expressions have a handful of properties: they are looked through one after the other.
struct Expression::Impl
{
    std::array<Property, 4> first;
    std::vector<Property> further;

    /// Null when there is none.
    Property* find(const wchar_t* i_Name) noexcept
    {
        for (Property& property : first)
        {
            if (property.isNamed(i_Name))
            {
                return &property;
            }
        }
        const auto found = std::find_if(further.begin(), further.end(),
                                        [i_Name](const Property& i_Property) { return i_Property.isNamed(i_Name); });
        return found == further.end() ? nullptr : &*found;
    }

    /// Where a new property goes.
    Property& vacant()
    {
        const auto isVacant = [](const Property& i_Property) { return !i_Property.m_pTexts; };
        if (const auto place = std::find_if(first.begin(), first.end(), isVacant); place != first.end())
        {
            return *place;
        }
        if (const auto place = std::find_if(further.begin(), further.end(), isVacant); place != further.end())
        {
            return *place;
        }
        return further.emplace_back();
    }
};

Expression::Expression() : m_pImpl(std::make_unique<Impl>()) {}

Expression::~Expression() = default;

void Expression::setProperty(const wchar_t* i_Name, const wchar_t* i_Value)
{
    if (i_Name == nullptr)
    {
        return;
    }
    Property* pKnown = m_pImpl->find(i_Name);
    if (i_Value == nullptr)
    {
        if (pKnown != nullptr)
        {
            *pKnown = Property();
        }
        return;
    }
    // A copy first: the value may be one that getProperty gave.
    Property property(i_Name, i_Value);
    (pKnown != nullptr ? *pKnown : m_pImpl->vacant()) = std::move(property);
}

const wchar_t* Expression::getProperty(const wchar_t* i_Name) const
{
    const Property* pKnown = i_Name == nullptr ? nullptr : m_pImpl->find(i_Name);
    return pKnown == nullptr ? nullptr : pKnown->value();
}

ScalarExpression::~ScalarExpression() = default;
VectorExpression::~VectorExpression() = default;
ScalarOperand::~ScalarOperand() = default;
VectorOperand::~VectorOperand() = default;

} // namespace PluginSDK
