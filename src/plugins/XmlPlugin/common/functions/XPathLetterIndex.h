#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace XmlPlugin
{

/// For a table of names: which of them begin with a letter, in the table's order. Made at compile time.
///
/// Names begin with a letter from a to z.
template <std::size_t Size>
class XPathLetterIndex
{
public:
    static constexpr std::size_t s_None = Size;

    /// \p i_First: first letter of the name at an index.
    template <class First>
    constexpr explicit XPathLetterIndex(First i_First)
    {
        m_First.fill(s_End);
        for (std::size_t i = Size; i > 0; --i)
        {
            std::uint8_t& first = m_First[static_cast<std::size_t>(i_First(i - 1) - L'a')];
            m_Next[i - 1] = first;
            first = static_cast<std::uint8_t>(i - 1);
        }
    }

    /// The first name with this letter; s_None: there is none.
    constexpr std::size_t first(wchar_t i_Letter) const noexcept
    {
        return i_Letter >= L'a' && i_Letter <= L'z' ? m_First[static_cast<std::size_t>(i_Letter - L'a')] : s_None;
    }
    /// The next name with the letter of the name at \p i_Index.
    constexpr std::size_t next(std::size_t i_Index) const noexcept { return m_Next[i_Index]; }

private:
    static_assert(Size < 255);
    static constexpr std::uint8_t s_End = static_cast<std::uint8_t>(Size);
    std::array<std::uint8_t, 26> m_First{};
    std::array<std::uint8_t, Size> m_Next{};
};

} // namespace XmlPlugin
