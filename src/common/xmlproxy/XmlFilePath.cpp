#include "xmlproxy/XmlFilePath.h"

#include "xmlproxy/XmlText.h"

#include <algorithm>
#include <filesystem>
#include <string>
#include <system_error>

namespace
{

using Path = std::filesystem::path;

Path toPath(const String& i_Path)
{
#if defined(_WIN32)
    return {std::wstring(viewOf(i_Path))};
#else
    return {i_Path.toNarrow()};
#endif
}

String fromPath(const Path& i_Path)
{
#if defined(_WIN32)
    return {i_Path.generic_wstring().c_str()}; // as the names in documents are written
#else
    return {i_Path.native().c_str()};
#endif
}

} // namespace

bool XmlFilePath::isRelative(const String& i_Path)
{
    // On Windows a path without a drive starts at a root all the same.
    return !toPath(i_Path).has_root_directory() && !toPath(i_Path).has_root_name();
}

String XmlFilePath::toIdentifier(const String& i_Path)
{
    return i_Path.length() == 0 || !isRelative(i_Path) ? i_Path : String(L"./").concat(i_Path);
}

String XmlFilePath::resolve(const String& i_Base, const String& i_Path)
{
    return fromPath((toPath(i_Base).parent_path() / toPath(i_Path)).lexically_normal());
}

bool XmlFilePath::isInFolderOf(const String& i_Path, const String& i_Other)
{
    std::error_code error;
    const Path path = std::filesystem::canonical(toPath(i_Path), error);
    if (error)
    {
        return false;
    }
    const Path folder = std::filesystem::canonical(toPath(resolve(i_Other, L".")), error);
    return !error && std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
}

bool XmlFilePath::isOfTheSystem([[maybe_unused]] const String& i_Path)
{
#if defined(_WIN32)
    return false; // devices are told by their type when they are open
#else
    std::error_code error;
    const Path path = std::filesystem::absolute(toPath(i_Path), error).lexically_normal();
    const auto isBelow = [&path](const char* i_pFolder)
    {
        const Path folder(i_pFolder);
        return std::mismatch(folder.begin(), folder.end(), path.begin(), path.end()).first == folder.end();
    };
    return !error && (isBelow("/dev") || isBelow("/proc") || isBelow("/sys"));
#endif
}

bool XmlFilePath::hasWorkingFolder()
{
    std::error_code error;
    static_cast<void>(std::filesystem::current_path(error));
    return error != std::errc::no_such_file_or_directory;
}
