#pragma once

#include "base/ErrorCode.h"
#include "compile/XPathElements.h"
#include "compile/XPathOperatorStack.h"
#include "values/XPathExpression.h"
#include "xmlproxy/XmlText.h"

#include <string_view>

class Node;

namespace XmlPlugin
{

/// One compiled expression: its tokens in postfix order, by priority, and their evaluation on a stack. May be run any
/// number of times, on one node after another; the runs are independent.
///
/// Ownership: owns the tokens and, through them, all results. Owns the records of its operands' node sets until
/// `getValues` passes them on.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathExpressionsParserTest.cpp
class XPathExpressionsParser
{
public:
    /// Compiles the text. An expression that is not recognised is reported by `runParser`.
    explicit XPathExpressionsParser(const String& i_XPath)
        : XPathExpressionsParser(XPathExpression::Lent{viewOf(i_XPath)})
    {
    }
    /// The text is no longer used once it is compiled.
    explicit XPathExpressionsParser(XPathExpression::Lent i_XPath);
    ~XPathExpressionsParser();
    XPathExpressionsParser(const XPathExpressionsParser&) = delete;
    XPathExpressionsParser& operator=(const XPathExpressionsParser&) = delete;

    /// The list for `name()`, `last()` and `position()`; null unless set. Not owned.
    // cppcheck-suppress danglingLifetime ; who lends a list sets null or another one before the next run
    void setEvalContext(const XPathEvalContext* i_pContext) noexcept { m_EvalContext = i_pContext; }
    /// The position of the start node among its siblings of the same name, for location paths that begin at it, or
    /// `XPathExpression::OwnPlace`; 0 unless set.
    void setRootPosition(int i_Position) noexcept { m_RootPosition = i_Position; }

    /// Evaluates the expression from \p i_pStartNode (may be null). Returns 0; -15105 if the expression was not
    /// recognised; the code of the last operator that failed; or -15004 if nothing failed but no value is left.
    TErrorCode runParser(Node* i_pStartNode);
    /// Adds one record with the value of a scalar result, or replaces the contents of the list by the records of a node
    /// set. Returns 0, or -15004 if there is no result. Another call creates the records again.
    TErrorCode getValues(XPathOutputList& io_Output);
    /// Same as `getValues`, for a boolean: "true" or "false".
    TErrorCode calculateBooleanOutput(XPathOutputList& io_Output);

    /// Type of the result of the last successful run.
    int getOutputType() const noexcept { return m_OutputType; }
    /// Result code of the compilation.
    TErrorCode status() const noexcept { return m_TokenizerStatus; }
    /// The compiled elements in postfix order.
    const XPathExpressionsVector& postfix() const noexcept { return m_XPathExpressionsVector; }

    // The steps of the reordering, with their trace records. The rules are those of XPathOperatorStack, which is their
    // only state.
    XPathExpressionsVector& doTrans(XPathExpressionsVector& o_Output);
    void stackExpression(XPathExpression* i_pExpression, XPathExpressionsVector& io_Output);
    void gotOper(XPathExpression* i_pExpression, XPathExpressionsVector& io_Output);
    void gotParen(XPathExpression* i_pExpression, XPathExpressionsVector& io_Output);

private:
    void markCounted();
    void markFirstEnough();
    TErrorCode doParse();
    TErrorCode evaluateOperator(XPathExpression& io_Operator, XPathExpressionsVector& io_Stack);
    void prepare(XPathExpression& io_Expression) const;
    static void evaluatePath(XPathExpression& io_Operand);
    void resetElements();
    void releaseNodeSets() noexcept;

    XPathElements m_Elements;
    XPathOperatorStack m_OperatorStack;
    XPathExpressionsVector m_XPathExpressionsVector; ///< the token list, then the postfix list
    TErrorCode m_TokenizerStatus = 0;
    Node* m_pStartNode = nullptr;
    int m_RootPosition = 0;
    int m_OutputType = 0;
    const XPathEvalContext* m_EvalContext = nullptr;
    XPathExpression* m_pResult = nullptr;
    XPathExpression m_NoValue;   ///< on the stack in place of the result of an operator that has none
    bool m_IsFresh = true;       ///< no run has changed the elements yet
    bool m_IsHandedOver = false; ///< the records of the result have been passed on
};

} // namespace XmlPlugin
