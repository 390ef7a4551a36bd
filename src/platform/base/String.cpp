#include "base/String.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <type_traits>

namespace
{

constexpr std::uint32_t s_Replacement = 0xFFFD;
constexpr std::uint32_t s_LastCodePoint = 0x10FFFF;

constexpr bool isHighSurrogate(std::uint32_t i_Unit)
{
    return i_Unit >= 0xD800 && i_Unit <= 0xDBFF;
}

constexpr bool isLowSurrogate(std::uint32_t i_Unit)
{
    return i_Unit >= 0xDC00 && i_Unit <= 0xDFFF;
}

/// Appends one code point; one above U+FFFF becomes a pair.
void appendUnits(std::wstring& io_Text, std::uint32_t i_CodePoint)
{
    if (i_CodePoint > s_LastCodePoint)
    {
        i_CodePoint = s_Replacement;
    }
    if (i_CodePoint <= 0xFFFF)
    {
        io_Text.push_back(static_cast<wchar_t>(i_CodePoint));
        return;
    }
    const std::uint32_t rest = i_CodePoint - 0x10000;
    io_Text.push_back(static_cast<wchar_t>(0xD800 + (rest >> 10)));
    io_Text.push_back(static_cast<wchar_t>(0xDC00 + (rest & 0x3FF)));
}

/// Appends one element of a wide text, whatever the size of `wchar_t`.
void appendWide(std::wstring& io_Text, wchar_t i_Char)
{
    if constexpr (sizeof(wchar_t) == sizeof(char16_t))
    {
        io_Text.push_back(i_Char);
    }
    else
    {
        appendUnits(io_Text, static_cast<std::uint32_t>(i_Char));
    }
}

/// Whether no element of a wide text has to be split.
bool areUnits(const wchar_t* i_Text, std::size_t i_Length)
{
    if constexpr (sizeof(wchar_t) == sizeof(char16_t))
    {
        return true;
    }
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < i_Length; ++i)
    {
        bits |= static_cast<std::uint32_t>(i_Text[i]);
    }
    return bits <= 0xFFFF;
}

/// What may follow a lead byte of UTF-8: how many bytes, the payload that the lead itself carries,
/// and the range of the first of them. The range is what keeps out overlong forms, surrogates and
/// values above U+10FFFF.
struct Utf8Lead
{
    int followers;
    std::uint32_t payload;
    unsigned char low;
    unsigned char high;
};

/// `followers` is 0 for a byte that starts no sequence of more than one byte.
constexpr Utf8Lead classifyLead(unsigned char i_Byte)
{
    if (i_Byte >= 0xC2 && i_Byte <= 0xDF)
    {
        return {1, i_Byte & 0x1Fu, 0x80, 0xBF};
    }
    if (i_Byte >= 0xE0 && i_Byte <= 0xEF)
    {
        const unsigned char low = i_Byte == 0xE0 ? 0xA0 : 0x80;
        const unsigned char high = i_Byte == 0xED ? 0x9F : 0xBF;
        return {2, i_Byte & 0x0Fu, low, high};
    }
    if (i_Byte >= 0xF0 && i_Byte <= 0xF4)
    {
        const unsigned char low = i_Byte == 0xF0 ? 0x90 : 0x80;
        const unsigned char high = i_Byte == 0xF4 ? 0x8F : 0xBF;
        return {3, i_Byte & 0x07u, low, high};
    }
    return {0, 0, 0, 0};
}

/// Reads the sequence whose lead byte stands before \p io_pNext, which moves past the bytes taken.
/// A byte that does not fit ends the sequence and is not taken, so it is looked at again.
std::uint32_t decodeSequence(unsigned char i_Lead, const unsigned char*& io_pNext, const unsigned char* i_pEnd)
{
    const Utf8Lead lead = classifyLead(i_Lead);
    if (lead.followers == 0)
    {
        return s_Replacement;
    }
    std::uint32_t codePoint = lead.payload;
    unsigned char low = lead.low;
    unsigned char high = lead.high;
    for (int i = 0; i < lead.followers; ++i)
    {
        if (io_pNext == i_pEnd || *io_pNext < low || *io_pNext > high)
        {
            return s_Replacement;
        }
        codePoint = (codePoint << 6) | (*io_pNext & 0x3Fu);
        ++io_pNext;
        low = 0x80;
        high = 0xBF;
    }
    return codePoint;
}

