#include "pluginsdk/Expression.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace PluginSDK
{

namespace
{

wchar_t* copyText(std::wstring_view i_Text, wchar_t* o_pText) noexcept
{
    wchar_t* const pEnd = std::copy(i_Text.begin(), i_Text.end(), o_pText);
    *pEnd = L'\0';
    return pEnd + 1;
}

/// Of names, which are short and mostly differ in their first character.
bool isSame(const wchar_t* i_pLeft, const wchar_t* i_pRight) noexcept
{
    while (*i_pLeft == *i_pRight && *i_pLeft != L'\0')
    {
        ++i_pLeft;
        ++i_pRight;
    }
    return *i_pLeft == *i_pRight;
}

} // namespace

// cppcheck-suppress uninitMemberVar ; m_Texts is read no further than it was written
Expression::Expression() {} // leaves m_Texts as it is; NOLINT(modernize-use-equals-default)

Expression::~Expression() = default;

struct Expression::IsNamed
{
    const wchar_t* m_pName;
    bool operator()(const Property& i_Property) const noexcept
    {
        return i_Property.m_pName != nullptr && isSame(i_Property.m_pName, m_pName);
    }
};

/// Null when there is none.
inline Expression::Property* Expression::find(const wchar_t* i_Name) noexcept
{
    Property* const pEnd = m_Usual + m_UsualCount;
    for (Property* pUsual = m_Usual; pUsual != pEnd; ++pUsual)
    {
        if (IsNamed{i_Name}(*pUsual))
        {
            return pUsual;
        }
    }
    return m_Further.empty() ? nullptr : findFurther(i_Name);
}

Expression::Property* Expression::findFurther(const wchar_t* i_Name) noexcept
{
    const auto pFurther = std::find_if(m_Further.begin(), m_Further.end(), IsNamed{i_Name});
    return pFurther == m_Further.end() ? nullptr : &*pFurther;
}

/// Where a new property goes.
inline Expression::Property& Expression::vacant()
{
    return m_UsualCount < s_UsualProperties ? m_Usual[m_UsualCount++] : vacantFurther();
}

Expression::Property& Expression::vacantFurther()
{
    const auto isVacant = [](const Property& i_Property) { return i_Property.m_pName == nullptr; };
    const auto pUsual = std::find_if(std::begin(m_Usual), std::end(m_Usual), isVacant);
    if (pUsual != std::end(m_Usual))
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

/// Memory for a name and its value. \p o_Property holds none.
inline wchar_t* Expression::reserve(Property& o_Property, std::size_t i_Size)
{
    if (i_Size > s_UsualLength - m_Used)
    {
        o_Property.m_pHeap.reset(new wchar_t[i_Size]);
        return o_Property.m_pHeap.get();
    }
    wchar_t* const pTexts = m_Texts + m_Used;
    m_Used += i_Size;
    return pTexts;
}

/// \p o_Property holds nothing.
inline void Expression::fill(Property& o_Property, std::wstring_view i_Name, std::wstring_view i_Value)
{
    wchar_t* const pName = reserve(o_Property, i_Name.size() + i_Value.size() + 2);
    wchar_t* const pValue = copyText(i_Name, pName);
    copyText(i_Value, pValue);
    o_Property.m_pName = pName;
    o_Property.m_pValue = pValue;
}

void Expression::setProperty(const wchar_t* i_Name, const wchar_t* i_Value)
{
    if (i_Name == nullptr)
    {
        return;
    }
    Property* const pKnown = find(i_Name);
    if (pKnown != nullptr)
    {
        replace(*pKnown, i_Value);
    }
    else if (i_Value != nullptr)
    {
        fill(vacant(), i_Name, i_Value);
    }
}

void Expression::replace(Property& io_Property, const wchar_t* i_Value)
{
    Property property;
    if (i_Value != nullptr)
    {
        fill(property, io_Property.m_pName, i_Value); // a copy first: the value may be one that getProperty gave
    }
    io_Property = std::move(property);
}

const wchar_t* Expression::getProperty(const wchar_t* i_Name) const
{
    const Property* pKnown = i_Name == nullptr ? nullptr : const_cast<Expression*>(this)->find(i_Name);
    return pKnown == nullptr ? nullptr : pKnown->m_pValue;
}

ScalarExpression::~ScalarExpression() = default;
VectorExpression::~VectorExpression() = default;
ScalarOperand::~ScalarOperand() = default;
VectorOperand::~VectorOperand() = default;

} // namespace PluginSDK
