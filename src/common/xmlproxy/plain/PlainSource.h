#pragma once

#include "base/String.h"

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

class InputStream;

/// The bytes of a document, read once from beginning to end.
///
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/plain/PlainSourceTest.cpp
class PlainSource
{
public:
    /// Returned by `read` when the data is damaged or cannot be read.
    static constexpr std::size_t s_Failed = static_cast<std::size_t>(-1);

    virtual ~PlainSource() = default;
    PlainSource(const PlainSource&) = delete;
    PlainSource& operator=(const PlainSource&) = delete;

    /// Reads at most \p i_Size bytes (at least 1) into \p o_pBuffer. Returns their number, 0 at the
    /// end of the data, or `s_Failed`.
    virtual std::size_t read(char* o_pBuffer, std::size_t i_Size) = 0;

    /// The document at \p i_Path: a plain file, or the first member of a ZIP archive. Null when there
    /// is none that can be read a second time. `std::bad_alloc` when memory is exhausted.
    static std::unique_ptr<PlainSource> open(const String& i_Path);

protected:
    PlainSource() = default;
};

/// A regular file.
class PlainFileSource final : public PlainSource
{
public:
    /// Not open when the path does not name a regular file, or that cannot be opened.
    explicit PlainFileSource(const String& i_Path);
    ~PlainFileSource() override;

    bool isOpen() const noexcept { return m_pFile != nullptr; }
    std::size_t read(char* o_pBuffer, std::size_t i_Size) override;

private:
    std::FILE* m_pFile = nullptr; ///< owned
};

/// The first member of a ZIP archive.
class PlainArchiveSource final : public PlainSource
{
public:
    /// Not open when the archive cannot be opened or has no member.
    explicit PlainArchiveSource(const String& i_Path);
    ~PlainArchiveSource() override;

    bool isOpen() const noexcept { return m_pStream != nullptr; }
    std::size_t read(char* o_pBuffer, std::size_t i_Size) override;

private:
    std::unique_ptr<InputStream> m_pStream;
};

/// Bytes in memory, which the caller keeps alive.
class PlainBytesSource final : public PlainSource
{
public:
    explicit PlainBytesSource(std::string_view i_Bytes) noexcept : m_Rest(i_Bytes) {}

    std::size_t read(char* o_pBuffer, std::size_t i_Size) override;

private:
    std::string_view m_Rest;
};
