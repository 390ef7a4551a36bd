#pragma once

#include "base/String.h"
#include "support/TemporaryFolder.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A folder whose paths are as the document layer takes them.
class TestFolder : public TemporaryFolder
{
public:
    /// The path of a file in this folder; its name is UTF-8.
    String pathOf(std::string_view i_Name) const { return {file(i_Name).c_str()}; }

    String write(std::string_view i_Name, std::string_view i_Bytes) const
    {
        return {TemporaryFolder::write(i_Name, i_Bytes).c_str()};
    }
};

/// Makes the bytes of a ZIP archive. A member is either stored or deflated (in blocks that are not
/// compressed, which an unpacker has to go through all the same).
class ZipBuilder
{
public:
    ZipBuilder& add(std::string_view i_Name, std::string_view i_Data, bool i_Deflate = false)
    {
        const std::string packed = i_Deflate ? deflate(i_Data) : std::string(i_Data);
        std::string header;
        put(header, 20, 2);                // version needed
        put(header, 0, 2);                 // flags
        put(header, i_Deflate ? 8 : 0, 2); // method
        put(header, 0x2100'0000, 4);       // time and date
        put(header, crc32(i_Data), 4);
        put(header, packed.size(), 4);
        put(header, i_Data.size(), 4);
        put(header, i_Name.size(), 2);
        put(header, 0, 2); // extra field

        put(m_Directory, 0x0201'4b50, 4);
        put(m_Directory, 20, 2); // version made by
        m_Directory += header;
        put(m_Directory, 0, 2); // comment
        put(m_Directory, 0, 2); // disk
        put(m_Directory, 0, 2); // internal attributes
        put(m_Directory, 0, 4); // external attributes
        put(m_Directory, m_Members.size(), 4);
        m_Directory += i_Name;

        put(m_Members, 0x0403'4b50, 4);
        m_Members += header;
        m_Members += i_Name;
        m_DataAt.push_back(m_Members.size());
        m_Members += packed;
        return *this;
    }

    /// Where the packed data of a member begins in the archive.
    std::size_t dataAt(std::size_t i_Member) const { return m_DataAt[i_Member]; }

    std::string bytes() const
    {
        std::string end;
        put(end, 0x0605'4b50, 4);
        put(end, 0, 2);
        put(end, 0, 2);
        put(end, m_DataAt.size(), 2);
        put(end, m_DataAt.size(), 2);
        put(end, m_Directory.size(), 4);
        put(end, m_Members.size(), 4);
        put(end, 0, 2);
        return m_Members + m_Directory + end;
    }

private:
    static void put(std::string& io_Bytes, std::uint64_t i_Value, int i_Count)
    {
        for (int index = 0; index < i_Count; ++index)
        {
            io_Bytes.push_back(static_cast<char>(i_Value >> (8 * index) & 0xFF));
        }
    }

    static std::string deflate(std::string_view i_Data)
    {
        std::string packed;
        std::string_view rest = i_Data;
        do
        {
            const std::string_view block = rest.substr(0, 60000);
            rest.remove_prefix(block.size());
            put(packed, rest.empty() ? 1 : 0, 1);
            put(packed, block.size(), 2);
            put(packed, ~block.size(), 2);
            packed += block;
        } while (!rest.empty());
        return packed;
    }

    static std::uint32_t crc32(std::string_view i_Data)
    {
        std::uint32_t crc = 0xFFFF'FFFF;
        for (const char byte : i_Data)
        {
            crc ^= static_cast<unsigned char>(byte);
            for (int bit = 0; bit < 8; ++bit)
            {
                crc = crc >> 1 ^ ((crc & 1) != 0 ? 0xEDB8'8320U : 0U);
            }
        }
        return ~crc;
    }

    std::string m_Members;
    std::string m_Directory;
    std::vector<std::size_t> m_DataAt;
};
