#pragma once

#include "Evaluator.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <string>

/// Texts of error messages, without the line feed at their end. All UTF-8.
/// Tested by: tests/host/ErrorReportTest.cpp

/// Name of the code's constant; "UNKNOWN" for a code that is not in the list. Never null.
const char* errorName(TErrorCode i_Code) noexcept;

/// Every code with its name and meaning, one a line.
std::string errorList();

/// `xmlvalue: ` and the text, on one line.
std::string plainMessage(const std::string& i_Text);

/// One line with the code, what it means and the file or the expression, whichever is at fault, or
/// both; for a refused expression whose place is known two more: the expression, and a caret under
/// the place. \p i_Note, when not empty, stands at the end of the first line in parentheses.
std::string errorMessage(const Outcome& i_Outcome, const std::string& i_FileName, const std::string& i_Expression,
                         const std::string& i_Note);

/// True when the file is at fault, whatever the expression.
bool isDocumentError(TErrorCode i_Code) noexcept;
