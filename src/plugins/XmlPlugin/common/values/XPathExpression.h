#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "values/XPathEvalContext.h"
#include "values/XPathOutputList.h"
#include "values/XPathSmallVector.h"

#include <string_view>

class Node;

namespace XmlPlugin
{

class XPathElements;
class XPathExpression;

/// Argument lists hold the last argument first; token and postfix lists are in reading order.
using XPathExpressionsVector = XPathSmallVector<XPathExpression*, 12>;

/// What a value is.
enum DataType : int
{
    NoType = -1, ///< no value at all: what a failed or empty operator leaves behind
    BooleanType = 0,
    StringType = 1,
    NumberType = 2,
    NodeSetType = 3
};

/// What kind of number a number is. Negative zero is a flag of its own.
enum LimitType : int
{
    NumbType = 0,
    NaNType = 1,
    PosInfType = 2,
    NegInfType = 3,
    ZeroType = 4 ///< a finite number divided by an infinity; prints and converts as 0
};

/// One element of an expression, and the typed value that operators and functions produce.
///
/// Ownership: tokens belong to the parser that made them, results to the function that made them.
/// The records of the node set belong to the expression until they are taken from it; one that was
/// put in with `addNode` stays the caller's. The start node belongs to its tree. The text is the
/// element's own or lent to it by whoever made it, and then outlives it.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathExpressionTest.cpp
class XPathExpression
{
public:
    /// Root position that stands for the start node's place among its parent's element children
    /// of the same name, to be counted only where a text needs it.
    static constexpr int OwnPlace = -1;

    /// A text that outlives the element that is made of it.
    struct Lent
    {
        std::wstring_view m_Text;
    };

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

    int GetDataType() const noexcept { return m_DataType; }
    void SetDataType(int i_DataType) noexcept { m_DataType = i_DataType; }
    int getLimitType() const noexcept { return m_LimitType; }
    void setLimitType(int i_LimitType) noexcept { m_LimitType = i_LimitType; }
    bool isNegativeZero() const noexcept { return m_NegativeZero; }
    void setNegativeZero(bool i_NegativeZero) noexcept { m_NegativeZero = i_NegativeZero; }
    const XPathOutputList& getNodes() const noexcept { return m_Nodes; }
    void addNode(XPathOutputElement* i_pRecord) { m_Nodes.push_back(i_pRecord); }
    /// Hands over the node set's records and leaves the node set empty.
    XPathOutputList takeNodes() noexcept;
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
    void setExpression(const String& i_Expression);
    /// Takes over text, type and number of a value that is no node set.
    void copyValue(const XPathExpression& i_Value);
    /// The element's text as it stands, quotes included.
    const String& text() const
    {
        if (m_TextState != OwnText)
        {
            makeOwnText();
        }
        return m_Expression;
    }
    /// The same without a copy; valid until the element is changed or destroyed.
    std::wstring_view textView() const
    {
        if (m_TextState == PendingText)
        {
            makeOwnText();
        }
        return m_Text;
    }

    /// The stored number; for a node set the number of its records.
    double GetExpressionNumb() const;
    bool GetExpressionBool() const;
    /// The text without one pair of enclosing quotes; "Infinity", "-Infinity" or "NaN" for a
    /// number of that kind. For a node set the text of the path, not of the nodes.
    String GetExpressionString() const;
    /// The same without a copy; valid until the expression is changed or destroyed.
    std::wstring_view stringView() const
    {
        return m_DataType == NumberType && m_LimitType != NumbType ? specialText() : removeQuotes(textView());
    }

    /// \p i_Text without one pair of enclosing quotes of one kind; a lone quote is no pair.
    static String removeQuotes(const String& i_Text);
    static std::wstring_view removeQuotes(std::wstring_view i_Text) noexcept
    {
        const std::size_t size = i_Text.size();
        const bool isEnclosed = size >= 2 && i_Text[0] == i_Text[size - 1] && (i_Text[0] == L'"' || i_Text[0] == L'\'');
        return isEnclosed ? std::wstring_view(i_Text.data() + 1, size - 2) : i_Text;
    }

protected:
    enum TextState : char
    {
        OwnText,    ///< m_Expression
        LentText,   ///< somebody else's
        PendingText ///< the printed form of the number, made when it is first asked for: few of the numbers that an
                    ///< expression computes on its way are ever read as text
    };
    enum NumberState : char
    {
        KnownNumber,
        TextNumber,   ///< to be read from the text, which is a number's
        OperandNumber ///< to be read from the text if it is a number's
    };

    // cppcheck-suppress passedByValue ; no more than a pointer and a length
    explicit XPathExpression(Lent i_Text) noexcept : m_TextState(LentText), m_Text(i_Text.m_Text) {}

    Node* m_StartNode = nullptr;
    int m_RootPosition = 0;
    mutable TextState m_TextState = OwnText;
    mutable NumberState m_NumberState = KnownNumber;
    bool m_NegativeZero = false;
    mutable std::wstring_view m_Text; ///< unless it is pending
    mutable String m_Expression;      ///< an own text
    mutable double m_Number = 0.0;
    const XPathEvalContext* m_EvalContext = nullptr;
    int m_LimitType = NumbType;
    std::size_t m_Counted = 0; ///< records that were counted only
    bool m_IsOnlyCounted = false;
    bool m_IsFirstEnough = false;
    int m_DataType = NoType;
    XPathOutputList m_Nodes;

private:
    std::wstring_view specialText() const;
    void makeOwnText() const;
    void readNumber() const;
};

} // namespace XmlPlugin