/// Of bytes or of code units; in one pass without a branch, which the compiler vectorises.
template <typename Unit>
bool isAscii(const Unit* i_Text, std::size_t i_Length) noexcept
{
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < i_Length; ++i)
    {
        bits |= static_cast<std::uint32_t>(i_Text[i]);
    }
    return bits < 0x80;
}

void decodeUtf8(std::wstring& io_Text, const char* i_Text, std::size_t i_Length)
{
    if (isAscii(i_Text, i_Length))
    {
        io_Text.append(i_Text, i_Text + i_Length);
        return;
    }
    const auto* pNext = reinterpret_cast<const unsigned char*>(i_Text);
    const auto* const pEnd = pNext + i_Length;
    io_Text.reserve(io_Text.size() + i_Length);
    while (pNext != pEnd)
    {
        const unsigned char byte = *pNext++;
        appendUnits(io_Text, byte < 0x80 ? byte : decodeSequence(byte, pNext, pEnd));
    }
}

void encodeUtf8(std::string& io_Text, std::uint32_t i_CodePoint)
{
    const auto put = [&io_Text](std::uint32_t i_Byte) { io_Text.push_back(static_cast<char>(i_Byte)); };
    if (i_CodePoint < 0x80)
    {
        put(i_CodePoint);
    }
    else if (i_CodePoint < 0x800)
    {
        put(0xC0 | (i_CodePoint >> 6));
        put(0x80 | (i_CodePoint & 0x3F));
    }
    else if (i_CodePoint < 0x10000)
    {
        put(0xE0 | (i_CodePoint >> 12));
        put(0x80 | ((i_CodePoint >> 6) & 0x3F));
        put(0x80 | (i_CodePoint & 0x3F));
    }
    else
    {
        put(0xF0 | (i_CodePoint >> 18));
        put(0x80 | ((i_CodePoint >> 12) & 0x3F));
        put(0x80 | ((i_CodePoint >> 6) & 0x3F));
        put(0x80 | (i_CodePoint & 0x3F));
    }
}

/// The code point at \p io_Index, which moves past it; U+FFFD for a surrogate without its partner.
std::uint32_t nextCodePoint(const std::wstring& i_Text, std::size_t& io_Index)
{
    const auto unit = static_cast<std::uint32_t>(i_Text[io_Index++]);
    if (isHighSurrogate(unit) && io_Index < i_Text.size())
    {
        const auto low = static_cast<std::uint32_t>(i_Text[io_Index]);
        if (isLowSurrogate(low))
        {
            ++io_Index;
            return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
    }
    return isHighSurrogate(unit) || isLowSurrogate(unit) ? s_Replacement : unit;
}

constexpr wchar_t foldCase(wchar_t i_Unit)
{
    return i_Unit >= L'A' && i_Unit <= L'Z' ? static_cast<wchar_t>(i_Unit + (L'a' - L'A')) : i_Unit;
}

constexpr bool isTrimmed(wchar_t i_Unit)
{
    return i_Unit == L' ' || i_Unit == L'\t' || i_Unit == L'\r' || i_Unit == L'\n';
}

std::size_t notNegative(int i_Index)
{
    return i_Index < 0 ? 0 : static_cast<std::size_t>(i_Index);
}

int toIndex(std::size_t i_Place)
{
    return i_Place == std::wstring::npos ? -1 : static_cast<int>(i_Place);
}

int compareFolded(std::wstring_view i_Left, std::wstring_view i_Right)
{
    const std::size_t common = std::min(i_Left.size(), i_Right.size());
    for (std::size_t i = 0; i < common; ++i)
    {
        const wchar_t left = foldCase(i_Left[i]);
        const wchar_t right = foldCase(i_Right[i]);
        if (left != right)
        {
            return left < right ? -1 : 1;
        }
    }
    return i_Left.size() == i_Right.size() ? 0 : (i_Left.size() < i_Right.size() ? -1 : 1);
}

template <class TInteger>
String integerText(TInteger i_Value)
{
    std::array<char, 24> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), i_Value);
    return String(digits.data(), static_cast<std::size_t>(result.ptr - digits.data()));
}

} // namespace

String::String(const wchar_t* i_Text) : String(i_Text, i_Text == nullptr ? 0 : std::wstring_view(i_Text).size()) {}

