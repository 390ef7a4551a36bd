// The parser for plain documents against the parser library: what it takes has the same events.
#include "PlainComparison.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using namespace std::string_view_literals;

/// Small documents that are taken, with everything that a plain document may hold.
const std::string_view s_Documents[] = {
    "<a/>",
    "<?xml version='1.0' encoding='UTF-8' standalone='no'?>\n<r a='1' b=\"2\"><s/>text<s c='3'>more</s></r>\n",
    "\xef\xbb\xbf<?xml version=\"1.0\"?>\r\n<r>\r\n  <s a='x\r\ny\tz'/>\r\n</r>\r\n",
    "<r x='&lt;&amp;&#65;&#x1F600;' y='&quot;&apos;&gt;'>&lt;&#10;<s/>&amp;</r>",
    "<r><!-- comment - \xc3\xa4 --><?target data ? x?><![CDATA[ <x> ]] > ]]><s/></r><!--e--><?f?>",
    "<\xc3\xa4\xc3\xb6 "
    "\xe0\xb8\x81='\xe2\x82\xac\xf0\x9f\x98\x80'>\xe2\x82\xac<b/>\xf0\x9f\x98\x80<b/></\xc3\xa4\xc3\xb6>",
    "<n:r xmlns:n='u' n:a='1'><n:s n:a = '2' b\n=\n'3' /><n:s\tn:a='4'></n:s ></n:r>",
    "<a><b><c><d e='1'/></c><c><d e='2'/></c></b><b/><a><b/></a></a>",
    "<?xml version='1.0' encoding='US-ASCII'?><r a='1'>\n<s b='2'/>\r<s b='3'/>\r\n<s/></r>",
    "<root a1='1' a2='2' a3='3' a4='4' a5='5'><item a1='1' a3='2' a2='3'/><item a5='5' a1='1'/></root>",
};

/// Pieces that mutants are made with.
const std::string_view s_Pieces[] = {
    "<"sv,
    ">"sv,
    "/"sv,
    "&"sv,
    ";"sv,
    "'"sv,
    "\""sv,
    "="sv,
    " "sv,
    "\n"sv,
    "\r"sv,
    "\r\n"sv,
    "\t"sv,
    "]]>"sv,
    "]"sv,
    "-->"sv,
    "<!--"sv,
    "--"sv,
    "-"sv,
    "<?"sv,
    "?>"sv,
    "?"sv,
    "<![CDATA["sv,
    "<a>"sv,
    "</a>"sv,
    "<b/>"sv,
    "/>"sv,
    "a='1'"sv,
    " b='2'"sv,
    "&lt;"sv,
    "&#13;"sv,
    "&#xA;"sv,
    "&#x"sv,
    "&#"sv,
    "&quot;"sv,
    ":"sv,
    "a"sv,
    "1"sv,
    "xml"sv,
    "<?xml version='1.0'?>"sv,
    "<!DOCTYPE a>"sv,
    "\xc2\x85"sv,
    "\xe2\x80\xa8"sv,
    "\xc3\xa4"sv,
    "\xe2\x82\xac"sv,
    "\xf0\x9f\x98\x80"sv,
    "\xf0\x90\x80\x80"sv,
    "\xed\xa0\x80"sv,
    "\xef\xbf\xbf"sv,
    "\xef\xbb\xbf"sv,
    "\xc2\xa0"sv,
    "\xc3\x97"sv,
    "\xc2\xb7"sv,
    "\xcc\x80"sv,
    "\xe3\x80\x80"sv,
    "\xff"sv,
    "\x80"sv,
    "\x7f"sv,
    "\x01"sv,
    "\0"sv,
    "encoding='utf-8'"sv,
    "standalone='yes'"sv,
    "version='1.1'"sv,
    "UTF-8"sv,
    "us-ascii"sv,
    "name-of-more-than-16"sv,
};

class Random
{
public:
    std::size_t below(std::size_t i_Limit) noexcept
    {
        m_State = m_State * 6364136223846793005U + 1442695040888963407U;
        return static_cast<std::size_t>((m_State >> 33U) % i_Limit);
    }

private:
    std::uint64_t m_State = 20240229;
};

std::string mutantOf(std::string_view i_Document, Random& io_Random)
{
    std::string text(i_Document);
    for (std::size_t changes = 1 + io_Random.below(2); changes > 0; --changes)
    {
        const std::size_t place = io_Random.below(text.size() + 1);
        const std::size_t length = std::min(text.size() - place, io_Random.below(6));
        const std::string_view piece = s_Pieces[io_Random.below(std::size(s_Pieces))];
        switch (io_Random.below(5))
        {
        case 0:
            text.erase(place, length);
            break;
        case 1:
            text.insert(place, piece);
            break;
        case 2:
            text.replace(place, length, piece);
            break;
        case 3: // a part of the document once more
            text.insert(place, text.substr(io_Random.below(text.size() + 1), 1 + io_Random.below(30)));
            break;
        default:
            text.insert(place, 1, static_cast<char>(io_Random.below(256)));
            break;
        }
    }
    return text;
}

