#pragma once

#include "base/String.h"

#include <cstdint>
#include <memory>

class InputStream;

/// An archive that the archive library has opened, for `ZipFile` alone.
///
/// Threads: one at a time.
/// Tested by: tests/platform/base/ZipFileTest.cpp
class ZipArchive
{
public:
    virtual ~ZipArchive() = default;
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    /// Number of members.
    virtual std::int64_t count() const = 0;
    /// \p i_Index is below `count()`.
    virtual String nameOf(std::uint64_t i_Index) const = 0;
    /// A stream over the member's data, usable after this object's end; never null. \p i_Index is below `count()`.
    virtual std::unique_ptr<InputStream> open(std::uint64_t i_Index) = 0;

protected:
    ZipArchive() noexcept = default;
};

#if defined(_WIN32)
#define ZIP_MODULE_API
#else
#define ZIP_MODULE_API __attribute__((visibility("default")))
#endif

/// The only function of the archive module, looked up by name where the module is loaded on demand. A new object, which
/// belongs to the caller; null when the file is no archive. `std::bad_alloc` when memory is exhausted.
extern "C" ZIP_MODULE_API ZipArchive* openZipArchive(const String& i_Path);
