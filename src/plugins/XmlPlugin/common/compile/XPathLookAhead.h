#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

namespace XmlPlugin
{

/// Remembers how many characters each production takes at an offset, so that alternatives that begin in the same way do
/// not multiply the work.
///
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathTokenizerTest.cpp
class XPathLookAhead
{
public:
    static constexpr unsigned s_MostProductions = 14;

    /// The place for a length plus one; 0 while the length is unknown. \p i_Offset is less than \p i_Size, the size of
    /// the text, which must be the same in all calls. \p i_Production is less than `s_MostProductions`.
    std::uint32_t& lengthAt(unsigned i_Production, std::uint32_t i_Offset, std::size_t i_Size)
    {
        if (m_Pages.empty())
        {
            m_Pages.resize(i_Size / s_Offsets + 1);
        }
        std::unique_ptr<Page>& pPage = m_Pages[i_Offset / s_Offsets];
        if (!pPage)
        {
            pPage = std::make_unique<Page>();
        }
        return (*pPage)[i_Offset % s_Offsets][i_Production];
    }

private:
    static constexpr std::uint32_t s_Offsets = 16;
    /// For a run of offsets.
    using Page = std::array<std::array<std::uint32_t, s_MostProductions>, s_Offsets>;

    std::vector<std::unique_ptr<Page>> m_Pages;
};

} // namespace XmlPlugin
