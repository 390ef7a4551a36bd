#include "XPathTokenizer.h"

#include "XPathArgument.h"
#include "XPathCharacters.h"
#include "XPathOperator.h"
#include "XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <iterator>
#include <utility>

XML_TRACE_SOURCE(L"XPathTokenizer")

namespace XmlPlugin
{

namespace
{

/// Looked up by prefix, first match first: an entry hides the longer ones behind it that begin
/// with it. D-17: "descendant-or-self::x" and "following-sibling::x" are not recognised. XPath 1.0
/// accepts them.
constexpr std::array<std::wstring_view, 13> s_AxisNames = {L"ancestor-or-self",
                                                           L"ancestor",
                                                           L"attribute",
                                                           L"child",
                                                           L"descendant",
                                                           L"descendant-or-self",
                                                           L"following",
                                                           L"following-sibling",
                                                           L"namespace",
                                                           L"parent",
                                                           L"preceding-sibling",
                                                           L"preceding",
                                                           L"self"};

constexpr std::array<std::wstring_view, 24> s_FunctionNames = {L"starts-with",
                                                               L"substring-after",
                                                               L"substring-before",
                                                               L"substring",
                                                               L"string-length",
                                                               L"normalize-space",
                                                               L"translate",
                                                               L"local-name",
                                                               L"name",
                                                               L"concat",
                                                               L"contains",
                                                               L"floor",
                                                               L"string",
                                                               L"number",
                                                               L"boolean",
                                                               L"sum",
                                                               L"ceiling",
                                                               L"position",
                                                               L"last",
                                                               L"count",
                                                               L"round",
                                                               L"not",
                                                               L"true",
                                                               L"false"};

/// Stored with their parentheses. D-14, D-15: the node test wants a further "()", so "text()" is
/// not recognised as a node type, and "node()" is not in the table. XPath 1.0 accepts both.
constexpr std::array<std::wstring_view, 3> s_NodeTypes = {L"comment()", L"text()", L"processing-instruction()"};

void traceResult(const wchar_t* i_Scope, std::uint32_t i_Offset, bool i_Consume, std::uint32_t i_Length)
{
    const Trace trace(s_Tracer, i_Scope);
    XML_TRACE(trace, TraceInformation) << L" Offset = " << i_Offset << L", consume = " << i_Consume;
    XML_TRACE(trace, TraceInformation) << L"result = " << i_Length;
}

/// The record of a production that is not remembered.
inline std::uint32_t traced(const wchar_t* i_Scope, std::uint32_t i_Offset, bool i_Consume, std::uint32_t i_Length)
{
    if (Trace::isEnabled(TraceInformation)) [[unlikely]]
        traceResult(i_Scope, i_Offset, i_Consume, i_Length);
    return i_Length;
}

} // namespace

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
{
    const Trace trace(s_Tracer, L"XPathTokenizer::XPathTokenizer(String xpath)");
    XML_TRACE(trace, TraceInformation) << L" xpath to XPathTokenizer " << i_XPath;
    m_XPath.reserve(static_cast<std::size_t>(i_XPath.length()) + 2);
    m_XPath += L'(';
    m_XPath += i_XPath;
    m_XPath += L')';
    m_Text = m_XPath.view();
}

// --- The driver ---------------------------------------------------------------------------------

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
        return;
    OutVector.assign(std::make_move_iterator(m_ExprVector.begin() + 1),
                     std::make_move_iterator(m_ExprVector.end() - 1));
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
        return;

    std::vector<std::unique_ptr<XPathExpression>> merged;
    merged.reserve(size);
    // A chain a|b|c grows in one buffer. As each link reads the text so far without enclosing
    // quotes, the text begins at an index that moves instead of the text.
    std::wstring chain;
    std::size_t chainBegin = 0;
    bool isChain = false;
    const auto endChain = [&]
    {
        if (!isChain)
            return;
        const String text(chain.c_str() + chainBegin, chain.size() - chainBegin);
        merged.back() = std::make_unique<XPathArgument>(text);
        isChain = false;
    };

