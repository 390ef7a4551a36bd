#pragma once

#include "system/TemporaryFile.h"

#include <string>

/// All of standard input in a temporary file, because the plug-in reads only files.
///
/// Ownership: owns the file.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class SpooledInput
{
public:
    /// Reads standard input to its end. Throws std::runtime_error with the reason if that fails.
    SpooledInput();

    /// Path of the file, in UTF-8.
    std::string path() const { return m_File.path(); }

private:
    TemporaryFile m_File;
};
