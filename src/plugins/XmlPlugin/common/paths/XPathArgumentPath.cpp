// The part of an operand that evaluates it as a location path. Here the engine meets itself: an operand is a path, a
// path has predicates, and a predicate is an expression with operands.
#include "paths/XPath.h"
#include "paths/XPathAxisIndex.h"
#include "paths/XPathDirectPredicate.h"
#include "paths/XPathDirectWalk.h"
#include "paths/XPathPlaces.h"
#include "values/XPathArgument.h"
#include "values/XPathBudget.h"
#include "values/XPathOutputCollector.h"
#include "values/XPathOutputList.h"
#include "values/XPathPlan.h"
#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"

#include <cstddef>
#include <memory>
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

} // namespace

/// What an operand keeps of its path from one node of a predicate's list to the next.
class XPathOperandPath
{
public:
    int placeOf(const Node& i_Node) { return m_Places.of(i_Node); }

    /// Where the first branch of the path behind the prefix is taken up.
    struct Beginning
    {
        bool isKnown = false;
        Node* m_pNode = nullptr; ///< when known: null where the prefix leads to no node
    };

    /// Follows the prefix "parent/name[position()=place]/" from the parent \p i_Parent of \p i_Node.
    Beginning follow(Node& i_Node, const Node& i_Parent)
    {
        const std::wstring_view name = viewOf(i_Node.name());
        if (!isPlainName(i_Parent))
        {
            // Its name is read as an axis and another name, which it has not.
            return {true, nullptr};
        }
        const std::size_t colons = name.find(L"::");
        if (colons == std::wstring_view::npos)
        {
            return {true, &i_Node};
        }
        const std::wstring_view test = name.substr(colons + 2);
        const bool isChildStep = !test.empty() && &i_Node != &i_Parent && isChildAxis(name.substr(0, colons));
        return isChildStep ? Beginning{true, m_Places.find(i_Parent, test, placeOf(i_Node))} : Beginning{};
    }

    /// The path behind two steps that stand for its prefix.
    XPath& relative(std::wstring_view i_Path)
    {
        if (!m_pRelative)
        {
            m_pRelative = std::make_unique<XPath>(String(L"*/*/").concat(copyOf(i_Path)));
        }
        return *m_pRelative;
    }

    /// What answers for the path at any node of the tree of \p i_Node; null while walks from nodes have cost little,
    /// and where the path is no single step along a long axis.
    const XPathAxisIndex* index(const Node& i_Node)
    {
        if (m_WalkVisits < XPathAxisIndex::patience())
        {
            return nullptr;
        }
        if (!m_pIndex || !m_pIndex->knows(i_Node))
        {
            const XPathStep* pStep = longStep();
            if (!pStep || m_IsWithoutIndex)
            {
                return nullptr;
            }
            const Node* pRoot = &i_Node;
            while (pRoot->getParent())
            {
                pRoot = pRoot->getParent();
            }
            m_pIndex = std::make_unique<XPathAxisIndex>(*pStep, *pRoot);
            m_IsWithoutIndex = !m_pIndex->isUsable() || !m_pIndex->knows(i_Node);
        }
        return m_IsWithoutIndex ? nullptr : m_pIndex.get();
    }

    void walk(Node& i_Root, Node& i_Start, std::wstring_view i_Path, XPathOutputList& o_Records)
    {
        const std::uint64_t before = XPathBudget::spent();
        relative(i_Path).getValuesFrom(&i_Root, &i_Start, 1, o_Records);
        m_WalkVisits += XPathBudget::spent() - before;
    }

private:
    /// The step behind the two of the prefix when it is the only one, takes whole nodes and is along a long axis.
    const XPathStep* longStep() const
    {
        constexpr unsigned stepsWithEnd = 3;
        if (!m_pRelative || m_pRelative->branches().size() != 1)
        {
            return nullptr;
        }
        const XPathBranch& branch = m_pRelative->branches().front();
        if (branch.m_Steps.empty() || branch.m_StepCount != stepsWithEnd || !branch.m_HasEnd)
        {
            return nullptr;
        }
        const XPathStep* pStep = branch.m_Steps[2].m_pStep.get();
        const bool isPlain = pStep && !pStep->isDeep() && !pStep->hasPredicates();
        return isPlain && XPathAxisIndex::isLong(pStep->axis()) ? pStep : nullptr;
    }

    static bool isChildAxis(std::wstring_view i_Axis) { return XPathLanguage::axisCode(trimmed(i_Axis)) == ChildAxis; }

