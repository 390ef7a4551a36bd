#include "functions/XPathContextFunctions.h"

#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

namespace
{

bool isRootOrNull(const Node* i_pNode) noexcept
{
    return !i_pNode || !i_pNode->getParent();
}

std::size_t sizeOf(const XPathEvalContext* i_pContext) noexcept
{
    return i_pContext && i_pContext->m_pNodes ? i_pContext->m_pNodes->size() : 0;
}

/// Place of \p i_pNode in the list, counted from 1; 0 when it is not there. A node stands in a
/// list once, so the list's own idea of where it is need only be checked.
std::size_t placeOf(const Node* i_pNode, const XPathEvalContext* i_pContext)
{
    const std::size_t size = sizeOf(i_pContext);
    if (size == 0)
    {
        return 0;
    }
    const NodeVector& nodes = *i_pContext->m_pNodes;
    if (i_pContext->m_Current < size && nodes[i_pContext->m_Current] == i_pNode)
    {
        return i_pContext->m_Current + 1;
    }
    const auto found = std::find(nodes.begin(), nodes.end(), i_pNode);
    return found == nodes.end() ? 0 : static_cast<std::size_t>(found - nodes.begin()) + 1;
}

} // namespace

TErrorCode XPathFunction_count::evaluate()
{
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS && parameter(0).GetDataType() == NodeSetType)
    {
        createOutputExpression(parameter(0).GetExpressionNumb());
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_count::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_last::evaluate()
{
    createOutputExpression(isRootOrNull(m_pStartNode) ? 1.0 : static_cast<double>(sizeOf(m_EvalContext)));
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_last::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

TErrorCode XPathFunction_position::evaluate()
{
    const std::size_t place = isRootOrNull(m_pStartNode) ? 1 : placeOf(m_pStartNode, m_EvalContext);
    if (place > 0)
    {
        createOutputExpression(static_cast<double>(place));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_position::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

TErrorCode XPathFunction_name::evaluate()
{
    const Node* pNode = nullptr;
    if (m_Parameters.size() == 1)
    {
        // D-66: an empty node set has no name, not an empty one. XPath 1.0 says "".
        const XPathOutputList& records = parameter(0).getNodes();
        pNode = records.empty() ? nullptr : records.front()->m_pNode;
    }
    else if (sizeOf(m_EvalContext) > 0)
    {
        pNode = m_pStartNode;
    }
    if (pNode)
    {
        createOutputExpression(viewOf(pNode->name()));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_name::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

TErrorCode XPathFunction_localname::evaluate()
{
    // D-59: local-name() fails with -102. XPath 1.0 gives the name without its prefix.
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_localname::evaluate()", L"result = ", XML_ERROR_NOT_IMPLEMENTED);
    return XML_ERROR_NOT_IMPLEMENTED;
}

} // namespace XmlPlugin
