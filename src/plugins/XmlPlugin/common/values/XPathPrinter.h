#pragma once

#include "base/String.h"
#include "values/XPathExpression.h"

namespace XmlPlugin
{

/// Prints the elements as the trace shows them: `(text,is operator,data type)|` for each.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathPrinterTest.cpp
String dumpElements(const XPathExpressionsVector& i_Elements);

} // namespace XmlPlugin
