// The part of an operand that evaluates it as a location path. Here the engine meets itself: an operand is a path, a
// path has predicates, and a predicate is an expression with operands.
#include "paths/XPath.h"
#include "paths/XPathDirectWalk.h"
#include "paths/XPathPlaces.h"
#include "values/XPathArgument.h"
#include "values/XPathOutputList.h"
#include "values/XPathPlan.h"
#include "values/XPathQuickCode.h"
#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"

#include <utility>

XML_TRACE_SOURCE(L"XPathArgument")

namespace XmlPlugin
{

namespace
{

/// In a step's text a name with "::" would be read as an axis and a name.
bool isPlainName(const Node& i_Node) noexcept
{
    return XPathDirectPredicate::isPlainName(i_Node.nameEntry());
}

/// Whether the start node's place is put before a path.
bool isRelative(std::wstring_view i_Path) noexcept
{
    return !i_Path.empty() && (i_Path[0] != L'/' || i_Path.substr(1).starts_with(L'/'));
}

} // namespace

void XPathDeleter::operator()(XPath* i_pPath) const noexcept
{
    delete i_pPath;
}

void XPathArgument::EvaluateXPath()
{
    const Trace trace(s_Tracer, L"PathArgument::EvaluateXPath()");
    if (m_DataType != NodeSetType)
    {
        return;
    }
    XML_TRACE(trace, TraceInformation) << L" Datatype is NodeSetType ";
    m_Counted = 0;
    Node* pNode = m_StartNode;
    if (pNode && pNode->getParent())
    {
        pNode = pNode->getParent();
    }

    const bool isQuick = XPathQuickCode::isAllowed();
    if (isQuick && m_pPlan && evaluateByPlan(pNode))
    {
        return;
    }
    XPathOutputList records;
    const bool isDone = isQuick ? evaluateFromOwnPlace(pNode, records) : evaluateWithRecords(pNode, records);
    if (!isDone)
    {
        const int position =
            m_RootPosition == OwnPlace && m_StartNode ? XPathPlaces().of(*m_StartNode) : m_RootPosition;
        // Nothing is put before a path from the root, which nearly all are.
        const bool isFromRoot = (!m_StartNode || !m_StartNode->getParent()) && position < 1;
        const bool isAsWritten = isFromRoot && isQuick;
        const String query = isAsWritten ? String() : addPrefixToXPath(stringView(), position, m_StartNode);
        XML_TRACE(trace, TraceInformation) << L"XPath query = " << query;
        const std::wstring_view text = isAsWritten ? stringView() : query.view();
        const bool isAbsolute = text.size() > 1 && text[0] == L'/' && text[1] != L'/';
        XPath path(Lent{text});
        Node* pStart = isAbsolute && pNode ? getXMLRootNode(pNode) : pNode;
        if (m_IsOnlyCounted && path.countValues(pStart, m_Counted))
        {
            return;
        }
        path.getValues(pStart, records);
    }
    m_Nodes.append(std::move(records));
    XML_TRACE(trace, TraceInformation) << L" Output node list size " << m_Nodes.size();
}

/// Quick code for a plain path that begins at the root or, see below, at the start node itself. False where the general
/// code must answer.
bool XPathArgument::evaluateByPlan(Node* i_pRoot)
{
    if (!i_pRoot)
    {
        return true; // no node, no records
    }
    const XPathPlanStep* const pFirst = m_pPlan->m_First.m_pSteps;
    const bool isBelow = m_RootPosition == OwnPlace;
    const bool isRelative = !m_pPlan->m_IsAbsolute && !(pFirst && pFirst->m_IsDeep);
    const bool isPossible = isBelow ? isRelative && isPlainName(*m_StartNode) && isPlainName(*i_pRoot)
                                    : m_RootPosition < 1 && !m_StartNode->getParent();
    if (!isPossible)
    {
        return false;
    }
    const XPathDirectWalk::Start start{i_pRoot, m_StartNode, isBelow};
    return (m_IsOnlyCounted && XPathDirectWalk::count(*m_pPlan, start, m_Counted)) ||
           XPathDirectWalk::select(*m_pPlan, start, m_Nodes);
}

/// The prefix that `addPrefixToXPath` puts before a relative path leads from the parent to the
/// start node itself, by its name and its place among its namesakes. So the path is compiled once
/// behind two steps that stand for the prefix, and taken up at the second of them with the start
/// node, instead of looking among all siblings for the one at that place. False where the prefix
/// is not of that kind.
bool XPathArgument::evaluateFromOwnPlace(Node* i_pRoot, XPathOutputList& o_Records)
{
    if (m_RootPosition != OwnPlace || !m_StartNode || !isPlainName(*m_StartNode) || !isPlainName(*i_pRoot))
    {
        return false;
    }
    if (!m_pRelativePath)
    {
        const String path = GetExpressionString();
        if (!isRelative(path.view()))
        {
            return false;
        }
        m_pRelativePath.reset(new XPath(String(L"*/*/").concat(path)));
    }
    m_pRelativePath->getValuesFrom(i_pRoot, m_StartNode, 1, o_Records);
    return true;
}

/// The same with the prefix as it is, for the records to say: the path is compiled for each start node then.
TRACE_COLD bool XPathArgument::evaluateWithRecords(Node* i_pRoot, XPathOutputList& o_Records) const
{
    const bool hasPlace = m_StartNode && m_StartNode->getParent() && (m_RootPosition > 0 || m_RootPosition == OwnPlace);
    if (!hasPlace || !isPlainName(*m_StartNode) || !isPlainName(*i_pRoot) || !isRelative(stringView()))
    {
        return false;
    }
    const int place = XPathPlaces().of(*m_StartNode);
    if (m_RootPosition != OwnPlace && m_RootPosition != place)
    {
        return false;
    }
    const Trace trace(s_Tracer, L"PathArgument::EvaluateXPath()");
    const String query = addPrefixToXPath(stringView(), place, m_StartNode);
    XML_TRACE(trace, TraceInformation) << L"XPath query = " << query;
    XPath(query).getValuesFrom(i_pRoot, m_StartNode, 1, o_Records);
    return true;
}

} // namespace XmlPlugin
