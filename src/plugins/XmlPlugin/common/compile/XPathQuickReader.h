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

/// Reads expressions of the common shape in one pass, straight into postfix order.
///
/// In such an expression every operator has both its operands, and then the levels of the grammar have nothing to
/// decide: its elements are its operands and operators as they follow each other, put in order by an
/// `XPathOperatorStack`. Everything that this language reads in a way of its own is left to the general code, which
/// then begins anew; so is every text that is not recognised.
///
///     Expr    ::= Operand (operator Operand)*
///     Operand ::= "-"* (Literal | Number | "(" Expr ")" | FunctionCall | a plain path | LocationPath)
///
/// Plain paths are those of `XPathPlainReader`. Of other location paths the tokenizer tells the length, and asks this
/// reader for that of the expressions in their predicates.
///
/// Ownership: the elements are made in those of the caller. Borrows the tokenizer, which has the text.
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

    /// Appends the elements in postfix order. False, with a part of them, when the expression is of another shape or
    /// not recognised.
    bool read();
    /// How many characters the expression takes that begins at \p i_Offset in a predicate, while `read` runs; 0: it is
    /// of another shape.
    std::uint32_t measure(std::uint32_t i_Offset);

private:
    /// How the emission of a chain of "and" goes on is decided by the lengths of its first operands (D-08).
    struct AndChain
    {
        std::uint32_t m_Begin;  ///< of the first operand
        std::uint32_t m_And;    ///< its end; 0: no "and" so far
        std::uint32_t m_Second; ///< after the "and"
    };

    // Each takes the offset where it begins and returns how many characters it takes, spaces before it included; 0: the
    // general code must decide.
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

    // What is read goes into the list, unless it is only measured.
    XPathOperator* addOperator(const XPathFunctionChoice& i_Choice);
    void addNegativeZero();
    void open();
    void comma();
    void close();

    /// Whether a predicate or a separator of steps stands after an operand.
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
