#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"

#include <cstddef>
#include <string>
#include <vector>

namespace PluginSDK
{

/// List of wide texts in which a host receives values.
class PLUGINSDK_API StringVector
{
public:
    /// Appends a copy of \p i_Text. 0, or -101 for null.
    TErrorCode addString(const wchar_t* i_Text);
    void removeAll() noexcept;

    std::size_t count() const noexcept { return m_Texts.size(); }
    /// Null when \p i_Index is not below `count()`; else valid until the list is changed.
    const wchar_t* get(std::size_t i_Index) const noexcept;

private:
    std::vector<std::wstring> m_Texts;
};

} // namespace PluginSDK
