#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"

#include <algorithm>

namespace PluginSDK
{

Plugin::Plugin() = default;
Plugin::~Plugin() = default;

const ::String& Plugin::names() const
{
    return m_Names;
}

void Plugin::addExpression(const wchar_t* i_TypeName)
{
    m_Names = m_Names.concat(i_TypeName).concat(L" ");
}

String& String::operator=(const wchar_t* i_Text)
{
    m_Text = ::String(i_Text);
    return *this;
}

const ::String& String::text() const
{
    return m_Text;
}

TErrorCode StringVector::addString(const wchar_t* i_Text)
{
    m_Joined = m_Joined.concat(i_Text).concat(L" ");
    return 0;
}

void StringVector::removeAll()
{
    m_Joined = ::String();
}

const ::String& StringVector::joined() const
{
    return m_Joined;
}

Expression::Expression() = default;
Expression::~Expression() = default;

void Expression::setProperty(const wchar_t* i_Name, const wchar_t* i_Value)
{
    m_Properties[i_Name] = i_Value;
}

const wchar_t* Expression::getProperty(const wchar_t* i_Name) const
{
    static wchar_t s_Buffer[1024];
    const auto pProperty = m_Properties.find(i_Name);
    if (pProperty == m_Properties.end())
    {
        return nullptr;
    }
    const std::size_t length = std::min(pProperty->second.size(), std::size(s_Buffer) - 1);
    *std::copy_n(pProperty->second.begin(), length, s_Buffer) = L'\0';
    return s_Buffer;
}

} // namespace PluginSDK
