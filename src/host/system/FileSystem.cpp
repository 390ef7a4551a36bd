#include "system/FileSystem.h"

#include "base/File.h"

#include <cstdio>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace fs = std::filesystem;

namespace FileSystem
{

fs::path fromUtf8(const std::string& i_Path)
{
#if defined(_WIN32)
    // The library's own conversion throws if a text is not UTF-8. A replacement character names no file.
    const int bytes = static_cast<int>(i_Path.size());
    const int length = MultiByteToWideChar(CP_UTF8, 0, i_Path.data(), bytes, nullptr, 0);
    std::wstring path(static_cast<std::size_t>(length), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, i_Path.data(), bytes, path.data(), length);
    return fs::path(std::move(path));
#else
    return fs::path(i_Path);
#endif
}

std::string toUtf8(const fs::path& i_Path)
{
    const std::u8string path = i_Path.u8string();
    return std::string(path.begin(), path.end());
}

fs::path programFolder()
{
#if defined(_WIN32)
    std::vector<wchar_t> buffer(MAX_PATH);
    for (;;)
    {
        const DWORD length = GetModuleFileNameW(nullptr, buffer.data(), static_cast<DWORD>(buffer.size()));
        if (length == 0)
        {
            return {};
        }
        if (length < buffer.size())
        {
            return fs::path(std::wstring_view(buffer.data(), length)).parent_path();
        }
        buffer.resize(buffer.size() * 2);
    }
#else
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? fs::path() : program.parent_path();
#endif
}

std::string whyUnreadable(const std::string& i_Path)
{
    std::error_code error;
    const fs::file_status status = fs::status(fromUtf8(i_Path), error);
    switch (status.type())
    {
    case fs::file_type::not_found:
        return i_Path.ends_with('\r') ? "no such file; the name ends in a carriage return" : "no such file";
    case fs::file_type::directory:
        return "a folder; -r reads the documents in it";
    case fs::file_type::regular:
        return File(String(i_Path.c_str())).exists() ? std::string() : "no permission to read it";
    case fs::file_type::none:
        return error.message();
    default:
        return "not a regular file; give it on the standard input";
    }
}

bool isFile(const std::string& i_Path)
{
    std::error_code error;
    const fs::file_status status = fs::status(fromUtf8(i_Path), error);
    return fs::exists(status) && !fs::is_directory(status);
}

bool isFolder(const std::string& i_Path)
{
    std::error_code ignored;
    return fs::is_directory(fromUtf8(i_Path), ignored);
}

bool isLink(const fs::path& i_Path)
{
#if defined(_WIN32)
    const DWORD attributes = GetFileAttributesW(i_Path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
#else
    std::error_code ignored;
    return fs::is_symlink(i_Path, ignored);
#endif
}

std::string readFile(const std::string& i_Path)
{
    std::ifstream stream(fromUtf8(i_Path), std::ios::binary);
    std::ostringstream text;
    // A folder can be opened, but not read.
    if (!isFile(i_Path) || !stream || (stream.peek() != EOF && !(text << stream.rdbuf())))
    {
        const std::string reason = isFolder(i_Path) ? "a folder" : whyUnreadable(i_Path);
        throw std::runtime_error("cannot read " + i_Path + (reason.empty() ? reason : " (" + reason + ')'));
    }
    return text.str();
}

} // namespace FileSystem
