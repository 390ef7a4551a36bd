#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Looking at the text of an expression, byte by byte; UTF-8.
/// Tested by: tests/host/advice/RefusalAdvisorTest.cpp
namespace ExpressionText
{

/// \p i_Text with a dot in the place of each byte between quotes, so that what is found in it is no part of a literal.
std::string withoutLiterals(std::string_view i_Text);

/// Bytes above ASCII count as letters.
bool isNameStart(char i_Byte) noexcept;
bool isNameByte(char i_Byte) noexcept;
bool isDigit(char i_Byte) noexcept;

/// Where the name that begins at \p i_Begin ends; \p i_Begin when there is none.
std::size_t nameEnd(std::string_view i_Text, std::size_t i_Begin) noexcept;
/// The first place from \p i_Begin on that is no space.
std::size_t skipSpaces(std::string_view i_Text, std::size_t i_Begin) noexcept;
/// Where the bracket or parenthesis that opens at \p i_Open is closed; npos when it is not.
std::size_t closingOf(std::string_view i_Text, std::size_t i_Open) noexcept;

/// The axis name that stands in front of a "-" or "." in \p i_Name, or is all of it; "" when there is none.
std::string_view leadingAxis(std::string_view i_Name) noexcept;

/// A literal with its quotes.
bool isLiteral(std::string_view i_Text) noexcept;
/// Without quotes where it has them.
std::string_view withoutQuotes(std::string_view i_Text) noexcept;
std::string_view trim(std::string_view i_Text) noexcept;
/// True for what the dialect reads as a number: digits with at most one full stop, at most one minus sign in front.
bool isNumber(std::string_view i_Text) noexcept;

} // namespace ExpressionText
