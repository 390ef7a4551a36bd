#include "paths/XPathPredicate.h"

#include "compile/XPathExpressionsParser.h"
#include "compile/XPathPlainReader.h"
#include "paths/XPathDirectPredicate.h"
#include "paths/XPathPlaces.h"
#include "values/XPathBudget.h"
#include "values/XPathOutputList.h"
#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <cstdint>

XML_TRACE_SOURCE(L"XPathPredicate")

namespace XmlPlugin
{

namespace
{

/// Evaluating an expression at a node takes as long as visiting so many.
constexpr std::uint64_t s_ExpressionVisits = 8;

} // namespace

XPathPredicate::XPathPredicate(std::wstring_view i_Expression) : m_Text(i_Expression)
{
    if (XPathQuickCode::isAllowed())
    {
        m_Plan = XPathPlainReader::readPredicate(i_Expression);
    }
}

XPathPredicate::XPathPredicate(XPathPredicate&&) noexcept = default;

XPathPredicate::~XPathPredicate() = default;

String XPathPredicate::expression() const
{
    return copyOf(m_Text);
}

TErrorCode XPathPredicate::fiterNodes(NodeVector& io_Nodes)
{
    const Trace trace(s_Tracer, L"XPathPredicate::fiterNodes");
    if (isEmpty())
    {
        XML_TRACE(trace, TraceInformation) << L"m_Expression ";
        XML_TRACE(trace, TraceError) << L"XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION";
        return XML_PLUGIN_ERROR_XPATH_UNSUPPORTED_EXPRESSION;
    }
    const bool isQuick = XPathQuickCode::isAllowed();
    if (isQuick && (io_Nodes.empty() || (m_Plan.isPlain() && XPathDirectPredicate(m_Plan).filter(io_Nodes))))
    {
        return XML_SUCCESS;
    }
    return filterByExpression(io_Nodes);
}

TErrorCode XPathPredicate::filterByExpression(NodeVector& io_Nodes)
{
    const Trace trace(s_Tracer, L"XPathPredicate::fiterNodes");
    XML_TRACE(trace, TraceInformation) << L"m_Expression " << copyOf(expressionView());
    XML_TRACE(trace, TraceInformation) << L"io_Nodes.size() = " << io_Nodes.size();

    TErrorCode result = XML_SUCCESS;
    NodeVector kept;
    XPathEvalContext context{&io_Nodes, 0};
    const bool isQuick = XPathQuickCode::isAllowed(); // only the records say the place
    if (!isQuick && !m_pPlaces)
    {
        m_pPlaces = std::make_unique<XPathPlaces>();
    }
    for (; context.m_Current < io_Nodes.size() && !XPathBudget::isSpent(); ++context.m_Current)
    {
        Node* pNode = io_Nodes[context.m_Current];
        XPathBudget::spend(s_ExpressionVisits);
        XML_TRACE(trace, TraceInformation) << L"Node to check = " << pNode->name();
        if (!m_pParser)
        {
            m_pParser = std::make_unique<XPathExpressionsParser>(copyOf(expressionView()));
        }
        m_pParser->setEvalContext(&context);
        m_pParser->setRootPosition(isQuick ? XPathExpression::OwnPlace : m_pPlaces->of(*pNode));
        XML_TRACE(trace, TraceInformation)
            << L"root position = " << m_pPlaces->of(*pNode) << L" prevNodeName = " << pNode->name();
        result = m_pParser->runParser(pNode);
        XML_TRACE(trace, TraceInformation) << L"result after runParser = " << result;
        m_HasFailed = m_HasFailed || result != XML_SUCCESS;
        if (result == XML_SUCCESS && isKept(*pNode, context.m_Current + 1))
        {
            kept.push_back(pNode);
        }
    }
    if (m_pParser)
    {
        m_pParser->setEvalContext(nullptr);
    }
    io_Nodes = std::move(kept);
    XML_TRACE(trace, TraceInformation) << L"FilteredNodes.size() = " << io_Nodes.size();
    XML_TRACE(trace, TraceInformation) << L"result = " << result;
    return result;
}

/// What the result of the run that has just ended says of its node. \p i_ListIndex: the node's
/// place in the whole list, from 1.
bool XPathPredicate::isKept(const Node& i_Node, std::size_t i_ListIndex)
{
    const Trace trace(s_Tracer, L"XPathPredicate::fiterNodes");
    XPathOutputList values;
    if (m_pParser->getValues(values) != XML_SUCCESS)
    {
        return false;
    }
    XML_TRACE(trace, TraceInformation) << L"result OK. values.size() = " << values.size();
    if (values.empty())
    {
        return false;
    }
    const String value = values.front()->m_Value;
    switch (m_pParser->getOutputType())
    {
    case BooleanType:
        XML_TRACE(trace, TraceInformation) << L"BooleanType, Node = " << i_Node.name();
        return viewOf(value) == L"true";
    case NumberType:
        m_HasNumber = true;
        // D-50: compared as text, with the place in the whole list. XPath 1.0 says as numbers.
        XML_TRACE(trace, TraceInformation) << L"NumberType, value = " << value << L" Node = " << i_Node.name();
        return isSame(value, String::valueOf(static_cast<unsigned long long>(i_ListIndex)));
    case StringType:
        // D-52: any string keeps the node, the empty one too. XPath 1.0 says that the empty one drops it.
        XML_TRACE(trace, TraceInformation) << L"StringType, Node = " << i_Node.name();
        return true;
    case NodeSetType:
        XML_TRACE(trace, TraceInformation) << L"NodeSetType, Node = " << i_Node.name();
        return true;
    default:
        return false;
    }
}

} // namespace XmlPlugin
