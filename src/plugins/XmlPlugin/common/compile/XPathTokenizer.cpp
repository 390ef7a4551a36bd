// The driver: how a text is recognised as a whole. The productions are in XPathTokenizerOperators.cpp,
// XPathTokenizerPrimary.cpp, XPathTokenizerPaths.cpp and XPathTokenizerTerminals.cpp.
#include "compile/XPathTokenizer.h"

#include "compile/XPathQuickReader.h"
#include "compile/XPathTokenizerTrace.h"
#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <utility>

namespace XmlPlugin
{

using namespace std::string_view_literals; // a length that is known costs nothing

TRACE_COLD void traceOpening(const wchar_t* i_Scope, std::uint32_t i_Offset, bool i_Consume)
{
    const Trace trace(s_Tracer, i_Scope);
    XML_TRACE(trace, TraceInformation) << L" Offset = " << i_Offset << L", consume = " << i_Consume;
}

TRACE_COLD void traceResult(const wchar_t* i_Scope, std::uint32_t i_Length)
{
    const Trace trace(s_Tracer, i_Scope);
    XML_TRACE(trace, TraceInformation) << L"result = " << i_Length;
}

namespace
{

std::size_t tokenLimit(std::wstring_view i_Source) noexcept
{
    return i_Source.size() * XPathTokenizer::s_TokensPerCharacter + XPathTokenizer::s_TokensOnTop;
}

/// In parentheses, and with a null after it.
std::wstring_view sourceOf(std::wstring_view i_XPath, XPathElements& io_Elements)
{
    std::wstring_view text = io_Elements.keep(L"("sv, i_XPath, L")\0"sv);
    text.remove_suffix(1);
    return text;
}

} // namespace

XPathTokenizer::XPathTokenizer(const String& i_XPath) : XPathTokenizer(i_XPath, std::make_unique<XPathElements>()) {}

XPathTokenizer::XPathTokenizer(const String& i_XPath, std::unique_ptr<XPathElements> i_pElements)
    : XPathTokenizer(viewOf(i_XPath), *i_pElements)
{
    m_pOwnElements = std::move(i_pElements);
}

XPathTokenizer::XPathTokenizer(std::wstring_view i_XPath, XPathElements& io_Elements)
    : m_Elements(io_Elements),
      m_Source(sourceOf(i_XPath, io_Elements)),
      m_Emitter(io_Elements, tokenLimit(m_Source.text()))
{
    XML_TRACE_VALUE(L"XPathTokenizer::XPathTokenizer(String xpath)", L" xpath to XPathTokenizer ", copyOf(i_XPath));
}

// --- The driver ---------------------------------------------------------------------------------

bool XPathTokenizer::readPostfix(XPathExpressionsVector& o_Postfix)
{
    if (!XPathQuickCode::isAllowed())
    {
        return false;
    }
    o_Postfix.clear();
    XPathQuickReader reader(m_Source, *this, m_Elements, o_Postfix);
    m_pQuickReader = &reader;
    const bool isRead = reader.read();
    m_pQuickReader = nullptr;
    m_Furthest = 0;
    if (!isRead)
    {
        o_Postfix.clear();
    }
    return isRead;
}

TErrorCode XPathTokenizer::start()
{
    const Trace trace(s_Tracer, L" XPathTokenizer::start()");
    XML_TRACE(trace, TraceInformation) << L" XPathTokenizer::start()";
    const std::uint32_t ret = isUnionExpr(0, false);
    XML_TRACE(trace, TraceInformation) << L" First Parsing ret = " << ret;

    const bool isWhole = ret == m_Source.size() && !m_NestingExceeded;
    if (isWhole)
    {
        XML_TRACE(trace, TraceInformation) << L"ret and xpath.length() are equal ";
        isUnionExpr(0, true);
    }
    else
    {
        XML_TRACE(trace, TraceInformation) << L"ret and xpath.length() are different";
    }

    TErrorCode code = XML_SUCCESS;
    if (isWhole && !isGivenUp())
    {
        mergeXPath();
        // The first and the last token are the parentheses put around the caller's expression.
        const XPathExpressionsVector& tokens = m_Emitter.tokens();
        if (tokens.size() >= 3)
        {
            OutVector.assign(tokens.begin() + 1, tokens.end() - 1);
            m_Emitter.clear();
        }
    }
    else
    {
        traceRefusal(trace);
        code = XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED;
    }
    XML_TRACE(trace, TraceInformation) << L"result = " << code;
    return code;
}

void XPathTokenizer::traceRefusal(const Trace& i_Trace) const
{
    if (m_StackExceeded)
    {
        XML_TRACE(i_Trace, TraceError) << L"The expression is nested deeper than the stack of the thread allows";
    }
    else if (m_NestingExceeded)
    {
        XML_TRACE(i_Trace, TraceError) << L"The expression is nested more than " << s_MaximumNesting << L" levels deep";
    }
    if (m_Emitter.isLimitExceeded())
    {
        XML_TRACE(i_Trace, TraceError) << L"The expression has more than " << m_Emitter.limit() << L" tokens";
    }
    XML_TRACE(i_Trace, TraceError) << L" Recognised up to offset = " << recognisedUpTo();
}

unsigned XPathTokenizer::recognisedUpTo() const noexcept
{
    return std::clamp<std::uint32_t>(m_Furthest, 1, m_Source.size() - 1) - 1;
}

void XPathTokenizer::mergeXPath()
{
    const Trace trace(s_Tracer, L"XPathTokenizer::mergeXPath()");
    XML_TRACE(trace, TraceInformation) << L"XPathTokenizer::mergeXPath()";
    XML_TRACE(trace, TraceInformation) << L"m_ExprVector.size()" << m_Emitter.tokens().size();
    m_Emitter.mergeUnions();
}

} // namespace XmlPlugin
