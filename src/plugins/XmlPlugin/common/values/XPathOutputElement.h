#pragma once

#include "base/String.h"

#include <cstdint>
#include <string_view>

class Node;

namespace XmlPlugin
{

/// A text of a record: refers to a text that is kept elsewhere.
///
/// Ownership: none. The tree owns the text, or the list that contains the record.
/// Invariants: the text is null-terminated.
class XPathLentText
{
public:
    constexpr XPathLentText() noexcept = default;
    /// \p i_Text must outlive the record and be null-terminated, unless it is a view of nothing.
    explicit constexpr XPathLentText(std::wstring_view i_Text) noexcept : m_Text(i_Text) {}

    constexpr bool isEmpty() const noexcept { return m_Text.empty(); }
    constexpr std::wstring_view view() const noexcept { return m_Text; }
    /// Never null.
    constexpr const wchar_t* c_str() const noexcept { return m_Text.data() ? m_Text.data() : L""; }
    std::string toNarrow() const { return String(*this).toNarrow(); }
    /// A copy.
    operator String() const { return String(m_Text.data(), m_Text.size()); }

    friend constexpr bool operator==(XPathLentText i_Left, XPathLentText i_Right) noexcept
    {
        return i_Left.m_Text == i_Right.m_Text;
    }

private:
    std::wstring_view m_Text;
};

/// One selected value.
///
/// Ownership: created in an `XPathOutputList`, which owns it. The source node belongs to its tree.
struct XPathOutputElement
{
    XPathLentText m_NodeText;      ///< text of the node, for results that are nodes or their text
    XPathLentText m_Value;         ///< what the host receives
    std::int32_t m_OrderKey = 0;   ///< sorts the results; equal keys are one result
    const Node* m_pNode = nullptr; ///< null for a scalar result
};

} // namespace XmlPlugin
