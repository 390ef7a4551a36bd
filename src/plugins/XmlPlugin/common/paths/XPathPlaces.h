#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

class Node;

namespace XmlPlugin
{

/// Counts nodes' places among their parents' element children of the same name, from 1; the root's
/// place is 1. Goes through the children of a parent once, whatever the order of the questions.
///
/// Ownership: borrows the tree, which must not change as long as this lives.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathPredicateTest.cpp
class XPathPlaces
{
public:
    int of(const Node& i_Node);
    /// The element child of this name at this place; null when there is none.
    Node* find(const Node& i_Parent, std::wstring_view i_Name, int i_Place);

private:
    using Namesakes = std::unordered_map<std::wstring_view, std::vector<Node*>>;

    const Namesakes& childrenOf(const Node& i_Parent);

    std::unordered_map<const Node*, Namesakes> m_Children; ///< by parent
    std::unordered_map<const Node*, int> m_Places;         ///< of all of them
};

} // namespace XmlPlugin
