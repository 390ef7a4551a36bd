#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "compile/XPathElements.h"
#include "compile/XPathLookAhead.h"
#include "compile/XPathSource.h"
#include "compile/XPathTokenEmitter.h"
#include "values/XPathExpression.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

namespace XmlPlugin
{

class Trace;
class XPathQuickReader;

/// Turns the text of one expression into its tokens, in the order in which they are written.
///
/// A hand-written recogniser with one member function per production, over the text in parentheses. A first pass, the
/// look-ahead, measures every production: how many characters does it take? If that consumes the whole text, a second
/// pass goes through the productions again, and an `XPathTokenEmitter` appends their tokens. A location path, or a
/// union of paths, is not split: it is one operand. An `XPathLookAhead` remembers the lengths found by the first pass.
/// Nearly all expressions need none of this, because an `XPathQuickReader` reads them in one pass.
///
/// Ownership: the tokens belong to the `XPathElements` in which they are created.
/// Threads: one at a time.
/// Invariants: a production that does not match takes 0 characters; offsets and lengths count UTF-16 code units.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathTokenizerTest.cpp
class XPathTokenizer
{
public:
    /// Expressions nested deeper than this (parentheses, calls and predicates together) are rejected.
    static constexpr unsigned s_MaximumNesting = 256;
    /// Number of levels for which every stack has room.
    static constexpr unsigned s_UsualNesting = 2;
    /// An expression may have this many tokens per character, plus a fixed number. Only "and" chains that read the same
    /// text repeatedly, and so double their tokens with every chain, exceed the limit. They are rejected.
    static constexpr std::size_t s_TokensPerCharacter = 4;
    static constexpr std::size_t s_TokensOnTop = 100000;

    /// Creates the tokens in \p io_Elements, which must outlive the tokenizer.
    XPathTokenizer(std::wstring_view i_XPath, XPathElements& io_Elements);
    /// The tokens live as long as the tokenizer.
    explicit XPathTokenizer(const String& i_XPath);
    XPathTokenizer(const XPathTokenizer&) = delete;
    XPathTokenizer& operator=(const XPathTokenizer&) = delete;

    /// Returns 0, with the tokens in `outVector()`, or -15105 if the text is not recognised as a whole, is nested too
    /// deeply, or has too many tokens.
    TErrorCode start();
    /// Appends the elements in postfix order, if quick code is allowed and can read the expression. Otherwise returns
    /// false and changes nothing; `start` and the parser's reordering must be used then.
    bool readPostfix(XPathExpressionsVector& o_Postfix);
    /// Joins unions of location paths into one operand each; part of `start`.
    void mergeXPath();

    /// Offset in the caller's expression up to which it was recognised.
    unsigned recognisedUpTo() const noexcept;
    /// Turns off the memory of the look-ahead, so that tests can compare both modes on short texts.
    void forgetLookAhead() noexcept { m_Remember = false; }

    /// The tokens, once `start` has returned 0.
    const XPathExpressionsVector& outVector() const noexcept { return OutVector; }

    // The productions. Each takes an offset and whether to emit. It returns the number of characters that it takes,
    // including the spaces before it; 0 means no match. Operators, primary expressions, paths and terminals have one
    // source file each, where each production has its grammar above it. The levels of operators are rows of a table in
    // XPathTokenizerOperators.cpp.
    std::uint32_t isExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isOrExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAndExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isEqualityExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isRelationalExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAdditiveExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isMultiplicativeExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isUnaryExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isUnionExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isPathExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isFilterExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isPrimaryExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isFunctionCall(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isArgument(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isPredicate(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isPredicateExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isLocationPath(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAbsoluteLocationPath(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAbbreviatedAbsoluteLocationPath(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isRelativeLocationPath(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isStep(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAbbreviatedStep(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAxisSpecifier(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAbbreviatedAxisSpecifier(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isAxisName(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isNodeTest(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isNodeType(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isNameTest(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isLiteral(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isNumber(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isDigits(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isFunctionName(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isVariableReference(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isQName(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isPrefixedName(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t isNCName(std::uint32_t i_Offset, bool i_Consume);
    /// The terminal \p i_Text, after any number of spaces. What follows it does not matter.
    std::uint32_t isCharacter(std::uint32_t i_Offset, std::wstring_view i_Text, bool i_Consume);

private:
    /// The productions whose lengths the look-ahead remembers.
    enum Remembered : unsigned
    {
        OrExpr,
        AndExpr,
        EqualityExpr,
        RelationalExpr,
        AdditiveExpr,
        MultiplicativeExpr,
        UnaryExpr,
        UnionExpr,
        PathExpr,
        FilterExpr,
        FunctionCall,
        LocationPath,
        RelativeLocationPath,
        Step,
        RememberedCount
    };
    static_assert(RememberedCount == XPathLookAhead::s_MostProductions);
    using Recogniser = std::uint32_t (XPathTokenizer::*)(std::uint32_t, bool);
    struct Production;

    XPathTokenizer(const String& i_XPath, std::unique_ptr<XPathElements> i_pElements);

    // How a production runs: it is measured (if necessary, only its operands and operators are) and then emitted.
    std::uint32_t recognise(Remembered i_Production, std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t measure(const Production& i_Production, std::uint32_t i_Offset);
    std::uint32_t measureChain(const Production& i_Production, std::uint32_t i_Offset);
    void emitChain(const Production& i_Production, std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t operatorAt(const Production& i_Production, std::uint32_t i_Offset, std::wstring_view& o_Operator);

    std::uint32_t measureUnaryExpr(std::uint32_t i_Offset);
    std::uint32_t measurePathExpr(std::uint32_t i_Offset);
    std::uint32_t measureFilterExpr(std::uint32_t i_Offset);
    std::uint32_t measureFunctionCall(std::uint32_t i_Offset);
    std::uint32_t measureLocationPath(std::uint32_t i_Offset);
    std::uint32_t measureRelativeLocationPath(std::uint32_t i_Offset);
    std::uint32_t measureStep(std::uint32_t i_Offset);
    void emitAndExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    void emitUnaryExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    void emitPathExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    void emitFilterExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    void emitFunctionCall(std::uint32_t i_Offset, std::uint32_t i_Length);
    void emitLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length);
    void emitRelativeLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length);
    void emitStep(std::uint32_t i_Offset, std::uint32_t i_Length);

    std::uint32_t minusSigns(std::uint32_t i_Offset, bool& o_Odd);
    std::uint32_t pathSeparator(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t parenthesised(std::uint32_t i_Offset, bool i_Consume);

    void traceRefusal(const Trace& i_Trace) const;
    void note(std::uint32_t i_End) noexcept { m_Furthest = i_End > m_Furthest ? i_End : m_Furthest; }
    bool isGivenUp() const noexcept { return m_NestingExceeded || m_Emitter.isLimitExceeded(); }

    std::unique_ptr<XPathElements> m_pOwnElements; ///< null if the caller owns them
    XPathElements& m_Elements;
    const XPathSource m_Source;
    XPathTokenEmitter m_Emitter;
    XPathExpressionsVector OutVector;
    XPathLookAhead m_LookAhead;
    bool m_Remember = true;
    XPathQuickReader* m_pQuickReader = nullptr; ///< not null while it runs; the look-ahead then remembers nothing
    unsigned m_Nesting = 0;
    bool m_NestingExceeded = false;
    bool m_StackExceeded = false; ///< the thread's stack was the limit
    std::uint32_t m_Furthest = 0;
};

} // namespace XmlPlugin
