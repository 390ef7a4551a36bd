#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "values/XPathEvalContext.h"
#include "values/XPathOutputList.h"
#include "values/XPathSmallVector.h"
#include "values/XPathValue.h"

#include <string_view>
#include <utility>

class Node;

namespace XmlPlugin
{

class XPathElements;
class XPathExpression;

/// Argument lists hold the last argument first; token and postfix lists are in reading order.
using XPathExpressionsVector = XPathSmallVector<XPathExpression*, 12>;

/// One element of an expression: its place in the evaluation, and the value that it holds. The value's text is that of
/// the element; what operators and functions produce are elements too.
///
/// Ownership: tokens belong to the parser that made them, results to the function that made them. The start node
/// belongs to its tree. For text and node set see `XPathValue`.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathExpressionTest.cpp
class XPathExpression
{
public:
    /// Root position that stands for the start node's place among its parent's element children
    /// of the same name, to be counted only where a text needs it.
    static constexpr int OwnPlace = -1;

    using Lent = XPathValue::Lent;

    explicit XPathExpression(const String& i_Expression);
    explicit XPathExpression(String&& i_Expression) noexcept;
    explicit XPathExpression(double i_Value);
    virtual ~XPathExpression(); // slot 0
    XPathExpression(const XPathExpression&) = delete;
    XPathExpression& operator=(const XPathExpression&) = delete;

    virtual bool isOperator() const; // slot 1
    virtual int getPriority() const; // slot 2
    /// True for named functions and for a parenthesis that opens a function call.
    virtual bool isInfix() const;          // slot 3
    virtual int getArgumentsCount() const; // slot 4
    /// Applies an operator to its arguments, last argument first. 0, -102 for an element that is
    /// no operator, -15005 for a wrong number of arguments.
    virtual TErrorCode evaluate(const XPathExpressionsVector& i_Expressions); // slot 5
    /// Result of the last successful `evaluate`; null when it produced none. Not owned by the caller.
    virtual XPathExpression* getOutputArgument() const; // slot 6
    /// Turns a location path into its node set; nothing for every other element.
    virtual void EvaluateXPath(); // slot 7

    /// Makes the element for one token: an `XPathOperator` when `XPathFunctionFactory` knows it,
    /// else an `XPathArgument`. A named function is known only when \p i_NextToken is "(".
    /// The caller owns the result.
    static XPathExpression* create(const String& i_Expression, const String& i_NextToken,
                                   XPathExpression* i_pPrevElement);

    /// The same as one of \p io_Elements, to which the element belongs. \p i_Expression must outlive them.
    static XPathExpression& create(std::wstring_view i_Expression, std::wstring_view i_NextToken,
                                   XPathElements& io_Elements);

    int GetDataType() const noexcept { return m_Value.type(); }
    void SetDataType(int i_DataType) noexcept { m_Value.setType(i_DataType); }
    int getLimitType() const noexcept { return m_Value.limit(); }
    void setLimitType(int i_LimitType) noexcept { m_Value.setLimit(i_LimitType); }
    bool isNegativeZero() const noexcept { return m_Value.isNegativeZero(); }
    void setNegativeZero(bool i_NegativeZero) noexcept { m_Value.setNegativeZero(i_NegativeZero); }
    const XPathOutputList& getNodes() const noexcept { return m_Value.nodes(); }
    void addNode(XPathOutputElement* i_pRecord) { m_Value.addNode(i_pRecord); }
    /// Hands over the node set's records and leaves the node set empty.
    XPathOutputList takeNodes() noexcept { return m_Value.takeNodes(); }
    /// Whether nothing but the number of the node set's records is going to be asked for. Where
    /// they can be counted without being made, they are not made then.
    bool isOnlyCounted() const noexcept { return m_IsOnlyCounted; }
    void setOnlyCounted(bool i_IsOnlyCounted) noexcept { m_IsOnlyCounted = i_IsOnlyCounted; }
    /// Whether of records that are alike the first one answers for all: nobody asks for their number.
    void setFirstEnough(bool i_IsFirstEnough) noexcept { m_IsFirstEnough = i_IsFirstEnough; }
    Node* getStartNode() const noexcept { return m_StartNode; }
    void setStartNode(Node* i_pNode) noexcept { m_StartNode = i_pNode; }
    int getRootPosition() const noexcept { return m_RootPosition; }
    void setRootPosition(int i_Position) noexcept { m_RootPosition = i_Position; }
    const XPathEvalContext* getEvalContext() const noexcept { return m_EvalContext; }
    void setEvalContext(const XPathEvalContext* i_pContext) noexcept { m_EvalContext = i_pContext; }
    /// Replaces the text; type and number stay.
    void setExpression(const String& i_Expression) { m_Value.setText(i_Expression); }
    /// Takes over text, type and number of a value that is no node set.
    void copyValue(const XPathExpression& i_Other) { m_Value.copyScalar(i_Other.m_Value); }
    /// The element's text as it stands, quotes included.
    const String& text() const { return m_Value.text(); }
    /// The same without a copy; valid until the element is changed or destroyed.
    std::wstring_view textView() const { return m_Value.textView(); }

    /// The stored number; for a node set the number of its records.
    double GetExpressionNumb() const { return m_Value.toNumber(); }
    bool GetExpressionBool() const { return m_Value.toBoolean(); }
    /// The text without one pair of enclosing quotes; "Infinity", "-Infinity" or "NaN" for a
    /// number of that kind. For a node set the text of the path, not of the nodes.
    String GetExpressionString() const;
    /// The same without a copy; valid until the element is changed or destroyed.
    std::wstring_view stringView() const { return m_Value.stringView(); }

protected:
    /// With a value of these arguments.
    template <class... Arguments>
    explicit XPathExpression(std::in_place_t, Arguments&&... i_Arguments) noexcept(
        noexcept(XPathValue(std::forward<Arguments>(i_Arguments)...)))
        : m_Value(std::forward<Arguments>(i_Arguments)...)
    {
    }

    Node* m_StartNode = nullptr;
    const XPathEvalContext* m_EvalContext = nullptr;
    int m_RootPosition = 0;
    bool m_IsOnlyCounted = false;
    bool m_IsFirstEnough = false;
    XPathValue m_Value;
};

} // namespace XmlPlugin
