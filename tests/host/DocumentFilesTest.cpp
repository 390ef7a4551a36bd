#include "common/xmlproxy/TestFiles.h"
#include "support/Process.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <ostream>

// The tool with the real plug-in on files whose names or bytes the systems treat differently. The answers are the
// same on all of them.

namespace
{

constexpr const char* s_Document = "<a x='found'/>";

ProcessResult query(const std::string& i_Path, const char* i_XPath = "a/@x")
{
    return runProcess({HOST_PROGRAM, i_XPath, i_Path});
}

/// The bytes of UTF-16 text behind its byte-order mark; \p i_Text is ASCII but for "*", which stands for U+1D11E.
std::string utf16(std::string_view i_Text, bool i_LittleEndian)
{
    std::string result;
    const auto put = [&](unsigned i_Unit)
    {
        const char bytes[] = {static_cast<char>(i_Unit >> 8), static_cast<char>(i_Unit & 0xFF)};
        result += {bytes[i_LittleEndian ? 1 : 0], bytes[i_LittleEndian ? 0 : 1]};
    };
    put(0xFEFF);
    for (const char character : i_Text)
    {
        if (character == '*')
        {
            put(0xD834);
            put(0xDD1E);
        }
        else
        {
            put(static_cast<unsigned char>(character));
        }
    }
    return result;
}

// Names

struct NameRow
{
    const char* name;
    const char* file;
};

void PrintTo(const NameRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class FileNames : public testing::TestWithParam<NameRow>
{
protected:
    const TemporaryFolder m_Folder;
};

constexpr NameRow s_NameRows[] = {
    {"umlaut", "\xC3\xA4.xml"},
    {"outside_of_every_single_code_page", "\xC3\xA9\xD0\xB6\xE6\x96\x87.xml"},
    {"above_the_basic_plane", "\xF0\x9D\x84\x9E.xml"},
    {"decomposed", "u\xCC\x88.xml"},
    {"spaces", " a  b.xml"},
    {"escapes_stay_as_they_are", "a%20b&amp;c#d.xml"},
    {"no_ending", "document"},
    {"folder", "\xC3\xA9/\xD0\xB6.xml"},
};

} // namespace

TEST_P(FileNames, OfPlainDocuments)
{
    std::filesystem::create_directory(m_Folder.path() / u8"\u00E9");
    const ProcessResult result = query(m_Folder.write(GetParam().file, s_Document));
    EXPECT_EQ(result.out, "found\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST_P(FileNames, OfArchives)
{
    std::filesystem::create_directory(m_Folder.path() / u8"\u00E9");
    const std::string archive = ZipBuilder().add("\xC3\xA4.xml", s_Document, true).bytes();
    const ProcessResult result = query(m_Folder.write(GetParam().file, archive));
    EXPECT_EQ(result.out, "found\n");
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST_P(FileNames, OfMissingFiles)
{
    const std::string path = m_Folder.file(GetParam().file);
    const ProcessResult result = query(path);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err,
              "xmlvalue: error -15103: the document could not be read as XML: " + path + " (no such file)\n");
    EXPECT_EQ(result.status, 2);
}

INSTANTIATE_TEST_SUITE_P(All, FileNames, testing::ValuesIn(s_NameRows),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });

// Bytes

namespace
{

struct BytesRow
{
    const char* name;
    std::string bytes;
    const char* xpath;
    const char* out;
};

void PrintTo(const BytesRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class FileBytes : public testing::TestWithParam<BytesRow>
{
};

// A value holds one space for a line end, whichever it is, and what a character reference names.
const BytesRow s_BytesRows[] = {
    {"lf", "<a\nx='1\n2'\n/>\n", "a/@x", "1 2\n"},
    {"crlf", "<a\r\nx='1\r\n2'\r\n/>\r\n", "a/@x", "1 2\n"},
    {"cr", "<a\rx='1\r2'\r/>\r", "a/@x", "1 2\n"},
    {"crlf_by_reference", "<a x='1&#13;&#10;2'/>\r\n", "a/@x", "1\r\n2\n"},
    {"crlf_with_declaration", "<?xml version='1.0'?>\r\n<a x='1'>\r\n  <b x='2'/>\r\n</a>\r\n", "a/b/@x", "2\n"},
    {"utf8_mark", "\xEF\xBB\xBF<a x='\xC3\xA9'/>", "a/@x", "\xC3\xA9\n"},
    {"utf16_little_endian", utf16("<a x='1*2'/>", true), "a/@x", "1\xF0\x9D\x84\x9E\x32\n"},
    {"utf16_big_endian", utf16("<a x='1*2'/>", false), "a/@x", "1\xF0\x9D\x84\x9E\x32\n"},
    {"utf16_with_declaration", utf16("<?xml version='1.0' encoding='UTF-16'?>\r\n<a x='1\r\n2'/>\r\n", true), "a/@x",
     "1 2\n"},
    {"latin1", "<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE9'/>", "a/@x", "\xC3\xA9\n"},
    {"windows1252", "<?xml version='1.0' encoding='windows-1252'?><a x='\x80'/>", "a/@x", "\xE2\x82\xAC\n"},
};

} // namespace

TEST_P(FileBytes, OfPlainDocuments)
{
    const TemporaryFolder folder;
    const ProcessResult result = query(folder.write("a.xml", GetParam().bytes), GetParam().xpath);
    EXPECT_EQ(result.out, GetParam().out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST_P(FileBytes, OfArchives)
{
    const TemporaryFolder folder;
    const std::string archive = ZipBuilder().add("a.xml", GetParam().bytes).bytes();
    const ProcessResult result = query(folder.write("a.zip", archive), GetParam().xpath);
    EXPECT_EQ(result.out, GetParam().out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

TEST_P(FileBytes, OfTheStandardInput)
{
    ProcessSettings settings;
    settings.input = GetParam().bytes;
    const ProcessResult result = runProcess({HOST_PROGRAM, GetParam().xpath}, settings);
    EXPECT_EQ(result.out, GetParam().out);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.status, 0);
}

INSTANTIATE_TEST_SUITE_P(All, FileBytes, testing::ValuesIn(s_BytesRows),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });

// Expressions and file names together on the command line

TEST(FileArguments, ExpressionsAreUtf8)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("a.xml", "<\xC3\xA9 \xD0\xB6='\xE6\x96\x87 \"q\" \\'/>");
    const ProcessResult result = query(path, "\xC3\xA9/@\xD0\xB6");
    EXPECT_EQ(result.out, "\xE6\x96\x87 \"q\" \\\n");
    EXPECT_EQ(result.err, "");
}

#if defined(_WIN32)

// Forms of paths that only this system has

namespace
{

struct PathRow
{
    const char* name;
    std::string (*change)(std::string); ///< makes the form from drive letter, colon and backslashes
};

void PrintTo(const PathRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class PathForms : public testing::TestWithParam<PathRow>
{
};

std::string withSlashes(std::string i_Path)
{
    std::replace(i_Path.begin(), i_Path.end(), '\\', '/');
    return i_Path;
}

const PathRow s_PathRows[] = {
    {"backslashes", [](std::string i_Path) { return i_Path; }},
    {"slashes", withSlashes},
    {"mixed", [](std::string i_Path) { return withSlashes(i_Path.substr(0, 3)) + i_Path.substr(3); }},
    {"small_drive_letter",
     [](std::string i_Path)
     {
         i_Path[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(i_Path[0])));
         return i_Path;
     }},
    {"verbatim", [](std::string i_Path) { return R"(\\?\)" + i_Path; }},
};

} // namespace

TEST_P(PathForms, NamePlainDocuments)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("\xC3\xA9.xml", s_Document);
    ASSERT_EQ(path.substr(1, 2), ":\\");
    const ProcessResult result = query(GetParam().change(path));
    EXPECT_EQ(result.out, "found\n");
    EXPECT_EQ(result.err, "");
}

TEST_P(PathForms, NameArchives)
{
    const TemporaryFolder folder;
    const std::string path = folder.write("\xC3\xA9.zip", ZipBuilder().add("a.xml", s_Document).bytes());
    const ProcessResult result = query(GetParam().change(path));
    EXPECT_EQ(result.out, "found\n");
    EXPECT_EQ(result.err, "");
}

INSTANTIATE_TEST_SUITE_P(All, PathForms, testing::ValuesIn(s_PathRows),
                         [](const auto& i_Info) { return std::string(i_Info.param.name); });

#endif
