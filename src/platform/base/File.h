#pragma once

#include "base/Export.h"
#include "base/String.h"

#include <cstddef>

/// A path in the file system.
///
/// Tested by: tests/platform/base/FileTest.cpp
class BASE_API File
{
public:
    explicit File(const String& i_Path);

    /// True only for a regular file that can be opened for reading: a directory, a missing and an
    /// unreadable file all give false.
    bool exists() const;
    /// Reads the file's first bytes, at most \p i_Count of them into \p o_Bytes (not null); returns
    /// their number, which is 0 when `exists` would be false or nothing can be read.
    /// `std::bad_alloc` when the system has no memory to open it.
    std::size_t readStart(char* o_Bytes, std::size_t i_Count) const;

private:
    String m_Path;
};
