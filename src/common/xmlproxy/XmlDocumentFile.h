#pragma once

#include "base/String.h"

#include <cstddef>
#include <cstdint>
#include <optional>

/// A regular file that is opened once: what is checked, recognised and read is what was opened,
/// whatever its name stands for by then. Opening never waits, for instance for the other end of a
/// pipe; what is not a regular file is not opened.
///
/// Ownership: owns the open file.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XmlDocumentFileTest.cpp, tests/faults/IoFaultsTest.cpp
class XmlDocumentFile
{
public:
    /// Returned by `readAt` when the file cannot be read.
    static constexpr std::size_t s_Failed = static_cast<std::size_t>(-1);

    /// A relative path starts at the working directory; one that contains a null character names no
    /// file. `std::bad_alloc` when the system has no memory to open it.
    explicit XmlDocumentFile(const String& i_Path);
    ~XmlDocumentFile();
    XmlDocumentFile(const XmlDocumentFile&) = delete;
    XmlDocumentFile& operator=(const XmlDocumentFile&) = delete;

    /// As it was given.
    const String& path() const noexcept { return m_Path; }
    bool isOpen() const noexcept { return m_File != s_NoFile; }
    /// Whether it begins with a ZIP signature and the base library opens it as an archive.
    bool isArchive() const;
    /// A name by which the base library can open this file again: where the system has names for
    /// open files, such a one; otherwise the path.
    String archiveName() const;

    /// Reads at most \p i_Size bytes from \p i_Offset bytes after the beginning of an open file.
    /// Returns their number, 0 at the end, or `s_Failed`, as always when its first bytes could not
    /// be read after it was opened.
    std::size_t readAt(std::uint64_t i_Offset, void* o_pBuffer, std::size_t i_Size) const;

    /// Whether size or time of last change differ from what they were when the file was opened.
    /// Changes that follow each other within one tick of the system's clock look like one.
    bool hasChanged() const;
    /// Whether both are open, and are the same file by whatever names.
    bool isSameFile(const XmlDocumentFile& i_Other) const noexcept;

private:
    /// What the system tells about an open file.
    struct Status
    {
        std::uint64_t volume = 0;
        std::uint64_t number = 0;
        std::uint64_t size = 0;
        std::int64_t seconds = 0; ///< of the last change, and the rest of it
        std::int64_t fraction = 0;

        friend bool operator==(const Status&, const Status&) = default;
    };

    using Handle = std::intptr_t;
    static constexpr Handle s_NoFile = -1;

    static Handle open(const String& i_Path);
    static void close(Handle i_File) noexcept;
    /// False for what is not a regular file.
    static bool getStatus(Handle i_File, Status& o_Status) noexcept;

    std::size_t read(std::uint64_t i_Offset, void* o_pBuffer, std::size_t i_Size) const;

    String m_Path;
    Handle m_File;
    Status m_Status;
    bool m_IsReadable = false;               ///< its first bytes could be read
    bool m_HasSignature = false;             ///< and are those of an archive
    mutable std::optional<bool> m_IsArchive; ///< once it was asked
};
