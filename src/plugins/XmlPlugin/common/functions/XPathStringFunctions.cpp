#include "functions/XPathStringFunctions.h"

#include "functions/XPathNumberFunctions.h"
#include "values/XPathBudget.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

XML_TRACE_SOURCE(L"XPathFunction")

namespace XmlPlugin
{

namespace
{

constexpr std::size_t s_Absent = std::wstring_view::npos;

/// The next node behind \p i_pNode in a walk that does not go below it. \p io_Ancestors holds the
/// way down from the walk's root; null when the walk is at its end.
const Node* nextBehind(const Node* i_pNode, std::vector<const Node*>& io_Ancestors)
{
    while (!io_Ancestors.empty())
    {
        if (const Node* pNext = i_pNode->nextSibling())
        {
            return pNext;
        }
        i_pNode = io_Ancestors.back();
        io_Ancestors.pop_back();
    }
    return nullptr;
}

/// \p i_Number, already rounded, as an integer; the nearest 64-bit one when it is out of range.
std::int64_t clampToInteger(double i_Number) noexcept
{
    constexpr double limit = 0x1p63;
    if (i_Number >= limit)
    {
        return std::numeric_limits<std::int64_t>::max();
    }
    if (i_Number < -limit)
    {
        return std::numeric_limits<std::int64_t>::min();
    }
    return static_cast<std::int64_t>(i_Number);
}

std::int64_t addSaturated(std::int64_t i_Left, std::int64_t i_Right) noexcept
{
    std::int64_t sum = 0;
    if (!__builtin_add_overflow(i_Left, i_Right, &sum))
    {
        return sum;
    }
    return i_Left < 0 ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
}

bool isNaN(const XPathNumber& i_Number) noexcept
{
    return i_Number.m_Limit == NaNType || std::isnan(i_Number.m_Value);
}

bool isFinite(const XPathNumber& i_Number) noexcept
{
    return !isNaN(i_Number) && i_Number.m_Limit != PosInfType && i_Number.m_Limit != NegInfType;
}

/// The code units from \p i_Begin to the one before \p i_End, both counted from 0 and cut to the text.
std::wstring_view slice(std::wstring_view i_Text, std::int64_t i_Begin, std::int64_t i_End) noexcept
{
    const auto size = static_cast<std::int64_t>(i_Text.size());
    const std::int64_t begin = std::clamp<std::int64_t>(i_Begin, 0, size);
    const std::int64_t end = std::clamp<std::int64_t>(i_End, 0, size);
    return begin < end ? i_Text.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin))
                       : std::wstring_view();
}

std::wstring_view substringFrom(std::wstring_view i_Text, const XPathNumber& i_Start) noexcept
{
    // D-73: an infinite start without a length gives "". XPath 1.0 gives the whole text for "-Infinity".
    if (!isFinite(i_Start))
    {
        return {};
    }
    const std::int64_t position = clampToInteger(i_Start.m_Value);
    return slice(i_Text, addSaturated(position, -1), std::numeric_limits<std::int64_t>::max());
}

std::wstring_view substringFrom(std::wstring_view i_Text, const XPathNumber& i_Start,
                                const XPathNumber& i_Length) noexcept
{
    if (isNaN(i_Start) || i_Start.m_Limit == PosInfType || isNaN(i_Length) || i_Length.m_Limit == NegInfType)
    {
        return {};
    }
    // D-74: with a length, a start of "-Infinity" counts as 0: substring('12345', -1 div 0, 3) is "12".
    // XPath 1.0 says "".
    const std::int64_t position = clampToInteger(i_Start.m_Value);
    const std::int64_t begin = addSaturated(position, -1);
    if (i_Length.m_Limit == PosInfType)
    {
        return slice(i_Text, begin, std::numeric_limits<std::int64_t>::max());
    }
    return slice(i_Text, begin, addSaturated(begin, clampToInteger(i_Length.m_Value)));
}

/// D-72: only runs of spaces become one space: a tab inside the text stays. XPath 1.0 turns it into a space.
String collapseSpaces(std::wstring_view i_Text)
{
    std::wstring text;
    text.reserve(i_Text.size());
    wchar_t previous = L'\0';
    for (const wchar_t character : i_Text)
    {
        if (character != L' ' || previous != L' ')
        {
            text += character;
        }
        previous = character;
    }
    return copyOf(text);
}