    for (std::size_t i = 0; i < size; ++i)
    {
        std::unique_ptr<XPathExpression>& pToken = m_ExprVector[i];
        if (i == 0 || i + 1 >= size || pToken->GetExpressionString() != L"|")
        {
            endChain();
            merged.push_back(std::move(pToken));
            continue;
        }
        if (!isChain)
        {
            chain = merged.back()->GetExpressionString().view();
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
        chain += m_ExprVector[i]->GetExpressionString().view();
    }
    endChain();
    m_ExprVector = std::move(merged);
}

// --- How a production runs ----------------------------------------------------------------------

std::uint32_t XPathTokenizer::recognise(const Production& i_Production, std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t length = measure(i_Production, i_Offset);
    if (Trace::isEnabled(TraceInformation)) [[unlikely]]
        traceResult(i_Production.traceName, i_Offset, i_Consume, length);
    if (i_Consume && length != 0 && !isGivenUp())
        (this->*i_Production.emit)(i_Offset, length);
    return length;
}

std::uint32_t XPathTokenizer::measure(const Production& i_Production, std::uint32_t i_Offset)
{
    if (i_Offset >= m_Text.size())
        return 0;
    if (!m_Remember)
        return (this->*i_Production.measure)(i_Offset);
    std::uint32_t* pLength = remembered(i_Production.remembered, i_Offset);
    if (*pLength == 0)
        *pLength = (this->*i_Production.measure)(i_Offset) + 1;
    return *pLength - 1;
}

std::uint32_t* XPathTokenizer::remembered(Remembered i_Production, std::uint32_t i_Offset)
{
    if (m_LookAhead.empty())
        m_LookAhead.resize(m_Text.size() / LookAheadPage::s_Offsets + 1);
    std::unique_ptr<LookAheadPage>& pPage = m_LookAhead[i_Offset / LookAheadPage::s_Offsets];
    if (!pPage)
        pPage = std::make_unique<LookAheadPage>();
    return &pPage->m_Length[i_Offset % LookAheadPage::s_Offsets][i_Production];
}

void XPathTokenizer::emit(std::unique_ptr<XPathExpression> i_pToken)
{
    if (m_ExprVector.size() >= tokenLimit())
        m_TokensExceeded = true;
    else
        m_ExprVector.push_back(std::move(i_pToken));
}

void XPathTokenizer::emitToken(std::wstring_view i_Text, std::wstring_view i_Next)
{
    emit(std::unique_ptr<XPathExpression>(
        XPathExpression::create(String(i_Text.data(), i_Text.size()), String(i_Next.data(), i_Next.size()), nullptr)));
}

void XPathTokenizer::emitArgument(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emit(std::make_unique<XPathArgument>(String(m_Text.data() + i_Offset, i_Length)));
}

// --- Operators ----------------------------------------------------------------------------------

/// Operand (operator operand)*. A pair counts only when both match; an operator without an operand
/// behind it drops all pairs, and the length is the first operand's alone.
std::uint32_t XPathTokenizer::measureChain(std::uint32_t i_Offset, Operators i_Operators, Recogniser i_Operand)
{
    const std::uint32_t first = (this->*i_Operand)(i_Offset, false);
    if (first == 0)
        return 0;
    std::uint32_t end = i_Offset + first;
    for (bool isPair = true; isPair;)
    {
        isPair = false;
        for (const std::wstring_view oper : i_Operators)
        {
            const std::uint32_t length = isCharacter(end, oper, false);
            if (length == 0)
                continue;
            const std::uint32_t operand = (this->*i_Operand)(end + length, false);
            if (operand == 0)
                return first;
            end += length + operand;
            isPair = true;
            break;
        }
    }
    return end - i_Offset;
}

/// The first operand, then each operator and operand in turn.
void XPathTokenizer::emitChain(std::uint32_t i_Offset, std::uint32_t i_Length, Operators i_Operators,
                               Recogniser i_Operand)
{
    const std::uint32_t end = i_Offset + i_Length;
    std::uint32_t position = i_Offset + (this->*i_Operand)(i_Offset, true);
    while (position < end && !isGivenUp())
    {
        for (const std::wstring_view oper : i_Operators)
        {
            const std::uint32_t length = isCharacter(position, oper, false);
            if (length == 0)
                continue;
            isCharacter(position, oper, true);
            position += length;
            break;
        }
        position += (this->*i_Operand)(position, true);
    }
}

/// Expr ::= OrExpr. Arguments and predicates are the same production.
std::uint32_t XPathTokenizer::isExpr(std::uint32_t i_Offset, bool i_Consume)
{
    if (m_Nesting > s_MaximumNesting)
    {
        m_NestingExceeded = true;
        return 0;
    }
    ++m_Nesting;
    const std::uint32_t length = isOrExpr(i_Offset, i_Consume);
    --m_Nesting;
    return length;
}

std::uint32_t XPathTokenizer::isArgument(std::uint32_t i_Offset, bool i_Consume)
{
    return isExpr(i_Offset, i_Consume);
}

std::uint32_t XPathTokenizer::isPredicateExpr(std::uint32_t i_Offset, bool i_Consume)
{
    return isExpr(i_Offset, i_Consume);
}

/// OrExpr ::= AndExpr ("or" AndExpr)*
std::uint32_t XPathTokenizer::measureOrExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, {L"or"}, &XPathTokenizer::isAndExpr);
}

