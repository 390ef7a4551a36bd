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

    /// True only for a regular file that can be opened for reading. False for a folder, a missing file and an
    /// unreadable file.
    bool exists() const;
    /// Reads the first bytes of the file, at most \p i_Count, into \p o_Bytes (not null). Returns their number; 0 if
    /// `exists` would be false or nothing can be read. Throws `std::bad_alloc` if the system has no memory to open the
    /// file.
    std::size_t readStart(char* o_Bytes, std::size_t i_Count) const;

private:
    String m_Path;
};
