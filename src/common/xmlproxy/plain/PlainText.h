#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// The characters of a document in UTF-8: classifies them and searches for them.
///
/// Tested by: tests/common/xmlproxy/plain/PlainTextTest.cpp
namespace PlainText
{

/// Number of bytes that a search may read from a place on.
inline constexpr std::size_t s_Readable = 16;

inline bool isSpace(char i_Byte) noexcept
{
    return i_Byte == ' ' || i_Byte == '\n' || i_Byte == '\t' || i_Byte == '\r';
}

extern const std::array<bool, 256> s_NameBytes;

/// True for ASCII characters that a name may contain, and for every byte of other characters.
inline bool isNameByte(char i_Byte) noexcept
{
    return s_NameBytes[static_cast<unsigned char>(i_Byte)];
}

/// True for control characters, which include line ends, and for every byte of a non-ASCII character.
inline bool isControlOrBeyondAscii(char i_Byte) noexcept
{
    return static_cast<signed char>(i_Byte) < 0x20;
}

/// Returns the first byte from \p i_pBytes on that is one of \p i_Stops, a control character or not ASCII. There always
/// is one: the null character at the end.
template <typename... Stops>
inline const char* find(const char* i_pBytes, Stops... i_Stops) noexcept
{
#if defined(__SSE2__)
    for (;; i_pBytes += s_Readable)
    {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(i_pBytes));
        __m128i found = _mm_cmplt_epi8(bytes, _mm_set1_epi8(0x20));
        ((found = _mm_or_si128(found, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(i_Stops)))), ...);
        if (const auto places = static_cast<unsigned>(_mm_movemask_epi8(found)); places != 0)
        {
            return i_pBytes + std::countr_zero(places);
        }
    }
#else
    while (!isControlOrBeyondAscii(*i_pBytes) && ((*i_pBytes != i_Stops) && ...))
    {
        ++i_pBytes;
    }
    return i_pBytes;
#endif
}

/// A character and the number of its bytes; 0 bytes if it is not well-formed.
struct Character
{
    char32_t code = 0;
    std::size_t length = 0;
};

/// The number of bytes of a character with this first byte; 1 for an invalid byte.
std::size_t lengthAt(char i_First) noexcept;
/// The character at \p i_pBytes. As many bytes must be readable there as its first one says. Only well-formed UTF-8
/// that XML 1.0 allows is a character here. U+0085 and U+2028 are not, because the parser library counts no column for
/// them in some places.
Character characterAt(const char* i_pBytes) noexcept;
/// Same, for a non-ASCII character.
Character characterBeyondAscii(const char* i_pBytes) noexcept;

/// How many more bytes than UTF-16 code units the character takes.
inline std::size_t surplusOf(const Character& i_Character) noexcept
{
    return i_Character.length - (i_Character.code > 0xFFFF ? 2 : 1);
}

/// Same, for well-formed text; 0 only for ASCII.
std::size_t surplusOf(std::string_view i_Bytes) noexcept;

/// Writes the UTF-16 code units of \p i_Code at \p io_pUnits, and advances it.
inline void put(char32_t i_Code, char16_t*& io_pUnits) noexcept
{
    if (i_Code > 0xFFFF)
    {
        *io_pUnits++ = static_cast<char16_t>(0xD7C0 + (i_Code >> 10U));
        i_Code = 0xDC00 + (i_Code & 0x3FFU);
    }
    *io_pUnits++ = static_cast<char16_t>(i_Code);
}

/// Whether the bytes, for all of which `isNameByte` must be true, are a name. They must be well-formed and a name by
/// the tables of the parser library. At most one colon is allowed, followed by a character that may begin a name.
bool isName(std::string_view i_Bytes) noexcept;

/// The longest reference that is read. Longer ones are well-formed (they begin with zeros), but nobody writes them.
inline constexpr std::size_t s_LongestReference = 16;

/// The reference at \p i_pBytes, which must point to "&": a predefined entity or a character, with the number of bytes
/// from "&" to ";". At least `s_LongestReference` bytes must be readable.
Character referenceAt(const char* i_pBytes) noexcept;

} // namespace PlainText
