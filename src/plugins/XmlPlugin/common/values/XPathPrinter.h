#pragma once

#include "base/String.h"
#include "values/XPathExpression.h"

namespace XmlPlugin
{

/// The elements as the traces show them: `(text,is operator,data type)|` for each.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathPrinterTest.cpp
String dumpElements(const XPathExpressionsVector& i_Elements);

} // namespace XmlPlugin
