#pragma once

#include "XPathOutputElement.h"

namespace XmlPlugin
{

/// A list of records that destroys them at its end.
class XPathRecords
{
public:
    XPathRecords() = default;
    ~XPathRecords() { destroyRecords(m_List); }
    XPathRecords(const XPathRecords&) = delete;
    XPathRecords& operator=(const XPathRecords&) = delete;

    XPathOutputList& list() noexcept { return m_List; }
    const XPathOutputList& list() const noexcept { return m_List; }

private:
    XPathOutputList m_List;
};

} // namespace XmlPlugin
