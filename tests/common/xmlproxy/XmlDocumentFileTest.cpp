#include "xmlproxy/XmlDocumentFile.h"

#include "TestFiles.h"
#include "xmlproxy/XmlText.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <string>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace
{

class XmlDocumentFileTest : public testing::Test
{
protected:
    static std::string bytesOf(const XmlDocumentFile& i_File, std::uint64_t i_Offset = 0)
    {
        char buffer[64] = {};
        const std::size_t count = i_File.readAt(i_Offset, buffer, sizeof buffer);
        return count == XmlDocumentFile::s_Failed ? "failed" : std::string(buffer, count);
    }

    const TestFolder m_Folder;
};

TEST_F(XmlDocumentFileTest, ReadsWhereItIsTold)
{
    const XmlDocumentFile file(m_Folder.write("\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80.xml", "<a/>"));
    ASSERT_TRUE(file.isOpen());
    EXPECT_EQ("<a/>", bytesOf(file));
    EXPECT_EQ("/>", bytesOf(file, 2));
    EXPECT_EQ("", bytesOf(file, 4));
    EXPECT_EQ("", bytesOf(file, 1000));
    EXPECT_EQ("<a/>", bytesOf(file));
}

TEST_F(XmlDocumentFileTest, WhatIsNotARegularFileIsNotOpen)
{
    m_Folder.write("a.xml", "<a/>");
    EXPECT_FALSE(XmlDocumentFile(m_Folder.pathOf("missing")).isOpen());
    EXPECT_FALSE(XmlDocumentFile(m_Folder.pathOf("")).isOpen());
    EXPECT_FALSE(XmlDocumentFile(L"").isOpen());
    const std::wstring withNull = std::wstring(viewOf(m_Folder.pathOf("a.xml"))) + L'\0' + L"b";
    EXPECT_FALSE(XmlDocumentFile(String(withNull.data(), withNull.size())).isOpen());
#ifdef _WIN32
    EXPECT_FALSE(XmlDocumentFile(L"NUL").isOpen());
#else
    EXPECT_FALSE(XmlDocumentFile(L"/dev/null").isOpen());
#endif
}

#ifndef _WIN32
// A program that waited for the pipe's other end would not come back.
TEST_F(XmlDocumentFileTest, APipeIsNotOpenAndIsNotWaitedFor)
{
    const String path = m_Folder.pathOf("pipe");
    ASSERT_EQ(0, mkfifo(path.toNarrow().c_str(), 0600));
    EXPECT_FALSE(XmlDocumentFile(path).isOpen());
}

TEST_F(XmlDocumentFileTest, StaysWhatWasOpenedWhenTheNameChanges)
{
    const String path = m_Folder.write("a.zip", ZipBuilder().add("a.xml", "<a/>").bytes());
    const XmlDocumentFile file(path);
    std::filesystem::remove(m_Folder.file("a.zip"));
    ASSERT_EQ(0, mkfifo(path.toNarrow().c_str(), 0600));
    EXPECT_TRUE(file.isArchive());
    EXPECT_FALSE(file.hasChanged());
    EXPECT_NE(path, file.archiveName());
}
#endif

TEST_F(XmlDocumentFileTest, TellsArchivesByTheirBytes)
{
    EXPECT_TRUE(XmlDocumentFile(m_Folder.write("a", ZipBuilder().add("a.xml", "<a/>").bytes())).isArchive());
    EXPECT_TRUE(XmlDocumentFile(m_Folder.write("b", ZipBuilder().bytes())).isArchive());
    EXPECT_FALSE(XmlDocumentFile(m_Folder.write("c", "<a/>")).isArchive());
    EXPECT_FALSE(XmlDocumentFile(m_Folder.write("d", "PK\x03\x04 is no archive")).isArchive());
    EXPECT_FALSE(XmlDocumentFile(m_Folder.write("e", "P")).isArchive());
    EXPECT_FALSE(XmlDocumentFile(m_Folder.pathOf("missing")).isArchive());
}

TEST_F(XmlDocumentFileTest, NoticesAChange)
{
    const std::filesystem::path path = m_Folder.file("a.xml");
    const String name = m_Folder.write("a.xml", "<a/>");
    const XmlDocumentFile size(name);
    EXPECT_FALSE(size.hasChanged());
    std::filesystem::resize_file(path, 3);
    EXPECT_TRUE(size.hasChanged());

    const XmlDocumentFile time(name);
    std::filesystem::last_write_time(path, std::filesystem::last_write_time(path) + std::chrono::milliseconds(1));
    EXPECT_TRUE(time.hasChanged());
    EXPECT_FALSE(XmlDocumentFile(m_Folder.pathOf("missing")).hasChanged());
}

TEST_F(XmlDocumentFileTest, KnowsTheSameFileByAnotherName)
{
    const XmlDocumentFile file(m_Folder.write("a.xml", "<a/>"));
    m_Folder.write("b.xml", "<a/>");
    std::filesystem::create_hard_link(m_Folder.file("a.xml"), m_Folder.file("c.xml"));
    EXPECT_TRUE(file.isSameFile(file));
    EXPECT_FALSE(file.isSameFile(XmlDocumentFile(m_Folder.pathOf("b.xml"))));
    EXPECT_TRUE(file.isSameFile(XmlDocumentFile(m_Folder.pathOf("c.xml"))));
    EXPECT_FALSE(file.isSameFile(XmlDocumentFile(m_Folder.pathOf("missing"))));
}

} // namespace
