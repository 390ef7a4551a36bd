#pragma once

namespace XmlPlugin
{

/// The character classes of names in expressions: XML 1.0 (Second Edition), Appendix B. Each takes
/// one UTF-16 code unit; a surrogate is in no class.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathCharactersTest.cpp
bool isBaseChar(wchar_t i_Char) noexcept;
bool isIdeographic(wchar_t i_Char) noexcept;
bool isCombiningChar(wchar_t i_Char) noexcept;
bool isExtender(wchar_t i_Char) noexcept;

bool isLetterBeyondAscii(wchar_t i_Char) noexcept;
bool isDigitBeyondAscii(wchar_t i_Char) noexcept;

/// BaseChar or Ideographic.
inline bool isLetter(wchar_t i_Char) noexcept
{
    if (i_Char < 0x80)
    {
        return (i_Char >= L'a' && i_Char <= L'z') || (i_Char >= L'A' && i_Char <= L'Z');
    }
    return isLetterBeyondAscii(i_Char);
}

inline bool isDigit(wchar_t i_Char) noexcept
{
    if (i_Char < 0x80)
    {
        return i_Char >= L'0' && i_Char <= L'9';
    }
    return isDigitBeyondAscii(i_Char);
}

} // namespace XmlPlugin
