#pragma once

#include "base/Export.h"
#include "base/String.h"

#include <cstddef>

/// A path in the file system. Nothing is kept open.
///
/// Ownership: keeps a copy of the path.
/// Threads: one at a time, or any number of readers.
/// Tested by: tests/platform/base/FileTest.cpp
class BASE_API File
{
public:
    /// Absolute, or relative to the working directory at each call. The file need not exist.
    explicit File(const String& i_Path);

    /// True for a regular file that can be opened for reading; false for a directory or device, a missing or unreadable
    /// file, an empty path, and a path that contains a null character.
    bool exists() const;
    /// Reads up to \p i_Count bytes from the beginning of the file into \p o_Bytes, which is not null and has room for
    /// them. Returns the number of bytes read: 0 when `exists` would be false or nothing can be read. `std::bad_alloc`
    /// when the system has no memory to open the file.
    std::size_t readStart(char* o_Bytes, std::size_t i_Count) const;

private:
    String m_Path;
};
