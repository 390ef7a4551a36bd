#include "paths/XPathStep.h"

#include "paths/XPathPredicate.h"
#include "values/XPathQuickCode.h"
#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlAssert.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <string_view>

XML_TRACE_SOURCE(L"XPathStep")

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

namespace
{

/// Whether there is a "]" behind each "[", and none where no "[" is.
bool areBracketsClosed(std::wstring_view i_Text) noexcept
{
    const std::size_t lastOpen = i_Text.rfind(L'[');
    const std::size_t close = i_Text.find(L']', lastOpen == std::wstring_view::npos ? 0 : lastOpen);
    return (lastOpen == std::wstring_view::npos) == (close == std::wstring_view::npos);
}

} // namespace

// --- Building -----------------------------------------------------------------------------------

void XPathStepEnd::operator()(XPathStep* i_pStep) const noexcept
{
    i_pStep->~XPathStep();
}

XPathStep::XPathStep(std::pmr::memory_resource& io_Memory) : m_Predicates(&io_Memory) {}

template <class Kind>
XPathStepPointer XPathStep::makeIn(std::pmr::memory_resource& io_Memory)
{
    return XPathStepPointer(new (io_Memory.allocate(sizeof(Kind), alignof(Kind))) Kind(io_Memory));
}

XPathStepPointer XPathStep::make(unsigned i_StepType, std::pmr::memory_resource& io_Memory)
{
    switch (i_StepType)
    {
    case root:
        return makeIn<XPathRootStep>(io_Memory);
    case mid:
        return makeIn<XPathMidStep>(io_Memory);
    case leaf:
        return makeIn<XPathLeafStep>(io_Memory);
    default:
        wideAssert(L"i_StepType == root || i_StepType == mid || i_StepType== leaf", s_TraceSource, __LINE__);
    }
    return nullptr;
}

TErrorCode XPathStep::create(const XPathStepText& i_Text, unsigned i_StepType, std::pmr::memory_resource& io_Memory,
                             XPathStepPointer& o_pStep)
{
    o_pStep.reset();
    XPathStepPointer pStep = make(i_StepType, io_Memory);
    AxisCode axis = ChildAxis;
    std::wstring_view name;
    const std::wstring_view text = trimmed(i_Text.m_Step);
    if (const TErrorCode code = readTest(text, axis, name); code != XML_SUCCESS)
    {
        return code;
    }
    pStep->m_StepType = i_StepType;
    pStep->m_PreviousText = i_Text.m_Previous;
    pStep->setTest(axis, name);
    pStep->cutPredicates(text);
    o_pStep = std::move(pStep);
    return XML_SUCCESS;
}

XPathStep::~XPathStep() = default;

bool XPathStep::isAttributeStep(std::wstring_view i_Text)
{
    AxisCode axis = ChildAxis;
    std::wstring_view name;
    return readTest(trimmed(i_Text), axis, name) == XML_SUCCESS && axis == AttributeAxis;
}

/// Step text: (axis "::" | "@")? node-test predicate*, or "." or "..", with predicates too.
TErrorCode XPathStep::readTest(std::wstring_view i_Text, AxisCode& o_Axis, std::wstring_view& o_Name)
{
    const Trace trace(s_Tracer, L"XPathStep::create");
    if (i_Text.empty())
    {
        return XML_PLUGIN_ERROR_XPATH_EMPTY_STEP;
    }
    const std::wstring_view test = trimmed(i_Text.substr(0, i_Text.find(L'[')));
    if (test == L".."sv)
    {
        o_Axis = ParentAxis;
        o_Name = L"*"sv;
    }
    else if (test == L"."sv)
    {
        o_Axis = SelfAxis;
        o_Name = L"*"sv;
    }
    else if (const std::size_t colons = test.find(L"::"sv); colons != std::wstring_view::npos)
    {
        o_Axis = XPathLanguage::axisCode(trimmed(test.substr(0, colons)));
        o_Name = trimmed(test.substr(colons + 2));
    }
    else
    {
        o_Axis = test.starts_with(L'@') ? AttributeAxis : ChildAxis;
        o_Name = trimmed(test.substr(o_Axis == AttributeAxis ? 1 : 0));
    }
    const bool isWellFormed = areBracketsClosed(i_Text) && !o_Name.empty();
    const TErrorCode code = isWellFormed ? XML_SUCCESS : XML_PLUGIN_ERROR_XPATH_MALFORMED_STEP;
    XML_TRACE(trace, TraceInformation) << L"step = " << copyOf(i_Text) << L" result = " << code;
    return code;
}

void XPathStep::setTest(AxisCode i_Axis, std::wstring_view i_Name)
{
    m_Axis = i_Axis;
    m_Name = XmlNameView(i_Name);
    m_IsAnyName = i_Name == L"*"sv || i_Name == L"node()"sv;
    using Kind = XPathLeafValue::Kind;
    if (i_Axis == ChildAxis)
    {
        m_Taken = i_Name == L"text()"sv ? Kind::Text : Kind::WholeNode;
    }
    else if (i_Axis == AttributeAxis)
    {
        m_Taken = i_Name == L"*"sv ? Kind::AllAttributes : Kind::OneAttribute;
    }
}

