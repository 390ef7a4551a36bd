#include "values/XPathOutputCollector.h"

#include <algorithm>

namespace XmlPlugin
{

namespace
{

bool isBefore(const XPathOutputElement* i_pLeft, const XPathOutputElement* i_pRight) noexcept
{
    return i_pLeft->m_OrderKey < i_pRight->m_OrderKey;
}

} // namespace

bool XPathOutputCollector::isIndexed(const XPathOutputElement& i_Record)
{
    for (; m_Indexed < m_Records.size(); ++m_Indexed)
    {
        m_ByKey.emplace(m_Records[m_Indexed]->m_OrderKey, m_Records[m_Indexed]);
    }
    const auto [begin, end] = m_ByKey.equal_range(i_Record.m_OrderKey);
    return std::any_of(begin, end,
                       [&](const auto& i_Entry) { return i_Entry.second->m_NodeText == i_Record.m_NodeText; });
}

void XPathOutputCollector::orderByKey()
{
    if (isAscending())
    {
        return;
    }
    mergeRuns();
    dropEqualKeys();
    forgetOrder();
    m_Size = m_Records.size();
    m_LastKey = m_Records.back()->m_OrderKey;
}

/// Equal keys keep their order.
void XPathOutputCollector::mergeRuns()
{
    constexpr std::size_t fewRuns = 8;
    if (m_RunStarts.size() > fewRuns)
    {
        std::stable_sort(m_Records.begin(), m_Records.end(), isBefore);
        return;
    }
    m_RunStarts.push_back(m_Size);
    const auto place = [this](std::size_t i_Index) { return m_Records.begin() + static_cast<std::ptrdiff_t>(i_Index); };
    for (std::size_t run = 0; run + 1 < m_RunStarts.size(); ++run)
    {
        std::inplace_merge(m_Records.begin(), place(m_RunStarts[run]), place(m_RunStarts[run + 1]), isBefore);
    }
}

void XPathOutputCollector::dropEqualKeys()
{
    const auto isSame = [](const XPathOutputElement* i_pLeft, const XPathOutputElement* i_pRight)
    { return i_pLeft->m_OrderKey == i_pRight->m_OrderKey; };
    m_Records.truncate(std::unique(m_Records.begin(), m_Records.end(), isSame));
}

void XPathOutputCollector::clear() noexcept
{
    m_Records.clear();
    m_Size = 0;
    forgetOrder();
}

void XPathOutputCollector::forgetOrder() noexcept
{
    m_RunStarts.clear();
    m_ByKey.clear();
    m_Indexed = 0;
}

} // namespace XmlPlugin