void XPathTokenizer::emitOrExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, {L"or"}, &XPathTokenizer::isAndExpr);
}

/// AndExpr ::= EqualityExpr ("and" EqualityExpr)*
std::uint32_t XPathTokenizer::measureAndExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, {L"and"}, &XPathTokenizer::isEqualityExpr);
}

/// D-08: behind each operand the emission goes on by the length of the first operand where
/// it should go on by that of the "and". From the second "and" on it looks at a shifted place,
/// and what it does not find there is left out: "a and b and c" is read as "a and b".
/// XPath 1.0 says that all three count. A place
/// behind the chain's own end counts too, so that a text can be read more than once.
void XPathTokenizer::emitAndExpr(std::uint32_t i_Offset, std::uint32_t)
{
    const std::uint32_t first = isEqualityExpr(i_Offset, true);
    std::uint32_t position = i_Offset + first;
    for (;;)
    {
        const std::uint32_t length = isCharacter(position, L"and", false);
        const std::uint32_t operand = length ? isEqualityExpr(position + length, false) : 0;
        if (operand == 0)
            return;
        isCharacter(position, L"and", true);
        isEqualityExpr(position + length, true);
        position += operand + first;
    }
}

/// EqualityExpr ::= RelationalExpr (("!=" | "=") RelationalExpr)*
std::uint32_t XPathTokenizer::measureEqualityExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, {L"!=", L"="}, &XPathTokenizer::isRelationalExpr);
}

void XPathTokenizer::emitEqualityExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, {L"!=", L"="}, &XPathTokenizer::isRelationalExpr);
}

/// RelationalExpr ::= AdditiveExpr (("<=" | ">=" | "<" | ">") AdditiveExpr)*
std::uint32_t XPathTokenizer::measureRelationalExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, {L"<=", L">=", L"<", L">"}, &XPathTokenizer::isAdditiveExpr);
}

void XPathTokenizer::emitRelationalExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, {L"<=", L">=", L"<", L">"}, &XPathTokenizer::isAdditiveExpr);
}

/// AdditiveExpr ::= MultiplicativeExpr (("+" | "-") MultiplicativeExpr)*
std::uint32_t XPathTokenizer::measureAdditiveExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, {L"+", L"-"}, &XPathTokenizer::isMultiplicativeExpr);
}

void XPathTokenizer::emitAdditiveExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, {L"+", L"-"}, &XPathTokenizer::isMultiplicativeExpr);
}

/// MultiplicativeExpr ::= UnaryExpr (("*" | "div" | "mod") UnaryExpr)*
std::uint32_t XPathTokenizer::measureMultiplicativeExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, {L"*", L"div", L"mod"}, &XPathTokenizer::isUnaryExpr);
}

void XPathTokenizer::emitMultiplicativeExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, {L"*", L"div", L"mod"}, &XPathTokenizer::isUnaryExpr);
}

std::uint32_t XPathTokenizer::minusSigns(std::uint32_t i_Offset, bool& o_Odd)
{
    o_Odd = false;
    std::uint32_t position = i_Offset;
    while (const std::uint32_t length = isCharacter(position, L"-", false))
    {
        position += length;
        o_Odd = !o_Odd;
    }
    return position - i_Offset;
}

/// UnaryExpr ::= "-"* UnionExpr
std::uint32_t XPathTokenizer::measureUnaryExpr(std::uint32_t i_Offset)
{
    bool isOdd = false;
    const std::uint32_t signs = minusSigns(i_Offset, isOdd);
    const std::uint32_t operand = isUnionExpr(i_Offset + signs, false);
    return operand ? signs + operand : 0;
}

