#pragma once

#include "compile/XPathElements.h"
#include "compile/XPathOperatorStack.h"
#include "compile/XPathSource.h"
#include "functions/XPathFunction.h"
#include "values/XPathExpression.h"

#include <cstdint>
#include <string_view>

namespace XmlPlugin
{

struct XPathPlan;
class XPathOperator;
class XPathTokenizer;

/// Quick code: reads expressions of common shapes in one pass, directly into postfix order.
///
/// In such an expression every operator has both operands, so the levels of the grammar decide nothing: the elements
/// are the operands and operators in the order of the text, and an `XPathOperatorStack` reorders them. Every quirk of
/// the language, and every text that is not recognised, is left to the general code, which then starts from the
/// beginning.
///
///     Expr    ::= Operand (operator Operand)*
///     Operand ::= "-"* (Literal | Number | "(" Expr ")" | FunctionCall | a plain path | LocationPath)
///
/// Plain paths are those of `XPathPlainReader`. For any other location path, the tokenizer provides the length, and
/// asks this reader for the length of the expressions in its predicates.
///
/// Ownership: creates the elements in those of the caller. Borrows the tokenizer, which has the text.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathQuickReaderTest.cpp
class XPathQuickReader
{
public:
    XPathQuickReader(const XPathSource& i_Source, XPathTokenizer& io_Tokenizer, XPathElements& io_Elements,
                     XPathExpressionsVector& o_Postfix) noexcept
        : m_Source(i_Source), m_Tokenizer(io_Tokenizer), m_Elements(io_Elements), m_Postfix(o_Postfix)
    {
    }

    /// Appends the elements in postfix order. Returns false, with some of them appended, if the expression has another
    /// shape or is not recognised.
    bool read();
    /// The number of characters that the expression at \p i_Offset in a predicate takes; 0 if it has another shape. May
    /// only be called while `read` runs.
    std::uint32_t measure(std::uint32_t i_Offset);

private:
    /// The lengths of the first operands of an "and" chain decide how the chain is emitted (D-08).
    struct AndChain
    {
        std::uint32_t m_Begin;  ///< of the first operand
        std::uint32_t m_And;    ///< the end of that operand; 0 before the first "and"
        std::uint32_t m_Second; ///< after the "and"
    };

    // Each takes the offset where it begins and returns the number of characters that it takes, including the spaces
    // before it; 0 if the general code must decide.
    std::uint32_t readExpr(std::uint32_t i_Offset);
    std::uint32_t readChain(std::uint32_t i_Offset, std::uint32_t i_End);
    std::uint32_t readOperand(std::uint32_t i_Offset);
    std::uint32_t readNegated(std::uint32_t i_Offset);
    std::uint32_t readNamed(std::uint32_t i_Offset, std::uint32_t i_Begin);
    std::uint32_t readPath(std::uint32_t i_Offset);
    std::uint32_t readParenthesised(std::uint32_t i_Begin);
    std::uint32_t readNumber(std::uint32_t i_Begin);
    std::uint32_t readLongNumber(std::uint32_t i_Begin);
    std::uint32_t readLiteral(std::uint32_t i_Begin);
    std::uint32_t readCall(std::uint32_t i_Begin, const XPathFunctionRow& i_Row);

    const XPathFunctionRow* callAt(std::uint32_t i_Begin) const noexcept;
    std::wstring_view operatorAt(std::uint32_t i_Begin) const noexcept;
    bool isPlainAnd(const AndChain& i_Chain, std::uint32_t i_End) const noexcept;
    std::wstring_view joined(const XPathPlan& i_Plan);

    // Adds what is read to the list, unless it is only measured.
    XPathOperator* addOperator(const XPathFunctionChoice& i_Choice);
    void addNegativeZero();
    void open();
    void comma();
    void close();

    /// Whether a predicate or a separator of steps follows an operand.
    bool isContinued(std::uint32_t i_End) const noexcept
    {
        const wchar_t next = m_Source.unit(m_Source.skip(i_End));
        return next == L'[' || next == L'/';
    }

    const XPathSource m_Source;
    XPathTokenizer& m_Tokenizer;
    XPathElements& m_Elements;
    XPathExpressionsVector& m_Postfix;
    XPathOperatorStack m_Operators;
    unsigned m_Nesting = 0;
    bool m_IsMeasuring = false;
};

} // namespace XmlPlugin
