#include "input/FileList.h"

#include "input/FolderWalk.h"
#include "input/Options.h"
#include "support/TemporaryFolder.h"
#include "system/FileSystem.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <stdexcept>

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace
{

using Texts = std::vector<std::string>;

struct NamesRow
{
    const char* name;
    std::string list;
    char end;
    Texts expected;
};

void PrintTo(const NamesRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class ListOfNames : public testing::TestWithParam<NamesRow>
{
};

} // namespace

TEST_P(ListOfNames, IsSplit)
{
    EXPECT_EQ(splitNames(GetParam().list, GetParam().end), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    All, ListOfNames,
    testing::Values(NamesRow{"empty", "", '\n', {}}, NamesRow{"one", "a\n", '\n', {"a"}},
                    NamesRow{"last_line_without_end", "a\nb", '\n', {"a", "b"}},
                    NamesRow{"empty_lines_do_not_count", "\n\na\n\nb\n\n", '\n', {"a", "b"}},
                    NamesRow{"spaces_count", " a b \n", '\n', {" a b "}},
                    NamesRow{"null_ended", std::string("a\nb\0c\0", 6), '\0', {"a\nb", "c"}},
                    NamesRow{"null_without_last_end", std::string("a\0b", 3), '\0', {"a", "b"}},
                    NamesRow{"only_ends", std::string("\0\0", 2), '\0', {}},
                    NamesRow{"null_in_lines", std::string("a\0b\n", 4), '\n', {std::string("a\0b", 3)}}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });

namespace
{

class FolderTest : public testing::Test
{
protected:
    void makeFolder(const std::string& i_Name)
    {
        std::filesystem::create_directories(FileSystem::fromUtf8(m_Folder.file(i_Name)));
    }

    /// What the walk finds, without the path of the folder and with slashes.
    Texts walk()
    {
        Texts files;
        FolderWalk(files, m_Problems).add(m_Folder.file(""));
        for (std::string& file : files)
        {
            file.erase(0, m_Folder.file("").size());
            std::replace(file.begin(), file.end(), '\\', '/');
        }
        return files;
    }

    const TemporaryFolder m_Folder;
    Texts m_Problems;
};

} // namespace

TEST_F(FolderTest, DocumentsAreFoundByTheirEndings)
{
    for (const char* pName : {"a.xml", "b.zip", "c.XML", "d.Zip", "e.txt", "f", "xml", "g.xml.bak", ".xml", "h.xmlx"})
    {
        m_Folder.write(pName, "x");
    }
    EXPECT_THAT(walk(), ElementsAre("a.xml", "b.zip", "c.XML", "d.Zip"));
    EXPECT_THAT(m_Problems, IsEmpty());
}

TEST_F(FolderTest, EntriesComeInTheOrderOfTheirNames)
{
    makeFolder("b");
    makeFolder("d.xml");
    makeFolder("e");
    for (const char* pName : {"c.xml", "a.xml", "b/z.xml", "b/a.xml", "d.xml/i.xml", "B0.xml", "\xC3\xA4.xml", "b.xml"})
    {
        m_Folder.write(pName, "x");
    }
    EXPECT_THAT(walk(),
                ElementsAre("B0.xml", "a.xml", "b/a.xml", "b/z.xml", "b.xml", "c.xml", "d.xml/i.xml", "\xC3\xA4.xml"));
}

TEST_F(FolderTest, FoldersMayBeDeep)
{
#if defined(_WIN32)
    constexpr int depth = 10; // a path has at most 259 characters
#else
    constexpr int depth = 900;
#endif
    std::string path;
    for (int i = 0; i < depth; ++i)
    {
        path += "d/";
    }
    makeFolder(path);
    m_Folder.write(path + "a.xml", "x");
    EXPECT_THAT(walk(), ElementsAre(path + "a.xml"));
}

TEST_F(FolderTest, AMissingFolderIsAProblem)
{
    Texts files;
    FolderWalk(files, m_Problems).add(m_Folder.file("missing"));
    EXPECT_THAT(files, IsEmpty());
    ASSERT_EQ(m_Problems.size(), 1U);
    EXPECT_TRUE(m_Problems[0].starts_with("cannot read the folder " + m_Folder.file("missing") + ": "));
}

TEST_F(FolderTest, OperandsThenTheListThenWhatIsInFolders)
{
    makeFolder("in");
    m_Folder.write("in/b.xml", "x");
    m_Folder.write("in/a.xml", "x");
    Options options;
    options.files = {"-", m_Folder.file("in"), "missing.xml"};
    options.filesFrom = m_Folder.write("list", "c.xml\n" + m_Folder.file("in") + "\n");
    EXPECT_THAT(collectFiles(options).files,
                ElementsAre("-", m_Folder.file("in"), "missing.xml", "c.xml", m_Folder.file("in")));
    options.recursive = true;
    const Texts files = collectFiles(options).files;
    ASSERT_EQ(files.size(), 7U);
    EXPECT_EQ(FileSystem::fromUtf8(files[1]), FileSystem::fromUtf8(m_Folder.file("in/a.xml")));
    EXPECT_EQ(FileSystem::fromUtf8(files[6]), FileSystem::fromUtf8(m_Folder.file("in/b.xml")));
}

TEST_F(FolderTest, ListsThatCannotBeRead)
{
    Options options;
    options.filesFrom = m_Folder.file("missing");
    EXPECT_THROW(collectFiles(options), std::runtime_error);
    options.filesFrom = m_Folder.file("");
    EXPECT_THROW(collectFiles(options), std::runtime_error);
}

TEST_F(FolderTest, AnEmptyListNamesNothing)
{
    Options options;
    options.filesFrom = m_Folder.write("list", "");
    EXPECT_THAT(collectFiles(options).files, IsEmpty());
    options.recursive = true;
    EXPECT_THAT(collectFiles(options).files, IsEmpty()) << "an empty list is not this folder";
}

#if !defined(_WIN32)

TEST_F(FolderTest, LinksToFilesCountAndThoseToFoldersAreNotFollowed)
{
    makeFolder("a");
    m_Folder.write("a/x.xml", "x");
    std::filesystem::create_symlink(m_Folder.path(), m_Folder.path() / "a" / "loop");
    std::filesystem::create_symlink("x.xml", m_Folder.path() / "a" / "link.xml");
    std::filesystem::create_symlink("a", m_Folder.path() / "b.xml");
    std::filesystem::create_symlink("nowhere", m_Folder.path() / "broken.xml");
    std::filesystem::create_symlink("self.xml", m_Folder.path() / "self.xml");
    EXPECT_THAT(walk(), ElementsAre("a/link.xml", "a/x.xml"));
    EXPECT_THAT(m_Problems, IsEmpty());
    Texts files;
    FolderWalk(files, m_Problems).add(m_Folder.file("b.xml"));
    EXPECT_EQ(files.size(), 2U) << "a link that was named is followed";
}

#endif
