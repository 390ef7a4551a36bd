#pragma once

#include "base/Export.h"

/// Reports a violated precondition as the C runtime's wide assertion routine does (condition text, source path, line),
/// and ends the process.
[[noreturn]] BASE_API void wideAssert(const wchar_t* i_Condition, const wchar_t* i_Source, unsigned i_Line);
