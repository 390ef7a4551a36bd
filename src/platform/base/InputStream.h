#pragma once

#include "base/Export.h"

#include <cstdint>

/// A stream of bytes that is read from its beginning to its end.
///
/// Ownership: whoever is handed a stream deletes it; a stream does not need the object that made it.
/// Threads: one at a time.
/// Tested by: tests/platform/base/ZipFileTest.cpp
class BASE_API InputStream
{
public:
    virtual ~InputStream();

    /// Reads at most \p i_Count bytes into \p o_Buffer (which has room for them).
    /// Result: the number of bytes read, never more than \p i_Count; 0 at the end of the data;
    /// -1 when the data is damaged or cannot be read, and at every call after that.
    virtual std::int32_t read(void* o_Buffer, std::int32_t i_Count) = 0;
    /// Size of the whole data in bytes as its source states it; 0 when unknown, 2147483647 when larger.
    virtual std::int32_t size() const = 0;
    /// Releases what the stream holds; reading afterwards gives -1. May be called again.
    virtual void close() = 0;
};
