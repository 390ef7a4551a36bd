#pragma once

#include "base/String.h"
#include "values/XPathExpression.h"
#include "values/XPathOutputList.h"

class Node;

/// The one text form of everything that the engine works on, for tests, traces and the tool.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathPrinterTest.cpp
namespace XmlPlugin
{

/// Tokens or a postfix list as text with a blank between: `1 2 3 * +`.
String printElements(const XPathExpressionsVector& i_Elements);

/// The form of the traces: `(text,is operator,data type)|` for each element.
String dumpElements(const XPathExpressionsVector& i_Elements);

/// Records, one a line: `order key: value`, and ` = node text` where that is another text.
String printRecords(const XPathOutputList& i_Records);

/// The tree below and with \p i_Root, one node a line, indented by two blanks a level:
/// `sequence name @attribute=value(ordinal)`; text nodes as `sequence "text"`.
String printTree(const Node& i_Root);

} // namespace XmlPlugin
