// Input: the bytes of an archive ("PK..."), or else how to make one: a byte of choices, a byte that
// tells how many damages there are, three bytes for each of these (place and what to turn over),
// and the document.
#include "InputFile.h"
#include "TestFiles.h"
#include "TreeChecks.h"

#include "base/InputStream.h"
#include "base/ZipFile.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>

namespace
{

enum Choice : unsigned
{
    Deflated = 1,
    SecondMember = 2,
    LongName = 4
};

constexpr int s_MostMembers = 8;
constexpr std::size_t s_MostBytes = std::size_t{1} << 24;

unsigned byteAt(std::string_view i_Bytes, std::size_t i_Place)
{
    return i_Place < i_Bytes.size() ? static_cast<unsigned char>(i_Bytes[i_Place]) : 0;
}

bool isArchive(std::string_view i_Bytes)
{
    return i_Bytes.starts_with("PK");
}

/// Reads a stream to its end, in pieces of \p i_Piece bytes. False when it is damaged.
bool readAll(InputStream& io_Stream, std::int32_t i_Piece, std::string& o_Bytes)
{
    std::array<char, 512> buffer{};
    for (;;)
    {
        const std::int32_t count = io_Stream.read(buffer.data(), i_Piece);
        FUZZ_CHECK(count >= -1 && count <= i_Piece, std::to_string(count));
        if (count < 0)
        {
            FUZZ_CHECK(io_Stream.read(buffer.data(), i_Piece) == -1, "damaged once, damaged for good");
        }
        if (count <= 0 || o_Bytes.size() > s_MostBytes)
        {
            break;
        }
        o_Bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    const bool isWhole = io_Stream.read(buffer.data(), i_Piece) == 0;
    FUZZ_CHECK(!isWhole || io_Stream.size() == 0 || static_cast<std::size_t>(io_Stream.size()) == o_Bytes.size(),
               std::to_string(io_Stream.size()));
    io_Stream.close();
    FUZZ_CHECK(io_Stream.read(buffer.data(), i_Piece) == -1, "closed");
    return isWhole;
}

enum class First
{
    Missing,
    Damaged,
    Sound
};

/// Reads the members one by one; the first one's data in \p o_Bytes.
First readMembers(const String& i_Path, std::string& o_Bytes)
{
    ZipFile archive(i_Path);
    First first = First::Missing;
    for (int i = 0; i < s_MostMembers; ++i)
    {
        ZipEntry* const pEntry = archive.getEntry(i);
        if (!pEntry)
        {
            break;
        }
        FUZZ_CHECK(archive.getEntry(i) == pEntry, "one entry, one object");
        const std::unique_ptr<InputStream> pStream(archive.getEntryStream(pEntry));
        std::string bytes;
        const bool isWhole = pStream && readAll(*pStream, i == 0 ? 512 : 7, bytes);
        if (i != 0)
        {
            continue;
        }
        first = isWhole ? First::Sound : First::Damaged;
        o_Bytes = bytes;
    }
    FUZZ_CHECK(!archive.getEntry(-1) && !archive.getEntryStream(nullptr), "no such entry");
    return first;
}

/// The document of a sound first member is read as from a plain file; a damaged one is an error;
/// an archive without members gives no tree.
void checkArchive(const String& i_Path, bool i_IsComparedWithPlain)
{
    const ParsedFile parsed(i_Path);
    if (ZipFile::isValid(i_Path) != 0)
    {
        return;
    }
    std::string bytes;
    const First first = readMembers(i_Path, bytes);
    FUZZ_CHECK(first != First::Missing || parsed.print() == "no tree\n", parsed.print());
    FUZZ_CHECK(first != First::Damaged || parsed.m_Status != 0, parsed.print());
    if (!i_IsComparedWithPlain || first != First::Sound || isArchive(bytes) || bytes.size() > s_MostBytes)
    {
        return;
    }
    const ParsedFile plain(InputFile::holding(bytes, "plain"));
    FUZZ_CHECK(plain.print() == parsed.print(), plain.print() + parsed.print());
}

struct Made
{
    std::string m_Archive;
    std::string_view m_Document;
    unsigned m_Damages = 0;
};

Made make(std::string_view i_Bytes)
{
    constexpr std::size_t mostDamages = 4;
    const unsigned choices = byteAt(i_Bytes, 0);
    const std::size_t damages = byteAt(i_Bytes, 1) % mostDamages;
    const std::size_t begin = std::min(2 + 3 * damages, i_Bytes.size());
    Made made;
    made.m_Document = i_Bytes.substr(begin);
    ZipBuilder builder;
    builder.add((choices & LongName) ? std::string(300, 'n') : "d.xml", made.m_Document, (choices & Deflated) != 0);
    if (choices & SecondMember)
    {
        builder.add("e.xml", "<second/>");
    }
    made.m_Archive = builder.bytes();
    for (std::size_t i = 0; i < damages; ++i)
    {
        const std::size_t place = byteAt(i_Bytes, 2 + 3 * i) + 256U * byteAt(i_Bytes, 3 + 3 * i);
        const unsigned change = byteAt(i_Bytes, 4 + 3 * i);
        char& byte = made.m_Archive[place % made.m_Archive.size()];
        byte = static_cast<char>(static_cast<unsigned char>(byte) ^ change);
        made.m_Damages += change != 0;
    }
    return made;
}

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    enum Check : unsigned
    {
        Members,
        Document,
        Count
    };
    const CheckChoice choice(i_Bytes, Count);
    if (isArchive(i_Bytes))
    {
        checkArchive(InputFile::holding(i_Bytes), choice.isDue(Document));
        return;
    }
    const Made made = make(i_Bytes);
    const String path = InputFile::holding(made.m_Archive);
    if (choice.isDue(Members))
    {
        checkArchive(path, false);
    }
    if (!choice.isDue(Document))
    {
        return;
    }
    // A document that has the end of an archive in itself may take the place of a damaged one.
    const bool hasArchive = made.m_Document.find("PK") != std::string_view::npos;
    if (made.m_Damages > 1 || hasArchive)
    {
        return;
    }
    const std::string expected = ParsedFile(InputFile::holding(made.m_Document, "plain")).print();
    const ParsedFile parsed(path);
    // One damage may do no harm; it must not change the document.
    FUZZ_CHECK(parsed.print() == expected || (made.m_Damages == 1 && parsed.m_Status != 0),
               parsed.print() + "as a plain file:\n" + expected);
}
