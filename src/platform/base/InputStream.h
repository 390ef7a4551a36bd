#pragma once

#include "base/Export.h"

#include <cstdint>

/// A stream of bytes, read once from beginning to end.
///
/// Ownership: whoever is given a stream deletes it. A stream does not need the object that made it.
/// Threads: one at a time.
/// Tested by: tests/platform/base/ZipFileTest.cpp
class BASE_API InputStream
{
public:
    virtual ~InputStream();

    /// Reads up to \p i_Count bytes (not negative) into \p o_Buffer, which has room for them and may be null when the
    /// count is 0. Returns the number of bytes read, never more than \p i_Count; 0 at the end of the data; -1 when the
    /// data is damaged or cannot be read, and at every call after that. `std::bad_alloc` when memory is exhausted.
    virtual std::int32_t read(void* o_Buffer, std::int32_t i_Count) = 0;
    /// The size of all data in bytes, as its source states it; 0 when unknown, 2147483647 when it is larger.
    virtual std::int32_t size() const = 0;
    /// Releases what the stream holds. Reading afterwards returns -1. May be called again.
    virtual void close() = 0;
};
