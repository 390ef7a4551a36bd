#include "xmlproxy/XmlFilePath.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace
{

TEST(XmlFilePath, MakesAnIdentifierOfAPath)
{
    EXPECT_EQ(String(L"./a.xml"), XmlFilePath::toIdentifier(L"a.xml"));
    EXPECT_EQ(String(L"./http://host/a.xml"), XmlFilePath::toIdentifier(L"http://host/a.xml"));
    EXPECT_EQ(String(L"/a.xml"), XmlFilePath::toIdentifier(L"/a.xml"));
    EXPECT_EQ(String(L""), XmlFilePath::toIdentifier(L""));
}

#ifndef _WIN32
TEST(XmlFilePath, FindsAPathBesideAnother)
{
    struct Row
    {
        const wchar_t* base;
        const wchar_t* path;
        const wchar_t* expected;
    };
    const Row rows[] = {
        {L"/x/a.xml", L"b", L"/x/b"},
        {L"/x/a.xml", L"../b", L"/b"},
        {L"/a.xml", L"../../b", L"/b"},
        {L"/x/a.xml", L"/y/b", L"/y/b"},
        {L"a.xml", L"b", L"b"},
        {L"./a.xml", L"../b", L"../b"},
        {L"../a.xml", L"../b", L"../../b"},
        {L"", L"b", L"b"},
        {L"/x/a.xml", L"./y//b", L"/x/y/b"},
    };
    for (const Row& row : rows)
    {
        EXPECT_EQ(String(row.expected), XmlFilePath::resolve(row.base, row.path)) << String(row.path).toNarrow();
    }
}

TEST(XmlFilePath, KnowsTheSystemsOwnFiles)
{
    for (const wchar_t* pPath :
         {L"/dev/stdin", L"/proc/kmsg", L"/proc/self/fd/0", L"/sys/kernel", L"/x/../dev/null", L"//proc/kmsg"})
    {
        EXPECT_TRUE(XmlFilePath::isOfTheSystem(pPath)) << String(pPath).toNarrow();
    }
    for (const wchar_t* pPath : {L"/device", L"/home/dev/a", L"dev/a", L"proc"})
    {
        EXPECT_FALSE(XmlFilePath::isOfTheSystem(pPath)) << String(pPath).toNarrow();
    }
    String up = L"proc/kmsg";
    for (int level = 0; level < 64; ++level)
    {
        up = String(L"../") + up;
    }
    EXPECT_TRUE(XmlFilePath::isOfTheSystem(up));
}

TEST(XmlFilePath, KnowsWhatIsInAFolder)
{
    const TestFolder folder;
    std::filesystem::create_directories(folder.file("in/below"));
    const String document = folder.write("in/a.xml", "");
    folder.write("in/below/b", "");
    folder.write("beside", "");
    folder.write("inside", "");
    std::filesystem::create_symlink(folder.file("beside"), folder.file("in/link"));
    EXPECT_TRUE(XmlFilePath::isInFolderOf(document, document));
    EXPECT_TRUE(XmlFilePath::isInFolderOf(folder.pathOf("in/below/b"), document));
    EXPECT_TRUE(XmlFilePath::isInFolderOf(folder.pathOf("in/below/../below/b"), document));
    EXPECT_FALSE(XmlFilePath::isInFolderOf(folder.pathOf("beside"), document));
    EXPECT_FALSE(XmlFilePath::isInFolderOf(folder.pathOf("inside"), document));
    EXPECT_FALSE(XmlFilePath::isInFolderOf(folder.pathOf("in/../beside"), document));
    EXPECT_FALSE(XmlFilePath::isInFolderOf(folder.pathOf("in/link"), document));
    EXPECT_FALSE(XmlFilePath::isInFolderOf(folder.pathOf("in/missing"), document));
}
#endif

} // namespace
