#include "pluginsdk/StringVector.h"

namespace PluginSDK
{

namespace
{

constexpr TErrorCode s_NullArgument = -101;

} // namespace

TErrorCode StringVector::addString(const wchar_t* i_Text)
{
    if (i_Text == nullptr)
    {
        return s_NullArgument;
    }
    // A copy first: the text may be one of this list's own, which growing moves.
    std::wstring copy(i_Text);
    m_Texts.push_back(std::move(copy));
    return 0;
}

void StringVector::removeAll() noexcept
{
    m_Texts.clear();
}

const wchar_t* StringVector::get(std::size_t i_Index) const noexcept
{
    return i_Index < m_Texts.size() ? m_Texts[i_Index].c_str() : nullptr;
}

} // namespace PluginSDK
