#pragma once

#include "output/Palette.h"
#include "plugin/Evaluator.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <string>

/// Texts of error messages in UTF-8, without the line feed at the end.
/// Tested by: tests/host/output/ErrorReportTest.cpp

/// The name of the code's constant, "UNKNOWN" for a code that is not in the list. Never null.
const char* errorName(TErrorCode i_Code) noexcept;

/// All codes with names and meanings, one per line.
std::string errorList();

/// `xmlvalue: ` and the text, on one line.
std::string plainMessage(const std::string& i_Text);

/// One line with the code, its meaning, and the file or expression at fault, or both; the outcome's reason, if any,
/// follows in parentheses. For a rejected expression whose position is known, two more lines show the expression and a
/// caret under that position. One more line follows per hint.
std::string errorMessage(const Outcome& i_Outcome, const std::string& i_FileName, const std::string& i_Expression,
                         const Palette& i_Palette = Palette(false));

/// The expression, and on a second line a caret under the UTF-16 code unit at \p i_Place, counted from 0.
std::string placeMark(const std::string& i_Expression, int i_Place, const Palette& i_Palette = Palette(false));

/// `hint: ` with the difference's name and the text.
std::string hintLine(const Hint& i_Hint, const Palette& i_Palette = Palette(false));
