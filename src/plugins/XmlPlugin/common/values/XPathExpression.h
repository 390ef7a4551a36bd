#pragma once

#include "base/ErrorCode.h"
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

/// In lists of arguments, the last argument comes first. Token and postfix lists are in reading order.
using XPathExpressionsVector = XPathSmallVector<XPathExpression*, 12>;

/// One element of an expression: its part in the evaluation, and the value that it holds. The text of the value is the
/// text of the element. The results of operators and functions are elements too.
///
/// Ownership: tokens belong to the parser that created them, results to the function that created them. The start node
/// belongs to its tree. For text and node set see `XPathValue`.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathExpressionTest.cpp
class XPathExpression
{
public:
    /// A root position that means the position of the start node among its siblings of the same name, which is counted
    /// only if a text needs it.
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
    /// Applies an operator to its arguments, of which the last comes first. Returns 0; -102 for an element that is not
    /// an operator; -15005 for a wrong number of arguments.
    virtual TErrorCode evaluate(const XPathExpressionsVector& i_Expressions); // slot 5
    /// The result of the last successful `evaluate`; null if it produced none. The caller does not own it.
    virtual XPathExpression* getOutputArgument() const; // slot 6
    /// Evaluates a location path to its node set. Does nothing for any other element.
    virtual void EvaluateXPath(); // slot 7

    /// Creates the element for one token: an `XPathOperator` if `XPathFunctionFactory` knows the token, otherwise an
    /// `XPathArgument`. A named function is known only if \p i_NextToken is "(". The caller owns the result.
    static XPathExpression* create(const String& i_Expression, const String& i_NextToken,
                                   XPathExpression* i_pPrevElement);

    /// Same, but the element belongs to \p io_Elements. \p i_Expression must outlive them.
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
    /// Passes on the records of the node set and leaves it empty.
    XPathOutputList takeNodes() noexcept { return m_Value.takeNodes(); }
    /// Whether only the number of records in the node set will be needed. If they can be counted without being created,
    /// they are not created then.
    bool isOnlyCounted() const noexcept { return m_IsOnlyCounted; }
    void setOnlyCounted(bool i_IsOnlyCounted) noexcept { m_IsOnlyCounted = i_IsOnlyCounted; }
    /// Whether the first of several equal records is enough, because their number is not needed.
    void setFirstEnough(bool i_IsFirstEnough) noexcept { m_IsFirstEnough = i_IsFirstEnough; }
    Node* getStartNode() const noexcept { return m_StartNode; }
    void setStartNode(Node* i_pNode) noexcept { m_StartNode = i_pNode; }
    int getRootPosition() const noexcept { return m_RootPosition; }
    void setRootPosition(int i_Position) noexcept { m_RootPosition = i_Position; }
    const XPathEvalContext* getEvalContext() const noexcept { return m_EvalContext; }
    void setEvalContext(const XPathEvalContext* i_pContext) noexcept { m_EvalContext = i_pContext; }
    /// Replaces the text and keeps the type and the number.
    void setExpression(const String& i_Expression) { m_Value.setText(i_Expression); }
    /// Copies the text, type and number of a value that is not a node set.
    void copyValue(const XPathExpression& i_Other) { m_Value.copyScalar(i_Other.m_Value); }
    /// The text of the element as written, including quotes.
    const String& text() const { return m_Value.text(); }
    /// Same, without a copy; valid until the element is changed or destroyed.
    std::wstring_view textView() const { return m_Value.textView(); }

    /// The stored number; for a node set, the number of its records.
    double GetExpressionNumb() const { return m_Value.toNumber(); }
    bool GetExpressionBool() const { return m_Value.toBoolean(); }
    /// The text without one pair of enclosing quotes. For a number of that kind: "Infinity", "-Infinity" or "NaN". For
    /// a node set: the text of the path, not of the nodes.
    String GetExpressionString() const;
    /// Same, without a copy; valid until the element is changed or destroyed.
    std::wstring_view stringView() const { return m_Value.stringView(); }

protected:
    /// Creates the value from these arguments.
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
