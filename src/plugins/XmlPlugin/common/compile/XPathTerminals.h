#pragma once

#include <string_view>

namespace XmlPlugin
{

/// The axis name at the start of the text, as the grammar finds it: the first entry of the table that matches, whatever
/// follows it (D-17, D-18). Empty if there is none.
std::wstring_view axisNameOf(std::wstring_view i_Text) noexcept;

} // namespace XmlPlugin
