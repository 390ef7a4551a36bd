#include "base/ZipFile.h"

#include "base/File.h"
#include "base/InputStream.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <zip.h>

#if !defined(_WIN32)
#include <sys/stat.h>
#endif

#include <cstring>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace
{

struct Member
{
    std::string name;
    std::string data;
    bool deflated = true;
};

[[noreturn]] void fail(const char* i_What)
{
    throw std::runtime_error(i_What);
}

void addMember(zip_t* i_pArchive, const Member& i_Member)
{
    zip_source_t* pSource = zip_source_buffer(i_pArchive, i_Member.data.data(), i_Member.data.size(), 0);
    const zip_int64_t index = zip_file_add(i_pArchive, i_Member.name.c_str(), pSource, ZIP_FL_ENC_UTF_8);
    if (index < 0)
    {
        fail("cannot add a member");
    }
    const auto method = i_Member.deflated ? ZIP_CM_DEFLATE : ZIP_CM_STORE;
    zip_set_file_compression(i_pArchive, static_cast<zip_uint64_t>(index), method, 0);
}

/// The bytes of an archive with these members.
std::string makeArchive(const std::vector<Member>& i_Members)
{
    zip_error_t error;
    zip_error_init(&error);
    zip_source_t* pBuffer = zip_source_buffer_create(nullptr, 0, 0, &error);
    zip_t* pArchive = zip_open_from_source(pBuffer, ZIP_CREATE | ZIP_TRUNCATE, &error);
    zip_source_keep(pBuffer);
    for (const Member& member : i_Members)
    {
        addMember(pArchive, member);
    }
    if (zip_close(pArchive) != 0 || zip_source_open(pBuffer) != 0)
    {
        fail("cannot write the archive");
    }
    zip_source_seek(pBuffer, 0, SEEK_END);
    std::string bytes(static_cast<std::size_t>(zip_source_tell(pBuffer)), '\0');
    zip_source_seek(pBuffer, 0, SEEK_SET);
    if (zip_source_read(pBuffer, bytes.data(), bytes.size()) != static_cast<zip_int64_t>(bytes.size()))
    {
        fail("cannot read the archive back");
    }
    zip_source_close(pBuffer);
    zip_source_free(pBuffer);
    zip_error_fini(&error);
    return bytes;
}

/// An archive without members, as every packer writes it.
std::string emptyArchive()
{
    return std::string("PK\x05\x06", 4) + std::string(18, '\0');
}

std::string longText()
{
    std::string text;
    for (int i = 0; i < 20000; ++i)
    {
        text += "<item number='" + std::to_string(i * 7919 % 100003) + "'/>";
    }
    return text;
}

int validity(const std::string& i_Path)
{
    return ZipFile::isValid(String(i_Path.c_str()));
}

std::unique_ptr<InputStream> openMember(const std::string& i_Path, int i_Index = 0)
{
    ZipFile archive{String(i_Path.c_str())};
    return std::unique_ptr<InputStream>(archive.getEntryStream(archive.getEntry(i_Index)));
}

/// What came out of a stream read in pieces until it ended or failed.
struct ReadResult
{
    std::string data;
    int last; ///< result of the last call: 0 or -1
};

ReadResult readAll(InputStream& i_Stream, std::int32_t i_Piece = 4096)
{
    ReadResult result{"", 0};
    std::vector<char> buffer(static_cast<std::size_t>(i_Piece));
    for (;;)
    {
        const std::int32_t count = i_Stream.read(buffer.data(), i_Piece);
        if (count <= 0)
        {
            result.last = count;
            return result;
        }
        EXPECT_LE(count, i_Piece);
        result.data.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

/// Where the packed data of the first member begins.
std::size_t firstDataOffset(const std::string& i_Archive)
{
    const auto field = [&](std::size_t i_Place)
    {
        return static_cast<std::size_t>(static_cast<unsigned char>(i_Archive[i_Place])) +
               static_cast<std::size_t>(static_cast<unsigned char>(i_Archive[i_Place + 1])) * 256;
    };
    return 30 + field(26) + field(28);
}

/// Overwrites a 4-byte field of the first member in both of its headers.
void patchHeaders(std::string& io_Archive, std::size_t i_LocalPlace, std::size_t i_CentralPlace, std::uint32_t i_Value)
{
    char bytes[4];
    for (unsigned i = 0; i < 4; ++i)
    {
        bytes[i] = static_cast<char>(i_Value >> (8 * i));
    }
    io_Archive.replace(i_LocalPlace, 4, bytes, 4);
    io_Archive.replace(io_Archive.find("PK\x01\x02") + i_CentralPlace, 4, bytes, 4);
}

void patchCrc(std::string& io_Archive, std::uint32_t i_Value)
{
    patchHeaders(io_Archive, 14, 16, i_Value);
}

void patchSize(std::string& io_Archive, std::uint32_t i_Value)
{
    patchHeaders(io_Archive, 22, 24, i_Value);
}

} // namespace

// Telling archives from other files

TEST(ZipFile, ArchivesAreValid)
{
    const TemporaryFolder folder;
    EXPECT_EQ(validity(folder.write("one.zip", makeArchive({{"a.xml", "<a/>"}}))), 0);
    EXPECT_EQ(validity(folder.write("stored.zip", makeArchive({{"a.xml", "<a/>", false}}))), 0);
    EXPECT_EQ(validity(folder.write("\xC3\xA9 two.docx", makeArchive({{"a", "1"}, {"b", "2"}}))), 0);
    EXPECT_EQ(validity(folder.write("empty.zip", emptyArchive())), 0);
}

TEST(ZipFile, OtherFilesAreNot)
{
    const TemporaryFolder folder;
    const std::string archive = makeArchive({{"a.xml", longText()}});
    EXPECT_NE(validity(folder.write("plain.xml", "<a/>")), 0);
    EXPECT_NE(validity(folder.write("nothing", "")), 0);
    EXPECT_NE(validity(folder.write("short", "PK\x03")), 0);
    EXPECT_NE(validity(folder.write("signature", "PK\x03\x04")), 0);
    EXPECT_NE(validity(folder.write("text", "PK\x03\x04 is how an archive begins")), 0);
    EXPECT_NE(validity(folder.write("truncated.zip", archive.substr(0, archive.size() / 2))), 0);
    EXPECT_NE(validity(folder.write("lastByteMissing.zip", archive.substr(0, archive.size() - 1))), 0);
    EXPECT_NE(validity(folder.write("behindOtherData.zip", "<a/>" + archive)), 0);
    EXPECT_NE(validity(folder.write("central.zip", archive.substr(archive.find("PK\x01\x02")))), 0);
    EXPECT_NE(validity(folder.file("missing.zip")), 0);
    EXPECT_NE(validity(folder.file(".")), 0);
    EXPECT_NE(validity(""), 0);
}

#if !defined(_WIN32)
TEST(ZipFile, PipeIsNotValidAndDoesNotBlock)
{
    const TemporaryFolder folder;
    const std::string pipe = folder.file("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_NE(validity(pipe), 0);
    ZipFile archive{String(pipe.c_str())};
    EXPECT_EQ(archive.getEntry(0), nullptr);
}
#endif

// Members

TEST(ZipFile, MembersStandInTheirOrder)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("z.zip", makeArchive({{"z.xml", "1"}, {"a/\xC3\xA9.xml", "2"}, {"m", "3"}}));
    ZipFile archive{String(path.c_str())};
    ZipEntry* const pFirst = archive.getEntry(0);
    ZipEntry* const pSecond = archive.getEntry(1);
    ASSERT_NE(pFirst, nullptr);
    ASSERT_NE(pSecond, nullptr);
    EXPECT_EQ(pFirst->name(), String(L"z.xml"));
    EXPECT_EQ(pFirst->index(), 0U);
    EXPECT_EQ(pSecond->name(), String(L"a/\u00E9.xml"));
    EXPECT_EQ(pSecond->index(), 1U);
    EXPECT_EQ(archive.getEntry(0), pFirst);
    EXPECT_NE(archive.getEntry(2), nullptr);
}

TEST(ZipFile, NoSuchMember)
{
    const TemporaryFolder folder;
    ZipFile archive{String(folder.write("z.zip", makeArchive({{"a", "1"}})).c_str())};
    EXPECT_EQ(archive.getEntry(1), nullptr);
    EXPECT_EQ(archive.getEntry(-1), nullptr);
    EXPECT_EQ(archive.getEntryStream(nullptr), nullptr);
    ZipEntry foreign(7, String(L"x"));
    const std::unique_ptr<InputStream> pForeign(archive.getEntryStream(&foreign));
    char unit = 0;
    EXPECT_EQ(pForeign->read(&unit, 1), -1);
    ZipFile empty{String(folder.write("empty.zip", emptyArchive()).c_str())};
    EXPECT_EQ(empty.getEntry(0), nullptr);
}

TEST(ZipFile, NoArchiveHasNoMembers)
{
    const TemporaryFolder folder;
    ZipFile missing{String(folder.file("missing").c_str())};
    EXPECT_EQ(missing.getEntry(0), nullptr);
    ZipEntry entry(0, String(L"a"));
    EXPECT_EQ(missing.getEntryStream(&entry), nullptr);
    ZipFile plain{String(folder.write("a.xml", "<a/>").c_str())};
    EXPECT_EQ(plain.getEntry(0), nullptr);
}

// Data

TEST(ZipFile, StoredAndDeflatedDataComeOutWhole)
{
    const TemporaryFolder folder;
    const std::string text = longText();
    for (const bool deflated : {true, false})
    {
        const auto pStream = openMember(folder.write("z.zip", makeArchive({{"a.xml", text, deflated}})));
        ASSERT_NE(pStream, nullptr);
        EXPECT_EQ(pStream->size(), static_cast<std::int32_t>(text.size()));
        const ReadResult result = readAll(*pStream);
        EXPECT_EQ(result.last, 0);
        EXPECT_TRUE(result.data == text);
    }
}

TEST(ZipFile, SecondMemberHasItsOwnData)
{
    const TemporaryFolder folder;
    const auto pStream = openMember(folder.write("z.zip", makeArchive({{"a", "first"}, {"b", "second"}})), 1);
    ASSERT_NE(pStream, nullptr);
    EXPECT_EQ(readAll(*pStream).data, "second");
}

TEST(ZipFile, EmptyMemberEndsAtOnce)
{
    const TemporaryFolder folder;
    const auto pStream = openMember(folder.write("z.zip", makeArchive({{"a", ""}})));
    ASSERT_NE(pStream, nullptr);
    EXPECT_EQ(pStream->size(), 0);
    char byte = 'x';
    EXPECT_EQ(pStream->read(&byte, 1), 0);
    EXPECT_EQ(byte, 'x');
}

TEST(ZipFile, NeverMoreThanAskedFor)
{
    const TemporaryFolder folder;
    const auto pStream = openMember(folder.write("z.zip", makeArchive({{"a", "abcdef"}})));
    ASSERT_NE(pStream, nullptr);
    char buffer[8];
    std::memset(buffer, '.', sizeof buffer);
    EXPECT_EQ(pStream->read(buffer, 0), 0);
    EXPECT_EQ(pStream->read(nullptr, 0), 0);
    EXPECT_EQ(pStream->read(buffer, 2), 2);
    EXPECT_EQ(std::string(buffer, sizeof buffer), "ab......");
    EXPECT_EQ(pStream->read(buffer, -1), -1);
    EXPECT_EQ(readAll(*pStream, 1).data, "cdef");
    EXPECT_EQ(pStream->read(buffer, 8), 0);
}

TEST(ZipFile, StreamsOutliveTheArchiveAndEachOther)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("z.zip", makeArchive({{"a", longText()}, {"b", "second"}}));
    std::unique_ptr<InputStream> pFirst;
    std::unique_ptr<InputStream> pSecond;
    {
        ZipFile archive{String(path.c_str())};
        pFirst.reset(archive.getEntryStream(archive.getEntry(0)));
        pSecond.reset(archive.getEntryStream(archive.getEntry(1)));
    }
    ASSERT_NE(pFirst, nullptr);
    ASSERT_NE(pSecond, nullptr);
    EXPECT_EQ(readAll(*pSecond).data, "second");
    pSecond.reset();
    EXPECT_TRUE(readAll(*pFirst).data == longText());
}

TEST(ZipFile, ClosedStreamGivesNothing)
{
    const TemporaryFolder folder;
    const auto pStream = openMember(folder.write("z.zip", makeArchive({{"a", "abcdef"}})));
    ASSERT_NE(pStream, nullptr);
    pStream->close();
    pStream->close();
    char byte = 0;
    EXPECT_EQ(pStream->read(&byte, 1), -1);
    EXPECT_EQ(pStream->size(), 6);
}

// Damage

namespace
{

struct DamageRow
{
    const char* name;
    bool deflated;
    void (*damage)(std::string&);
};

void PrintTo(const DamageRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class ZipFileDamage : public testing::TestWithParam<DamageRow>
{
};

} // namespace

TEST_P(ZipFileDamage, EndsWithMinusOneForEver)
{
    std::string archive = makeArchive({{"a.xml", longText(), GetParam().deflated}});
    GetParam().damage(archive);
    const TemporaryFolder folder;
    const std::string path = folder.write("z.zip", archive);
    ASSERT_EQ(validity(path), 0);
    const auto pStream = openMember(path);
    ASSERT_NE(pStream, nullptr);
    EXPECT_EQ(readAll(*pStream).last, -1);
    char byte = 0;
    EXPECT_EQ(pStream->read(&byte, 1), -1);
    EXPECT_EQ(pStream->read(&byte, 0), -1);
}

void breakMiddle(std::string& io_Archive)
{
    const std::size_t middle = firstDataOffset(io_Archive) + 20000;
    for (std::size_t i = 0; i < 64; ++i)
    {
        io_Archive[middle + i] = static_cast<char>(~io_Archive[middle + i]);
    }
}

void breakFirstByte(std::string& io_Archive)
{
    char& byte = io_Archive[firstDataOffset(io_Archive)];
    byte = static_cast<char>(byte | 0x06); // the block type that deflate does not have
}

void breakOneBitOfText(std::string& io_Archive)
{
    io_Archive[firstDataOffset(io_Archive)] ^= 1;
}

void stateAnotherCrc(std::string& io_Archive)
{
    patchCrc(io_Archive, 0x12345678);
}

void stateMoreBytes(std::string& io_Archive)
{
    patchSize(io_Archive, static_cast<std::uint32_t>(longText().size() + 1));
}

void stateFewerBytes(std::string& io_Archive)
{
    patchSize(io_Archive, static_cast<std::uint32_t>(longText().size() - 1));
}

INSTANTIATE_TEST_SUITE_P(All, ZipFileDamage,
                         testing::Values(DamageRow{"deflate_middle", true, breakMiddle},
                                         DamageRow{"deflate_block_type", true, breakFirstByte},
                                         DamageRow{"deflate_crc", true, stateAnotherCrc},
                                         DamageRow{"deflate_states_more", true, stateMoreBytes},
                                         DamageRow{"deflate_states_fewer", true, stateFewerBytes},
                                         DamageRow{"stored_middle", false, breakMiddle},
                                         DamageRow{"stored_one_bit", false, breakOneBitOfText},
                                         DamageRow{"stored_crc", false, stateAnotherCrc}),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });

TEST(ZipFile, AFileThatTheSystemCannotReadIsNoArchive)
{
    // It is a regular file that can be opened, and whose first byte cannot be read.
    const String path("/proc/self/mem");
    if (!File(path).exists())
    {
        GTEST_SKIP() << "this system has no such file";
    }
    EXPECT_NE(ZipFile::isValid(path), 0);
    EXPECT_EQ(ZipFile(path).getEntry(0), nullptr);
}

TEST(ZipFile, AnArchiveWithAnUnknownPackingDoesNotOpen)
{
    std::string archive = makeArchive({{"a.xml", "<a/>"}});
    archive[8] = 99; // packing method in the local header, then in the central one
    archive[archive.find("PK\x01\x02") + 10] = 99;
    const TemporaryFolder folder;
    EXPECT_EQ(openMember(folder.write("z.zip", archive)), nullptr);
}
