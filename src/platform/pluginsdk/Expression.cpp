#include "pluginsdk/Expression.h"

#include <map>
#include <string>
#include <string_view>

namespace PluginSDK
{

struct Expression::Impl
{
    std::map<std::wstring, std::wstring, std::less<>> properties;
};

Expression::Expression() : m_pImpl(std::make_unique<Impl>()) {}

Expression::~Expression() = default;

void Expression::setProperty(const wchar_t* i_Name, const wchar_t* i_Value)
{
    if (i_Name == nullptr)
    {
        return;
    }
    if (i_Value == nullptr)
    {
        m_pImpl->properties.erase(i_Name);
        return;
    }
    // A copy first: the value may be one that getProperty gave.
    std::wstring value(i_Value);
    m_pImpl->properties.insert_or_assign(i_Name, std::move(value));
}

const wchar_t* Expression::getProperty(const wchar_t* i_Name) const
{
    if (i_Name == nullptr)
    {
        return nullptr;
    }
    const auto found = m_pImpl->properties.find(std::wstring_view(i_Name));
    return found == m_pImpl->properties.end() ? nullptr : found->second.c_str();
}

ScalarExpression::~ScalarExpression() = default;
VectorExpression::~VectorExpression() = default;
ScalarOperand::~ScalarOperand() = default;
VectorOperand::~VectorOperand() = default;

} // namespace PluginSDK
