#pragma once

#include "output/Palette.h"
#include "plugin/Evaluator.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <string>

/// Texts of error messages, without the line feed at their end. All UTF-8.
/// Tested by: tests/host/output/ErrorReportTest.cpp

/// Name of the code's constant; "UNKNOWN" for a code that is not in the list. Never null.
const char* errorName(TErrorCode i_Code) noexcept;

/// Every code with its name and meaning, one a line.
std::string errorList();

/// `xmlvalue: ` and the text, on one line.
std::string plainMessage(const std::string& i_Text);

/// One line with the code, what it means and the file or the expression, whichever is at fault, or
/// both, and the outcome's reason, when there is one, in parentheses; for a refused expression whose place is known
/// two more: the expression, and a caret under the place; and one for each hint.
std::string errorMessage(const Outcome& i_Outcome, const std::string& i_FileName, const std::string& i_Expression,
                         const Palette& i_Palette = Palette(false));

/// The expression, and on a second line a caret under the UTF-16 code unit at \p i_Place.
std::string placeMark(const std::string& i_Expression, int i_Place, const Palette& i_Palette = Palette(false));

/// `hint: ` with the difference's name and the text.
std::string hintLine(const Hint& i_Hint, const Palette& i_Palette = Palette(false));
