#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace XPathLanguage
{

/// A word of the query language, in ASCII, as narrow and as wide text. Both are null-terminated.
class Word
{
public:
    /// Implicit, for use in the rows of tables.
    template <std::size_t t_Size>
    constexpr Word(const char (&i_Text)[t_Size]) noexcept : m_Length(t_Size - 1)
    {
        static_assert(t_Size <= s_Capacity);
        for (std::size_t i = 0; i < m_Length; ++i)
        {
            m_Narrow[i] = i_Text[i];
            m_Wide[i] = static_cast<wchar_t>(i_Text[i]);
        }
    }

    constexpr std::string_view text() const noexcept { return {m_Narrow.data(), m_Length}; }
    constexpr std::wstring_view wide() const noexcept { return {m_Wide.data(), m_Length}; }

    friend constexpr bool operator==(const Word& i_Word, std::string_view i_Text) noexcept
    {
        return i_Word.text() == i_Text;
    }
    friend constexpr bool operator==(const Word& i_Word, std::wstring_view i_Text) noexcept
    {
        return i_Word.wide() == i_Text;
    }

private:
    static constexpr std::size_t s_Capacity = 24;

    std::size_t m_Length;
    std::array<char, s_Capacity> m_Narrow{};
    std::array<wchar_t, s_Capacity> m_Wide{};
};

} // namespace XPathLanguage
