#pragma once

#include "base/String.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// A regular file that is opened only once. What was opened is what is checked, recognised and read, whatever its name
/// means by then. Opening never waits, for instance for the other end of a pipe. Anything but a regular file is not
/// opened.
///
/// Ownership: owns the open file.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlDocumentFileTest.cpp, tests/faults/IoFaultsTest.cpp
class XmlDocumentFile
{
public:
    /// Returned by `readAt` if the file cannot be read.
    static constexpr std::size_t s_Failed = static_cast<std::size_t>(-1);

    /// A relative path starts at the working directory. A path that contains a null character is rejected. Throws
    /// `std::bad_alloc` if the system has no memory to open the file.
    explicit XmlDocumentFile(const String& i_Path);
    ~XmlDocumentFile();
    XmlDocumentFile(const XmlDocumentFile&) = delete;
    XmlDocumentFile& operator=(const XmlDocumentFile&) = delete;

    /// The path as given.
    const String& path() const noexcept { return m_Path; }
    bool isOpen() const noexcept { return m_File != s_NoFile; }
    /// Whether the file begins with a ZIP signature and the base library can open it as an archive.
    bool isArchive() const;
    /// A name by which the base library can open this file again: the system's name for the open file if there is one,
    /// otherwise the path.
    String archiveName() const;

    /// Reads at most \p i_Size bytes, starting \p i_Offset bytes after the beginning of the open file. Returns their
    /// number, 0 at the end, or `s_Failed`. Always fails if the first bytes could not be read when the file was opened.
    std::size_t readAt(std::uint64_t i_Offset, void* o_pBuffer, std::size_t i_Size) const;

    /// Whether the size or the modification time differs from that at opening. Changes within one tick of the system's
    /// clock look like one.
    bool hasChanged() const;
    /// Whether both are open and are the same file, whatever their names.
    bool isSameFile(const XmlDocumentFile& i_Other) const noexcept;

private:
    /// What the system reports about an open file.
    struct Status
    {
        std::uint64_t volume = 0;
        std::uint64_t number = 0;
        std::uint64_t size = 0;
        std::int64_t seconds = 0; ///< time of the last change; `fraction` is the rest
        std::int64_t fraction = 0;

        friend bool operator==(const Status&, const Status&) = default;
    };

    using Handle = std::intptr_t;
    static constexpr Handle s_NoFile = -1;

    static Handle open(const String& i_Path);
    static void close(Handle i_File) noexcept;
    /// False for anything but a regular file.
    static bool getStatus(Handle i_File, Status& o_Status) noexcept;

    std::size_t read(std::uint64_t i_Offset, void* o_pBuffer, std::size_t i_Size) const;

    String m_Path;
    Handle m_File;
    Status m_Status;
    bool m_IsReadable = false;               ///< the first bytes could be read
    bool m_HasSignature = false;             ///< the first bytes are those of an archive
    mutable std::optional<bool> m_IsArchive; ///< set by the first call of `isArchive`
};
