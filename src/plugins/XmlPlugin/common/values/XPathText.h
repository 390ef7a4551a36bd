#pragma once

#include "xmlproxy/XmlText.h"

#include <cstddef>
#include <string_view>

namespace XmlPlugin
{

constexpr bool isBlank(wchar_t i_Unit) noexcept
{
    // Nearly all units are above the four.
    return i_Unit <= L' ' && (i_Unit == L' ' || i_Unit == L'\t' || i_Unit == L'\r' || i_Unit == L'\n');
}

/// Returns \p i_Text without what `String::trim` removes at both ends.
constexpr std::wstring_view trimmed(std::wstring_view i_Text) noexcept
{
    std::size_t begin = 0;
    std::size_t end = i_Text.size();
    while (begin < end && isBlank(i_Text[begin]))
    {
        ++begin;
    }
    while (begin < end && isBlank(i_Text[end - 1]))
    {
        --end;
    }
    return i_Text.substr(begin, end - begin);
}

/// Returns \p i_Text without one pair of enclosing quotes of the same kind. A single quote is not a pair.
constexpr std::wstring_view removeQuotes(std::wstring_view i_Text) noexcept
{
    const std::size_t size = i_Text.size();
    const bool isEnclosed = size >= 2 && i_Text[0] == i_Text[size - 1] && (i_Text[0] == L'"' || i_Text[0] == L'\'');
    return isEnclosed ? std::wstring_view(i_Text.data() + 1, size - 2) : i_Text;
}

/// Whether a path with this text begins at a node: it is not empty and does not begin with a single "/".
constexpr bool isRelativePath(std::wstring_view i_Path) noexcept
{
    return !i_Path.empty() && (i_Path[0] != L'/' || i_Path.substr(1).starts_with(L'/'));
}

constexpr bool isPlainLetter(wchar_t i_Unit) noexcept
{
    return (i_Unit >= L'a' && i_Unit <= L'z') || (i_Unit >= L'A' && i_Unit <= L'Z') || i_Unit == L'_';
}

constexpr bool isPlainDigit(wchar_t i_Unit) noexcept
{
    return i_Unit >= L'0' && i_Unit <= L'9';
}

/// Returns the length of the name at the start of the text, [A-Za-z_] [A-Za-z0-9_-]*, which is a subset of the names
/// that are allowed; 0 if there is none.
constexpr std::size_t plainNameLength(std::wstring_view i_Text) noexcept
{
    std::size_t length = 0;
    while (length < i_Text.size() &&
           (isPlainLetter(i_Text[length]) || (length > 0 && (isPlainDigit(i_Text[length]) || i_Text[length] == L'-'))))
    {
        ++length;
    }
    return length;
}

/// Whether a token is this one character.
constexpr bool isToken(std::wstring_view i_Text, wchar_t i_Character) noexcept
{
    return i_Text.size() == 1 && i_Text.front() == i_Character;
}

} // namespace XmlPlugin
