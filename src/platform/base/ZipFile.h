#pragma once

#include "base/Export.h"
#include "base/String.h"

#include <cstdint>
#include <memory>

class InputStream;

/// One member of an archive. Owned by its `ZipFile`.
class BASE_API ZipEntry
{
public:
    ZipEntry(std::uint64_t i_Index, const String& i_Name) : m_Index(i_Index), m_Name(i_Name) {}

    std::uint64_t index() const noexcept { return m_Index; }
    const String& name() const noexcept { return m_Name; }

private:
    std::uint64_t m_Index;
    String m_Name;
};

/// A ZIP archive opened for reading.
///
/// Where the archive library is in a module of its own, the first file that starts like an archive loads it. When that
/// fails, the constructor and `isValid` throw `std::runtime_error` with a text that names the module.
///
/// Threads: one at a time.
/// Tested by: tests/platform/base/ZipFileTest.cpp
class BASE_API ZipFile
{
public:
    explicit ZipFile(const String& i_Path);
    ~ZipFile();
    ZipFile(const ZipFile&) = delete;
    ZipFile& operator=(const ZipFile&) = delete;

    /// Returns 0 only if the file starts with a ZIP signature and opens as an archive. Returns nonzero for everything
    /// else, which callers treat as a plain file.
    static int isValid(const String& i_Path);

    /// Member number \p i_Index (0 is the first), owned by this object. Null if there is none or the archive could not
    /// be opened.
    ZipEntry* getEntry(int i_Index);
    /// A stream over the member's unpacked data, which the caller owns; it may outlive this object. For a member that
    /// cannot be opened (damaged, encrypted, packed by an unknown method), the first read of the stream returns -1.
    /// Null for a null member.
    InputStream* getEntryStream(ZipEntry* i_Entry);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};
