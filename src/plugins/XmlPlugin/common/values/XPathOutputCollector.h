#pragma once

#include "values/XPathOutputList.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace XmlPlugin
{

/// The output of one location path under construction: a list of records in the order in which
/// they were selected, later put in ascending key order.
///
/// Ownership: the records belong to the list, the list to whoever made the collector.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathOutputCollectorTest.cpp
class XPathOutputCollector
{
public:
    /// What the output is for.
    enum class Purpose : std::uint8_t
    {
        SearchedRecords, ///< `addUnlessPresent` looks among all records
        Records,         ///< it leaves that to `orderByKey`, after which there is no difference
        Count            ///< only `size` and `lastKey` are asked for; no record is made
    };

    explicit XPathOutputCollector(XPathOutputList& io_Records, Purpose i_Purpose = Purpose::SearchedRecords)
        : m_Records(io_Records), m_Purpose(i_Purpose)
    {
    }

    /// Appends the record.
    void add(const XPathOutputElement& i_Record)
    {
        count(i_Record.m_OrderKey);
        if (m_Purpose != Purpose::Count)
        {
            m_Records.add(i_Record);
        }
    }
    /// The same for a record that is not made, where the purpose is a count.
    void count(std::int32_t i_OrderKey)
    {
        if (m_Size > 0 && i_OrderKey <= m_LastKey)
        {
            m_RunStarts.push_back(m_Size);
        }
        m_LastKey = i_OrderKey;
        ++m_Size;
    }
    bool isCount() const noexcept { return m_Purpose == Purpose::Count; }
    /// Appends the record unless one with the same order key and node text is there.
    void addUnlessPresent(const XPathOutputElement& i_Record)
    {
        if (m_Purpose != Purpose::SearchedRecords || !isPresent(i_Record))
        {
            add(i_Record);
        }
    }
    /// Puts the records in ascending key order; of several with one key the first added stays.
    /// Takes time in proportion to the records as long as they came in few ascending runs, as the
    /// branches of a union do.
    void orderByKey();
    /// Forgets all records.
    void clear() noexcept;

    /// The record added last; null when there is none.
    const XPathOutputElement* last() const noexcept { return m_Records.empty() ? nullptr : m_Records.back(); }
    /// Its key; meaningless when there is none.
    std::int32_t lastKey() const noexcept { return m_LastKey; }
    std::size_t size() const noexcept { return m_Size; }
    /// Whether the records were added in ascending key order.
    bool isAscending() const noexcept { return m_RunStarts.empty(); }

private:
    bool isPresent(const XPathOutputElement& i_Record)
    {
        // Most walks go in document order, where a higher key than the last one is new.
        return !m_Records.empty() && !(isAscending() && i_Record.m_OrderKey > m_LastKey) && isIndexed(i_Record);
    }
    bool isIndexed(const XPathOutputElement& i_Record);
    void mergeRuns();
    void dropEqualKeys();
    void forgetOrder() noexcept;

    XPathOutputList& m_Records;
    const Purpose m_Purpose;
    std::size_t m_Size = 0;
    std::int32_t m_LastKey = 0;           ///< of the record added last
    std::vector<std::size_t> m_RunStarts; ///< of records whose key is not above that of the one before
    std::unordered_multimap<std::int32_t, const XPathOutputElement*> m_ByKey; ///< of the first m_Indexed records
    std::size_t m_Indexed = 0;
};

} // namespace XmlPlugin