/// An odd number of signs becomes "( 0 - x )" with a negative zero; an even number leaves nothing.
void XPathTokenizer::emitUnaryExpr(std::uint32_t i_Offset, std::uint32_t)
{
    bool isOdd = false;
    const std::uint32_t signs = minusSigns(i_Offset, isOdd);
    if (isOdd)
    {
        emitToken(L"(", {});
        auto pZero = std::make_unique<XPathArgument>(String(L"0"));
        pZero->setNegativeZero(true);
        emit(std::move(pZero));
        emitToken(L"-", {});
    }
    isUnionExpr(i_Offset + signs, true);
    if (isOdd)
        emitToken(L")", {});
}

/// UnionExpr ::= PathExpr ("|" PathExpr)*
std::uint32_t XPathTokenizer::measureUnionExpr(std::uint32_t i_Offset)
{
    return measureChain(i_Offset, {L"|"}, &XPathTokenizer::isPathExpr);
}

void XPathTokenizer::emitUnionExpr(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitChain(i_Offset, i_Length, {L"|"}, &XPathTokenizer::isPathExpr);
}

// --- Primary expressions ------------------------------------------------------------------------

/// "//" or "/", the former tried first.
std::uint32_t XPathTokenizer::pathSeparator(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t length = isCharacter(i_Offset, L"//", i_Consume);
    return length ? length : isCharacter(i_Offset, L"/", i_Consume);
}

/// PathExpr ::= FilterExpr ("//" | "/") RelativeLocationPath | FilterExpr | LocationPath
/// D-11: the first form takes the length of its relative path alone, so that it hardly ever
/// fits the text: "(//a)/@id" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::measurePathExpr(std::uint32_t i_Offset)
{
    const std::uint32_t filter = isFilterExpr(i_Offset, false);
    if (filter == 0)
        return isLocationPath(i_Offset, false);
    const std::uint32_t separator = pathSeparator(i_Offset + filter, false);
    const std::uint32_t relative = separator ? isRelativeLocationPath(i_Offset + filter + separator, false) : 0;
    return relative ? relative : filter;
}

void XPathTokenizer::emitPathExpr(std::uint32_t i_Offset, std::uint32_t)
{
    const std::uint32_t filter = isFilterExpr(i_Offset, true);
    if (filter == 0)
    {
        isLocationPath(i_Offset, true);
        return;
    }
    const std::uint32_t separator = pathSeparator(i_Offset + filter, false);
    if (separator && isRelativeLocationPath(i_Offset + filter + separator, false))
    {
        pathSeparator(i_Offset + filter, true);
        isRelativeLocationPath(i_Offset + filter + separator, true);
    }
}

/// FilterExpr ::= PrimaryExpr Predicate*
/// D-11: the predicates are emitted but not counted: "(//a)[1]" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::measureFilterExpr(std::uint32_t i_Offset)
{
    return isPrimaryExpr(i_Offset, false);
}

void XPathTokenizer::emitFilterExpr(std::uint32_t i_Offset, std::uint32_t)
{
    std::uint32_t position = i_Offset + isPrimaryExpr(i_Offset, true);
    while (const std::uint32_t predicate = isPredicate(position, true))
        position += predicate;
}

/// PrimaryExpr ::= VariableReference | "(" Expr ")" | FunctionCall | Literal | Number
std::uint32_t XPathTokenizer::isPrimaryExpr(std::uint32_t i_Offset, bool i_Consume)
{
    static constexpr Recogniser s_Alternatives[] = {&XPathTokenizer::isVariableReference,
                                                    &XPathTokenizer::parenthesised, &XPathTokenizer::isFunctionCall,
                                                    &XPathTokenizer::isLiteral, &XPathTokenizer::isNumber};
    std::uint32_t length = 0;
    for (const Recogniser alternative : s_Alternatives)
    {
        length = (this->*alternative)(i_Offset, i_Consume);
        if (length)
            break;
    }
    return traced(L" XPathTokenizer::isPrimaryExpr()", i_Offset, i_Consume, length);
}

std::uint32_t XPathTokenizer::parenthesised(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t open = isCharacter(i_Offset, L"(", false);
    const std::uint32_t expr = open ? isExpr(i_Offset + open, false) : 0;
    const std::uint32_t close = expr ? isCharacter(i_Offset + open + expr, L")", false) : 0;
    if (close == 0)
        return 0;
    if (i_Consume)
    {
        isCharacter(i_Offset, L"(", true);
        isExpr(i_Offset + open, true);
        isCharacter(i_Offset + open + expr, L")", true);
    }
    return open + expr + close;
}

