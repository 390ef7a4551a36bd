#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

class Node;

namespace XmlPlugin
{

/// Finds the position of a node among its siblings of the same name, counted from 1; the root has position 1. Goes
/// through the children of a parent only once, whatever the order of the questions.
///
/// Ownership: borrows the tree, which must not change as long as this lives.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/paths/XPathPredicateTest.cpp
class XPathPlaces
{
public:
    int of(const Node& i_Node);
    /// The element child with this name at this position; null if there is none.
    Node* find(const Node& i_Parent, std::wstring_view i_Name, int i_Place);

private:
    using Namesakes = std::unordered_map<std::wstring_view, std::vector<Node*>>;

    const Namesakes& childrenOf(const Node& i_Parent);

    std::unordered_map<const Node*, Namesakes> m_Children; ///< by parent
    std::unordered_map<const Node*, int> m_Places;         ///< of all of them
};

} // namespace XmlPlugin
