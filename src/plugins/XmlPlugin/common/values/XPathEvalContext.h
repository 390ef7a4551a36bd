#pragma once

#include <cstddef>
#include <vector>

class Node;

namespace XmlPlugin
{

using NodeVector = std::vector<Node*>;

/// The list of nodes that a predicate filters, as `name()`, `last()` and `position()` see it.
///
/// Ownership: owned by the predicate; must outlive the evaluation of the nodes.
struct XPathEvalContext
{
    const NodeVector* m_pNodes = nullptr; ///< the whole list, as it was before the predicate
    std::size_t m_Current = 0;            ///< index of the node under evaluation, for `position()`
};

} // namespace XmlPlugin
