#include "base/File.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace
{

/// The system's calls stop at a null character, so such a path would name another file.
bool hasNullCharacter(const String& i_Path)
{
    return i_Path.indexOf(L'\0') >= 0;
}

#if defined(_WIN32)

/// The invalid handle when the path does not name a regular file that can be read.
HANDLE openRegular(const String& i_Path)
{
    const DWORD attributes = GetFileAttributesW(i_Path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    {
        return INVALID_HANDLE_VALUE;
    }
    const HANDLE file =
        CreateFileW(i_Path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    // Devices such as NUL and CON can be opened like files.
    if (file != INVALID_HANDLE_VALUE && GetFileType(file) != FILE_TYPE_DISK)
    {
        CloseHandle(file);
        return INVALID_HANDLE_VALUE;
    }
    return file;
}

bool isReadable(const String& i_Path)
{
    const HANDLE file = openRegular(i_Path);
    return file != INVALID_HANDLE_VALUE && CloseHandle(file) != 0;
}

std::size_t readFirst(const String& i_Path, char* o_Bytes, std::size_t i_Count)
{
    const HANDLE file = openRegular(i_Path);
    if (file == INVALID_HANDLE_VALUE)
    {
        return 0;
    }
    DWORD count = 0;
    const bool isRead = ReadFile(file, o_Bytes, static_cast<DWORD>(i_Count), &count, nullptr) != 0;
    CloseHandle(file);
    return isRead ? count : 0;
}

#else

/// A descriptor; negative when the path does not name a regular file that can be read.
int openRegular(const String& i_Path)
{
    const std::string path = i_Path.toNarrow();
    struct stat status
    {
    };
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
    {
        return -1;
    }
    // Opened without blocking and asked again, because the path may name a pipe by now.
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file >= 0 && (fstat(file, &status) != 0 || !S_ISREG(status.st_mode)))
    {
        close(file);
        return -1;
    }
    return file;
}

bool isReadable(const String& i_Path)
{
    const std::string path = i_Path.toNarrow();
    struct stat status
    {
    };
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
           faccessat(AT_FDCWD, path.c_str(), R_OK, AT_EACCESS) == 0;
}

std::size_t readFirst(const String& i_Path, char* o_Bytes, std::size_t i_Count)
{
    errno = 0;
    const int file = openRegular(i_Path);
    if (file < 0)
    {
        return errno == ENOMEM ? throw std::bad_alloc() : 0;
    }
    const ssize_t count = read(file, o_Bytes, i_Count);
    close(file);
    return count > 0 ? static_cast<std::size_t>(count) : 0;
}

#endif

} // namespace

File::File(const String& i_Path) : m_Path(i_Path) {}

bool File::exists() const
{
    return !hasNullCharacter(m_Path) && isReadable(m_Path);
}

std::size_t File::readStart(char* o_Bytes, std::size_t i_Count) const
{
    return hasNullCharacter(m_Path) ? 0 : readFirst(m_Path, o_Bytes, i_Count);
}
