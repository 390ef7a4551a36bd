#pragma once

#include <cstddef>
#include <vector>

class Node;

namespace XmlPlugin
{

using NodeVector = std::vector<Node*>;

/// The list of nodes that a predicate filters, as `name()`, `last()` and `position()` see it.
///
/// Ownership: the predicate's; it outlives the evaluation of its nodes.
struct XPathEvalContext
{
    const NodeVector* m_pNodes = nullptr; ///< the whole list as the predicate found it
    std::size_t m_Current = 0;            ///< index of the node that is evaluated, which is what `position()` asks
};

} // namespace XmlPlugin
