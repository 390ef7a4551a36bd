#include "FaultSupport.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <zip.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

// Small archives, damaged at each of their bytes in turn. Whatever the damage, the answer is that
// of the document or that it cannot be read.

namespace
{

constexpr const char* s_Document = "<?xml version='1.0'?><list><item id='1'/><item id='22'/><item id='333'/>"
                                   "<item id='4444'/><item id='55555'/></list>\n";
constexpr const char* s_Other = "<?xml version='1.0'?><list><item id='another document'/></list>";
constexpr const char* s_Answer = "1 22 333 4444 55555 ";

struct Member
{
    const char* name;
    const char* text;
    zip_int32_t method;
};

struct Row
{
    const char* name;
    std::vector<Member> members;
};

void PrintTo(const Row& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

const std::vector<Row> s_Rows = {
    {"stored", {{"a.xml", s_Document, ZIP_CM_STORE}}},
    {"deflated", {{"a.xml", s_Document, ZIP_CM_DEFLATE}}},
    {"stored_with_another_behind", {{"a.xml", s_Document, ZIP_CM_STORE}, {"b.xml", s_Other, ZIP_CM_STORE}}},
    {"deflated_with_another_behind", {{"a.xml", s_Document, ZIP_CM_DEFLATE}, {"b.xml", s_Other, ZIP_CM_DEFLATE}}},
};

void check(bool i_IsDone)
{
    if (!i_IsDone)
    {
        throw std::runtime_error("the archive library failed");
    }
}

std::string bytesOf(const std::string& i_Path)
{
    std::ifstream stream(i_Path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string makeArchive(const TemporaryFolder& i_Folder, const std::vector<Member>& i_Members)
{
    const std::string path = i_Folder.file("made.zip");
    int error = 0;
    zip_t* pArchive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    check(pArchive != nullptr);
    for (const Member& member : i_Members)
    {
        zip_source_t* pSource =
            zip_source_buffer(pArchive, member.text, std::char_traits<char>::length(member.text), 0);
        const zip_int64_t index = zip_file_add(pArchive, member.name, pSource, 0);
        check(index >= 0 &&
              zip_set_file_compression(pArchive, static_cast<zip_uint64_t>(index), member.method, 0) == 0);
    }
    check(zip_close(pArchive) == 0);
    return bytesOf(path);
}

struct Damage
{
    const char* name;
    /// Does something to the archive at that byte.
    void (*apply)(std::string& io_Bytes, std::size_t i_Place);
};

const Damage s_Damages[] = {
    {"all bits turned",
     [](std::string& io_Bytes, std::size_t i_Place) { io_Bytes[i_Place] = static_cast<char>(~io_Bytes[i_Place]); }},
    {"lowest bit turned",
     [](std::string& io_Bytes, std::size_t i_Place) { io_Bytes[i_Place] = static_cast<char>(io_Bytes[i_Place] ^ 1); }},
    {"highest bit turned", [](std::string& io_Bytes, std::size_t i_Place)
     { io_Bytes[i_Place] = static_cast<char>(io_Bytes[i_Place] ^ 0x80); }},
    {"one more", [](std::string& io_Bytes, std::size_t i_Place) { ++io_Bytes[i_Place]; }},
    {"set to 0", [](std::string& io_Bytes, std::size_t i_Place) { io_Bytes[i_Place] = 0; }},
    {"set to 255", [](std::string& io_Bytes, std::size_t i_Place) { io_Bytes[i_Place] = '\xFF'; }},
    {"cut off here", [](std::string& io_Bytes, std::size_t i_Place) { io_Bytes.resize(i_Place); }},
    {"byte left out", [](std::string& io_Bytes, std::size_t i_Place) { io_Bytes.erase(i_Place, 1); }},
    {"byte put in", [](std::string& io_Bytes, std::size_t i_Place) { io_Bytes.insert(i_Place, 1, 'x'); }},
};

class ArchiveDamage : public testing::TestWithParam<Row>
{
protected:
    const HeldLibrary m_Library;
    const TemporaryFolder m_Folder;
};

TEST_P(ArchiveDamage, NeverGivesAWrongValue)
{
    const std::string archive = makeArchive(m_Folder, GetParam().members);
    ASSERT_EQ(s_Answer, answerOf(m_Folder.write("whole.zip", archive), "//item/@id"));
    std::size_t refused = 0;
    for (const Damage& damage : s_Damages)
    {
        for (std::size_t place = 0; place < archive.size(); ++place)
        {
            std::string damaged = archive;
            damage.apply(damaged, place);
            // A file that is written again may have to reach the disk first; a new one need not.
            const std::string file = m_Folder.write("damaged" + std::to_string(place) + ".zip", damaged);
            const std::string answer = answerOf(file, "//item/@id");
            std::filesystem::remove(file);
            refused += answer == "error -15103" ? 1 : 0;
            EXPECT_TRUE(answer == "error -15103" || answer == s_Answer)
                << damage.name << " at byte " << place << " of " << archive.size() << ": " << answer;
        }
    }
    // Far more than half of the bytes matter.
    EXPECT_LT(std::size(s_Damages) * archive.size() / 2, refused);
    EXPECT_EQ(s_Answer, answerOf(m_Folder.file("whole.zip"), "//item/@id"));
}

INSTANTIATE_TEST_SUITE_P(Rows, ArchiveDamage, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

} // namespace