/// VariableReference ::= "$" QName
std::uint32_t XPathTokenizer::isVariableReference(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t dollar = isCharacter(i_Offset, L"$", false);
    const std::uint32_t name = dollar ? isQName(i_Offset + dollar, false) : 0;
    if (name && i_Consume)
    {
        isCharacter(i_Offset, L"$", true);
        isQName(i_Offset + dollar, true);
    }
    return traced(L" XPathTokenizer::isVariableReference()", i_Offset, i_Consume, name ? dollar + name : 0);
}

/// FunctionCall ::= FunctionName "(" (Argument ("," Argument)*)? ")"
std::uint32_t XPathTokenizer::measureFunctionCall(std::uint32_t i_Offset)
{
    std::uint32_t end = i_Offset;
    const std::uint32_t name = isFunctionName(end, false);
    const std::uint32_t open = name ? isCharacter(end + name, L"(", false) : 0;
    if (open == 0)
        return 0;
    end += name + open;
    if (const std::uint32_t first = isArgument(end, false))
    {
        end += first;
        while (const std::uint32_t comma = isCharacter(end, L",", false))
        {
            const std::uint32_t argument = isArgument(end + comma, false);
            if (argument == 0)
                break;
            end += comma + argument;
        }
    }
    const std::uint32_t close = isCharacter(end, L")", false);
    return close ? end + close - i_Offset : 0;
}

void XPathTokenizer::emitFunctionCall(std::uint32_t i_Offset, std::uint32_t)
{
    std::uint32_t position = i_Offset + isFunctionName(i_Offset, true);
    if (isGivenUp())
        return;
    // Every name of the table is one that the function factory knows, so the token is an operator.
    auto* pFunction = static_cast<XPathOperator*>(m_ExprVector.back().get());
    position += isCharacter(position, L"(", true);
    if (const std::uint32_t first = isArgument(position, true))
    {
        pFunction->setArgumentsCount(1);
        position += first;
        while (const std::uint32_t comma = isCharacter(position, L",", false))
        {
            isCharacter(position, L",", true);
            position += comma + isArgument(position + comma, true);
            pFunction->setArgumentsCount(pFunction->getArgumentsCount() + 1);
        }
    }
    isCharacter(position, L")", true);
}

/// Predicate ::= "[" Expr "]"
std::uint32_t XPathTokenizer::isPredicate(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t open = isCharacter(i_Offset, L"[", false);
    const std::uint32_t expr = open ? isPredicateExpr(i_Offset + open, false) : 0;
    const std::uint32_t close = expr ? isCharacter(i_Offset + open + expr, L"]", false) : 0;
    if (close && i_Consume)
    {
        isCharacter(i_Offset, L"[", true);
        isPredicateExpr(i_Offset + open, true);
        isCharacter(i_Offset + open + expr, L"]", true);
    }
    return traced(L" XPathTokenizer::isPredicate()", i_Offset, i_Consume, close ? open + expr + close : 0);
}

// --- Location paths -----------------------------------------------------------------------------

/// LocationPath ::= RelativeLocationPath | AbsoluteLocationPath
std::uint32_t XPathTokenizer::measureLocationPath(std::uint32_t i_Offset)
{
    const std::uint32_t relative = isRelativeLocationPath(i_Offset, false);
    return relative ? relative : isAbsoluteLocationPath(i_Offset, false);
}

/// The path stays whole: one operand with its text as written, spaces included.
void XPathTokenizer::emitLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    emitArgument(i_Offset, i_Length);
}

/// AbsoluteLocationPath ::= AbbreviatedAbsoluteLocationPath | "/" RelativeLocationPath
std::uint32_t XPathTokenizer::isAbsoluteLocationPath(std::uint32_t i_Offset, bool i_Consume)
{
    std::uint32_t length = isAbbreviatedAbsoluteLocationPath(i_Offset, i_Consume);
    if (length == 0)
    {
        const std::uint32_t slash = isCharacter(i_Offset, L"/", false);
        const std::uint32_t relative = slash ? isRelativeLocationPath(i_Offset + slash, false) : 0;
        length = relative ? slash + relative : 0;
    }
    return traced(L" XPathTokenizer::isAbsoluteLocationPath()", i_Offset, i_Consume, length);
}

