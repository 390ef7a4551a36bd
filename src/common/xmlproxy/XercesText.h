#pragma once

#include "xmlproxy/XmlText.h"

#include <xercesc/util/XercesDefs.hpp>

#include <string>

/// The only place that converts text between the parser library and the document layer. Both sides use UTF-16 code
/// units.
///
/// Tested by: tests/common/xmlproxy/XercesProxyTest.cpp

/// The library's own units, null-terminated. Null gives the empty text. Valid as long as \p i_pText.
inline const char16_t* utf16Of(const XMLCh* i_pText) noexcept
{
    static_assert(sizeof(XMLCh) == sizeof(char16_t));
    return i_pText ? reinterpret_cast<const char16_t*>(i_pText) : u"";
}

/// Null gives the empty text.
inline String fromXercesText(const XMLCh* i_pText)
{
    if (!i_pText)
    {
        return {};
    }
    if constexpr (sizeof(XMLCh) == sizeof(wchar_t))
    {
        return {reinterpret_cast<const wchar_t*>(i_pText)};
    }
    else
    {
        const char16_t* pText = utf16Of(i_pText);
        return fromUtf16(pText, std::char_traits<char16_t>::length(pText));
    }
}

inline std::basic_string<XMLCh> toXercesText(const String& i_Text)
{
    std::basic_string<XMLCh> text;
    text.reserve(viewOf(i_Text).size());
    for (const wchar_t unit : viewOf(i_Text))
    {
        text.push_back(static_cast<XMLCh>(unit));
    }
    return text;
}
