#pragma once

#include "base/String.h"

#include <string_view>

namespace XmlPlugin
{

/// How numbers are written: which texts are numbers, what they are, and how a number is printed. Independent of the
/// locale, except that `isNumber` asks the C runtime's `iswdigit`.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathNumberTextTest.cpp
struct XPathNumberText
{
    /// Digits with at most one full stop, after an optional minus sign. After the sign, spaces may stand anywhere.
    /// Blanks at both ends do not count.
    static bool isNumber(std::wstring_view i_Text);
    /// The number that \p i_Text (without quotes, and without blanks at its ends) begins with; 0 when it begins with
    /// none; the largest double when it is too large.
    static double read(std::wstring_view i_Text);
    /// The same of the text of an operand, which may have quotes and blanks.
    static double numberOf(std::wstring_view i_Text);
    /// True when an operand of this text is a number; \p o_Number is set only then.
    static bool readOperand(std::wstring_view i_Text, double& o_Number);
    /// Six significant digits; "nan", "inf", "-inf".
    static String print(double i_Number);
};

} // namespace XmlPlugin
