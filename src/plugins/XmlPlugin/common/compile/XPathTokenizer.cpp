// The driver: how a text is recognised as a whole, and how a production runs. The productions themselves are in
// XPathTokenizerOperators.cpp, XPathTokenizerPrimary.cpp, XPathTokenizerPaths.cpp and XPathTokenizerTerminals.cpp.
#include "compile/XPathTokenizer.h"

#include "compile/XPathQuickReader.h"
#include "compile/XPathTokenizerTrace.h"
#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <string>
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

/// A production whose lengths are remembered.
struct XPathTokenizer::Production
{
    Remembered remembered;
    const wchar_t* traceName;
    std::uint32_t (XPathTokenizer::*measure)(std::uint32_t);
    void (XPathTokenizer::*emit)(std::uint32_t, std::uint32_t);

    static const Production s_All[RememberedCount];
};

#define XPATH_PRODUCTION(name)                                                                                         \
    {                                                                                                                  \
        XPathTokenizer::name, L" XPathTokenizer::is" #name "()", &XPathTokenizer::measure##name,                       \
            &XPathTokenizer::emit##name                                                                                \
    }
const XPathTokenizer::Production XPathTokenizer::Production::s_All[RememberedCount] = {
    XPATH_PRODUCTION(OrExpr),
    XPATH_PRODUCTION(AndExpr),
    XPATH_PRODUCTION(EqualityExpr),
    XPATH_PRODUCTION(RelationalExpr),
    XPATH_PRODUCTION(AdditiveExpr),
    XPATH_PRODUCTION(MultiplicativeExpr),
    XPATH_PRODUCTION(UnaryExpr),
    XPATH_PRODUCTION(UnionExpr),
    XPATH_PRODUCTION(PathExpr),
    XPATH_PRODUCTION(FilterExpr),
    XPATH_PRODUCTION(FunctionCall),
    XPATH_PRODUCTION(LocationPath),
    XPATH_PRODUCTION(RelativeLocationPath),
    XPATH_PRODUCTION(Step)};
#undef XPATH_PRODUCTION

#define XPATH_REMEMBERED(name)                                                                                         \
    std::uint32_t XPathTokenizer::is##name(std::uint32_t i_Offset, bool i_Consume)                                     \
    {                                                                                                                  \
        return recognise(Production::s_All[name], i_Offset, i_Consume);                                                \
    }
XPATH_REMEMBERED(OrExpr)
XPATH_REMEMBERED(AndExpr)
XPATH_REMEMBERED(EqualityExpr)
XPATH_REMEMBERED(RelationalExpr)
XPATH_REMEMBERED(AdditiveExpr)
XPATH_REMEMBERED(MultiplicativeExpr)
XPATH_REMEMBERED(UnaryExpr)
XPATH_REMEMBERED(UnionExpr)
XPATH_REMEMBERED(PathExpr)
XPATH_REMEMBERED(FilterExpr)
XPATH_REMEMBERED(FunctionCall)
XPATH_REMEMBERED(LocationPath)
XPATH_REMEMBERED(RelativeLocationPath)
XPATH_REMEMBERED(Step)
#undef XPATH_REMEMBERED

XPathTokenizer::XPathTokenizer(const String& i_XPath)
    : m_pOwnElements(std::make_unique<XPathElements>()), m_Elements(*m_pOwnElements)
{
    open(i_XPath.view());
}

XPathTokenizer::XPathTokenizer(std::wstring_view i_XPath, XPathElements& io_Elements) : m_Elements(io_Elements)
{
    open(i_XPath);
}

void XPathTokenizer::open(std::wstring_view i_XPath)
{
    XML_TRACE_VALUE(L"XPathTokenizer::XPathTokenizer(String xpath)", L" xpath to XPathTokenizer ", copyOf(i_XPath));
    m_Text = m_Elements.keep(L"("sv, i_XPath, L")\0"sv);
    m_Text.remove_suffix(1);
}

// --- The driver ---------------------------------------------------------------------------------

bool XPathTokenizer::readPostfix(XPathExpressionsVector& o_Postfix)
{
    if (!XPathQuickCode::isAllowed())
    {
        return false;
    }
    XPathQuickReader reader(m_Text, *this, m_Elements);
    m_pQuickReader = &reader;
    const bool isRead = reader.read(o_Postfix);
    m_pQuickReader = nullptr;
    m_Furthest = 0;
    return isRead;
}

TErrorCode XPathTokenizer::start()
{
    const Trace trace(s_Tracer, L" XPathTokenizer::start()");
    XML_TRACE(trace, TraceInformation) << L" XPathTokenizer::start()";
    const std::uint32_t ret = isUnionExpr(0, false);
    XML_TRACE(trace, TraceInformation) << L" First Parsing ret = " << ret;

    const bool isWhole = ret == m_Text.size() && !m_NestingExceeded;
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
        takeOutput();
    }
    else
    {
        traceRefusal(trace);
        code = XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED;
    }
    XML_TRACE(trace, TraceInformation) << L"result = " << code;
    return code;
}

