#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Helpers that read the text of an expression byte by byte. All texts are UTF-8, all positions are bytes.
/// Tested by: tests/host/advice/RefusalAdvisorTest.cpp
namespace ExpressionText
{

/// Replaces each byte between quotes with a dot, so that nothing found in the result is part of a literal.
std::string withoutLiterals(std::string_view i_Text);

/// Bytes above ASCII count as letters.
bool isNameStart(char i_Byte) noexcept;
bool isNameByte(char i_Byte) noexcept;
bool isDigit(char i_Byte) noexcept;

/// The end of the name that begins at \p i_Begin; \p i_Begin itself if no name begins there.
std::size_t nameEnd(std::string_view i_Text, std::size_t i_Begin) noexcept;
/// The first position from \p i_Begin on that is not a space.
std::size_t skipSpaces(std::string_view i_Text, std::size_t i_Begin) noexcept;
/// The position that closes the bracket or parenthesis at \p i_Open; npos if it is not closed.
std::size_t closingOf(std::string_view i_Text, std::size_t i_Open) noexcept;

/// The axis name that \p i_Name consists of, or that precedes a "-" or "." in it; "" if there is none.
std::string_view leadingAxis(std::string_view i_Name) noexcept;

/// Whether the text is a literal, quotes included.
bool isLiteral(std::string_view i_Text) noexcept;
/// The text without its quotes, if it has any.
std::string_view withoutQuotes(std::string_view i_Text) noexcept;
std::string_view trim(std::string_view i_Text) noexcept;
/// Whether the dialect reads the text as a number: digits with at most one full stop, after at most one minus sign.
bool isNumber(std::string_view i_Text) noexcept;

} // namespace ExpressionText
