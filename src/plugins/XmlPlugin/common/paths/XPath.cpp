#include "paths/XPath.h"

#include "compile/XPathPlainReader.h"
#include "paths/XPathDirectWalk.h"
#include "paths/XPathWalk.h"
#include "values/XPathOutputCollector.h"
#include "values/XPathOutputList.h"
#include "values/XPathQuickCode.h"
#include "values/XPathSmallVector.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <string_view>
#include <utility>

XML_TRACE_SOURCE(L"XPath")

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

namespace
{

constexpr std::wstring_view s_DeepMark = L"//";
constexpr std::wstring_view s_End = L"endfunction()";

/// One step of a branch as written.
struct XPathStepPlace
{
    std::wstring_view m_Text;
    bool m_IsDeep; ///< written after "//"
};

/// The place of the next separator at or after \p i_From and its length (2 for "//"); length 0: none.
std::pair<std::size_t, std::size_t> nextSeparator(std::wstring_view i_Text, std::size_t i_From) noexcept
{
    const std::size_t slash = i_Text.find(L'/', i_From);
    if (slash == std::wstring_view::npos)
    {
        return {i_Text.size(), 0};
    }
    return {slash, i_Text.substr(slash + 1).starts_with(L'/') ? 2U : 1U};
}

unsigned countSeparators(std::wstring_view i_Text) noexcept
{
    unsigned count = 0;
    for (std::size_t from = 0;; ++count)
    {
        const auto [place, length] = nextSeparator(i_Text, from);
        if (length == 0)
        {
            return count;
        }
        from = place + length;
    }
}

using XPathStepPlaces = XPathSmallVector<XPathStepPlace, 12>;

XPathStepPlaces stepPlaces(std::wstring_view i_Text, bool i_IsDeep)
{
    XPathStepPlaces found;
    bool isDeep = i_IsDeep;
    for (std::size_t begin = 0;;)
    {
        const auto [end, separator] = nextSeparator(i_Text, begin);
        found.push_back({i_Text.substr(begin, end - begin), isDeep});
        if (separator == 0)
        {
            return found;
        }
        isDeep = separator == s_DeepMark.size();
        begin = end + separator;
    }
}

/// Puts the artificial leaf behind the steps, as if "/endfunction()" stood behind their text. Together with a "/"
/// at the end of it, behind which no step is, that would be a "//".
void addEnd(XPathStepPlaces& io_Places)
{
    const bool isBehindSlash = io_Places.size() > 1 && io_Places.back().m_Text.empty() && !io_Places.back().m_IsDeep;
    if (isBehindSlash)
    {
        io_Places.pop_back();
    }
    io_Places.push_back({s_End, isBehindSlash});
}

TErrorCode buildStep(const XPathStepPlaces& i_Places, std::size_t i_Index, std::pmr::memory_resource& io_Memory,
                     XPathStepPointer& o_pStep)
{
    const unsigned type = i_Index == 0                    ? XPathStep::root
                          : i_Index + 1 < i_Places.size() ? XPathStep::mid
                                                          : XPathStep::leaf;
    const std::wstring_view previous = i_Index > 0 ? i_Places[i_Index - 1].m_Text : std::wstring_view();
    const TErrorCode code = XPathStep::create({i_Places[i_Index].m_Text, previous}, type, io_Memory, o_pStep);
    if (o_pStep)
    {
        o_pStep->setDeep(i_Places[i_Index].m_IsDeep);
    }
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
        {
            return;
        }
        const bool isWalked = i > 0 && hasWalker(*slot.m_pStep);
        const bool isDeep = slot.m_pStep->isDeep();
        isUnique = isUnique && !isWalked && (!isDeep || isOneLevel);
        isOneLevel = isOneLevel && !isDeep && !isWalked;
        slot.m_MayRepeat = !isUnique && (isWalked || isDeep);
    }
}

/// Every branch ends in a leaf step: text(), an attribute, or the artificial endfunction().
bool needsEnd(std::wstring_view i_Piece)
{
    if (i_Piece.ends_with(L"text()"sv))
    {
        return false;
    }
    // Where "//" is left in front, the steps are counted with it, and there is no last one.
    const std::size_t slash = i_Piece.rfind(L'/');
    return i_Piece.starts_with(s_DeepMark) ||
           !XPathStep::isAttributeStep(slash == std::wstring_view::npos ? i_Piece : i_Piece.substr(slash + 1));
}

/// What a piece between bars is without white space around it and a single "/" in front.
std::wstring_view writtenBranch(std::wstring_view i_Piece) noexcept
{
    std::wstring_view written = trimmed(i_Piece);
    if (written.size() >= 2 && written[0] == L'/' && written[1] != L'/')
    {
        written.remove_prefix(1);
    }
    return written;
}

} // namespace

// --- Splitting ----------------------------------------------------------------------------------

unsigned XPathStepSplitter::getStepCount(const String& i_Branch) noexcept
{
    const std::wstring_view text = viewOf(i_Branch);
    return countSeparators(text.starts_with(s_DeepMark) ? text.substr(s_DeepMark.size()) : text);
}

