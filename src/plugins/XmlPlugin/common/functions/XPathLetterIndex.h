#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace XmlPlugin
{

/// Finds the words of a table that begin with a given character, in the order of the table. Built at compile time.
///
/// Each word must begin with an ASCII character.
template <std::size_t Size>
class XPathLetterIndex
{
public:
    static constexpr std::size_t s_None = Size;

    /// \p i_First: first character of the word at an index.
    template <class First>
    constexpr explicit XPathLetterIndex(First i_First)
    {
        m_First.fill(s_End);
        for (std::size_t i = Size; i > 0; --i)
        {
            std::uint8_t& first = m_First[static_cast<std::size_t>(i_First(i - 1))];
            m_Next[i - 1] = first;
            first = static_cast<std::uint8_t>(i - 1);
        }
    }

    /// The index of the first word with this character; s_None if there is none.
    constexpr std::size_t first(wchar_t i_Character) const noexcept
    {
        const auto place = static_cast<std::size_t>(i_Character);
        return place < s_Characters ? m_First[place] : s_None;
    }
    /// The index of the next word that begins like the word at \p i_Index.
    constexpr std::size_t next(std::size_t i_Index) const noexcept { return m_Next[i_Index]; }

private:
    static_assert(Size < 255);
    static constexpr std::uint8_t s_End = static_cast<std::uint8_t>(Size);
    static constexpr std::size_t s_Characters = 128;
    std::array<std::uint8_t, s_Characters> m_First{};
    std::array<std::uint8_t, Size> m_Next{};
};

} // namespace XmlPlugin
