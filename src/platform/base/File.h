#pragma once

#include "base/Export.h"
#include "base/String.h"

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

private:
    String m_Path;
};
