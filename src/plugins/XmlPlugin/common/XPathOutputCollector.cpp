#include "XPathOutputCollector.h"

#include <algorithm>

namespace XmlPlugin
{

void XPathOutputCollector::add(std::unique_ptr<XPathOutputElement> i_pRecord)
{
    if (!m_Records.empty() && i_pRecord->m_OrderKey <= m_Records.back()->m_OrderKey)
        m_IsAscending = false;
    m_Records.push_back(i_pRecord.get());
    static_cast<void>(i_pRecord.release());
}

void XPathOutputCollector::addUnlessPresent(std::unique_ptr<XPathOutputElement> i_pRecord)
{
    if (!isPresent(*i_pRecord))
        add(std::move(i_pRecord));
}

bool XPathOutputCollector::isPresent(const XPathOutputElement& i_Record)
{
    // Most walks go in document order, where a higher key than the last one is new.
    if (m_Records.empty() || (m_IsAscending && i_Record.m_OrderKey > m_Records.back()->m_OrderKey))
        return false;
    for (; m_Indexed < m_Records.size(); ++m_Indexed)
        m_ByKey.emplace(m_Records[m_Indexed]->m_OrderKey, m_Records[m_Indexed]);
    const auto [begin, end] = m_ByKey.equal_range(i_Record.m_OrderKey);
    return std::any_of(begin, end, [&](const auto& i_Entry) { return i_Entry.second->m_NodeText == i_Record.m_NodeText; });
}

void XPathOutputCollector::orderByKey()
{
    if (m_IsAscending)
        return;
    const auto isBefore = [](const XPathOutputElement* i_pLeft, const XPathOutputElement* i_pRight)
    { return i_pLeft->m_OrderKey < i_pRight->m_OrderKey; };
    std::stable_sort(m_Records.begin(), m_Records.end(), isBefore);
    std::size_t kept = 0;
    for (XPathOutputElement* pRecord : m_Records)
    {
        if (kept > 0 && m_Records[kept - 1]->m_OrderKey == pRecord->m_OrderKey)
            delete pRecord;
        else
            m_Records[kept++] = pRecord;
    }
    m_Records.resize(kept);
    m_ByKey.clear();
    m_Indexed = 0;
    m_IsAscending = true;
}

} // namespace XmlPlugin
