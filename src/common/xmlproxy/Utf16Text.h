#pragma once

#include "xmlproxy/XmlText.h"

/// Tested by: tests/common/xmlproxy/XercesProxyTest.cpp

/// Whether both texts are equal. \p i_pUnits must be null-terminated and not null.
inline bool isSameText(const String& i_Text, const char16_t* i_pUnits) noexcept
{
    const wchar_t* pUnit = unitsOf(i_Text);
    while (*i_pUnits != u'\0' && static_cast<char16_t>(*pUnit) == *i_pUnits)
    {
        ++pUnit;
        ++i_pUnits;
    }
    return *i_pUnits == u'\0' && pUnit == unitsOf(i_Text) + i_Text.length();
}
