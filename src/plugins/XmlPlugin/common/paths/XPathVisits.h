#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

class Node;

namespace XmlPlugin
{

/// A packed set of small numbers for each node and step of a walk. It is packed because a walk may reach every node at
/// every step.
///
/// \p Bits: the count of different numbers, a power of two up to 64.
///
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathVisitsTest.cpp
template <unsigned Bits>
class XPathVisits
{
public:
    /// Adds \p i_Number, which must be less than `Bits`. False if it is already there.
    bool add(const Node& i_Node, std::uint32_t i_Step, unsigned i_Number)
    {
        if ((m_Used + 1) * 4 > m_Entries.size() * 3)
        {
            grow();
        }
        Entry& entry = m_Entries[find(&i_Node, i_Step / s_Steps)];
        if (!entry.m_pNode)
        {
            entry = {&i_Node, 0, i_Step / s_Steps};
            ++m_Used;
        }
        const std::uint64_t bit = bitOf(i_Step, i_Number);
        const bool isNew = (entry.m_Bits & bit) == 0;
        entry.m_Bits |= bit;
        return isNew;
    }

    bool contains(const Node& i_Node, std::uint32_t i_Step, unsigned i_Number) const noexcept
    {
        return !m_Entries.empty() && (m_Entries[find(&i_Node, i_Step / s_Steps)].m_Bits & bitOf(i_Step, i_Number)) != 0;
    }

    /// The size of the set in bytes.
    std::size_t bytes() const noexcept { return m_Entries.capacity() * sizeof(Entry); }

private:
    static constexpr unsigned s_Steps = 64 / Bits; ///< steps per entry

    struct Entry
    {
        const Node* m_pNode = nullptr; ///< null: unused
        std::uint64_t m_Bits = 0;
        std::uint32_t m_Group = 0; ///< of steps
    };

    static std::uint64_t bitOf(std::uint32_t i_Step, unsigned i_Number) noexcept
    {
        return std::uint64_t{1} << (i_Step % s_Steps * Bits + i_Number);
    }

    /// The entry, or the unused one where it belongs; one of them always exists.
    std::size_t find(const Node* i_pNode, std::uint32_t i_Group) const noexcept
    {
        const std::size_t mask = m_Entries.size() - 1;
        const std::uint64_t key =
            std::hash<const Node*>{}(i_pNode) / alignof(std::max_align_t) + std::uint64_t{i_Group} * 0x10001;
        std::size_t place = static_cast<std::size_t>(key * 0x9E3779B97F4A7C15U >> 20U) & mask;
        while (m_Entries[place].m_pNode && (m_Entries[place].m_pNode != i_pNode || m_Entries[place].m_Group != i_Group))
        {
            place = (place + 1) & mask;
        }
        return place;
    }

    void grow()
    {
        constexpr std::size_t fewest = 16;
        std::vector<Entry> entries(m_Entries.empty() ? fewest : m_Entries.size() * 2);
        std::swap(entries, m_Entries);
        for (const Entry& entry : entries)
        {
            if (entry.m_pNode)
            {
                m_Entries[find(entry.m_pNode, entry.m_Group)] = entry;
            }
        }
    }

    std::vector<Entry> m_Entries; ///< their number is a power of two
    std::size_t m_Used = 0;
};

} // namespace XmlPlugin
