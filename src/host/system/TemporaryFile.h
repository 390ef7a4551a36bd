#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

/// A file of the tool's own in the system's folder for such files, empty at first.
///
/// Ownership: owns the file and removes it at its end, also when a signal ends the program.
/// Threads: one at a time.
/// Invariants: at most `s_Maximum` objects exist.
/// Tested by: tests/host/HostTest.cpp
class TemporaryFile
{
public:
    static constexpr std::size_t s_Maximum = 4;

    /// Throws std::runtime_error with the reason when the file cannot be made.
    TemporaryFile();
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Puts the bytes at the end. Throws std::runtime_error with the reason.
    void append(std::string_view i_Bytes);
    /// Ends the writing, after which others may read the file. Throws as `append`.
    void close();

    /// In UTF-8.
    std::string path() const;

private:
    std::size_t m_Place;
    std::FILE* m_pStream = nullptr;
};
