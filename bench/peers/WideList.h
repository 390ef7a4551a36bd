#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// A copy of each value as wide text, like the host's list of values, for peers that do not know the host. With it, the
/// measurement of a peer includes the delivery that the plug-in must do.
///
/// Ownership: a value.
/// Threads: one at a time.
class WideList
{
public:
    /// Adds a text with one unit per character: the documents are ASCII only.
    template <class Unit>
    void add(std::basic_string_view<Unit> i_Text)
    {
        m_Texts.emplace_back(i_Text.begin(), i_Text.end());
    }
    std::size_t count() const noexcept { return m_Texts.size(); }
    std::vector<std::string> narrow() const
    {
        std::vector<std::string> texts;
        for (const std::wstring& text : m_Texts)
        {
            texts.emplace_back();
            for (const wchar_t unit : text)
            {
                texts.back() += static_cast<char>(unit);
            }
        }
        return texts;
    }

private:
    std::vector<std::wstring> m_Texts;
};
