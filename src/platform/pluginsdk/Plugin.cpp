#include "pluginsdk/Plugin.h"

#include <deque>
#include <string>

namespace PluginSDK
{

struct Plugin::Impl
{
    // A deque, so that a name handed out stays where it is when another is added.
    std::deque<std::wstring> names;
};

Plugin::Plugin() : m_pImpl(new Impl) {}

Plugin::~Plugin()
{
    delete m_pImpl;
}

std::size_t Plugin::expressionCount() const noexcept
{
    return m_pImpl->names.size();
}

const wchar_t* Plugin::expressionName(std::size_t i_Index) const noexcept
{
    return i_Index < m_pImpl->names.size() ? m_pImpl->names[i_Index].c_str() : nullptr;
}

void Plugin::addExpression(const wchar_t* i_TypeName)
{
    if (i_TypeName != nullptr)
    {
        m_pImpl->names.emplace_back(i_TypeName);
    }
}

} // namespace PluginSDK
