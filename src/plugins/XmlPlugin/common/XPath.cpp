#include "XPath.h"

#include "XPathDirectWalk.h"
#include "XPathOutputCollector.h"
#include "XPathRecords.h"
#include "XPathWalk.h"
#include "XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <string_view>

XML_TRACE_SOURCE(L"XPath")

namespace XmlPlugin
{

namespace
{

constexpr std::wstring_view s_DeepMark = L"//";

/// Where one step of a branch stands in its text.
struct XPathStepPlace
{
    std::size_t m_Begin;
    std::size_t m_Length;
    bool m_IsDeep; ///< written after "//"
};

/// The place of the next separator at or after \p i_From and its length (2 for "//"); length 0: none.
std::pair<std::size_t, std::size_t> nextSeparator(std::wstring_view i_Text, std::size_t i_From) noexcept
{
    const std::size_t slash = i_Text.find(L'/', i_From);
    if (slash == std::wstring_view::npos)
        return {i_Text.size(), 0};
    return {slash, i_Text.substr(slash + 1).starts_with(L'/') ? 2U : 1U};
}

unsigned countSeparators(std::wstring_view i_Text) noexcept
{
    unsigned count = 0;
    for (std::size_t from = 0;; ++count)
    {
        const auto [place, length] = nextSeparator(i_Text, from);
        if (length == 0)
            return count;
        from = place + length;
    }
}

std::vector<XPathStepPlace> stepPlaces(std::wstring_view i_Text, bool i_IsDeep)
{
    std::vector<XPathStepPlace> found;
    bool isDeep = i_IsDeep;
    for (std::size_t begin = 0;;)
    {
        const auto [end, separator] = nextSeparator(i_Text, begin);
        found.push_back({begin, end - begin, isDeep});
        if (separator == 0)
            return found;
        isDeep = separator == s_DeepMark.size();
        begin = end + separator;
    }
}

TErrorCode buildStep(std::wstring_view i_Branch, const std::vector<XPathStepPlace>& i_Places, std::size_t i_Index,
                     std::unique_ptr<XPathStep>& o_pStep)
{
    const auto text = [&](std::size_t i_Step)
    { return String(i_Branch.data() + i_Places[i_Step].m_Begin, i_Places[i_Step].m_Length); };
    const unsigned type = i_Index == 0                    ? XPathStep::root
                          : i_Index + 1 < i_Places.size() ? XPathStep::mid
                                                          : XPathStep::leaf;
    const TErrorCode code = XPathStep::create(text(i_Index), i_Index > 0 ? text(i_Index - 1) : String(), type, o_pStep);
    if (o_pStep)
        o_pStep->setDeep(i_Places[i_Index].m_IsDeep);
    return code;
}

/// Whether the walk goes to this step by an operation of its own instead of going down to children.
bool hasWalker(const XPathStep& i_Step) noexcept
{
    return i_Step.axis() != AttributeAxis && i_Step.axis() != ChildAxis;
}

/// Finds the steps at which a walk may come to one node several times: a deep step below another
/// deep one, and every other axis than child, with all that follows.
void markRepeats(XPathBranch& io_Branch) noexcept
{
    bool isUnique = true;
    bool isOneLevel = true; // all nodes that the walk is at are at one depth, so that their subtrees do not overlap
    for (std::size_t i = 0; i < io_Branch.m_Steps.size(); ++i)
    {
        XPathBranch::Slot& slot = io_Branch.m_Steps[i];
        if (!slot.m_pStep)
            return;
        const bool isWalked = i > 0 && hasWalker(*slot.m_pStep);
        const bool isDeep = slot.m_pStep->isDeep();
        isUnique = isUnique && !isWalked && (!isDeep || isOneLevel);
        isOneLevel = isOneLevel && !isDeep && !isWalked;
        slot.m_MayRepeat = !isUnique && (isWalked || isDeep);
    }
}

XPathBranch makeBranch(std::wstring_view i_Piece)
{
    String piece = String(i_Piece.data(), i_Piece.size()).trim();
    if (piece.length() >= 2 && piece.charAt(0) == L'/' && piece.charAt(1) != L'/')
        piece = piece.substring(1);
    const bool isDeep = piece.view().starts_with(s_DeepMark);
    if (isDeep)
        piece = piece.substring(static_cast<int>(s_DeepMark.size()));

    // Every branch ends in a leaf step: text(), an attribute, or the artificial endfunction().
    if (!piece.view().ends_with(L"text()"))
    {
        std::unique_ptr<XPathStep> pLast;
        XPathStepSplitter::getStep(piece, countSeparators(piece.view()), pLast);
        if (!pLast || pLast->axis() != AttributeAxis)
            piece += String(L"/endfunction()");
    }

    const Trace trace(s_Tracer, L" XPath::splitXPath()");
    XPathBranch branch;
    branch.m_StepCount = countSeparators(piece.view());
    XML_TRACE(trace, TraceInformation) << L" m_XPathParser.getStepCount = " << branch.m_StepCount;
    branch.m_Text = isDeep ? String(s_DeepMark.data(), s_DeepMark.size()).concat(piece) : piece;

    const std::vector<XPathStepPlace> places = stepPlaces(piece.view(), isDeep);
    branch.m_Steps.resize(places.size());
    for (std::size_t i = 0; i < places.size(); ++i)
        branch.m_Steps[i].m_Code = buildStep(piece.view(), places, i, branch.m_Steps[i].m_pStep);
    markRepeats(branch);
    branch.m_IsDirect = XPathDirectWalk::canWalk(branch);
    return branch;
}

} // namespace

// --- Splitting ----------------------------------------------------------------------------------

unsigned XPathStepSplitter::getStepCount(const String& i_Branch) noexcept
{
    const std::wstring_view text = i_Branch.view();
    return countSeparators(text.starts_with(s_DeepMark) ? text.substr(s_DeepMark.size()) : text);
}

TErrorCode XPathStepSplitter::getStep(const String& i_Branch, unsigned i_Index, std::unique_ptr<XPathStep>& o_pStep)
{
    o_pStep.reset();
    const bool isDeep = i_Branch.view().starts_with(s_DeepMark);
    const std::wstring_view text = i_Branch.view().substr(isDeep ? s_DeepMark.size() : 0);
    const std::vector<XPathStepPlace> places = stepPlaces(text, isDeep);
    if (i_Index >= places.size())
        return XML_ERROR_STEP_INDEX;
    return buildStep(text, places, i_Index, o_pStep);
}

XPath::XPath(const String& i_XPath) : m_XPath(i_XPath)
{
    const Trace trace(s_Tracer, L"XPath::XPath(const String &)");
    XML_TRACE(trace, TraceInformation) << L"XPath query = " << i_XPath;
}

XPath::~XPath() = default;

TErrorCode XPath::splitXPath()
{
    const Trace trace(s_Tracer, L" XPath::splitXPath()");
    XML_TRACE(trace, TraceInformation) << L" XPath::splitXPath()";
    const std::wstring_view text = m_XPath.view();
    for (std::size_t begin = 0; begin <= text.size();)
    {
        const std::size_t bar = std::min(text.find(L'|', begin), text.size());
        if (bar > begin)
            m_Branches.push_back(makeBranch(text.substr(begin, bar - begin)));
        begin = bar + 1;
    }
    m_IsSplit = true;
    return XML_SUCCESS;
}

// --- Evaluating ---------------------------------------------------------------------------------

TErrorCode XPath::getValues(Node* i_pRoot, XPathOutputList& o_Output)
{
    return getValuesFrom(i_pRoot, nullptr, 0, o_Output);
}

TErrorCode XPath::getValuesFrom(Node* i_pRoot, Node* i_pNode, unsigned i_Position, XPathOutputList& o_Output)
{
    const Trace trace(s_Tracer, L"XPath::getValues(std::list<String>&)");
    if (!i_pRoot)
    {
        XML_TRACE(trace, TraceInformation) << L"No nodes available for the XML file ";
        return XML_SUCCESS;
    }
    if (!m_IsSplit)
    {
        if (const TErrorCode code = splitXPath(); code != XML_SUCCESS)
        {
            XML_TRACE(trace, TraceError) << L"Error while splitting xpath";
            return code;
        }
    }
    XML_TRACE(trace, TraceInformation) << L"Evaluating the xpath [" << m_XPath << L"] for the XML file ";
    o_Output.clear();
    XPathRecords records;
    const Start root{i_pRoot, 0};
    const TErrorCode code = collect(i_pNode ? Start{i_pNode, i_Position} : root, root, records.list());
    if (code == XML_SUCCESS)
        o_Output.swap(records.list());
    return code;
}

TErrorCode XPath::collect(Start i_First, Start i_Others, XPathOutputList& io_Records)
{
    const bool isTraced = Trace::isEnabled(TraceInformation);
    XPathOutputCollector output(io_Records, isTraced); // which record was added last, only a trace says
    TErrorCode code = XML_SUCCESS;
    if (isTraced || !collectDirectly(i_First, i_Others, output, code))
    {
        output.clear();
        for (std::size_t i = 0; i < m_Branches.size() && code == XML_SUCCESS; ++i)
            code = evaluateBranch(m_Branches[i], i == 0 ? i_First : i_Others, output);
    }
    if (code == XML_SUCCESS)
        output.orderByKey();
    return code;
}

/// Walks the branches that can be walked directly in this way. False when one of them turns out to need the other walk.
bool XPath::collectDirectly(Start i_First, Start i_Others, XPathOutputCollector& io_Output, TErrorCode& o_Code)
{
    o_Code = XML_SUCCESS;
    for (std::size_t i = 0; i < m_Branches.size() && o_Code == XML_SUCCESS; ++i)
    {
        const Start start = i == 0 ? i_First : i_Others;
        if (!m_Branches[i].m_IsDirect)
            o_Code = evaluateBranch(m_Branches[i], start, io_Output);
        else if (!XPathDirectWalk(m_Branches[i], io_Output).evaluate(start.m_pNode, start.m_Position))
            return false;
    }
    return true;
}

TErrorCode XPath::evaluateBranch(XPathBranch& i_Branch, Start i_Start, XPathOutputCollector& io_Output)
{
    if (i_Start.m_Position > 0)
        return XPathWalk(i_Branch, io_Output).evaluate({i_Start.m_pNode, false}, i_Start.m_Position);
    XPathStep* pFirst = i_Branch.m_Steps.front().m_pStep.get();
    if (!pFirst)
        return XML_PLUGIN_ERROR_XPATH_FIRST_STEP;
    return XPathWalk(i_Branch, io_Output).evaluate(pFirst->mark({i_Start.m_pNode}).front(), 0);
}

} // namespace XmlPlugin
