#pragma once

#include "base/String.h"
#include "xmlproxy/XmlDocumentFile.h"

#include <cstddef>
#include <cstdint>
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
    /// Returned by `read` if the data is damaged or cannot be read.
    static constexpr std::size_t s_Failed = static_cast<std::size_t>(-1);

    virtual ~PlainSource() = default;
    PlainSource(const PlainSource&) = delete;
    PlainSource& operator=(const PlainSource&) = delete;

    /// Reads at most \p i_Size bytes (at least 1) into \p o_pBuffer. Returns their number, 0 at the
    /// end of the data, or `s_Failed`.
    virtual std::size_t read(char* o_pBuffer, std::size_t i_Size) = 0;

    /// Returns the document in \p i_File, which must outlive it: a plain file, or the first member of a ZIP archive.
    /// Null if there is none that can be read a second time. Throws `std::bad_alloc` if memory is exhausted.
    static std::unique_ptr<PlainSource> open(const XmlDocumentFile& i_File);

protected:
    PlainSource() = default;
};

/// A regular file.
class PlainFileSource final : public PlainSource
{
public:
    /// \p i_File must outlive it. Open if that file is.
    explicit PlainFileSource(const XmlDocumentFile& i_File) noexcept : m_File(i_File) {}

    bool isOpen() const noexcept { return m_File.isOpen(); }
    std::size_t read(char* o_pBuffer, std::size_t i_Size) override;

private:
    const XmlDocumentFile& m_File;
    std::uint64_t m_Position = 0;
};

/// The first member of a ZIP archive.
class PlainArchiveSource final : public PlainSource
{
public:
    /// Not open if the archive cannot be opened or has no members.
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
