#pragma once

#include "base/ErrorCode.h"

/// What is at fault when the plug-in returns an error code.
/// Tested by: tests/host/output/ErrorReportTest.cpp
enum class Fault
{
    File,
    Expression,
    Both
};

Fault faultOf(TErrorCode i_Code) noexcept;
/// True if the file is at fault, whatever the expression; false for 0.
bool isDocumentError(TErrorCode i_Code) noexcept;