TErrorCode XPathStepSplitter::getStep(const String& i_Branch, unsigned i_Index, std::pmr::memory_resource& io_Memory,
                                      XPathStepPointer& o_pStep)
{
    o_pStep.reset();
    const bool isDeep = viewOf(i_Branch).starts_with(s_DeepMark);
    const XPathStepPlaces places = stepPlaces(viewOf(i_Branch).substr(isDeep ? s_DeepMark.size() : 0), isDeep);
    if (i_Index >= places.size())
    {
        return XML_ERROR_STEP_INDEX;
    }
    return buildStep(places, i_Index, io_Memory, o_pStep);
}

void XPathBranch::buildSteps()
{
    const bool isDeep = m_Written.starts_with(s_DeepMark);
    const std::wstring_view piece = m_Written.substr(isDeep ? s_DeepMark.size() : 0);
    m_HasEnd = needsEnd(piece);

    const Trace trace(s_Tracer, L" XPath::splitXPath()");
    XPathStepPlaces places = stepPlaces(piece, isDeep);
    if (m_HasEnd)
    {
        addEnd(places);
    }
    m_StepCount = static_cast<unsigned>(places.size() - 1);
    XML_TRACE(trace, TraceInformation) << L" m_XPathParser.getStepCount = " << m_StepCount;

    m_Steps.resize(places.size());
    for (std::size_t i = 0; i < places.size(); ++i)
    {
        m_Steps[i].m_Code = buildStep(places, i, *m_Steps.get_allocator().resource(), m_Steps[i].m_pStep);
    }
    markRepeats(*this);
}

String XPathBranch::text() const
{
    std::wstring text(m_Written);
    if (m_HasEnd)
    {
        text += L'/';
        text += s_End;
    }
    return copyOf(text);
}

XPath::XPath(String i_XPath) : m_OwnText(std::move(i_XPath)), m_XPath(viewOf(m_OwnText))
{
    read();
}

// cppcheck-suppress passedByValue ; no more than a pointer and a length
XPath::XPath(XPathExpression::Lent i_XPath) : m_XPath(i_XPath.m_Text)
{
    read();
}

XPath::~XPath() = default;

void XPath::read()
{
    const Trace trace(s_Tracer, L"XPath::XPath(const String &)");
    XML_TRACE(trace, TraceInformation) << L"XPath query = " << copyOf(m_XPath);
    if (XPathQuickCode::isAllowed())
    {
        m_pPlan = XPathPlainReader::readWhole(m_XPath, m_PlanMemory);
    }
}

void XPath::splitXPath()
{
    const Trace trace(s_Tracer, L" XPath::splitXPath()");
    XML_TRACE(trace, TraceInformation) << L" XPath::splitXPath()";
    for (std::size_t begin = 0; begin <= m_XPath.size();)
    {
        const std::size_t bar = std::min(m_XPath.find(L'|', begin), m_XPath.size());
        if (bar > begin)
        {
            m_Branches.emplace_back(writtenBranch(m_XPath.substr(begin, bar - begin)), m_Memory).buildSteps();
        }
        begin = bar + 1;
    }
    m_IsSplit = true;
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
    // A node in the middle of the path comes from operands, which have asked quick code before.
    if (!i_pNode && m_pPlan && XPathQuickCode::isAllowed())
    {
        o_Output.clear();
        if (XPathDirectWalk::select(*m_pPlan, {i_pRoot, i_pRoot}, o_Output))
        {
            return XML_SUCCESS;
        }
    }
    if (!m_IsSplit)
    {
        splitXPath();
    }
    XML_TRACE(trace, TraceInformation) << L"Evaluating the xpath [" << copyOf(m_XPath) << L"] for the XML file ";
    o_Output.clear();
    XPathOutputList records;
    const Start root{i_pRoot, 0};
    const TErrorCode code = collect(i_pNode ? Start{i_pNode, i_Position} : root, root, records);
    if (code == XML_SUCCESS)
    {
        o_Output = std::move(records);
    }
    return code;
}

bool XPath::countValues(Node* i_pRoot, std::size_t& o_Count)
{
    return i_pRoot && m_pPlan && XPathQuickCode::isAllowed() &&
           XPathDirectWalk::count(*m_pPlan, {i_pRoot, i_pRoot}, o_Count);
}

TErrorCode XPath::collect(Start i_First, Start i_Others, XPathOutputList& io_Records)
{
    // Which record was added last, only a trace says.
    using Purpose = XPathOutputCollector::Purpose;
    XPathOutputCollector output(io_Records, XPathQuickCode::isAllowed() ? Purpose::Records : Purpose::SearchedRecords);
    TErrorCode code = XML_SUCCESS;
    for (std::size_t i = 0; i < m_Branches.size() && code == XML_SUCCESS; ++i)
    {
        code = evaluateBranch(m_Branches[i], i == 0 ? i_First : i_Others, output);
    }
    if (code == XML_SUCCESS)
    {
        output.orderByKey();
    }
    return code;
}

TErrorCode XPath::evaluateBranch(XPathBranch& io_Branch, Start i_Start, XPathOutputCollector& io_Output)
{
    if (i_Start.m_Position > 0)
    {
        return XPathWalk(io_Branch, io_Output).evaluate({i_Start.m_pNode, false}, i_Start.m_Position);
    }
    XPathStep* pFirst = io_Branch.m_Steps.front().m_pStep.get();
    if (!pFirst)
    {
        return XML_PLUGIN_ERROR_XPATH_FIRST_STEP;
    }
    return XPathWalk(io_Branch, io_Output).evaluate(pFirst->mark({i_Start.m_pNode}).front(), 0);
}

} // namespace XmlPlugin
