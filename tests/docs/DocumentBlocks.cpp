#include "DocumentBlocks.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace
{

constexpr const char* s_Fence = "```";

/// Calls \p i_Each with every line and whether it stands in a block; fences are in it.
template <class TEach>
void forEachLine(const std::string& i_Text, TEach&& i_Each)
{
    bool isInBlock = false;
    for (const std::string& line : linesOf(i_Text))
    {
        const bool isFence = line.find(s_Fence) == line.find_first_not_of(' ') && !line.empty();
        i_Each(line, isFence, isInBlock);
        isInBlock = isInBlock != isFence;
    }
}

} // namespace

std::vector<std::string> linesOf(const std::string& i_Text)
{
    std::vector<std::string> lines;
    std::istringstream stream(i_Text);
    for (std::string line; std::getline(stream, line);)
    {
        lines.push_back(line);
    }
    return lines;
}

std::vector<DocumentBlock> readBlocks(const std::string& i_Text)
{
    std::vector<DocumentBlock> blocks;
    int number = 0;
    forEachLine(
        i_Text,
        [&](const std::string& i_Line, bool i_IsFence, bool i_IsInBlock)
        {
            ++number;
            if (i_IsFence && !i_IsInBlock)
            {
                blocks.push_back({number, i_Line.substr(i_Line.find(s_Fence) + std::string(s_Fence).size()), {}});
            }
            else if (i_IsInBlock && !i_IsFence)
            {
                blocks.back().m_Lines.push_back(i_Line);
            }
        });
    return blocks;
}

std::string withoutBlocks(const std::string& i_Text)
{
    std::string rest;
    forEachLine(i_Text, [&](const std::string& i_Line, bool i_IsFence, bool i_IsInBlock)
                { rest += i_IsFence || i_IsInBlock ? "\n" : i_Line + "\n"; });
    return rest;
}

std::string readSourceFile(const std::string& i_Path)
{
    std::ifstream stream(std::filesystem::path(SOURCE_FOLDER) / i_Path, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

std::vector<std::string> documentNames()
{
    std::vector<std::string> names;
    for (const char* pFolder : {"", "bench/", "docs/", "examples/", "fuzz/"})
    {
        const std::filesystem::path folder = std::filesystem::path(SOURCE_FOLDER) / pFolder;
        for (const auto& entry : std::filesystem::directory_iterator(folder))
        {
            if (entry.path().extension() == ".md")
            {
                names.push_back(pFolder + entry.path().filename().string());
            }
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}
