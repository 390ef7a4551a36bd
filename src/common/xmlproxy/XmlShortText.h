#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// A text of up to 16 bytes that is compared with the bytes of a document in one step.
///
/// Ownership: a value.
/// Threads: any number of readers.
/// Tested by: tests/common/xmlproxy/XmlShortTextTest.cpp
class XmlShortText
{
public:
    /// The longest text, and the number of bytes that a comparison may read.
    static constexpr std::size_t s_Most = 16;

    /// A text that is empty or longer than `s_Most` matches nowhere.
    explicit XmlShortText(std::string_view i_Text) noexcept
    {
        const bool fits = !i_Text.empty() && i_Text.size() <= s_Most;
        m_Length = fits ? static_cast<std::uint32_t>(i_Text.size()) : 0;
        m_Mask = fits ? (1U << m_Length) - 1 : 1U << s_Most;
        std::copy_n(i_Text.begin(), m_Length, m_Text.begin());
    }

    std::size_t length() const noexcept { return m_Length; }

    /// True if the bytes at \p i_pBytes start with this text. `s_Most` bytes must be readable there.
    bool isAt(const char* i_pBytes) const noexcept
    {
#if defined(__SSE2__)
        const __m128i here = _mm_loadu_si128(reinterpret_cast<const __m128i*>(i_pBytes));
        const __m128i text = _mm_loadu_si128(reinterpret_cast<const __m128i*>(m_Text.data()));
        return (~static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(here, text))) & m_Mask) == 0;
#else
        return m_Length > 0 && std::memcmp(i_pBytes, m_Text.data(), m_Length) == 0;
#endif
    }

private:
    std::array<char, s_Most> m_Text = {};
    std::uint32_t m_Length;
    std::uint32_t m_Mask; ///< one bit per byte that must be equal
};
