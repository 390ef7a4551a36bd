#pragma once

#include "pluginsdk/Export.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace PluginSDK
{

/// Wide text in which a host receives one value. Holds what it is assigned, unit by unit.
class PLUGINSDK_API String
{
public:
    String() noexcept = default;
    /// Null is the empty text.
    String& operator=(const wchar_t* i_Text);

    /// Null-terminated, valid until the next assignment.
    const wchar_t* c_str() const noexcept { return m_Text.c_str(); }
    std::size_t length() const noexcept { return m_Text.size(); }

private:
    std::wstring m_Text;
};

} // namespace PluginSDK
