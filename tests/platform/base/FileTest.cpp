#include "base/File.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace
{

bool exists(const std::string& i_Path)
{
    return File(String(i_Path.c_str())).exists();
}

std::string start(const std::string& i_Path)
{
    std::string bytes(4, '?');
    bytes.resize(File(String(i_Path.c_str())).readStart(bytes.data(), bytes.size()));
    return bytes;
}

} // namespace

TEST(File, RegularFilesExist)
{
    const TemporaryFolder folder;
    EXPECT_TRUE(exists(folder.write("a.xml", "<a/>")));
    EXPECT_TRUE(exists(folder.write("empty", "")));
    EXPECT_TRUE(exists(folder.write("two words.xml", "x")));
    EXPECT_TRUE(exists(folder.write("\xC3\xA9\xF0\x9F\x98\x80.xml", "x")));
}

TEST(File, OtherPathsDoNot)
{
    const TemporaryFolder folder;
    folder.write("a", "x");
    EXPECT_FALSE(exists(folder.file("missing")));
    EXPECT_FALSE(exists(folder.file("missing/a")));
    EXPECT_FALSE(exists(folder.file("a/b")));
    EXPECT_FALSE(exists(folder.file("")));
    EXPECT_FALSE(exists(folder.file(".")));
    EXPECT_FALSE(exists(""));
}

TEST(File, PathWithANullCharacterIsNotCutThere)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("a", "x") + std::string("\0.xml", 5);
    EXPECT_FALSE(File(String(path.data(), path.size())).exists());
}

TEST(File, StartIsReadAsFarAsThereIsOne)
{
    const TemporaryFolder folder;
    EXPECT_EQ(start(folder.write("long", "abcdef")), "abcd");
    EXPECT_EQ(start(folder.write("exact", "abcd")), "abcd");
    EXPECT_EQ(start(folder.write("short", "ab")), "ab");
    EXPECT_EQ(start(folder.write("empty", "")), "");
    EXPECT_EQ(start(folder.write("\xC3\xA9\xF0\x9F\x98\x80.xml", std::string("\0\xFFxyz", 5))),
              std::string("\0\xFFxy", 4));
    EXPECT_EQ(start(folder.file("missing")), "");
    EXPECT_EQ(start(folder.file(".")), "");
    const std::string path = folder.write("a", "x") + std::string("\0.xml", 5);
    char byte = '?';
    EXPECT_EQ(File(String(path.data(), path.size())).readStart(&byte, 1), 0U) << "not cut at the null character";
}

TEST(File, IsAskedEachTime)
{
    const TemporaryFolder folder;
    const File file(String(folder.file("later").c_str()));
    EXPECT_FALSE(file.exists());
    folder.write("later", "x");
    EXPECT_TRUE(file.exists());
    std::filesystem::remove(folder.path() / "later");
    EXPECT_FALSE(file.exists());
}

#if defined(_WIN32)
TEST(File, DevicesDoNotExist)
{
    EXPECT_FALSE(exists("NUL"));
    EXPECT_FALSE(exists("CON"));
}
#else
TEST(File, DevicesAndPipesDoNotExistAndDoNotBlock)
{
    const TemporaryFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_FALSE(exists(pipe));
    EXPECT_FALSE(exists("/dev/null"));
}

TEST(File, LinksAreFollowed)
{
    const TemporaryFolder folder;
    folder.write("a", "x");
    std::filesystem::create_symlink("a", folder.path() / "toFile");
    std::filesystem::create_symlink(".", folder.path() / "toFolder");
    std::filesystem::create_symlink("nowhere", folder.path() / "toNothing");
    EXPECT_TRUE(exists(folder.file("toFile")));
    EXPECT_FALSE(exists(folder.file("toFolder")));
    EXPECT_FALSE(exists(folder.file("toNothing")));
}

namespace
{

/// Gives up root's rights for a while; root may read everything.
class WithoutRoot
{
public:
    WithoutRoot() : m_User(geteuid())
    {
        if (m_User == 0)
        {
            m_Changed = seteuid(s_Nobody) == 0;
        }
    }
    ~WithoutRoot()
    {
        if (m_Changed && seteuid(m_User) != 0)
        {
            std::abort();
        }
    }
    WithoutRoot(const WithoutRoot&) = delete;
    WithoutRoot& operator=(const WithoutRoot&) = delete;

private:
    static constexpr uid_t s_Nobody = 65534;
    uid_t m_User;
    bool m_Changed = false;
};

} // namespace

TEST(File, UnreadableFilesDoNotExist)
{
    const TemporaryFolder folder;
    const std::string readable = folder.write("readable", "x");
    const std::string unreadable = folder.write("unreadable", "x");
    ASSERT_EQ(chmod(folder.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(readable.c_str(), 0444), 0);
    ASSERT_EQ(chmod(unreadable.c_str(), 0), 0);
    const WithoutRoot withoutRoot;
    EXPECT_TRUE(exists(readable));
    EXPECT_FALSE(exists(unreadable));
}
#endif
