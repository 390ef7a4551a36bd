#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

/// A file in the system's folder for temporary files, initially empty.
///
/// Ownership: owns the file. The file is removed with the object, even if a signal ends the program.
/// Threads: one at a time.
/// Invariants: at most `s_Maximum` objects exist.
/// Tested by: tests/host/HostTest.cpp
class TemporaryFile
{
public:
    static constexpr std::size_t s_Maximum = 4;

    /// Throws std::runtime_error with the reason if the file cannot be created.
    TemporaryFile();
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    /// Appends the bytes. Throws std::runtime_error with the reason if that fails.
    void append(std::string_view i_Bytes);
    /// Ends the writing; others may read the file afterwards. Throws as `append` does.
    void close();

    /// The path of the file, in UTF-8.
    std::string path() const;

private:
    std::size_t m_Place;
    std::FILE* m_pStream = nullptr;
};
