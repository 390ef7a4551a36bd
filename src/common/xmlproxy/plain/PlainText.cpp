#include "xmlproxy/plain/PlainText.h"

#include <algorithm>
#include <utility>

namespace PlainText
{

namespace
{

constexpr std::array<bool, 256> makeNameBytes() noexcept
{
    std::array<bool, 256> isName = {};
    for (unsigned byte = 0; byte < isName.size(); ++byte)
    {
        isName[byte] = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
                       byte == '-' || byte == '.' || byte == '_' || byte == ':' || byte >= 0x80;
    }
    return isName;
}

struct Entity
{
    std::string_view text;
    char32_t code;
};

constexpr std::array s_Entities = {Entity{"&amp;", U'&'}, Entity{"&lt;", U'<'}, Entity{"&gt;", U'>'},
                                   Entity{"&quot;", U'"'}, Entity{"&apos;", U'\''}};

constexpr unsigned s_NoDigit = 16;

constexpr unsigned digitOf(char i_Byte) noexcept
{
    if (i_Byte >= '0' && i_Byte <= '9')
    {
        return static_cast<unsigned>(i_Byte - '0');
    }
    const char small = static_cast<char>(i_Byte | 0x20);
    return small >= 'a' && small <= 'f' ? static_cast<unsigned>(small - 'a' + 10) : s_NoDigit;
}

constexpr bool isAllowed(char32_t i_Code) noexcept
{
    return i_Code < 0x20
               ? i_Code == U'\t' || i_Code == U'\n' || i_Code == U'\r'
               : i_Code < 0xD800 || (i_Code > 0xDFFF && i_Code < 0xFFFE) || (i_Code > 0xFFFF && i_Code <= 0x10FFFF);
}

Character numberAt(const char* i_pBytes) noexcept
{
    const bool isHexadecimal = i_pBytes[2] == 'x';
    const unsigned base = isHexadecimal ? 16 : 10;
    std::size_t length = isHexadecimal ? 3 : 2;
    const std::size_t first = length;
    char32_t code = 0;
    while (length < s_LongestReference && digitOf(i_pBytes[length]) < base && code <= 0x10FFFF)
    {
        code = code * base + digitOf(i_pBytes[length]);
        ++length;
    }
    const bool isGood = length > first && length < s_LongestReference && i_pBytes[length] == ';' && isAllowed(code);
    return isGood ? Character{code, length + 1} : Character{};
}

/// From `first` to `last`, both included.
struct Range
{
    char32_t first;
    char32_t last;
};

/// What a name begins with, as the parser library has it: the production NameStartChar of XML 1.0 (fifth edition)
/// without the characters beyond U+FFFF. ASCII stands first, as most names are.
constexpr std::array s_NameStarts = {
    Range{U'a', U'z'},     Range{U'A', U'Z'},     Range{U'_', U'_'},     Range{U':', U':'},     Range{0x00C0, 0x00D6},
    Range{0x00D8, 0x00F6}, Range{0x00F8, 0x02FF}, Range{0x0370, 0x037D}, Range{0x037F, 0x1FFF}, Range{0x200C, 0x200D},
    Range{0x2070, 0x218F}, Range{0x2C00, 0x2FEF}, Range{0x3001, 0xD7FF}, Range{0xF900, 0xFDCF}, Range{0xFDF0, 0xFFFD},
};

/// What NameChar has beside these.
constexpr std::array s_NameParts = {
    Range{U'0', U'9'}, Range{U'-', U'.'}, Range{0x00B7, 0x00B7}, Range{0x0300, 0x036F}, Range{0x203F, 0x2040},
};

template <std::size_t Count>
bool isIn(const std::array<Range, Count>& i_Ranges, char32_t i_Code) noexcept
{
    return std::any_of(i_Ranges.begin(), i_Ranges.end(),
                       [i_Code](Range i_Range) { return i_Code >= i_Range.first && i_Code <= i_Range.last; });
}

bool isNameCharacter(char32_t i_Code, bool i_IsFirst) noexcept
{
    return isIn(s_NameStarts, i_Code) || (!i_IsFirst && isIn(s_NameParts, i_Code));
}

} // namespace

const std::array<bool, 256> s_NameBytes = makeNameBytes();

std::size_t lengthAt(char i_First) noexcept
{
    const auto first = static_cast<unsigned char>(i_First);
    return first < 0xC0 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF8 ? 4 : 1;
}

Character characterBeyondAscii(const char* i_pBytes) noexcept
{
    constexpr std::array<char32_t, 5> least = {0, 0, 0x80, 0x800, 0x10000};
    const std::size_t length = lengthAt(*i_pBytes);
    if (length == 1)
    {
        return {};
    }
    char32_t code = static_cast<unsigned char>(*i_pBytes) & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i)
    {
        const auto byte = static_cast<unsigned char>(i_pBytes[i]);
        if ((byte & 0xC0U) != 0x80U)
        {
            return {};
        }
        code = code << 6U | (byte & 0x3FU);
    }
    const bool isGood = code >= least[length] && isAllowed(code) && code != 0x85 && code != 0x2028;
    return isGood ? Character{code, length} : Character{};
}

Character characterAt(const char* i_pBytes) noexcept
{
    const auto byte = static_cast<unsigned char>(*i_pBytes);
    if (byte >= 0x80)
    {
        return characterBeyondAscii(i_pBytes);
    }
    return isAllowed(byte) ? Character{byte, 1} : Character{};
}

bool isName(std::string_view i_Bytes) noexcept
{
    bool isFirst = true;
    bool hasColon = false;
    while (!i_Bytes.empty())
    {
        if (i_Bytes.size() < lengthAt(i_Bytes.front()))
        {
            return false;
        }
        const Character character = characterAt(i_Bytes.data());
        if (character.length == 0 || !isNameCharacter(character.code, isFirst))
        {
            return false;
        }
        const bool isColon = character.code == U':';
        if (isColon && (isFirst || std::exchange(hasColon, true)))
        {
            return false;
        }
        isFirst = isColon;
        i_Bytes.remove_prefix(character.length);
    }
    return !isFirst;
}

std::size_t surplusOf(std::string_view i_Bytes) noexcept
{
    std::size_t surplus = 0;
    for (const char byte : i_Bytes)
    {
        const auto value = static_cast<unsigned char>(byte);
        // Each character has one unit for its first byte, and one of four bytes has a second one.
        surplus += (value & 0xC0U) == 0x80U ? 1 : 0;
        surplus -= value >= 0xF0 ? 1 : 0;
    }
    return surplus;
}

Character referenceAt(const char* i_pBytes) noexcept
{
    if (i_pBytes[1] == '#')
    {
        return numberAt(i_pBytes);
    }
    for (const Entity& entity : s_Entities)
    {
        if (std::equal(entity.text.begin(), entity.text.end(), i_pBytes))
        {
            return {entity.code, entity.text.size()};
        }
    }
    return {};
}

} // namespace PlainText
