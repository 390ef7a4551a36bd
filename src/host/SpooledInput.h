#pragma once

#include <string>

/// All of the standard input in a temporary file, because the plug-in reads files only.
///
/// Ownership: owns the file and removes it at its end, also when a signal ends the program.
/// Threads: one at a time; at most one object exists.
/// Tested by: tests/host/HostTest.cpp
class SpooledInput
{
public:
    /// Reads the standard input to its end. Throws std::runtime_error with the reason.
    SpooledInput();
    ~SpooledInput();
    SpooledInput(const SpooledInput&) = delete;
    SpooledInput& operator=(const SpooledInput&) = delete;

    /// Path of the file, in UTF-8.
    std::string path() const;
};