/// AbbreviatedAbsoluteLocationPath ::= "//" RelativeLocationPath
std::uint32_t XPathTokenizer::isAbbreviatedAbsoluteLocationPath(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t slashes = isCharacter(i_Offset, L"//", false);
    const std::uint32_t relative = slashes ? isRelativeLocationPath(i_Offset + slashes, false) : 0;
    return traced(L" XPathTokenizer::isAbbreviatedAbsoluteLocationPath()", i_Offset, i_Consume,
                  relative ? slashes + relative : 0);
}

/// RelativeLocationPath ::= Step (("//" | "/") Step)*
/// A separator without a step behind it ends the path before the separator.
std::uint32_t XPathTokenizer::measureRelativeLocationPath(std::uint32_t i_Offset)
{
    std::uint32_t end = i_Offset + isStep(i_Offset, false);
    if (end == i_Offset)
        return 0;
    while (const std::uint32_t separator = pathSeparator(end, false))
    {
        const std::uint32_t step = isStep(end + separator, false);
        if (step == 0)
            break;
        end += separator + step;
    }
    return end - i_Offset;
}

void XPathTokenizer::emitRelativeLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    std::uint32_t position = i_Offset + isStep(i_Offset, true);
    while (position < i_Offset + i_Length)
    {
        position += pathSeparator(position, true);
        position += isStep(position, true);
    }
}

/// Step ::= AxisSpecifier NodeTest Predicate* | AbbreviatedStep
std::uint32_t XPathTokenizer::measureStep(std::uint32_t i_Offset)
{
    const std::uint32_t axis = isAxisSpecifier(i_Offset, false);
    const std::uint32_t test = isNodeTest(i_Offset + axis, false);
    if (test == 0)
        return isAbbreviatedStep(i_Offset, false);
    std::uint32_t end = i_Offset + axis + test;
    while (const std::uint32_t predicate = isPredicate(end, false))
        end += predicate;
    return end - i_Offset;
}

void XPathTokenizer::emitStep(std::uint32_t i_Offset, std::uint32_t i_Length)
{
    const std::uint32_t axis = isAxisSpecifier(i_Offset, false);
    if (isNodeTest(i_Offset + axis, false) == 0)
    {
        isAbbreviatedStep(i_Offset, true);
        return;
    }
    isAxisSpecifier(i_Offset, true);
    std::uint32_t position = i_Offset + axis + isNodeTest(i_Offset + axis, true);
    while (position < i_Offset + i_Length && !isGivenUp())
        position += isPredicate(position, true);
}

/// AbbreviatedStep ::= ".." | "."
std::uint32_t XPathTokenizer::isAbbreviatedStep(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t parent = isCharacter(i_Offset, L"..", i_Consume);
    const std::uint32_t length = parent ? parent : isCharacter(i_Offset, L".", i_Consume);
    return traced(L" XPathTokenizer::isAbbreviatedStep()", i_Offset, i_Consume, length);
}

/// AxisSpecifier ::= AxisName "::" | AxisName | "@" | nothing
/// D-18: an axis name counts without its "::", and the node test must begin right behind it,
/// so that an element called "child" or "self" cannot be asked for by its name. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::isAxisSpecifier(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t name = isAxisName(i_Offset, i_Consume);
    std::uint32_t length = name;
    if (name)
        length += isCharacter(i_Offset + name, L"::", i_Consume);
    else
        length = isAbbreviatedAxisSpecifier(i_Offset, i_Consume);
    return traced(L" XPathTokenizer::isAxisSpecifier()", i_Offset, i_Consume, length);
}

std::uint32_t XPathTokenizer::isAbbreviatedAxisSpecifier(std::uint32_t i_Offset, bool i_Consume)
{
    return traced(L" XPathTokenizer::isAbbreviatedAxisSpecifier()", i_Offset, i_Consume,
                  isCharacter(i_Offset, L"@", i_Consume));
}

/// NodeTest ::= NodeType "(" ")" | NameTest | "processing-instruction" "(" Literal ")"
std::uint32_t XPathTokenizer::isNodeTest(std::uint32_t i_Offset, bool i_Consume)
{
    std::uint32_t length = 0;
    const std::uint32_t type = isNodeType(i_Offset, false);
    const std::uint32_t open = type ? isCharacter(i_Offset + type, L"(", false) : 0;
    const std::uint32_t close = open ? isCharacter(i_Offset + type + open, L")", false) : 0;
    if (close)
    {
        length = type + open + close;
        if (i_Consume)
        {
            isCharacter(i_Offset + type, L"(", true);
            isCharacter(i_Offset + type + open, L")", true);
        }
    }
    else
    {
        // The third form begins with a name, which the name test before it takes.
        length = isNameTest(i_Offset, i_Consume);
    }
    return traced(L" XPathTokenizer::isNodeTest()", i_Offset, i_Consume, length);
}

