#pragma once

#include "base/String.h"

#include <cstddef>
#include <string>
#include <string_view>

// What the document layer and the engine add to the host's `String`. They read its code units here and nowhere else.
//
// Tested by: tests/common/xmlproxy/XmlTextTest.cpp

/// The code units of \p i_Text, null-terminated; never null. Valid until the text is changed or destroyed.
inline const wchar_t* unitsOf(const String& i_Text) noexcept
{
    return static_cast<const wchar_t*>(i_Text);
}

/// The code units of \p i_Text without the terminating null; null characters within the text are part of it. Valid
/// until the text is changed or destroyed.
inline std::wstring_view viewOf(const String& i_Text) noexcept
{
    return {unitsOf(i_Text), static_cast<std::size_t>(i_Text.length())};
}

/// Nothing else: a view of what only turns into a `String` would outlive it.
template <class Text>
std::wstring_view viewOf(const Text& i_Text) = delete;

/// True for the same code units.
inline bool isSame(const String& i_Left, const String& i_Right) noexcept
{
    return viewOf(i_Left) == viewOf(i_Right);
}

/// Copies the text, null characters included.
inline String copyOf(std::wstring_view i_Text)
{
    return String(i_Text.data(), i_Text.size());
}

/// Copies \p i_Count UTF-16 code units.
inline String fromUtf16(const char16_t* i_pUnits, std::size_t i_Count)
{
    if constexpr (sizeof(wchar_t) == sizeof(char16_t))
    {
        return String(reinterpret_cast<const wchar_t*>(i_pUnits), i_Count);
    }
    else
    {
        return copyOf(std::wstring(i_pUnits, i_pUnits + i_Count));
    }
}
