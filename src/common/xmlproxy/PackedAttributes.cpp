#include "xmlproxy/PackedAttributes.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <new>

#if defined(__SSE2__)
#include <cstring>
#include <emmintrin.h>
#endif

static_assert(sizeof(PackedAttributes) % alignof(const XmlName*) == 0);
static_assert(sizeof(std::uint32_t) % alignof(wchar_t) == 0);

namespace
{

constexpr std::size_t s_Most = std::numeric_limits<std::int32_t>::max();

/// Copies ASCII. Values are short: a loop that the compiler makes fast for long ones takes longer.
wchar_t* widen(const char* i_pAscii, std::size_t i_Length, wchar_t* o_pUnits) noexcept
{
    std::size_t index = 0;
#if defined(__SSE2__)
    constexpr std::size_t unitsAtOnce = sizeof(__m128i) / sizeof(wchar_t);
    for (; index + unitsAtOnce <= i_Length; index += unitsAtOnce)
    {
        std::uint64_t bytes = 0;
        std::memcpy(&bytes, i_pAscii + index, unitsAtOnce);
        __m128i units = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(&bytes));
        units = _mm_unpacklo_epi8(units, _mm_setzero_si128());
        if constexpr (sizeof(wchar_t) == 4)
        {
            units = _mm_unpacklo_epi16(units, _mm_setzero_si128());
        }
        _mm_storeu_si128(reinterpret_cast<__m128i*>(o_pUnits + index), units);
    }
#endif
    for (; index < i_Length; ++index)
    {
        o_pUnits[index] = static_cast<wchar_t>(i_pAscii[index]);
    }
    return o_pUnits + i_Length;
}

bool isNamed(const XmlName& i_Left, const XmlNameView& i_Right) noexcept
{
    return i_Right == i_Left;
}

bool isNamed(const XmlName& i_Left, const String& i_Right) noexcept
{
    return isSame(i_Left.text(), i_Right);
}

} // namespace

std::size_t PackedAttributes::slotCount(std::size_t i_Count) noexcept
{
    return i_Count <= s_SmallCount ? 0 : std::bit_ceil(i_Count * 2);
}

std::size_t PackedAttributes::bytesFor(std::span<const Source> i_Attributes)
{
    const std::size_t count = i_Attributes.size();
    std::size_t characters = 0;
    for (const Source& attribute : i_Attributes)
    {
        if (count > s_Most / 4 || attribute.length > s_Most - characters)
        {
            throw std::bad_alloc();
        }
        characters += attribute.length;
    }
    // NOLINTNEXTLINE(bugprone-sizeof-expression): the names are kept as pointers
    return sizeof(PackedAttributes) + count * (sizeof(const XmlName*) + sizeof(std::uint32_t)) +
           slotCount(count) * sizeof(std::int32_t) + (characters + count) * sizeof(wchar_t);
}

PackedAttributes* PackedAttributes::make(void* i_pPlace, std::span<const Source> i_Attributes,
                                         std::uint32_t i_FirstOrdinal)
{
    auto* pAttributes = new (i_pPlace) PackedAttributes(i_Attributes.size(), i_FirstOrdinal);
    pAttributes->fill(i_Attributes);
    return pAttributes;
}

/// Result: the end of what was written.
wchar_t* PackedAttributes::putValue(const Source& i_Attribute, wchar_t* o_pUnits) noexcept
{
    if (i_Attribute.pAscii)
    {
        return widen(i_Attribute.pAscii, i_Attribute.length, o_pUnits);
    }
    return std::transform(i_Attribute.pValue, i_Attribute.pValue + i_Attribute.length, o_pUnits,
                          [](char16_t i_Unit) { return static_cast<wchar_t>(i_Unit); });
}

void PackedAttributes::fill(std::span<const Source> i_Attributes) noexcept
{
    auto* pName = const_cast<const XmlName**>(names());
    auto* pEnd = const_cast<std::uint32_t*>(ends());
    auto* const pTexts = const_cast<wchar_t*>(texts());
    wchar_t* pUnit = pTexts;
    for (const Source& attribute : i_Attributes)
    {
        *pName++ = attribute.pName;
        pUnit = putValue(attribute, pUnit);
        *pEnd++ = static_cast<std::uint32_t>(pUnit - pTexts);
        *pUnit++ = L'\0';
    }
    if (m_Count > s_SmallCount)
    {
        fillSlots();
    }
}

void PackedAttributes::fillSlots() noexcept
{
    auto* const pSlots = const_cast<std::int32_t*>(slots());
    const std::size_t mask = slotCount(m_Count) - 1;
    std::fill_n(pSlots, mask + 1, -1);
    for (int index = 0; index < count(); ++index)
    {
        std::size_t slot = nameAt(index).hash() & mask;
        while (pSlots[slot] >= 0)
        {
            slot = (slot + 1) & mask;
        }
        pSlots[slot] = index;
    }
}

/// Through the index over the names.
template <typename Name>
int PackedAttributes::search(const Name& i_Name, std::size_t i_Hash) const noexcept
{
    const std::size_t mask = slotCount(m_Count) - 1;
    std::size_t slot = i_Hash & mask;
    while (slots()[slot] >= 0 && !isNamed(nameAt(slots()[slot]), i_Name))
    {
        slot = (slot + 1) & mask;
    }
    return slots()[slot];
}

int PackedAttributes::indexOf(const XmlNameView& i_Name) const noexcept
{
    if (m_Count > s_SmallCount)
    {
        return search(i_Name, i_Name.hash());
    }
    for (int index = 0; index < count(); ++index)
    {
        if (isNamed(nameAt(index), i_Name))
        {
            return index;
        }
    }
    return -1;
}

int PackedAttributes::indexOf(const String& i_Name) const noexcept
{
    if (m_Count > s_SmallCount)
    {
        return search(i_Name, XmlName::hashOf(viewOf(i_Name)));
    }
    for (int index = 0; index < count(); ++index)
    {
        if (isNamed(nameAt(index), i_Name))
        {
            return index;
        }
    }
    return -1;
}
