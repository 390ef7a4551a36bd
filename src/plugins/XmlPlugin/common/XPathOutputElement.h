#pragma once

#include "base/String.h"

#include <cstdint>
#include <vector>

class Node;

namespace XmlPlugin
{

/// One selected value.
///
/// Ownership: made on the heap by a leaf step or by `getValues`; whoever holds the list that it
/// was put in deletes it. The source node belongs to its tree.
struct XPathOutputElement
{
    String m_NodeText;             ///< text of the node, for results that are nodes or their text
    String m_Value;                ///< what the host is given
    std::int32_t m_OrderKey = 0;   ///< results are ordered by it, and equal keys are one result
    const Node* m_pNode = nullptr; ///< null for a scalar result
};

using XPathOutputList = std::vector<XPathOutputElement*>;

/// Deletes every record and empties the list.
inline void destroyRecords(XPathOutputList& io_Records) noexcept
{
    for (XPathOutputElement* pRecord : io_Records)
        delete pRecord;
    io_Records.clear();
}

} // namespace XmlPlugin
