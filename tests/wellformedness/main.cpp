#include "Comparison.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

// Compares the plug-in with the bare parser library on all XML documents below the given folders.
//
//     wellformedness [--all] FOLDER...
//
// Every file that ends in ".xml", or with --all every file, is read by both. Differences go to
// standard output, then one line that counts. The status is 1 when there was a difference or
// nothing to compare.

namespace
{

std::vector<std::string> documentsBelow(const std::string& i_Folder, bool i_IsAll)
{
    namespace fs = std::filesystem;
    std::vector<std::string> found;
    std::error_code error;
    fs::recursive_directory_iterator entries(fs::absolute(i_Folder).make_preferred(),
                                             fs::directory_options::skip_permission_denied, error);
    for (; !error && entries != fs::recursive_directory_iterator(); entries.increment(error))
    {
        std::error_code ignored;
        if (entries->is_regular_file(ignored) && (i_IsAll || entries->path().extension() == ".xml"))
        {
            const std::u8string path = entries->path().u8string();
            found.emplace_back(path.begin(), path.end());
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

} // namespace

int main(int i_Count, char** i_pArguments)
{
    bool isAll = false;
    unsigned long wellFormed = 0;
    unsigned long others = 0;
    unsigned long differences = 0;
    for (int index = 1; index < i_Count; ++index)
    {
        const std::string argument = i_pArguments[index];
        if (argument == "--all")
        {
            isAll = true;
            continue;
        }
        for (const std::string& file : documentsBelow(argument, isAll))
        {
            const Comparison comparison = compare(file);
            ++(comparison.isWellFormed() ? wellFormed : others);
            if (!comparison.difference.empty())
            {
                ++differences;
                std::printf("%s: %s\n", file.c_str(), comparison.difference.c_str());
            }
        }
    }
    std::printf("%lu well-formed documents, %lu others, %lu differences\n", wellFormed, others, differences);
    return differences > 0 || wellFormed + others == 0 ? 1 : 0;
}