std::string readFile(const std::filesystem::path& i_Path)
{
    std::ifstream stream(i_Path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

class PlainDifference : public testing::Test
{
protected:
    /// True when the document is taken.
    bool compare(std::string_view i_Document, const std::string& i_About)
    {
        if (!m_Parsers.takes(i_Document))
        {
            return false;
        }
        if (m_Parsers.taken() != m_Parsers.expected(i_Document))
        {
            ADD_FAILURE() << i_About << '\n' << testing::PrintToString(std::string(i_Document.substr(0, 2000)));
        }
        return true;
    }

    /// The files below a folder that are taken, and all that were read.
    std::pair<int, int> compareFiles(const std::filesystem::path& i_Folder, std::string_view i_Extension,
                                     std::chrono::milliseconds i_Most)
    {
        namespace fs = std::filesystem;
        const auto end = std::chrono::steady_clock::now() + i_Most;
        std::pair<int, int> count;
        std::error_code error;
        fs::recursive_directory_iterator entry(i_Folder, fs::directory_options::skip_permission_denied, error);
        for (; !error && entry != fs::recursive_directory_iterator() && std::chrono::steady_clock::now() < end;
             entry.increment(error))
        {
            std::error_code unknown;
            constexpr std::uintmax_t mostBytes = 300000;
            if (entry->is_regular_file(unknown) && entry->file_size(unknown) <= mostBytes &&
                (i_Extension.empty() || entry->path().extension() == i_Extension))
            {
                ++count.second;
                count.first += compare(readFile(entry->path()), entry->path().string()) ? 1 : 0;
            }
        }
        return count;
    }

    PlainComparison m_Parsers;
};

TEST_F(PlainDifference, DocumentsAreTaken)
{
    for (const std::string_view document : s_Documents)
    {
        EXPECT_TRUE(compare(document, "")) << document;
    }
}

TEST_F(PlainDifference, DocumentsInSmallBlocks)
{
    for (const std::string_view document : s_Documents)
    {
        const std::wstring expected = m_Parsers.expected(document);
        for (std::size_t blockSize = 1; blockSize <= 17; ++blockSize)
        {
            EXPECT_TRUE(m_Parsers.takes(document, blockSize) && m_Parsers.taken() == expected) << document << blockSize;
        }
    }
}

TEST_F(PlainDifference, DocumentsCutAtEachByte)
{
    for (const std::string_view document : s_Documents)
    {
        for (std::size_t length = 0; length < document.size(); ++length)
        {
            compare(document.substr(0, length), "cut");
        }
    }
}

TEST_F(PlainDifference, DocumentsWithEachByteReplacedAndRemoved)
{
    for (const std::string_view document : s_Documents)
    {
        for (std::size_t place = 0; place < document.size(); ++place)
        {
            std::string text(document);
            for (const char byte : "\0\t\n\r <>&;'\"=/?!-[]:a1\x1f\x7f\x80\xc3\xe2\xf0\xff"sv)
            {
                text[place] = byte;
                compare(text, "replaced");
            }
            text.erase(place, 1);
            compare(text, "removed");
        }
    }
}

TEST_F(PlainDifference, Mutants)
{
    constexpr int count = 200000;
    Random random;
    int taken = 0;
    for (int index = 0; index < count && !HasFailure(); ++index)
    {
        const std::string text = mutantOf(s_Documents[random.below(std::size(s_Documents))], random);
        const bool isTaken = m_Parsers.takes(text);
        taken += isTaken ? 1 : 0;
        if (isTaken && m_Parsers.taken() != m_Parsers.expected(text))
        {
            ADD_FAILURE() << testing::PrintToString(text);
        }
        // Blocks make no difference.
        const std::wstring events = m_Parsers.taken();
        const bool isTakenInBlocks = m_Parsers.takes(text, 1 + random.below(40));
        EXPECT_EQ(isTaken, isTakenInBlocks) << testing::PrintToString(text);
        EXPECT_TRUE(!isTaken || events == m_Parsers.taken()) << testing::PrintToString(text);
    }
    EXPECT_GT(taken, count / 10) << "too few are taken to compare anything";
}

TEST_F(PlainDifference, FuzzSeeds)
{
    const auto [taken, all] = compareFiles(FUZZ_SEEDS, "", std::chrono::seconds(5));
    EXPECT_GT(all, 0);
    EXPECT_GT(taken, 0);
}

/// Whatever documents this machine has, those of the project among them.
TEST_F(PlainDifference, RealDocuments)
{
    int taken = compareFiles(EXAMPLES, ".xml", std::chrono::seconds(1)).first;
    EXPECT_GT(taken, 0);
    int all = taken;
    for (const char* pFolder : {"/usr/share", "/etc", "/usr/lib"})
    {
        const auto [takenHere, allHere] = compareFiles(pFolder, ".xml", std::chrono::seconds(4));
        taken += takenHere;
        all += allHere;
    }
    RecordProperty("taken", taken);
    RecordProperty("all", all);
}

} // namespace
