#include "input/FolderWalk.h"

#include "system/FileSystem.h"

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <system_error>

namespace fs = std::filesystem;

namespace
{

struct Entry
{
    fs::path path;
    bool isFolder;
};

char toSmall(char i_Character)
{
    return i_Character >= 'A' && i_Character <= 'Z' ? static_cast<char>(i_Character - 'A' + 'a') : i_Character;
}

bool isDocumentName(const fs::path& i_Path)
{
    std::string ending = FileSystem::toUtf8(i_Path.extension());
    std::transform(ending.begin(), ending.end(), ending.begin(), toSmall);
    return ending == ".xml" || ending == ".zip";
}

/// Adds the entry to the list if it is a document or a folder to walk.
void take(const fs::directory_entry& i_Found, std::vector<Entry>& io_Entries)
{
    std::error_code ignored;
    if (i_Found.is_directory(ignored))
    {
        if (!FileSystem::isLink(i_Found.path()))
        {
            io_Entries.push_back({i_Found.path(), true});
        }
    }
    else if (isDocumentName(i_Found.path()) && i_Found.is_regular_file(ignored))
    {
        io_Entries.push_back({i_Found.path(), false});
    }
}

/// The entries of one folder in reverse order.
std::vector<Entry> entriesOf(const fs::path& i_Folder, std::error_code& o_Error)
{
    std::vector<Entry> entries;
    fs::directory_iterator place(i_Folder, o_Error);
    while (!o_Error && place != fs::directory_iterator())
    {
        take(*place, entries);
        place.increment(o_Error);
    }
    const auto isAfter = [](const Entry& i_Left, const Entry& i_Right)
    { return i_Left.path.filename().native() > i_Right.path.filename().native(); };
    std::sort(entries.begin(), entries.end(), isAfter);
    return entries;
}

} // namespace

void FolderWalk::add(const std::string& i_Folder)
{
    std::vector<Entry> pending{{FileSystem::fromUtf8(i_Folder), true}};
    while (!pending.empty())
    {
        const Entry entry = std::move(pending.back());
        pending.pop_back();
        if (!entry.isFolder)
        {
            m_Files.push_back(FileSystem::toUtf8(entry.path));
            continue;
        }
        std::error_code error;
        std::vector<Entry> inside = entriesOf(entry.path, error);
        if (error)
        {
            m_Problems.push_back("cannot read the folder " + FileSystem::toUtf8(entry.path) + ": " + error.message());
        }
        std::move(inside.begin(), inside.end(), std::back_inserter(pending));
    }
}
