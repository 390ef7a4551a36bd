#pragma once

#include "base/ErrorCode.h"

/// Whose fault a code of the plug-in is.
/// Tested by: tests/host/output/ErrorReportTest.cpp
enum class Fault
{
    File,
    Expression,
    Both
};

Fault faultOf(TErrorCode i_Code) noexcept;
/// True when the file is at fault, whatever the expression; false for 0.
bool isDocumentError(TErrorCode i_Code) noexcept;
