#pragma once

/// Reports a broken precondition as the C runtime's wide assertion routine does (condition, path of the source, line;
/// null texts are empty) and ends the process.
///
/// Tested by: tests/common/xmlproxy/XmlAssertTest.cpp
[[noreturn]] void wideAssert(const wchar_t* i_Condition, const wchar_t* i_Source, unsigned i_Line);
