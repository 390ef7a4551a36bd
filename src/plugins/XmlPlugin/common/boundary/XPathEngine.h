#pragma once

#include "base/ErrorCode.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/XmlText.h"

#include <string_view>

namespace XmlPlugin
{

/// Runs one query: document from the cache, expression through the parser, records out.
///
/// Ownership: none; the output owns the records that it is given.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XPathEngineTest.cpp
class XPathEngine
{
public:
    /// 0 with one record a value in \p io_Output, in order; -15103 when the document cannot be
    /// read; else a code of the expression.
    TErrorCode start(const String& i_XPath, const String& i_File, XPathOutputList& io_Output)
    {
        return start(viewOf(i_XPath), viewOf(i_File), io_Output);
    }
    /// The same of texts in UTF-16 code units.
    TErrorCode start(std::wstring_view i_XPath, std::wstring_view i_File, XPathOutputList& io_Output);
};

} // namespace XmlPlugin
