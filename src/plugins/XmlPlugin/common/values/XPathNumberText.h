#pragma once

#include "base/String.h"

#include <string_view>

namespace XmlPlugin
{

/// How numbers are written: which texts are numbers, what their values are, and how a number is printed. Independent of
/// the locale, except that `isNumber` calls the C runtime's `iswdigit`.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathNumberTextTest.cpp
struct XPathNumberText
{
    /// True for digits with at most one full stop, after an optional minus sign. After the sign, spaces may be
    /// anywhere. Blanks at both ends do not count.
    static bool isNumber(std::wstring_view i_Text);
    /// Returns the number at the start of \p i_Text (which has no quotes, and no blanks at its ends); 0 if there is
    /// none; the largest double if it is too large.
    static double read(std::wstring_view i_Text);
    /// Same, for the text of an operand, which may have quotes and blanks.
    static double numberOf(std::wstring_view i_Text);
    /// True if an operand with this text is a number; only then is \p o_Number set.
    static bool readOperand(std::wstring_view i_Text, double& o_Number);
    /// Six significant digits; "nan", "inf", "-inf".
    static String print(double i_Number);
};

} // namespace XmlPlugin
