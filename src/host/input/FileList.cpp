#include "input/FileList.h"

#include "input/FolderWalk.h"
#include "input/Options.h"
#include "system/Console.h"
#include "system/FileSystem.h"

#include <algorithm>
#include <stdexcept>

namespace
{

constexpr const char* s_Here = ".";

std::string readList(const std::string& i_Source)
{
    if (i_Source != "-")
    {
        return FileSystem::readFile(i_Source);
    }
    std::string list;
    Console::readInput([&list](std::string_view i_Bytes) { list += i_Bytes; });
    return list;
}

std::vector<std::string> namesOf(const Options& i_Options)
{
    std::vector<std::string> names = i_Options.files;
    if (!i_Options.filesFrom.empty())
    {
        const std::string list = readList(i_Options.filesFrom);
        const std::vector<std::string> listed = splitNames(list, i_Options.nullEnded ? '\0' : '\n');
        names.insert(names.end(), listed.begin(), listed.end());
        if (i_Options.filesFrom == "-" && std::find(names.begin(), names.end(), "-") != names.end())
        {
            throw std::runtime_error("the standard input cannot be both the list of files and a file");
        }
    }
    return names;
}

/// Without an operand, the working folder is walked. Its name is not shown, because the user did not give it.
void addHere(FileList& io_List)
{
    FolderWalk(io_List.files, io_List.problems).add(s_Here);
    for (std::string& file : io_List.files)
    {
        file.erase(0, 2);
    }
}

} // namespace

std::vector<std::string> splitNames(std::string_view i_List, char i_End)
{
    std::vector<std::string> names;
    while (!i_List.empty())
    {
        const std::size_t end = std::min(i_List.find(i_End), i_List.size());
        std::string_view name = i_List.substr(0, end);
        i_List.remove_prefix(std::min(end + 1, i_List.size()));
#if defined(_WIN32)
        if (i_End == '\n' && name.ends_with('\r'))
        {
            name.remove_suffix(1);
        }
#endif
        if (!name.empty())
        {
            names.emplace_back(name);
        }
    }
    return names;
}

FileList collectFiles(const Options& i_Options)
{
    FileList list;
    const std::vector<std::string> names = namesOf(i_Options);
    if (names.empty() && i_Options.recursive && i_Options.filesFrom.empty())
    {
        addHere(list);
        return list;
    }
    for (const std::string& name : names)
    {
        if (i_Options.recursive && FileSystem::isFolder(name))
        {
            FolderWalk(list.files, list.problems).add(name);
        }
        else
        {
            list.files.push_back(name);
        }
    }
    return list;
}
