#pragma once

#include <cstdint>
#include <string_view>

namespace XmlPlugin
{

/// The text of an expression as its readers see it: "(" + the expression + ")". Offsets count UTF-16 code units.
///
/// Ownership: refers to a null-terminated text that the caller keeps alive.
class XPathSource
{
public:
    XPathSource() noexcept = default;
    explicit XPathSource(std::wstring_view i_Text) noexcept : m_Text(i_Text) {}

    std::wstring_view text() const noexcept { return m_Text; }
    std::uint32_t size() const noexcept { return static_cast<std::uint32_t>(m_Text.size()); }
    /// The text between two offsets. The first one must not be beyond the end.
    std::wstring_view between(std::uint32_t i_Begin, std::uint32_t i_End) const noexcept
    {
        return m_Text.substr(i_Begin, i_End - i_Begin);
    }

    /// The character at an offset; null beyond the end.
    wchar_t at(std::uint32_t i_Offset) const noexcept { return i_Offset < m_Text.size() ? m_Text[i_Offset] : L'\0'; }
    /// Same, for an offset that must not be beyond the end.
    wchar_t unit(std::uint32_t i_Offset) const noexcept { return m_Text.data()[i_Offset]; }
    /// Returns the offset after the spaces at \p i_Offset, which must not be beyond the end.
    std::uint32_t skip(std::uint32_t i_Offset) const noexcept
    {
        while (unit(i_Offset) == L' ')
        {
            ++i_Offset;
        }
        return i_Offset;
    }
    /// The number of spaces at an offset, which may be beyond the end.
    std::uint32_t spaces(std::uint32_t i_Offset) const noexcept
    {
        return i_Offset < m_Text.size() ? skip(i_Offset) - i_Offset : 0;
    }
    /// Whether \p i_Text, which must not be empty, is at an offset, which may be beyond the end.
    bool standsAt(std::uint32_t i_Offset, std::wstring_view i_Text) const noexcept
    {
        std::size_t matched = 0;
        while (matched < i_Text.size() && at(i_Offset + static_cast<std::uint32_t>(matched)) == i_Text[matched])
        {
            ++matched;
        }
        return matched == i_Text.size();
    }
    /// The number of characters that the terminal \p i_Text takes at an offset, including the spaces before it; 0 if it
    /// is not there. The offset may be beyond the end.
    std::uint32_t terminalLength(std::uint32_t i_Offset, std::wstring_view i_Text) const noexcept
    {
        const std::uint32_t skipped = spaces(i_Offset);
        return standsAt(i_Offset + skipped, i_Text) ? skipped + static_cast<std::uint32_t>(i_Text.size()) : 0;
    }

private:
    std::wstring_view m_Text;
};

} // namespace XmlPlugin