/// The place of \p i_Part in a text, or `s_Absent`. Takes time in proportion to both lengths: after each character it
/// is known how much of the part the text ends with there (Knuth, Morris, Pratt).
std::size_t placeOfLong(std::wstring_view i_Text, std::wstring_view i_Part)
{
    std::vector<std::size_t> borders(i_Part.size(),
                                     0); // longest proper beginning that is an end of so much of the part
    const auto extend = [&](std::size_t i_Length, wchar_t i_Next)
    {
        while (i_Length > 0 && i_Part[i_Length] != i_Next)
        {
            i_Length = borders[i_Length - 1];
        }
        return i_Part[i_Length] == i_Next ? i_Length + 1 : i_Length;
    };
    for (std::size_t i = 1; i < i_Part.size(); ++i)
    {
        borders[i] = extend(borders[i - 1], i_Part[i]);
    }
    std::size_t length = 0;
    for (std::size_t i = 0; i < i_Text.size(); ++i)
    {
        length = extend(length, i_Text[i]);
        if (length == i_Part.size())
        {
            return i + 1 - length;
        }
    }
    return s_Absent;
}

/// The same for a part of any length. Where it is short, a plain search is quicker and not long either.
std::size_t placeOf(std::wstring_view i_Text, std::wstring_view i_Part)
{
    constexpr std::size_t shortLength = 16;
    const bool isShort = i_Part.size() <= shortLength || i_Text.size() <= shortLength * shortLength;
    return isShort ? i_Text.find(i_Part) : i_Part.size() > i_Text.size() ? s_Absent : placeOfLong(i_Text, i_Part);
}

String ownText(const Node* i_pNode)
{
    if (!i_pNode || !i_pNode->mayHaveText())
    {
        return {};
    }
    std::wstring text;
    for (const Node* pChild : i_pNode->children())
    {
        if (pChild->getType() == Node::CharacterDataNode)
        {
            text += viewOf(pChild->name());
        }
    }
    return copyOf(text);
}

} // namespace

// --- string -------------------------------------------------------------------------------------

void XPathFunction_string::getTextFromNode(const Node* i_pNode, String& o_Output)
{
    const Trace trace(s_Tracer, L"void XPathFunction_string::getTextFromNode(Node *pNode, String & o_Output)");
    XML_TRACE(trace, TraceInformation) << L"pNode = " << static_cast<const void*>(i_pNode);
    if (i_pNode && !i_pNode->mayHaveText())
    {
        return;
    }
    // The way down is kept here because a text node has no parent pointer to go back by.
    std::vector<const Node*> ancestors;
    std::size_t visits = 0;
    std::wstring text;
    while (i_pNode)
    {
        ++visits;
        if (i_pNode->getType() == Node::CharacterDataNode)
        {
            text += viewOf(i_pNode->name());
        }
        if (i_pNode->children().empty())
        {
            i_pNode = nextBehind(i_pNode, ancestors);
            continue;
        }
        ancestors.push_back(i_pNode);
        i_pNode = i_pNode->children().front();
    }
    XPathBudget::spend(visits);
    if (!text.empty())
    {
        o_Output = o_Output.concat(copyOf(text));
    }
}

String XPathFunction_string::textOf(const XPathOutputElement& i_Record)
{
    if (!i_Record.m_Value.isEmpty())
    {
        return i_Record.m_Value;
    }
    String text;
    getTextFromNode(i_Record.m_pNode, text);
    return text;
}

String XPathFunction_string::convert(const XPathExpression& i_Value)
{
    switch (i_Value.GetDataType())
    {
    case NodeSetType:
        return i_Value.getNodes().empty() ? String() : textOf(*i_Value.getNodes().front());
    case BooleanType:
        return String(i_Value.GetExpressionBool() ? L"true" : L"false");
    default:
        return i_Value.GetExpressionString();
    }
}

TErrorCode XPathFunction_string::evaluate()
{
    const Trace trace(s_Tracer, L"TErrorCode XPathFunction_string::evaluate()");
    if (m_Parameters.empty())
    {
        XML_TRACE(trace, TraceInformation) << L" getFunctionParameters = 0";
        String text;
        getTextFromNode(m_pStartNode, text);
        createOutputExpression(std::move(text));
        return XML_SUCCESS;
    }
    const XPathExpression& value = parameter(0);
    XML_TRACE(trace, TraceInformation) << L" pExpression->GetExpressionString() = " << value.GetExpressionString();
    XML_TRACE(trace, TraceInformation) << L" pExpression->GetDataType() = " << value.GetDataType();
    createOutputExpression(convert(value));
    return XML_SUCCESS;
}

