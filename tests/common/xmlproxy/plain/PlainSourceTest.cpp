#include "xmlproxy/plain/PlainSource.h"

#include "TestFiles.h"

#include <gtest/gtest.h>

#include <string>

#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace
{

/// All bytes of the source, read \p i_Size at a time; "failed" or "null".
std::string bytesOf(PlainSource* i_pSource, std::size_t i_Size)
{
    if (!i_pSource)
    {
        return "null";
    }
    std::string bytes;
    std::string block(i_Size, '\0');
    for (;;)
    {
        const std::size_t count = i_pSource->read(block.data(), i_Size);
        if (count == PlainSource::s_Failed)
        {
            return "failed";
        }
        if (count == 0)
        {
            return bytes;
        }
        bytes.append(block, 0, count);
    }
}

std::string bytesAt(const String& i_Path, std::size_t i_Size)
{
    const XmlDocumentFile file(i_Path);
    return bytesOf(PlainSource::open(file).get(), i_Size);
}

TEST(PlainSource, ReadsFilesArchivesAndMemory)
{
    const TestFolder folder;
    const std::string text = "some bytes\r\n\x1a more";
    const String file = folder.write("f\xc3\xa4.xml", text);
    const String archive = folder.write("a.zip", ZipBuilder().add("n", text, true).add("m", "other").bytes());
    const String empty = folder.write("empty.xml", "");
    for (const std::size_t size : {1, 5, 1000})
    {
        PlainBytesSource memory(text);
        EXPECT_EQ(text, bytesOf(&memory, size));
        EXPECT_EQ(text, bytesAt(file, size));
        EXPECT_EQ(text, bytesAt(archive, size));
        EXPECT_EQ("", bytesAt(empty, size));
    }
}

TEST(PlainSource, IsNoneForWhatCannotBeReadTwice)
{
    const TestFolder folder;
    EXPECT_EQ("null", bytesAt(folder.pathOf("missing"), 10));
    EXPECT_EQ("null", bytesAt(folder.pathOf("."), 10));
    EXPECT_EQ("null", bytesAt("", 10));
    folder.write("a", "x");
    EXPECT_EQ("null", bytesAt(folder.pathOf("a").concat(String(L"\0b", 2)), 10));
    EXPECT_EQ("null", bytesAt(folder.write("none.zip", ZipBuilder().bytes()), 10));
#ifndef _WIN32
    ASSERT_EQ(0, mkfifo(folder.pathOf("pipe").toNarrow().c_str(), 0600));
    EXPECT_EQ("null", bytesAt(folder.pathOf("pipe"), 10));
#endif
}

TEST(PlainSource, FailsInADamagedArchive)
{
    const TestFolder folder;
    ZipBuilder builder;
    builder.add("n", std::string(1000, 'x'), true);
    std::string bytes = builder.bytes();
    bytes[builder.dataAt(0) + 500] = 'y';
    EXPECT_EQ("failed", bytesAt(folder.write("damaged.zip", bytes), 100));
}

} // namespace
