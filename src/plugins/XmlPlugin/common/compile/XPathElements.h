#pragma once

#include "values/XPathExpression.h"
#include "values/XPathMemory.h"

#include <string_view>

namespace XmlPlugin
{

class XPathArgument;
class XPathOperator;
struct XPathFunctionChoice;
struct XPathPlan;

/// The elements of one expression, created one after another in one memory and destroyed together.
///
/// Ownership: owns everything that it has created; an element only refers to its text.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/compile/XPathElementsTest.cpp
class XPathElements final : public XPathMemory
{
public:
    XPathElements() noexcept = default;
    ~XPathElements();
    XPathElements(const XPathElements&) = delete;
    XPathElements& operator=(const XPathElements&) = delete;

    /// An operand. \p i_Text must live as long as this object; what `keep` returns does.
    XPathArgument& addArgument(std::wstring_view i_Text);
    /// A number: decimal digits, which must live as long as this object, and their value.
    XPathArgument& addNumber(std::wstring_view i_Digits, double i_Number);
    /// A plain location path. The text and the plan must live as long as this object.
    XPathArgument& addPath(std::wstring_view i_Text, const XPathPlan& i_Plan);
    /// An operator, parenthesis, comma or function call.
    XPathOperator& addOperator(const XPathFunctionChoice& i_Choice);

private:
    XPathExpressionsVector m_Elements; ///< to be destroyed
};

} // namespace XmlPlugin
