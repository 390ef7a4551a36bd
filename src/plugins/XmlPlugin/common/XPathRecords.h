#pragma once

#include "XPathOutputList.h"

namespace XmlPlugin
{

/// The records that a caller receives, for as long as it looks at them.
class XPathRecords
{
public:
    XPathRecords() = default;
    XPathRecords(const XPathRecords&) = delete;
    XPathRecords& operator=(const XPathRecords&) = delete;

    XPathOutputList& list() noexcept { return m_List; }
    const XPathOutputList& list() const noexcept { return m_List; }

private:
    XPathOutputList m_List;
};

} // namespace XmlPlugin
