#include "base/File.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <fcntl.h>
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

bool isReadableFile(const String& i_Path)
{
    const DWORD attributes = GetFileAttributesW(i_Path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
    {
        return false;
    }
    const HANDLE file =
        CreateFileW(i_Path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
    {
        return false;
    }
    // Devices such as NUL and CON can be opened like files.
    const bool onDisk = GetFileType(file) == FILE_TYPE_DISK;
    CloseHandle(file);
    return onDisk;
}

#else

bool isReadableFile(const String& i_Path)
{
    const std::string path = i_Path.toNarrow();
    struct stat status
    {
    };
    if (stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
    {
        return false;
    }
    // Opened without blocking and asked again, because the path may name a pipe by now.
    const int file = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (file < 0)
    {
        return false;
    }
    const bool isRegular = fstat(file, &status) == 0 && S_ISREG(status.st_mode);
    close(file);
    return isRegular;
}

#endif

} // namespace

File::File(const String& i_Path) : m_Path(i_Path) {}

bool File::exists() const
{
    return !hasNullCharacter(m_Path) && isReadableFile(m_Path);
}
