#include "DocumentBlocks.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <regex>
#include <set>
#include <string>
#include <vector>

// What the documents and the comments of headers point at is there: links, paths, folders and the names of classes.

namespace fs = std::filesystem;
using ::testing::IsEmpty;

namespace
{

using Texts = std::vector<std::string>;

const fs::path& sourceFolder()
{
    static const fs::path s_Folder = SOURCE_FOLDER;
    return s_Folder;
}

bool isSource(const fs::path& i_Path)
{
    static const std::set<std::string> s_Endings = {".cpp", ".h",   ".cmake", ".sh",  ".py",
                                                    ".txt", ".xml", ".in",    ".dict"};
    return s_Endings.contains(i_Path.extension().string());
}

/// All matches of the first group of \p i_Pattern.
Texts findAll(const std::string& i_Text, const std::string& i_Pattern)
{
    Texts found;
    const std::regex pattern(i_Pattern);
    for (auto place = std::sregex_iterator(i_Text.begin(), i_Text.end(), pattern); place != std::sregex_iterator();
         ++place)
    {
        found.push_back((*place)[1].str());
    }
    return found;
}

/// The anchor that a heading has: small letters, blanks as hyphens, no other signs.
std::string anchorOf(const std::string& i_Heading)
{
    std::string anchor;
    for (const char character : i_Heading)
    {
        if (character == ' ' || character == '-')
        {
            anchor += '-';
        }
        else if (std::isalnum(static_cast<unsigned char>(character)) || character == '_')
        {
            anchor += static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
        }
    }
    return anchor;
}

bool hasAnchor(const std::string& i_Text, const std::string& i_Anchor)
{
    const Texts lines = linesOf(withoutBlocks(i_Text));
    return std::any_of(lines.begin(), lines.end(),
                       [&](const std::string& i_Line)
                       {
                           const std::size_t text = i_Line.find_first_not_of('#');
                           return text != 0 && text != std::string::npos &&
                                  anchorOf(i_Line.substr(text + 1)) == i_Anchor;
                       });
}

/// Folders from which a document's paths may be meant.
bool existsFrom(const std::string& i_Document, const std::string& i_Path)
{
    return fs::exists(sourceFolder() / i_Path) || fs::exists((sourceFolder() / i_Document).parent_path() / i_Path);
}

/// All Markdown files but those of folders that are made by builds.
Texts allDocuments()
{
    Texts names = documentNames();
    for (const char* pFolder : {"src", "tests", "scripts", "cmake", "bench/peers"})
    {
        for (const auto& entry : fs::recursive_directory_iterator(sourceFolder() / pFolder))
        {
            if (entry.path().extension() == ".md")
            {
                names.push_back(fs::relative(entry.path(), sourceFolder()).generic_string());
            }
        }
    }
    return names;
}

/// Whether \p i_Link, found in \p i_Document, leads somewhere. What lies outside the project is taken to.
bool leadsSomewhere(const std::string& i_Document, const std::string& i_Link)
{
    if (i_Link.starts_with("https://"))
    {
        return true;
    }
    const std::size_t hash = i_Link.find('#');
    const std::string path = i_Link.substr(0, hash);
    const fs::path target =
        path.empty() ? fs::path(i_Document) : (fs::path(i_Document).parent_path() / path).lexically_normal();
    if (!fs::exists(sourceFolder() / target))
    {
        return false;
    }
    return hash == std::string::npos || hasAnchor(readSourceFile(target.generic_string()), i_Link.substr(hash + 1));
}

} // namespace

TEST(References, LinksLeadSomewhere)
{
    for (const std::string& document : allDocuments())
    {
        for (const std::string& link : findAll(withoutBlocks(readSourceFile(document)), "\\]\\(([^)\\s]+)\\)"))
        {
            EXPECT_TRUE(leadsSomewhere(document, link)) << document << ": " << link;
        }
    }
}

TEST(References, PathsExist)
{
    // `folder/name` in quotes or in a diagram. What is made by a build, a placeholder or a pattern is none.
    const std::string pattern =
        "[`\"]((?:src|tests|docs|scripts|cmake|examples|packaging|bench|fuzz)/[A-Za-z0-9_./-]*)[`\"]";
    for (const std::string& document : allDocuments())
    {
        for (const std::string& path : findAll(readSourceFile(document), pattern))
        {
            EXPECT_TRUE(existsFrom(document, path)) << document << ": " << path;
        }
    }
}

TEST(References, NamesOfTheDesignAreInTheSources)
{
    std::string sources;
    for (const char* pFolder : {"src", "tests"})
    {
        for (const auto& entry : fs::recursive_directory_iterator(sourceFolder() / pFolder))
        {
            if (isSource(entry.path()))
            {
                sources += readSourceFile(fs::relative(entry.path(), sourceFolder()).generic_string());
            }
        }
    }
    const std::string design = readSourceFile("docs/design.md");
    Texts missing;
    // `Class`, `Class::operation`, `operation()`, and the names in diagrams.
    for (const char* pPattern :
         {"`([A-Z][A-Za-z]+)`", "`([A-Z][A-Za-z]+)::[A-Za-z]+", "::([A-Za-z]+)(?:\\(\\))?`", "`([a-z][A-Za-z]+)\\(\\)`",
          "participant ([A-Z][A-Za-z]+)", "\\b(X(?:Path|ml)[A-Z][A-Za-z]+)"})
    {
        for (const std::string& name : findAll(design, pPattern))
        {
            if (sources.find(name) == std::string::npos)
            {
                missing.push_back(name);
            }
        }
    }
    EXPECT_THAT(missing, IsEmpty());
    EXPECT_GT(findAll(design, "```(mermaid)").size(), 1U);
}

