#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "compile/XPathElements.h"
#include "functions/XPathFunction.h"
#include "functions/XPathLetterIndex.h"
#include "values/XPathArgument.h"
#include "values/XPathExpression.h"
#include "values/XPathSmallVector.h"

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

class Trace;

namespace XmlPlugin
{

/// Turns the text of one expression into its tokens, in the order in which they are written.
///
/// A recogniser by hand, one operation a production, over the text in parentheses. Every
/// production is measured first (look-ahead: how many characters would it take?) and, once the
/// look-ahead over the whole text has consumed every character, emitted: the productions are gone
/// through once more and append their tokens. A location path, and a union of them, stays whole
/// as one operand. What a production was found to take at an offset is remembered, so that
/// alternatives that begin alike do not multiply the work. Nearly all expressions need none of
/// this: while nobody listens to the traces they are read the quick way, in one pass.
///
/// Ownership: the tokens belong to the elements that they are made in.
/// Threads: one at a time.
/// Invariants: a production takes 0 characters where it does not match; offsets and lengths count
/// UTF-16 code units.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathTokenizerTest.cpp
class XPathTokenizer
{
public:
    /// Expressions nested deeper than this (parentheses, calls and predicates together) are refused.
    static constexpr unsigned s_MaximumNesting = 256;
    /// An expression may have this many tokens for each of its characters, and a fixed number on
    /// top. Only "and" chains that read the same text again and again, doubling their tokens with
    /// every chain, reach the limit; they are refused.
    static constexpr std::size_t s_TokensPerCharacter = 4;
    static constexpr std::size_t s_TokensOnTop = 100000;

    /// The tokens are made in \p io_Elements, which outlives the tokenizer.
    XPathTokenizer(std::wstring_view i_XPath, XPathElements& io_Elements);
    /// The tokens live as long as the tokenizer.
    explicit XPathTokenizer(const String& i_XPath);
    XPathTokenizer(const XPathTokenizer&) = delete;
    XPathTokenizer& operator=(const XPathTokenizer&) = delete;

    /// 0 with the tokens in `outVector()`, or -15105 when the text was not recognised as a whole or
    /// is nested too deeply or has too many tokens.
    TErrorCode start();
    /// The elements in postfix order at once, for an expression of the common shape while nobody listens to the traces.
    /// False, with nothing done, otherwise: `start` and the parser's own reordering then do.
    bool readPostfix(XPathExpressionsVector& o_Postfix);
    /// Joins unions of location paths into one operand each; part of `start`.
    void mergeXPath();

    /// Offset into the caller's expression beyond which nothing was recognised.
    unsigned recognisedUpTo() const noexcept;
    /// Switches the memory of the look-ahead off, to compare both ways on short texts.
    void forgetLookAhead() noexcept { m_Remember = false; }
    /// Goes through the productions even where the quick way would do, to compare both.
    void forgoQuickWay() noexcept { m_MayBeQuick = false; }

    /// The tokens, once `start` has returned 0.
    const XPathExpressionsVector& outVector() const noexcept { return OutVector; }

    // The productions. Each takes an offset and whether to emit, and returns the number of
    // characters taken, spaces before it included; 0: no match. The grammar stands above
    // each of them: operators, primary expressions, paths and terminals have a source file each.
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
    /// The terminal \p i_Text, behind any number of spaces; what follows it is not looked at.
    std::uint32_t isCharacter(std::uint32_t i_Offset, std::wstring_view i_Text, bool i_Consume);

private:
    struct Production;
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
    using Operators = std::span<const std::wstring_view>;
    using Recogniser = std::uint32_t (XPathTokenizer::*)(std::uint32_t, bool);

    /// What each production was found to take, for a run of offsets: 0 unknown, else length + 1.
    struct LookAheadPage
    {
        static constexpr std::uint32_t s_Offsets = 16;
        std::array<std::array<std::uint32_t, RememberedCount>, s_Offsets> m_Length{};
    };