/// NameTest ::= "*" | NCName ":" "*" | QName
/// D-13: the second form takes the length of its "*" alone and so never fits the text. XPath 1.0
/// accepts "p:*".
std::uint32_t XPathTokenizer::isNameTest(std::uint32_t i_Offset, bool i_Consume)
{
    std::uint32_t length = isCharacter(i_Offset, L"*", i_Consume);
    if (length == 0)
    {
        const std::uint32_t prefix = isNCName(i_Offset, false);
        const std::uint32_t colon = prefix ? isCharacter(i_Offset + prefix, L":", false) : 0;
        length = colon ? isCharacter(i_Offset + prefix + colon, L"*", false) : 0;
        if (length == 0)
            length = isQName(i_Offset, i_Consume);
        else if (i_Consume)
        {
            isNCName(i_Offset, true);
            isCharacter(i_Offset + prefix, L":", true);
            isCharacter(i_Offset + prefix + colon, L"*", true);
        }
    }
    return traced(L" XPathTokenizer::isNameTest()", i_Offset, i_Consume, length);
}

// --- Names, literals, numbers -------------------------------------------------------------------

/// QName ::= PrefixedName | NCName
std::uint32_t XPathTokenizer::isQName(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t skipped = spaces(i_Offset);
    std::uint32_t length = isPrefixedName(i_Offset + skipped, i_Consume);
    if (length == 0)
        length = isNCName(i_Offset + skipped, i_Consume);
    return length ? skipped + length : 0;
}

/// PrefixedName ::= NCName ":" NCName
/// D-12: it takes the length of its local part alone, so that a prefixed name never spans
/// its own text: "p:item" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::isPrefixedName(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t prefix = isNCName(i_Offset, false);
    const std::uint32_t colon = prefix ? isCharacter(i_Offset + prefix, L":", false) : 0;
    const std::uint32_t local = colon ? isNCName(i_Offset + prefix + colon, false) : 0;
    if (local && i_Consume)
    {
        isNCName(i_Offset, true);
        isCharacter(i_Offset + prefix, L":", true);
        isNCName(i_Offset + prefix + colon, true);
    }
    return local;
}

/// NCName ::= (Letter | "_") (NameChar but not ":")*
std::uint32_t XPathTokenizer::isNCName(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t length = nameLength(i_Offset);
    if (length)
    {
        note(i_Offset + length);
        if (i_Consume)
            emitArgument(i_Offset, length);
    }
    return length;
}

/// D-02: spaces before a full stop, a hyphen or an underscore are taken into the name, so
/// that "a -b" is one name and "a - b" is not recognised. XPath 1.0 says that both subtract.
std::uint32_t XPathTokenizer::nameLength(std::uint32_t i_Offset) const noexcept
{
    std::uint32_t end = i_Offset + spaces(i_Offset);
    if (!isLetter(at(end)) && at(end) != L'_')
        return 0;
    ++end;
    for (;;)
    {
        const wchar_t unit = at(end);
        if (isLetter(unit) || isDigit(unit) || unit == L'.' || unit == L'-' || unit == L'_')
        {
            ++end;
            continue;
        }
        if (unit == L' ')
        {
            const std::uint32_t next = end + spaces(end);
            const wchar_t behind = at(next);
            if (behind != L'.' && behind != L'-' && behind != L'_')
                break;
            end = next + 1;
            continue;
        }
        if (!isCombiningChar(unit) && !isExtender(unit))
            break;
        ++end;
    }
    return end - i_Offset;
}

/// Literal ::= '"' [^"]* '"' | "'" [^']* "'"
std::uint32_t XPathTokenizer::isLiteral(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t skipped = spaces(i_Offset);
    const wchar_t quote = at(i_Offset + skipped);
    if (quote != L'"' && quote != L'\'')
        return 0;
    const std::size_t close = m_Text.find(quote, i_Offset + skipped + 1);
    if (close == std::wstring_view::npos)
        return 0;
    const std::uint32_t end = static_cast<std::uint32_t>(close) + 1;
    note(end);
    if (i_Consume)
        emitArgument(i_Offset + skipped, end - i_Offset - skipped);
    return end - i_Offset;
}

