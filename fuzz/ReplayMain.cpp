#include "FuzzTarget.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

namespace
{

std::vector<std::filesystem::path> filesOf(const std::filesystem::path& i_Path)
{
    if (!std::filesystem::is_directory(i_Path))
    {
        return {i_Path};
    }
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(i_Path))
    {
        if (entry.is_regular_file())
        {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

/// Runs the target once on each file named, and on each file of each folder named; tells which one
/// it is at, so that the last line before a crash names the culprit. Fails when there is none.
int main(int i_Count, char** i_pArguments)
{
    g_IsEveryCheckDue = true;
    int count = 0;
    for (int i = 1; i < i_Count; ++i)
    {
        for (const std::filesystem::path& file : filesOf(i_pArguments[i]))
        {
            std::cout << file.string() << std::endl;
            std::ifstream stream(file, std::ios::binary);
            if (!stream)
            {
                std::cerr << "cannot be read" << std::endl;
                return 2;
            }
            const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
            fuzzOne(bytes);
            ++count;
        }
    }
    std::cout << count << " inputs" << std::endl;
    return count > 0 ? 0 : 2;
}