/// D-47: brackets are not nested. Each "[" is paired with the next "]", so that "a[b[1]]"
/// has the predicates "[b[1]" and "[1]", whatever stands behind. XPath 1.0 says that "[b[1]]" is one.
void XPathStep::cutPredicates(std::wstring_view i_Text)
{
    const auto count = std::count(i_Text.begin(), i_Text.end(), L'[');
    m_Predicates.reserve(static_cast<std::size_t>(count));
    std::size_t close = 0;
    for (std::size_t open = i_Text.find(L'['); open != std::wstring_view::npos; open = i_Text.find(L'[', open + 1))
    {
        if (close < open)
        {
            close = i_Text.find(L']', open);
        }
        m_Predicates.emplace_back(i_Text.substr(open, close - open + 1));
        if (m_Predicates.back().isEmpty())
        {
            m_EmptyPredicatesEnd = m_Predicates.size();
        }
    }
}

// --- Candidates and filters ---------------------------------------------------------------------

bool XPathStep::matches(const Node& i_Node) const noexcept
{
    return m_IsAnyName || m_Name == i_Node.nameEntry();
}

TErrorCode XPathStep::filter(NodeVector& io_Nodes)
{
    if (!hasPredicates())
    {
        return XML_SUCCESS;
    }
    std::erase_if(io_Nodes, [this](const Node* i_pNode) { return !matches(*i_pNode); });
    return applyPredicates(io_Nodes);
}

TErrorCode XPathStep::applyPredicates(NodeVector& io_Nodes)
{
    for (std::size_t i = 0; i < m_Predicates.size(); ++i)
    {
        // Only an empty predicate says anything about an empty list; the others write their records.
        if (io_Nodes.empty() && i >= m_EmptyPredicatesEnd && XPathQuickCode::isAllowed())
        {
            break;
        }
        if (const TErrorCode code = m_Predicates[i].fiterNodes(io_Nodes); code != XML_SUCCESS)
        {
            return code;
        }
    }
    return XML_SUCCESS;
}

std::vector<MarkedNode> XPathStep::mark(const NodeVector& i_Nodes)
{
    std::vector<MarkedNode> marked;
    marked.reserve(i_Nodes.size());
    for (Node* pNode : i_Nodes)
    {
        marked.push_back({pNode, false});
    }
    if (!hasPredicates())
    {
        return marked;
    }

    NodeVector kept;
    for (Node* pNode : i_Nodes)
    {
        if (matches(*pNode))
        {
            kept.push_back(pNode);
        }
    }
    if (applyPredicates(kept) != XML_SUCCESS)
    {
        kept.clear();
    }
    // What is kept stands in the order of the whole list.
    auto pKept = kept.begin();
    for (MarkedNode& node : marked)
    {
        if (pKept != kept.end() && *pKept == node.m_pNode)
        {
            ++pKept;
        }
        else
        {
            node.m_IsMarked = matches(*node.m_pNode);
        }
    }
    return marked;
}

TErrorCode XPathStep::listElementChildren(const Node* i_pNode, NodeVector& o_Nodes)
{
    o_Nodes.clear();
    if (!i_pNode)
    {
        return XML_ERROR_NULL_ARGUMENT;
    }
    for (Node* pChild : i_pNode->children())
    {
        if (pChild->getType() == Node::ElementNode)
        {
            o_Nodes.push_back(pChild);
        }
    }
    return XML_SUCCESS;
}

TErrorCode XPathStep::findTextChild(const Node* i_pNode, const Node*& o_pText)
{
    o_pText = nullptr;
    if (!i_pNode)
    {
        return XML_ERROR_NULL_ARGUMENT;
    }
    if (!i_pNode->mayHaveText())
    {
        return XML_SUCCESS;
    }
    for (const Node* pChild : i_pNode->children())
    {
        if (pChild->getType() == Node::CharacterDataNode)
        {
            o_pText = pChild;
            break;
        }
    }
    return XML_SUCCESS;
}

TErrorCode XPathStep::listCandidates(const Node* i_pNode, NodeVector& o_Nodes)
{
    return listElementChildren(i_pNode, o_Nodes);
}

TErrorCode XPathStep::evaluate(const Node*, XPathOutputCollector&)
{
    return XML_PLUGIN_ERROR_XPATH_NODE_WITHOUT_VALUE;
}

TErrorCode XPathMidStep::listCandidates(const Node* i_pNode, NodeVector& o_Nodes)
{
    TErrorCode code = listElementChildren(i_pNode, o_Nodes);
    if (code == XML_SUCCESS)
    {
        code = filter(o_Nodes);
    }
    if (code != XML_SUCCESS)
    {
        o_Nodes.clear();
    }
    return code;
}

TErrorCode XPathLeafStep::listCandidates(const Node*, NodeVector& o_Nodes)
{
    o_Nodes.clear();
    return XML_SUCCESS;
}

TErrorCode XPathLeafStep::evaluate(const Node* i_pNode, XPathOutputCollector& io_Output)
{
    return i_pNode ? leafValue().add(*i_pNode, io_Output) : XML_ERROR_NULL_ARGUMENT;
}

} // namespace XmlPlugin
