#pragma once

#include "XPathOutputElement.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

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
    explicit XPathOutputCollector(XPathOutputList& io_Records) : m_Records(io_Records) {}

    /// Appends the record.
    void add(std::unique_ptr<XPathOutputElement> i_pRecord);
    /// Appends the record unless one with the same order key and node text is there.
    void addUnlessPresent(std::unique_ptr<XPathOutputElement> i_pRecord);
    /// Puts the records in ascending key order; of several with one key the first added stays.
    void orderByKey();

    /// The record added last; null when there is none.
    const XPathOutputElement* last() const noexcept { return m_Records.empty() ? nullptr : m_Records.back(); }
    std::size_t size() const noexcept { return m_Records.size(); }

private:
    bool isPresent(const XPathOutputElement& i_Record);

    XPathOutputList& m_Records;
    bool m_IsAscending = true; ///< every record so far has a higher key than the one before it
    std::unordered_multimap<std::int32_t, const XPathOutputElement*> m_ByKey; ///< of the first m_Indexed records
    std::size_t m_Indexed = 0;
};

} // namespace XmlPlugin
