#pragma once

#include "base/Export.h"

#include <cstdint>

/// A stream of bytes that is read from its beginning to its end.
///
/// Ownership: whoever receives a stream must delete it. A stream does not depend on the object that created it.
/// Threads: one at a time.
/// Tested by: tests/platform/base/ZipFileTest.cpp
class BASE_API InputStream
{
public:
    virtual ~InputStream();

    /// Reads at most \p i_Count bytes into \p o_Buffer, which must have room for them. Returns the number of bytes
    /// read, 0 at the end of the data, or -1 if the data is damaged or cannot be read. After -1, every further call
    /// returns -1 too.
    virtual std::int32_t read(void* o_Buffer, std::int32_t i_Count) = 0;
    /// Size of all the data in bytes, as stated by its source; 0 if unknown, 2147483647 if larger than that.
    virtual std::int32_t size() const = 0;
    /// Releases what the stream holds. Reading afterwards returns -1. May be called more than once.
    virtual void close() = 0;
};
