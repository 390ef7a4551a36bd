#pragma once

#include "base/String.h"

#include <string_view>

namespace XmlPlugin
{

inline String copyOf(std::wstring_view i_Text)
{
    return String(i_Text.data(), i_Text.size());
}

constexpr bool isBlank(wchar_t i_Unit) noexcept
{
    // Nearly all units are above the four.
    return i_Unit <= L' ' && (i_Unit == L' ' || i_Unit == L'\t' || i_Unit == L'\r' || i_Unit == L'\n');
}

/// \p i_Text without what `String::trim` takes away at both ends.
constexpr std::wstring_view trimmed(std::wstring_view i_Text) noexcept
{
    std::size_t begin = 0;
    std::size_t end = i_Text.size();
    while (begin < end && isBlank(i_Text[begin]))
        ++begin;
    while (begin < end && isBlank(i_Text[end - 1]))
        --end;
    return i_Text.substr(begin, end - begin);
}

/// Whether a token is this one character.
constexpr bool isToken(std::wstring_view i_Text, wchar_t i_Character) noexcept
{
    return i_Text.size() == 1 && i_Text.front() == i_Character;
}

} // namespace XmlPlugin