namespace
{

/// Paths of all headers in src/ below the source folder.
Texts allHeaders()
{
    Texts names;
    for (const auto& entry : fs::recursive_directory_iterator(sourceFolder() / "src"))
    {
        if (entry.path().extension() == ".h")
        {
            names.push_back(fs::relative(entry.path(), sourceFolder()).generic_string());
        }
    }
    return names;
}

/// The place that a line has among those of a comment above a class; 0 for any other line.
std::size_t rankOf(const std::string& i_Line)
{
    static const Texts s_Beginnings = {"Ownership:", "Threads:", "Invariants:", "Tested by:"};
    const std::size_t text = i_Line.find_first_not_of("/ ");
    for (std::size_t rank = 0; text != std::string::npos && rank < s_Beginnings.size(); ++rank)
    {
        if (i_Line.compare(text, s_Beginnings[rank].size(), s_Beginnings[rank]) == 0)
        {
            return rank + 1;
        }
    }
    return 0;
}

} // namespace

TEST(References, TestsThatHeadersNameExist)
{
    std::size_t count = 0;
    for (const std::string& header : allHeaders())
    {
        for (const std::string& names : findAll(readSourceFile(header), "Tested by: ([^\n]*)"))
        {
            const Texts paths = findAll(names, "(tests/[A-Za-z0-9_./]+)");
            EXPECT_FALSE(paths.empty()) << header << ": " << names;
            for (const std::string& path : paths)
            {
                EXPECT_TRUE(fs::is_regular_file(sourceFolder() / path)) << header << ": " << path;
            }
            ++count;
        }
    }
    EXPECT_GT(count, 90U);
}

TEST(References, CommentsOfHeadersKeepTheirOrder)
{
    for (const std::string& header : allHeaders())
    {
        std::size_t last = 0;
        for (const std::string& line : linesOf(readSourceFile(header)))
        {
            if (!line.starts_with("//"))
            {
                last = 0;
            }
            const std::size_t rank = line.starts_with("//") ? rankOf(line) : 0;
            EXPECT_TRUE(rank == 0 || rank > last) << header << ": " << line;
            last = std::max(last, rank);
        }
    }
}

TEST(References, EveryFolderOfSourcesIsExplained)
{
    // tests/ mirrors src/ and is explained by one document.
    Texts folders = {"src", "tests", "scripts", "cmake", "docs", "examples"};
    for (const auto& entry : fs::recursive_directory_iterator(sourceFolder() / "src"))
    {
        if (entry.is_directory() && entry.path().filename() != "completion")
        {
            folders.push_back(fs::relative(entry.path(), sourceFolder()).generic_string());
        }
    }
    for (const std::string& folder : folders)
    {
        const std::size_t lines = linesOf(readSourceFile(folder + "/README.md")).size();
        EXPECT_GE(lines, 5U) << folder;
        EXPECT_LE(lines, 30U) << folder;
    }
}

namespace
{

/// Whether a block of \p i_Kind in \p i_Document is one that some test looks at, or one without commands and code.
bool isKnownKind(const std::string& i_Kind, const std::string& i_Document)
{
    static const std::set<std::string> s_Kinds = {
        "console", "sh",   // run by CommandsTest
        "xpath",           // asked by DialectTest and ErrorsTest
        "mermaid", "text", // no commands
        "bat",     "msys", // for Windows: not run
    };
    if (i_Document == "docs/host-guide.md" && (i_Kind == "cpp" || i_Kind == "cmake"))
    {
        return true; // compiled and compared by GuideTest
    }
    if (i_Document == "docs/windows.md" && i_Kind == "cmake")
    {
        return true; // for another's platform: there is none here
    }
    if (i_Document == "docs/dialect.md" && i_Kind.empty())
    {
        return true; // the grammar
    }
    return s_Kinds.contains(i_Kind) || i_Kind.starts_with("xml ");
}

} // namespace

TEST(References, EveryBlockIsOfAKindThatIsChecked)
{
    for (const std::string& document : documentNames())
    {
        for (const DocumentBlock& block : readBlocks(readSourceFile(document)))
        {
            EXPECT_TRUE(isKnownKind(block.m_Kind, document)) << document << ":" << block.m_Line << ": " << block.m_Kind;
        }
        // Indented code cannot say what it is.
        const Texts indented = findAll("\n" + withoutBlocks(readSourceFile(document)), "\n\n(    [^\n]*)");
        EXPECT_THAT(indented, IsEmpty()) << document;
    }
}
