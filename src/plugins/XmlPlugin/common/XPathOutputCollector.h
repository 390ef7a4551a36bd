#pragma once

#include "XPathOutputList.h"

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
/// Tested by: tests/plugins/XmlPlugin/common/XPathOutputCollectorTest.cpp
class XPathOutputCollector
{
public:
    /// \p i_IsSearched: `addUnlessPresent` looks among all records. Without, it leaves that to
    /// `orderByKey`, after which there is no difference.
    explicit XPathOutputCollector(XPathOutputList& io_Records, bool i_IsSearched = true)
        : m_Records(io_Records), m_IsSearched(i_IsSearched)
    {
    }

    /// Appends the record.
    void add(const XPathOutputElement& i_Record)
    {
        if (!m_Records.empty() && i_Record.m_OrderKey <= m_LastKey)
            m_RunStarts.push_back(m_Records.size());
        m_LastKey = i_Record.m_OrderKey;
        m_Records.add(i_Record);
    }
    /// Appends the record unless one with the same order key and node text is there.
    void addUnlessPresent(const XPathOutputElement& i_Record)
    {
        if (!m_IsSearched || !isPresent(i_Record))
            add(i_Record);
    }
    /// Puts the records in ascending key order; of several with one key the first added stays.
    /// Takes time in proportion to the records as long as they came in few ascending runs, as the
    /// branches of a union do.
    void orderByKey();
    /// Forgets all records.
    void clear() noexcept;

    /// The record added last; null when there is none.
    const XPathOutputElement* last() const noexcept { return m_Records.empty() ? nullptr : m_Records.back(); }
    std::size_t size() const noexcept { return m_Records.size(); }

private:
    bool isAscending() const noexcept { return m_RunStarts.empty(); }
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
    const bool m_IsSearched;
    std::int32_t m_LastKey = 0;           ///< of the record added last
    std::vector<std::size_t> m_RunStarts; ///< of records whose key is not above that of the one before
    std::unordered_multimap<std::int32_t, const XPathOutputElement*> m_ByKey; ///< of the first m_Indexed records
    std::size_t m_Indexed = 0;
};

} // namespace XmlPlugin
