#pragma once

#include "system/TemporaryFile.h"

#include <string>

/// All of the standard input in a temporary file, because the plug-in reads files only.
///
/// Ownership: owns the file.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class SpooledInput
{
public:
    /// Reads the standard input to its end. Throws std::runtime_error with the reason.
    SpooledInput();

    /// Path of the file, in UTF-8.
    std::string path() const { return m_File.path(); }

private:
    TemporaryFile m_File;
};
