#pragma once

#include "base/String.h"

#include <unordered_map>

class Node;

namespace XmlPlugin
{

/// Counts nodes' places among their parents' element children of the same name, from 1; the root's
/// place is 1. Asked for siblings in document order, it goes through them once.
///
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathPredicateTest.cpp
class XPathPlaces
{
public:
    int of(const Node& i_Node);

private:
    bool countUpTo(const Node& i_Node);

    const Node* m_pParent = nullptr;
    const Node* m_pNext = nullptr; ///< first sibling that is not counted yet
    std::unordered_map<String, int> m_Counts;
};

} // namespace XmlPlugin
