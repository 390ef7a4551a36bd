#pragma once

#include "values/XPathOutputList.h"

#include <limits>
#include <string_view>

namespace XmlPlugin
{

// Questions about the texts of a node set. The text of a record is its value or, if that is empty, the text of its
// source node. Each takes time in proportion to the number of records.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathLogicalEvaluatorTest.cpp

/// True if some text equals \p i_Text.
bool hasText(const XPathOutputList& i_Records, std::wstring_view i_Text);
/// True if some text differs from \p i_Text.
bool hasOtherText(const XPathOutputList& i_Records, std::wstring_view i_Text);
/// True if some pair of texts, one from each list, is equal.
bool haveCommonText(const XPathOutputList& i_Left, const XPathOutputList& i_Right);
/// True if some pair of texts, one from each list, differs.
bool haveDifferentTexts(const XPathOutputList& i_Left, const XPathOutputList& i_Right);

/// The smallest and the largest of the texts that are numbers. If there are none, both are not-a-number, so that no
/// comparison is true.
struct NumberRange
{
    double m_Smallest = std::numeric_limits<double>::quiet_NaN();
    double m_Largest = std::numeric_limits<double>::quiet_NaN();
};

NumberRange numberRangeOf(const XPathOutputList& i_Records);

} // namespace XmlPlugin
