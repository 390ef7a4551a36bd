#pragma once

#include "base/ErrorCode.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/XmlText.h"

#include <string_view>

namespace XmlPlugin
{

/// Runs one query: takes the document from the cache, evaluates the expression, and returns records.
///
/// Ownership: none; the output owns the records that it receives.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XPathEngineTest.cpp
class XPathEngine
{
public:
    /// Returns 0, with one record per value in \p io_Output, in order; -15103 if the document cannot be read; otherwise
    /// a code of the expression.
    TErrorCode start(const String& i_XPath, const String& i_File, XPathOutputList& io_Output)
    {
        return start(viewOf(i_XPath), viewOf(i_File), io_Output);
    }
    /// Same, for texts in UTF-16 code units.
    TErrorCode start(std::wstring_view i_XPath, std::wstring_view i_File, XPathOutputList& io_Output);
};

} // namespace XmlPlugin
