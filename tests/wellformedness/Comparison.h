#pragma once

#include <cstdint>
#include <string>

/// The plug-in and the bare parser library, in the same configuration, on one file.
struct Comparison
{
    std::int32_t code = 0;     ///< the plug-in's: 0 or -15103
    int libraryErrors = 0;     ///< counted by the library
    bool libraryThrew = false; ///< it gave up by an exception, which it does not count
    std::string difference;    ///< in one line; empty when the two agree

    /// Whether the library takes the document for well-formed.
    bool isWellFormed() const { return libraryErrors == 0 && !libraryThrew; }
};

/// Compares the verdicts, and the tree with the library's events: names, attributes and their
/// values, order, nesting, lines, columns and the numbers of document order. The path is UTF-8.
Comparison compare(const std::string& i_File);