    std::uint32_t recognise(const Production& i_Production, std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t measure(const Production& i_Production, std::uint32_t i_Offset);

    std::uint32_t measureOrExpr(std::uint32_t i_Offset);
    void emitOrExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureAndExpr(std::uint32_t i_Offset);
    void emitAndExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureEqualityExpr(std::uint32_t i_Offset);
    void emitEqualityExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureRelationalExpr(std::uint32_t i_Offset);
    void emitRelationalExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureAdditiveExpr(std::uint32_t i_Offset);
    void emitAdditiveExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureMultiplicativeExpr(std::uint32_t i_Offset);
    void emitMultiplicativeExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureUnaryExpr(std::uint32_t i_Offset);
    void emitUnaryExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureUnionExpr(std::uint32_t i_Offset);
    void emitUnionExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measurePathExpr(std::uint32_t i_Offset);
    void emitPathExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureFilterExpr(std::uint32_t i_Offset);
    void emitFilterExpr(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureFunctionCall(std::uint32_t i_Offset);
    void emitFunctionCall(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureLocationPath(std::uint32_t i_Offset);
    void emitLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureRelativeLocationPath(std::uint32_t i_Offset);
    void emitRelativeLocationPath(std::uint32_t i_Offset, std::uint32_t i_Length);
    std::uint32_t measureStep(std::uint32_t i_Offset);
    void emitStep(std::uint32_t i_Offset, std::uint32_t i_Length);

    std::uint32_t measureChain(std::uint32_t i_Offset, Operators i_Operators, Recogniser i_Operand);
    void emitChain(std::uint32_t i_Offset, std::uint32_t i_Length, Operators i_Operators, Recogniser i_Operand);
    std::uint32_t minusSigns(std::uint32_t i_Offset, bool& o_Odd);
    std::uint32_t pathSeparator(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t parenthesised(std::uint32_t i_Offset, bool i_Consume);

    /// How the emission of a chain of "and" goes on is decided by the lengths of its first operands.
    struct AndChain
    {
        std::uint32_t m_Begin;  ///< of the first operand
        std::uint32_t m_And;    ///< its end; 0: no "and" so far
        std::uint32_t m_Second; ///< behind the "and"
    };
    /// An operator that waits for its right operand, in postfix order; null: an opening parenthesis.
    struct Waiting
    {
        XPathOperator* m_pOperator;
        int m_Priority;
    };
    bool readQuickly();
    void releaseWaiting();
    void quickOpen();
    void quickClose(bool i_IsEnd);
    XPathOperator& quickOperator(const XPathFunctionChoice& i_Choice);
    std::uint32_t quickExpr(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t quickChain(std::uint32_t i_Offset, std::uint32_t i_End, bool i_Consume);
    std::uint32_t quickOperand(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t quickNegated(std::uint32_t i_Offset, bool i_Consume);
    std::uint32_t quickNamed(std::uint32_t i_Offset, std::uint32_t i_Begin, bool i_Consume);
    std::uint32_t quickPathOperand(std::uint32_t i_Offset, std::uint32_t i_Begin, bool i_Consume);
    std::uint32_t quickPath(std::uint32_t i_Begin) const noexcept;
    std::uint32_t quickStep(std::uint32_t i_Begin) const noexcept;
    std::uint32_t quickPredicate(std::uint32_t i_Begin) const noexcept;
    std::uint32_t literalLength(std::uint32_t i_Begin) const noexcept;
    std::uint32_t quickName(std::uint32_t i_Begin) const noexcept;
    std::uint32_t slashesAt(std::uint32_t i_Begin) const noexcept;
    bool isAxisAt(std::uint32_t i_Begin) const noexcept;
    std::uint32_t quickParenthesised(std::uint32_t i_Begin, bool i_Consume);
    std::uint32_t quickNumber(std::uint32_t i_Begin, bool i_Consume);
    std::uint32_t quickLiteral(std::uint32_t i_Begin, bool i_Consume);
    std::uint32_t quickCall(std::uint32_t i_Begin, const XPathFunctionRow& i_Row, bool i_Consume);
    const XPathFunctionRow* callAt(std::uint32_t i_Begin) const noexcept;
    /// Whether a predicate or a separator of steps stands behind an operand.
    bool isContinued(std::uint32_t i_End) const noexcept
    {
        const wchar_t next = unit(skip(i_End));
        return next == L'[' || next == L'/';
    }
    bool isPlainAnd(const AndChain& i_Chain, std::uint32_t i_End) const noexcept;
    std::wstring_view operatorAt(std::uint32_t i_Begin) const noexcept;

    /// Whether \p i_Text, which is not empty, stands at the offset.
    bool standsAt(std::uint32_t i_Offset, std::wstring_view i_Text) const noexcept
    {
        std::size_t matched = 0;
        while (matched < i_Text.size() && i_Offset + matched < m_Text.size() &&
               m_Text[i_Offset + matched] == i_Text[matched])
        {
            ++matched;
        }
        return matched == i_Text.size();
    }
    std::uint32_t spaces(std::uint32_t i_Offset) const noexcept
    {
        std::uint32_t end = i_Offset;
        while (at(end) == L' ')
        {
            ++end;
        }
        return end - i_Offset;
    }
    wchar_t at(std::uint32_t i_Offset) const noexcept { return i_Offset < m_Text.size() ? m_Text[i_Offset] : L'\0'; }
    /// The same of an offset that is known not to be beyond the end.
    wchar_t unit(std::uint32_t i_Offset) const noexcept { return m_Text.data()[i_Offset]; }
    /// Such an offset behind the spaces at it.
    std::uint32_t skip(std::uint32_t i_Offset) const noexcept
    {
        while (unit(i_Offset) == L' ')
        {
            ++i_Offset;
        }
        return i_Offset;
    }
    template <std::size_t Size>
    std::uint32_t tableEntry(const std::array<std::wstring_view, Size>& i_Table,
                             const XPathLetterIndex<Size>& i_Letters, std::uint32_t i_Offset,
                             std::wstring_view& o_Entry) const noexcept;
    std::uint32_t nameLength(std::uint32_t i_Offset) const noexcept;
    std::uint32_t terminalLength(std::uint32_t i_Offset, std::wstring_view i_Text) const noexcept;
    std::uint32_t* remembered(Remembered i_Production, std::uint32_t i_Offset);
    void note(std::uint32_t i_End) noexcept { m_Furthest = i_End > m_Furthest ? i_End : m_Furthest; }

    void open(std::wstring_view i_XPath);
    void takeOutput();
    void traceRefusal(const Trace& i_Trace) const;
    std::size_t tokenLimit() const noexcept { return m_Text.size() * s_TokensPerCharacter + s_TokensOnTop; }
    bool isGivenUp() const noexcept { return m_NestingExceeded || m_TokensExceeded; }
    void emit(XPathExpression& i_Token)
    {
        if (m_ExprVector.size() >= tokenLimit())
        {
            m_TokensExceeded = true;
        }
        else
        {
            m_ExprVector.push_back(&i_Token);
        }
    }
    void emitToken(std::wstring_view i_Text, std::wstring_view i_Next);
    void emitZeroMinus();
    void emitNegativeZero();
    void emitArgument(std::uint32_t i_Offset, std::uint32_t i_Length)
    {
        emit(m_Elements.addArgument(m_Text.substr(i_Offset, i_Length)));
    }

    std::unique_ptr<XPathElements> m_pOwnElements; ///< null: the caller's
    XPathElements& m_Elements;
    std::wstring_view m_Text;            ///< "(" + the caller's expression + ")", with a null behind it
    XPathExpressionsVector m_ExprVector; ///< in the order in which they were emitted
    XPathExpressionsVector OutVector;
    std::vector<std::unique_ptr<LookAheadPage>> m_LookAhead;
    bool m_Remember = true;
    bool m_MayBeQuick = true;
    bool m_IsQuick = false;   ///< on the quick way: nothing is remembered
    bool m_IsPostfix = false; ///< on the quick way: m_ExprVector is put in postfix order
    XPathSmallVector<Waiting, 12> m_Waiting;
    unsigned m_Nesting = 0;
    bool m_NestingExceeded = false;
    bool m_TokensExceeded = false;
    std::uint32_t m_Furthest = 0;
};

} // namespace XmlPlugin
