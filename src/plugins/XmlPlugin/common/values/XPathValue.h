#pragma once

#include "base/String.h"
#include "values/XPathOutputList.h"
#include "values/XPathText.h"

#include <cstddef>
#include <string_view>
#include <utility>

namespace XmlPlugin
{

/// What a value is.
enum DataType : int
{
    NoType = -1, ///< no value at all: left by a failed or empty operator
    BooleanType = 0,
    StringType = 1,
    NumberType = 2,
    NodeSetType = 3
};

/// The kind of a number. Negative zero is a separate flag.
enum LimitType : int
{
    NumbType = 0,
    NaNType = 1,
    PosInfType = 2,
    NegInfType = 3,
    ZeroType = 4 ///< a finite number divided by an infinity; prints and converts as 0
};

/// The typed value of an element: a text, a number, a node set.
///
/// The text and the number are computed from each other when first needed, because few intermediate values of an
/// expression are ever read as both.
///
/// Ownership: owns its records until they are taken, except those added with `addNode`, which stay the caller's. Owns
/// its text, unless the caller lends it a text and keeps that alive as long as the value.
/// Threads: one at a time, also for reading.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathExpressionTest.cpp
class XPathValue
{
public:
    /// A text that must outlive the value created from it.
    struct Lent
    {
        std::wstring_view m_Text;
    };
    /// A number whose text is its printed form.
    struct Printed
    {
        double m_Number;
    };

    // Unless stated otherwise, each starts without a type, and with the number 0 if none is given.
    explicit XPathValue(const String& i_Text) : m_OwnText(i_Text), m_Text(viewOf(m_OwnText)) {}
    explicit XPathValue(String&& i_Text) noexcept : m_OwnText(std::move(i_Text)), m_Text(viewOf(m_OwnText)) {}
    explicit XPathValue(double i_Number) noexcept : m_Number(i_Number) {}
    // cppcheck-suppress passedByValue ; no more than a pointer and a length
    explicit XPathValue(Lent i_Text) noexcept : m_TextState(LentText), m_Text(i_Text.m_Text) {}
    /// A number whose text and value are known.
    // cppcheck-suppress passedByValue ; no more than a pointer and a length
    XPathValue(Lent i_Digits, double i_Number) noexcept
        : m_Type(NumberType), m_TextState(LentText), m_Text(i_Digits.m_Text), m_Number(i_Number)
    {
    }
    explicit XPathValue(Printed i_Number) noexcept
        : m_Type(NumberType), m_TextState(PendingText), m_Number(i_Number.m_Number)
    {
    }
    XPathValue(const XPathValue&) = delete;
    XPathValue& operator=(const XPathValue&) = delete;

    int type() const noexcept { return m_Type; }
    void setType(int i_Type) noexcept { m_Type = i_Type; }
    int limit() const noexcept { return m_Limit; }
    void setLimit(int i_Limit) noexcept { m_Limit = i_Limit; }
    bool isNegativeZero() const noexcept { return m_IsNegativeZero; }
    void setNegativeZero(bool i_IsNegativeZero) noexcept { m_IsNegativeZero = i_IsNegativeZero; }

    /// Sets the type, and for a number also the number, from the text. Digits, with or without quotes, are a number;
    /// any other quoted text is a string; everything else is a location path.
    void classify();
    /// Returns the type that the text alone has; see `classify`.
    static DataType typeOf(std::wstring_view i_Text);
    /// From now on, takes the number from the text if that is a number. Keeps the type.
    void readNumberLater() noexcept { m_NumberState = OperandNumber; }
    /// Replaces the text and keeps the type and the number.
    void setText(const String& i_Text);
    /// Copies everything except the node set.
    void copyScalar(const XPathValue& i_Other);

    /// The text as written, including quotes.
    const String& text() const
    {
        if (m_TextState != OwnText)
        {
            makeOwnText();
        }
        return m_OwnText;
    }
    /// Same, without a copy; valid until the value is changed or destroyed.
    std::wstring_view textView() const
    {
        if (m_TextState == PendingText)
        {
            makeOwnText();
        }
        return m_Text;
    }
    /// The text without one pair of enclosing quotes; "Infinity", "-Infinity" or "NaN" for a number of that kind. Valid
    /// until the value is changed or destroyed.
    std::wstring_view stringView() const
    {
        return m_Type == NumberType && m_Limit != NumbType ? specialText() : removeQuotes(textView());
    }
    /// The stored number; for a node set, the number of its records.
    double toNumber() const;
    bool toBoolean() const;

    const XPathOutputList& nodes() const noexcept { return m_Nodes; }
    /// Same, for a caller that adds to it.
    XPathOutputList& nodes() noexcept { return m_Nodes; }
    void addNode(XPathOutputElement* i_pRecord) { m_Nodes.push_back(i_pRecord); }
    void appendNodes(XPathOutputList&& io_Nodes) { m_Nodes.append(std::move(io_Nodes)); }
    XPathOutputList takeNodes() noexcept { return std::exchange(m_Nodes, {}); }
    /// The number of records that were counted without being created. They are included in the number of the node set,
    /// but not in `nodes`.
    void setCounted(std::size_t i_Count) noexcept { m_Counted = i_Count; }

private:
    enum TextState : char
    {
        OwnText,    ///< m_OwnText
        LentText,   ///< the caller's
        PendingText ///< the printed form of the number
    };
    enum NumberState : char
    {
        KnownNumber,
        TextNumber,   ///< to be read from the text, which is a number
        OperandNumber ///< to be read from the text if that is a number
    };

    std::wstring_view specialText() const;
    void makeOwnText() const;
    void readNumber() const;

    int m_Type = NoType;
    int m_Limit = NumbType;
    mutable TextState m_TextState = OwnText;
    mutable NumberState m_NumberState = KnownNumber;
    bool m_IsNegativeZero = false;
    mutable String m_OwnText;
    mutable std::wstring_view m_Text; ///< unless it is pending
    mutable double m_Number = 0.0;
    std::size_t m_Counted = 0;
    XPathOutputList m_Nodes;
};

} // namespace XmlPlugin