String::String(const wchar_t* i_Text, std::size_t i_Length)
{
    if (areUnits(i_Text, i_Length))
    {
        m_Text.assign(i_Text, i_Length);
        return;
    }
    m_Text.reserve(i_Length);
    for (std::size_t i = 0; i < i_Length; ++i)
    {
        appendWide(m_Text, i_Text[i]);
    }
}

String::String(const char* i_Text) : String(i_Text, i_Text == nullptr ? 0 : std::string_view(i_Text).size()) {}

String::String(const char* i_Text, std::size_t i_Length)
{
    decodeUtf8(m_Text, i_Text, i_Length);
}

int String::compareTo(const String& i_Other, int i_IgnoreCase) const noexcept
{
    return i_IgnoreCase != 0 ? compareFolded(m_Text, i_Other.m_Text) : m_Text.compare(i_Other.m_Text);
}

bool String::equalsIgnoreCase(const String& i_Other) const noexcept
{
    return m_Text.size() == i_Other.m_Text.size() && compareFolded(m_Text, i_Other.m_Text) == 0;
}

bool String::startsWith(const String& i_Prefix) const noexcept
{
    return m_Text.starts_with(i_Prefix.m_Text);
}

bool String::endsWith(const String& i_Suffix) const noexcept
{
    return m_Text.ends_with(i_Suffix.m_Text);
}

int String::indexOf(const String& i_Text, int i_From) const noexcept
{
    return toIndex(m_Text.find(i_Text.m_Text, notNegative(i_From)));
}

int String::indexOf(wchar_t i_Char, int i_From) const noexcept
{
    return toIndex(m_Text.find(i_Char, notNegative(i_From)));
}

int String::lastIndexOf(const String& i_Text) const noexcept
{
    return toIndex(m_Text.rfind(i_Text.m_Text));
}

int String::lastIndexOf(wchar_t i_Char) const noexcept
{
    return toIndex(m_Text.rfind(i_Char));
}

String String::substring(int i_Begin) const
{
    String result;
    const std::size_t begin = notNegative(i_Begin);
    if (begin < m_Text.size())
    {
        result.m_Text.assign(m_Text, begin);
    }
    return result;
}

String String::substring(int i_Begin, int i_End) const
{
    String result;
    const std::size_t begin = notNegative(i_Begin);
    if (i_End >= 0 && begin < m_Text.size() && static_cast<std::size_t>(i_End) >= begin)
    {
        // A count past the end is cut by assign.
        result.m_Text.assign(m_Text, begin, static_cast<std::size_t>(i_End) - begin + 1);
    }
    return result;
}

String String::trim() const
{
    const auto first = std::find_if_not(m_Text.begin(), m_Text.end(), isTrimmed);
    const auto last = std::find_if_not(m_Text.rbegin(), std::make_reverse_iterator(first), isTrimmed).base();
    String result;
    result.m_Text.assign(first, last);
    return result;
}

String String::concat(const String& i_Other) const
{
    String result;
    result.m_Text.reserve(m_Text.size() + i_Other.m_Text.size());
    result.m_Text.append(m_Text).append(i_Other.m_Text);
    return result;
}

String& String::operator+=(const String& i_Other)
{
    m_Text += i_Other.m_Text;
    return *this;
}

String& String::operator+=(wchar_t i_Unit)
{
    appendWide(m_Text, i_Unit);
    return *this;
}

String String::valueOf(int i_Value)
{
    return integerText(i_Value);
}

String String::valueOf(unsigned i_Value)
{
    return integerText(i_Value);
}

String String::valueOf(long i_Value)
{
    return integerText(i_Value);
}

String String::valueOf(unsigned long i_Value)
{
    return integerText(i_Value);
}

String String::valueOf(long long i_Value)
{
    return integerText(i_Value);
}

String String::valueOf(unsigned long long i_Value)
{
    return integerText(i_Value);
}

std::string String::toNarrow() const
{
    // Mostly all of it is ASCII, which is one byte per unit.
    const auto beyond = std::find_if(m_Text.begin(), m_Text.end(), [](wchar_t i_Unit) { return i_Unit >= 0x80; });
    auto index = static_cast<std::size_t>(beyond - m_Text.begin());
    std::string result(index, '\0');
    std::transform(m_Text.begin(), beyond, result.begin(), [](wchar_t i_Unit) { return static_cast<char>(i_Unit); });
    while (index < m_Text.size())
    {
        encodeUtf8(result, nextCodePoint(m_Text, index));
    }
    return result;
}