// --- Functions of texts -------------------------------------------------------------------------

TErrorCode XPathFunction_concat::evaluate()
{
    XPathSmallVector<wchar_t, 64> text;
    for (std::size_t i = m_Parameters.size(); i > 0; --i)
    {
        text.append(parameterText(i - 1));
    }
    createOutputExpression(std::wstring_view(text.data(), text.size()));
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_concat::evaluate()", L"result = ", XML_SUCCESS);
    return XML_SUCCESS;
}

TErrorCode XPathFunction_startsWith::evaluate()
{
    const TErrorCode result = requireParameters(2);
    if (result == XML_SUCCESS)
    {
        createBoolean(parameterText(1).starts_with(parameterText(0)));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_startsWith::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_contains::evaluate()
{
    const TErrorCode result = requireParameters(2);
    if (result == XML_SUCCESS)
    {
        createBoolean(placeOf(parameterText(1), parameterText(0)) != s_Absent);
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_contains::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_substringBefore::evaluate()
{
    const TErrorCode result = requireParameters(2);
    if (result == XML_SUCCESS)
    {
        const std::wstring_view text = parameterText(1);
        const std::size_t place = placeOf(text, parameterText(0));
        createOutputExpression(text.substr(0, place == s_Absent ? 0 : place));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_substringBefore::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_substringAfter::evaluate()
{
    const TErrorCode result = requireParameters(2);
    if (result == XML_SUCCESS)
    {
        const std::wstring_view text = parameterText(1);
        const std::wstring_view part = parameterText(0);
        const std::size_t place = placeOf(text, part);
        createOutputExpression(text.substr(place == s_Absent ? text.size() : place + part.size()));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_substringAfter::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_substring::evaluate()
{
    const TErrorCode result = requireParameters(2);
    if (result == XML_SUCCESS)
    {
        const bool hasLength = m_Parameters.size() > 2;
        const XPathNumber last = XPathFunction_round::round(XPathNumber::of(parameter(0)));
        if (hasLength)
        {
            const XPathNumber start = XPathFunction_round::round(XPathNumber::of(parameter(1)));
            createOutputExpression(substringFrom(parameterText(2), start, last));
        }
        else
        {
            createOutputExpression(substringFrom(parameterText(1), last));
        }
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_substring::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_stringlength::evaluate()
{
    // D-69: string-length() without an argument is an error. XPath 1.0 takes the context node.
    const TErrorCode result = requireParameters(1);
    if (result == XML_SUCCESS)
    {
        createOutputExpression(static_cast<double>(parameterText(0).size()));
    }
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_stringlength::evaluate()", L"result = ", result);
    return result;
}

TErrorCode XPathFunction_normalizespace::evaluate()
{
    const Trace trace(s_Tracer, L"TErrorCode XPathFunction_normalizespace::evaluate()");
    String text;
    if (m_Parameters.empty())
    {
        XML_TRACE(trace, TraceInformation) << L"normalize-space without parameters";
        // D-70: the start node's own text only. XPath 1.0 takes the text of its descendants too.
        text = ownText(m_pStartNode);
    }
    else
    {
        XML_TRACE(trace, TraceInformation) << L"normalize-space with parameter";
        text = parameter(0).GetExpressionString();
    }
    XML_TRACE(trace, TraceInformation) << L"str = " << text;
    createOutputExpression(collapseSpaces(trimmed(viewOf(text))));
    return XML_SUCCESS;
}

// --- Not implemented ----------------------------------------------------------------------------

TErrorCode XPathFunction_translate::evaluate()
{
    // D-60: translate('a', 'a', 'b') fails with -102. XPath 1.0 says "b".
    XML_TRACE_VALUE(L"TErrorCode XPathFunction_translate::evaluate()", L"result = ", XML_ERROR_NOT_IMPLEMENTED);
    return XML_ERROR_NOT_IMPLEMENTED;
}

} // namespace XmlPlugin