/// Number ::= Digits ("." Digits?)? | "." Digits
/// D-04: the second form looks for its digits at the full stop itself and so never matches:
/// ".5" is not recognised. XPath 1.0 accepts it.
std::uint32_t XPathTokenizer::isNumber(std::uint32_t i_Offset, bool i_Consume)
{
    const std::uint32_t skipped = spaces(i_Offset);
    std::uint32_t end = i_Offset + skipped;
    const std::uint32_t digits = isDigits(end, false);
    if (digits == 0)
        return 0;
    end += digits;
    if (const std::uint32_t stop = terminalLength(end, L"."))
        end += stop + isDigits(end + stop, false);
    note(end);
    if (i_Consume)
        emitArgument(i_Offset + skipped, end - i_Offset - skipped);
    return end - i_Offset;
}

std::uint32_t XPathTokenizer::isDigits(std::uint32_t i_Offset, bool)
{
    std::uint32_t end = i_Offset;
    while (isDigit(at(end)))
        ++end;
    return end - i_Offset;
}

// --- Terminals and tables -----------------------------------------------------------------------

std::uint32_t XPathTokenizer::spaces(std::uint32_t i_Offset) const noexcept
{
    std::uint32_t end = i_Offset;
    while (at(end) == L' ')
        ++end;
    return end - i_Offset;
}

std::uint32_t XPathTokenizer::terminalLength(std::uint32_t i_Offset, std::wstring_view i_Text) const noexcept
{
    const std::uint32_t skipped = spaces(i_Offset);
    const std::size_t begin = std::size_t{i_Offset} + skipped;
    if (begin >= m_Text.size() || !m_Text.substr(begin).starts_with(i_Text))
        return 0;
    return skipped + static_cast<std::uint32_t>(i_Text.size());
}

std::uint32_t XPathTokenizer::isCharacter(std::uint32_t i_Offset, std::wstring_view i_Text, bool i_Consume)
{
    const std::uint32_t length = terminalLength(i_Offset, i_Text);
    if (Trace::isEnabled(TraceInformation)) [[unlikely]]
    {
        const Trace trace(s_Tracer, L" XPathTokenizer::isCharacter()");
        XML_TRACE(trace, TraceInformation) << L"isCharacter return value = " << length;
    }
    if (length)
    {
        note(i_Offset + length);
        if (i_Consume)
            emitToken(i_Text, {});
    }
    return length;
}

/// Length, spaces included, of the first entry that the text begins with; nothing behind it is looked at.
template <std::size_t Size>
std::uint32_t XPathTokenizer::tableEntry(const std::array<std::wstring_view, Size>& i_Table, std::uint32_t i_Offset,
                                         std::wstring_view& o_Entry) const noexcept
{
    const std::uint32_t skipped = spaces(i_Offset);
    const std::size_t begin = std::size_t{i_Offset} + skipped;
    if (begin >= m_Text.size())
        return 0;
    const std::wstring_view rest = m_Text.substr(begin);
    for (const std::wstring_view entry : i_Table)
    {
        if (rest.starts_with(entry))
        {
            o_Entry = entry;
            return skipped + static_cast<std::uint32_t>(entry.size());
        }
    }
    return 0;
}

std::uint32_t XPathTokenizer::isAxisName(std::uint32_t i_Offset, bool i_Consume)
{
    std::wstring_view entry;
    return traced(L" XPathTokenizer::isAxisName()", i_Offset, i_Consume, tableEntry(s_AxisNames, i_Offset, entry));
}

std::uint32_t XPathTokenizer::isNodeType(std::uint32_t i_Offset, bool i_Consume)
{
    std::wstring_view entry;
    return traced(L" XPathTokenizer::isNodeType()", i_Offset, i_Consume, tableEntry(s_NodeTypes, i_Offset, entry));
}

std::uint32_t XPathTokenizer::isFunctionName(std::uint32_t i_Offset, bool i_Consume)
{
    std::wstring_view entry;
    const std::uint32_t length = tableEntry(s_FunctionNames, i_Offset, entry);
    if (length && i_Consume)
        emitToken(entry, L"(");
    return traced(L" XPathTokenizer::isFunctionName()", i_Offset, i_Consume, length);
}

} // namespace XmlPlugin
