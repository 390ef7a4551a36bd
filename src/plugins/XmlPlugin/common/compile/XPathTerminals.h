#pragma once

#include <string_view>

namespace XmlPlugin
{

/// The axis name that the text begins with, as the grammar finds it: the first entry of the table that fits, whatever
/// follows it (D-17, D-18). Empty when there is none.
std::wstring_view axisNameOf(std::wstring_view i_Text) noexcept;

} // namespace XmlPlugin