    XPathPlaces m_Places;
    std::unique_ptr<XPath> m_pRelative;
    std::uint64_t m_WalkVisits = 0;
    std::unique_ptr<XPathAxisIndex> m_pIndex;
    bool m_IsWithoutIndex = false; ///< the tree is not of the kind that has one
};

void XPathOperandPathDeleter::operator()(XPathOperandPath* i_pPath) const noexcept
{
    delete i_pPath;
}

XPathOperandPath& XPathArgument::path()
{
    if (!m_pPath)
    {
        m_pPath.reset(new XPathOperandPath);
    }
    return *m_pPath;
}

void XPathArgument::EvaluateXPath()
{
    const Trace trace(s_Tracer, L"PathArgument::EvaluateXPath()");
    if (GetDataType() != NodeSetType)
    {
        return;
    }
    XML_TRACE(trace, TraceInformation) << L" Datatype is NodeSetType ";
    m_Value.setCounted(0);
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
        // The place is put before a relative path only.
        const bool isPlaceAsked = m_RootPosition == OwnPlace && m_StartNode && isRelativePath(stringView());
        const int position = isPlaceAsked ? path().placeOf(*m_StartNode) : m_RootPosition;
        // Nothing is put before a path from the root, which nearly all are.
        const bool isFromRoot = (!m_StartNode || !m_StartNode->getParent()) && position < 1;
        const bool isAsWritten = isFromRoot && isQuick;
        const String query = isAsWritten ? String() : addPrefixToXPath(stringView(), position, m_StartNode);
        XML_TRACE(trace, TraceInformation) << L"XPath query = " << query;
        const std::wstring_view text = isAsWritten ? stringView() : viewOf(query);
        const bool isAbsolute = text.size() > 1 && text[0] == L'/' && text[1] != L'/';
        XPath path(Lent{text});
        Node* pStart = isAbsolute && pNode ? getXMLRootNode(pNode) : pNode;
        std::size_t counted = 0;
        if (m_IsOnlyCounted && path.countValues(pStart, counted))
        {
            m_Value.setCounted(counted);
            return;
        }
        path.getValues(pStart, records);
    }
    m_Value.appendNodes(std::move(records));
    XML_TRACE(trace, TraceInformation) << L" Output node list size " << getNodes().size();
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
    std::size_t counted = 0;
    if (m_IsOnlyCounted && XPathDirectWalk::count(*m_pPlan, start, counted))
    {
        m_Value.setCounted(counted);
        return true;
    }
    return XPathDirectWalk::select(*m_pPlan, start, m_Value.nodes());
}

/// The prefix that `addPrefixToXPath` puts before a relative path leads from the parent to the
/// start node itself, by its name and its place among its namesakes. So the path is compiled once
/// behind two steps that stand for the prefix, and taken up at the second of them with the start
/// node, instead of looking among all siblings for the one at that place. False where the prefix
/// is not of that kind.
bool XPathArgument::evaluateFromOwnPlace(Node* i_pRoot, XPathOutputList& o_Records)
{
    if (m_RootPosition != OwnPlace || !m_StartNode || !isRelativePath(stringView()))
    {
        return false;
    }
    const XPathOperandPath::Beginning beginning = path().follow(*m_StartNode, *i_pRoot);
    if (!beginning.isKnown)
    {
        return false;
    }
    if (!beginning.m_pNode)
    {
        // Other branches of a union have no prefix.
        return stringView().find(L'|') == std::wstring_view::npos;
    }
    const bool isIndexEnough = m_IsOnlyCounted || m_IsFirstEnough;
    const XPathAxisIndex* pIndex = isIndexEnough ? path().index(*beginning.m_pNode) : nullptr;
    if (!pIndex)
    {
        path().walk(*i_pRoot, *beginning.m_pNode, stringView(), o_Records);
    }
    else if (m_IsOnlyCounted)
    {
        m_Value.setCounted(pIndex->count(*beginning.m_pNode));
    }
    else if (const Node* pFirst = pIndex->first(*beginning.m_pNode))
    {
        XPathOutputCollector output(o_Records);
        XPathLeafValue().add(*pFirst, output);
    }
    return true;
}

/// The same with the prefix as it is, for the records to say: the path is compiled for each start node then.
TRACE_COLD bool XPathArgument::evaluateWithRecords(Node* i_pRoot, XPathOutputList& o_Records)
{
    const bool hasPlace = m_StartNode && m_StartNode->getParent() && (m_RootPosition > 0 || m_RootPosition == OwnPlace);
    if (!hasPlace || !isPlainName(*m_StartNode) || !isPlainName(*i_pRoot) || !isRelativePath(stringView()))
    {
        return false;
    }
    const int place = path().placeOf(*m_StartNode);
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
