#include "pluginsdk/Expression.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

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
    while (*i_pLeft == *i_pRight)
    {
        if (*i_pLeft == L'\0')
        {
            return true;
        }
        ++i_pLeft;
        ++i_pRight;
    }
    return false;
}

} // namespace

/// The properties. There are a handful, which are set once: they are looked through one after another.
struct Expression::Impl
{
    static constexpr std::size_t s_UsualProperties = 4;
    static constexpr std::size_t s_UsualLength = 160; // of all names and values together

    /// A name and its value, each null-terminated, in one piece of memory.
    struct Property
    {
        const wchar_t* m_pName = nullptr; ///< null: not set
        const wchar_t* m_pValue = nullptr;
        std::unique_ptr<wchar_t[]> m_pHeap; ///< null: in m_Texts
    };

    struct IsNamed
    {
        const wchar_t* m_pName;
        bool operator()(const Property& i_Property) const noexcept
        {
            return i_Property.m_pName != nullptr && isSame(i_Property.m_pName, m_pName);
        }
    };

    // cppcheck-suppress uninitMemberVar ; m_Texts is read no further than it was written
    Impl() {} // leaves m_Texts as it is; NOLINT(modernize-use-equals-default)

    Property* find(const wchar_t* i_Name) noexcept;
    Property* findFurther(const wchar_t* i_Name) noexcept;
    Property& vacant();
    Property& vacantFurther();
    wchar_t* reserve(Property& o_Property, std::size_t i_Size);
    void fill(Property& o_Property, std::wstring_view i_Name, std::wstring_view i_Value);
    void replace(Property& io_Property, const wchar_t* i_Value);

    Property m_Usual[s_UsualProperties];
    std::size_t m_UsualCount = 0; ///< of m_Usual, in use so far
    std::vector<Property> m_Further;
    std::size_t m_Used = 0; ///< of m_Texts; what a removed property leaves is not used again
    wchar_t m_Texts[s_UsualLength];
};

/// Null when there is none.
inline Expression::Impl::Property* Expression::Impl::find(const wchar_t* i_Name) noexcept
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

Expression::Impl::Property* Expression::Impl::findFurther(const wchar_t* i_Name) noexcept
{
    const auto pFurther = std::find_if(m_Further.begin(), m_Further.end(), IsNamed{i_Name});
    return pFurther == m_Further.end() ? nullptr : &*pFurther;
}

/// Where a new property goes.
inline Expression::Impl::Property& Expression::Impl::vacant()
{
    return m_UsualCount < s_UsualProperties ? m_Usual[m_UsualCount++] : vacantFurther();
}

Expression::Impl::Property& Expression::Impl::vacantFurther()
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
inline wchar_t* Expression::Impl::reserve(Property& o_Property, std::size_t i_Size)
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
inline void Expression::Impl::fill(Property& o_Property, std::wstring_view i_Name, std::wstring_view i_Value)
{
    wchar_t* const pName = reserve(o_Property, i_Name.size() + i_Value.size() + 2);
    wchar_t* const pValue = copyText(i_Name, pName);
    copyText(i_Value, pValue);
    o_Property.m_pName = pName;
    o_Property.m_pValue = pValue;
}

void Expression::Impl::replace(Property& io_Property, const wchar_t* i_Value)
{
    Property property;
    if (i_Value != nullptr)
    {
        fill(property, io_Property.m_pName, i_Value); // a copy first: the value may be one that getProperty gave
    }
    io_Property = std::move(property);
}

Expression::Expression() : m_pImpl(new Impl) {}

Expression::~Expression()
{
    delete m_pImpl;
}

void Expression::setProperty(const wchar_t* i_Name, const wchar_t* i_Value)
{
    if (i_Name == nullptr)
    {
        return;
    }
    Impl::Property* const pKnown = m_pImpl->find(i_Name);
    if (pKnown != nullptr)
    {
        m_pImpl->replace(*pKnown, i_Value);
    }
    else if (i_Value != nullptr)
    {
        m_pImpl->fill(m_pImpl->vacant(), i_Name, i_Value);
    }
}

const wchar_t* Expression::getProperty(const wchar_t* i_Name) const
{
    const Impl::Property* const pKnown = i_Name == nullptr ? nullptr : m_pImpl->find(i_Name);
    return pKnown == nullptr ? nullptr : pKnown->m_pValue;
}

ScalarExpression::~ScalarExpression() = default;
VectorExpression::~VectorExpression() = default;
ScalarOperand::~ScalarOperand() = default;
VectorOperand::~VectorOperand() = default;

} // namespace PluginSDK
