#pragma once

#include "values/XPathOutputList.h"

#include <limits>
#include <string_view>

namespace XmlPlugin
{

// Questions about the texts of a node set. The text of a record is its value, or when that is
// empty the text of its source node. All take time in proportion to the number of records.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathLogicalEvaluatorTest.cpp

/// True when some text is \p i_Text.
bool hasText(const XPathOutputList& i_Records, std::wstring_view i_Text);
/// True when some text is not \p i_Text.
bool hasOtherText(const XPathOutputList& i_Records, std::wstring_view i_Text);
/// True when some pair of texts, one of each list, is equal.
bool haveCommonText(const XPathOutputList& i_Left, const XPathOutputList& i_Right);
/// True when some pair of texts, one of each list, differs.
bool haveDifferentTexts(const XPathOutputList& i_Left, const XPathOutputList& i_Right);

/// Smallest and largest of the texts that read as numbers; not a number, so that no comparison
/// holds, when none does.
struct NumberRange
{
    double m_Smallest = std::numeric_limits<double>::quiet_NaN();
    double m_Largest = std::numeric_limits<double>::quiet_NaN();
};

NumberRange numberRangeOf(const XPathOutputList& i_Records);

} // namespace XmlPlugin