/// The first and the last token are the parentheses put around the caller's expression.
void XPathTokenizer::takeOutput()
{
    if (m_ExprVector.size() < 3)
    {
        return;
    }
    OutVector.assign(m_ExprVector.begin() + 1, m_ExprVector.end() - 1);
    m_ExprVector.clear();
}

void XPathTokenizer::traceRefusal(const Trace& i_Trace) const
{
    if (m_NestingExceeded)
    {
        XML_TRACE(i_Trace, TraceError) << L"The expression is nested more than " << s_MaximumNesting << L" levels deep";
    }
    if (m_TokensExceeded)
    {
        XML_TRACE(i_Trace, TraceError) << L"The expression has more than " << tokenLimit() << L" tokens";
    }
    XML_TRACE(i_Trace, TraceError) << L" Recognised up to offset = " << recognisedUpTo();
}

unsigned XPathTokenizer::recognisedUpTo() const noexcept
{
    const std::uint32_t last = static_cast<std::uint32_t>(m_Text.size()) - 1;
    return std::clamp<std::uint32_t>(m_Furthest, 1, last) - 1;
}

void XPathTokenizer::mergeXPath()
{
    const Trace trace(s_Tracer, L"XPathTokenizer::mergeXPath()");
    XML_TRACE(trace, TraceInformation) << L"XPathTokenizer::mergeXPath()";
    XML_TRACE(trace, TraceInformation) << L"m_ExprVector.size()" << m_ExprVector.size();
    const std::size_t size = m_ExprVector.size();
    if (size < 5)
    {
        return;
    }

    XPathExpressionsVector merged;
    merged.reserve(size);
    // A chain a|b|c grows in one buffer. As each link reads the text so far without enclosing
    // quotes, the text begins at an index that moves instead of the text.
    std::wstring chain;
    std::size_t chainBegin = 0;
    bool isChain = false;
    const auto endChain = [&]
    {
        if (!isChain)
        {
            return;
        }
        merged.back() = &makePath(m_Elements.keep(std::wstring_view(chain).substr(chainBegin)));
        isChain = false;
    };

    for (std::size_t i = 0; i < size; ++i)
    {
        XPathExpression* const pToken = m_ExprVector[i];
        if (i == 0 || i + 1 >= size || !isToken(pToken->stringView(), L'|'))
        {
            endChain();
            merged.push_back(pToken);
            continue;
        }
        if (!isChain)
        {
            chain = merged.back()->stringView();
            chainBegin = 0;
            isChain = true;
        }
        else if (chain.size() - chainBegin >= 2 && chain[chainBegin] == chain.back() &&
                 (chain.back() == L'"' || chain.back() == L'\''))
        {
            ++chainBegin;
            chain.pop_back();
        }
        chain += L'|';
        ++i;
        chain += m_ExprVector[i]->stringView();
    }
    endChain();
    m_ExprVector = merged;
}

// --- How a production runs ----------------------------------------------------------------------

std::uint32_t XPathTokenizer::recognise(const Production& i_Production, std::uint32_t i_Offset, bool i_Consume)
{
    return traced(i_Production.traceName, i_Offset, i_Consume,
                  [&]
                  {
                      const std::uint32_t length = measure(i_Production, i_Offset);
                      if (i_Consume && length != 0 && !isGivenUp())
                      {
                          (this->*i_Production.emit)(i_Offset, length);
                      }
                      return length;
                  });
}

std::uint32_t XPathTokenizer::measure(const Production& i_Production, std::uint32_t i_Offset)
{
    if (i_Offset >= m_Text.size())
    {
        return 0;
    }
    if (!m_Remember || m_pQuickReader)
    {
        return (this->*i_Production.measure)(i_Offset);
    }
    std::uint32_t* pLength = remembered(i_Production.remembered, i_Offset);
    if (*pLength == 0)
    {
        *pLength = (this->*i_Production.measure)(i_Offset) + 1;
    }
    return *pLength - 1;
}

std::uint32_t* XPathTokenizer::remembered(Remembered i_Production, std::uint32_t i_Offset)
{
    if (m_LookAhead.empty())
    {
        m_LookAhead.resize(m_Text.size() / LookAheadPage::s_Offsets + 1);
    }
    std::unique_ptr<LookAheadPage>& pPage = m_LookAhead[i_Offset / LookAheadPage::s_Offsets];
    if (!pPage)
    {
        pPage = std::make_unique<LookAheadPage>();
    }
    return &pPage->m_Length[i_Offset % LookAheadPage::s_Offsets][i_Production];
}

void XPathTokenizer::emitToken(std::wstring_view i_Text, std::wstring_view i_Next)
{
    emit(XPathExpression::create(i_Text, i_Next, m_Elements));
}

} // namespace XmlPlugin
