#include "pluginsdk/Expression.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace PluginSDK
{

namespace
{

/// A name and its value, each with a null behind it, in one piece of memory.
struct Property
{
    const wchar_t* m_pName = nullptr; ///< null: not set
    std::size_t m_NameLength = 0;
    const wchar_t* m_pValue = nullptr;
    std::unique_ptr<wchar_t[]> m_pHeap; ///< null: in the memory of all properties

    bool isNamed(std::wstring_view i_Name) const noexcept
    {
        return m_pName != nullptr && std::wstring_view(m_pName, m_NameLength) == i_Name;
    }
};

constexpr std::size_t s_UsualProperties = 4;
constexpr std::size_t s_UsualLength = 160; // of all names and values together

wchar_t* copyText(std::wstring_view i_Text, wchar_t* o_pText) noexcept
{
    wchar_t* const pEnd = std::copy(i_Text.begin(), i_Text.end(), o_pText);
    *pEnd = L'\0';
    return pEnd + 1;
}

} // namespace

/// Expressions have a handful of properties, which are set once: they are looked through one after the other, and their
/// texts stand in one memory as long as it lasts.
struct Expression::Impl
{
    // cppcheck-suppress uninitMemberVar ; m_Texts is read no further than it was written
    Impl() noexcept {} // leaves m_Texts as it is; NOLINT(modernize-use-equals-default)

    /// Null when there is none.
    Property* find(std::wstring_view i_Name) noexcept
    {
        const auto isWanted = [i_Name](const Property& i_Property) { return i_Property.isNamed(i_Name); };
        const auto usualEnd = m_Usual.begin() + m_UsualCount;
        const auto pUsual = std::find_if(m_Usual.begin(), usualEnd, isWanted);
        if (pUsual != usualEnd)
        {
            return &*pUsual;
        }
        const auto pFurther = std::find_if(m_Further.begin(), m_Further.end(), isWanted);
        return pFurther == m_Further.end() ? nullptr : &*pFurther;
    }

    /// Where a new property goes.
    Property& vacant()
    {
        if (m_UsualCount < m_Usual.size())
        {
            return m_Usual[m_UsualCount++];
        }
        const auto isVacant = [](const Property& i_Property) { return i_Property.m_pName == nullptr; };
        const auto pUsual = std::find_if(m_Usual.begin(), m_Usual.end(), isVacant);
        if (pUsual != m_Usual.end())
        {
            return *pUsual;
        }
        const auto pFurther = std::find_if(m_Further.begin(), m_Further.end(), isVacant);
        if (pFurther != m_Further.end())
        {
            return *pFurther;
        }
        return m_Further.emplace_back();
    }

    Property make(std::wstring_view i_Name, std::wstring_view i_Value)
    {
        const std::size_t size = i_Name.size() + i_Value.size() + 2;
        Property property;
        wchar_t* pTexts = m_Texts + m_Used;
        if (size <= s_UsualLength - m_Used)
        {
            m_Used += size;
        }
        else
        {
            property.m_pHeap.reset(new wchar_t[size]);
            pTexts = property.m_pHeap.get();
        }
        property.m_pName = pTexts;
        property.m_NameLength = i_Name.size();
        property.m_pValue = copyText(i_Name, pTexts);
        copyText(i_Value, pTexts + i_Name.size() + 1);
        return property;
    }

    std::array<Property, s_UsualProperties> m_Usual;
    std::size_t m_UsualCount = 0; ///< of m_Usual, in use so far
    std::vector<Property> m_Further;
    std::size_t m_Used = 0; ///< of m_Texts; what a removed property leaves is not used again
    wchar_t m_Texts[s_UsualLength];
};

Expression::Expression() : m_pImpl(std::make_unique<Impl>()) {}

Expression::~Expression() = default;

void Expression::setProperty(const wchar_t* i_Name, const wchar_t* i_Value)
{
    if (i_Name == nullptr)
    {
        return;
    }
    const std::wstring_view name(i_Name);
    Property* pKnown = m_pImpl->find(name);
    if (i_Value == nullptr)
    {
        if (pKnown != nullptr)
        {
            *pKnown = Property();
        }
        return;
    }
    // A copy first: the value may be one that getProperty gave.
    Property property = m_pImpl->make(name, i_Value);
    (pKnown != nullptr ? *pKnown : m_pImpl->vacant()) = std::move(property);
}

const wchar_t* Expression::getProperty(const wchar_t* i_Name) const
{
    const Property* pKnown = i_Name == nullptr ? nullptr : m_pImpl->find(i_Name);
    return pKnown == nullptr ? nullptr : pKnown->m_pValue;
}

ScalarExpression::~ScalarExpression() = default;
VectorExpression::~VectorExpression() = default;
ScalarOperand::~ScalarOperand() = default;
VectorOperand::~VectorOperand() = default;

} // namespace PluginSDK
