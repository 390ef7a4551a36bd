#pragma once

#include "XPathOutputList.h"
#include "base/ErrorCode.h"
#include "base/String.h"

namespace XmlPlugin
{

/// Runs one query: document from the cache, expression through the parser, records out.
///
/// Ownership: none; the records put in the output are the caller's.
/// Threads: one at a time.
/// Tested by: tests/plugins/XmlPlugin/common/XPathEngineTest.cpp
class XPathEngine
{
public:
    /// 0 with one record a value in \p io_Output, in order; -15103 when the document cannot be
    /// read; else a code of the expression.
    TErrorCode start(const String& i_XPath, const String& i_File, XPathOutputList& io_Output);
};

} // namespace XmlPlugin
