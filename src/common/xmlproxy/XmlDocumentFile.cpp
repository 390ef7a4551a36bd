#include "xmlproxy/XmlDocumentFile.h"

#include "xmlproxy/XmlText.h"

#include "base/ZipFile.h"

#include <algorithm>
#include <cerrno>
#include <limits>
#include <new>
#include <string>

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

#if defined(_WIN32)

namespace
{

HANDLE handleOf(std::intptr_t i_File) noexcept
{
    return reinterpret_cast<HANDLE>(i_File);
}

std::uint64_t joined(DWORD i_High, DWORD i_Low) noexcept
{
    return std::uint64_t{i_High} << 32 | i_Low;
}

} // namespace

XmlDocumentFile::Handle XmlDocumentFile::open(const String& i_Path)
{
    // Asked by name first, because opening a device may do something.
    const DWORD attributes = GetFileAttributesW(unitsOf(i_Path));
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    {
        return s_NoFile;
    }
    const HANDLE file =
        CreateFileW(unitsOf(i_Path), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return file == INVALID_HANDLE_VALUE ? s_NoFile : reinterpret_cast<Handle>(file);
}

void XmlDocumentFile::close(Handle i_File) noexcept
{
    CloseHandle(handleOf(i_File));
}

bool XmlDocumentFile::getStatus(Handle i_File, Status& o_Status) noexcept
{
    BY_HANDLE_FILE_INFORMATION information{};
    if (GetFileType(handleOf(i_File)) != FILE_TYPE_DISK ||
        GetFileInformationByHandle(handleOf(i_File), &information) == 0 ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    {
        return false;
    }
    const FILETIME& time = information.ftLastWriteTime;
    o_Status = {information.dwVolumeSerialNumber, joined(information.nFileIndexHigh, information.nFileIndexLow),
                joined(information.nFileSizeHigh, information.nFileSizeLow),
                static_cast<std::int64_t>(joined(time.dwHighDateTime, time.dwLowDateTime)), 0};
    return true;
}

std::size_t XmlDocumentFile::read(std::uint64_t i_Offset, void* o_pBuffer, std::size_t i_Size) const
{
    constexpr std::size_t most = std::size_t{1} << 30;
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(i_Offset);
    place.OffsetHigh = static_cast<DWORD>(i_Offset >> 32);
    DWORD count = 0;
    if (ReadFile(handleOf(m_File), o_pBuffer, static_cast<DWORD>(std::min(i_Size, most)), &count, &place) == 0)
    {
        return GetLastError() == ERROR_HANDLE_EOF ? 0 : s_Failed;
    }
    return count;
}

String XmlDocumentFile::archiveName() const
{
    return m_Path;
}

#else

XmlDocumentFile::Handle XmlDocumentFile::open(const String& i_Path)
{
    const int file = ::open(i_Path.toNarrow().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0 && errno == ENOMEM)
    {
        throw std::bad_alloc();
    }
    return file < 0 ? s_NoFile : file;
}

void XmlDocumentFile::close(Handle i_File) noexcept
{
    ::close(static_cast<int>(i_File));
}

bool XmlDocumentFile::getStatus(Handle i_File, Status& o_Status) noexcept
{
    struct stat status
    {
    };
    if (fstat(static_cast<int>(i_File), &status) != 0 || !S_ISREG(status.st_mode))
    {
        return false;
    }
    o_Status = {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size), status.st_mtim.tv_sec,
                status.st_mtim.tv_nsec};
    return true;
}

std::size_t XmlDocumentFile::read(std::uint64_t i_Offset, void* o_pBuffer, std::size_t i_Size) const
{
    if (i_Offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()))
    {
        return s_Failed;
    }
    ssize_t count = 0;
    do
    {
        count = pread(static_cast<int>(m_File), o_pBuffer, i_Size, static_cast<off_t>(i_Offset));
    } while (count < 0 && errno == EINTR);
    return count < 0 ? s_Failed : static_cast<std::size_t>(count);
}

String XmlDocumentFile::archiveName() const
{
    const std::string name = "/proc/self/fd/" + std::to_string(m_File);
    struct stat status
    {
    };
    const bool isNamed =
        stat(name.c_str(), &status) == 0 && status.st_dev == m_Status.volume && status.st_ino == m_Status.number;
    return isNamed ? String(name.c_str()) : m_Path;
}

#endif

XmlDocumentFile::XmlDocumentFile(const String& i_Path) : m_Path(i_Path), m_File(s_NoFile)
{
    // The system's calls stop at a null character, so such a path would name another file.
    if (viewOf(i_Path).find(L'\0') != std::wstring_view::npos)
    {
        return;
    }
    m_File = open(i_Path);
    if (m_File != s_NoFile && !getStatus(m_File, m_Status))
    {
        close(m_File);
        m_File = s_NoFile;
    }
    if (isOpen())
    {
        char bytes[2] = {};
        const std::size_t count = read(0, bytes, sizeof bytes);
        m_IsReadable = count != s_Failed;
        m_HasSignature = count == sizeof bytes && bytes[0] == 'P' && bytes[1] == 'K';
    }
}

XmlDocumentFile::~XmlDocumentFile()
{
    if (isOpen())
    {
        close(m_File);
    }
}

bool XmlDocumentFile::isArchive() const
{
    if (!m_IsArchive)
    {
        m_IsArchive = m_HasSignature && ZipFile::isValid(archiveName()) == 0;
    }
    return *m_IsArchive;
}

std::size_t XmlDocumentFile::readAt(std::uint64_t i_Offset, void* o_pBuffer, std::size_t i_Size) const
{
    return m_IsReadable ? read(i_Offset, o_pBuffer, i_Size) : s_Failed;
}

bool XmlDocumentFile::hasChanged() const
{
    Status now;
    return isOpen() && (!getStatus(m_File, now) || now != m_Status);
}

bool XmlDocumentFile::isSameFile(const XmlDocumentFile& i_Other) const noexcept
{
    return isOpen() && i_Other.isOpen() && m_Status.volume == i_Other.m_Status.volume &&
           m_Status.number == i_Other.m_Status.number;
}
