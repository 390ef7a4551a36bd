#pragma once

#include "values/XPathOutputList.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace XmlPlugin
{

/// The output of one location path under construction: a list of records in the order in which they were selected. It
/// is sorted by key later.
///
/// Ownership: the records belong to the list, and the list to whoever created the collector.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathOutputCollectorTest.cpp
class XPathOutputCollector
{
public:
    /// What the output is for.
    enum class Purpose : std::uint8_t
    {
        SearchedRecords, ///< `addUnlessPresent` searches all records
        Records,         ///< it leaves that to `orderByKey`; the result is the same
        Count            ///< only `size` and `lastKey` are needed; no record is created
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
    /// Same, for a record that is not created because the purpose is a count.
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
    /// Appends the record unless there is one with the same order key and node text.
    void addUnlessPresent(const XPathOutputElement& i_Record)
    {
        if (m_Purpose != Purpose::SearchedRecords || !isPresent(i_Record))
        {
            add(i_Record);
        }
    }
    /// Puts the records in ascending key order. Of several with the same key, only the first one added stays. Takes
    /// time in proportion to the records if they came in few ascending runs, as the branches of a union do.
    void orderByKey();
    /// Removes all records.
    void clear() noexcept;

    /// The record added last; null if there is none.
    const XPathOutputElement* last() const noexcept { return m_Records.empty() ? nullptr : m_Records.back(); }
    /// Its key; meaningless if there is none.
    std::int32_t lastKey() const noexcept { return m_LastKey; }
    std::size_t size() const noexcept { return m_Size; }
    /// Whether the records were added in ascending key order.
    bool isAscending() const noexcept { return m_RunStarts.empty(); }

private:
    bool isPresent(const XPathOutputElement& i_Record)
    {
        // Most walks go in document order, so a key higher than the last one is new.
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
    std::vector<std::size_t> m_RunStarts; ///< indices of records whose key is not greater than the one before
    std::unordered_multimap<std::int32_t, const XPathOutputElement*> m_ByKey; ///< of the first m_Indexed records
    std::size_t m_Indexed = 0;
};

} // namespace XmlPlugin
