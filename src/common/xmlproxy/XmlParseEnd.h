#pragma once

#include <xercesc/util/OutOfMemoryException.hpp>

/// Ends a parse for a reason that the thrower has recorded for `XercesParser`. The parser library lets an exception of
/// this kind pass from anywhere, and changes nothing on the way.
///
/// Tested by: tests/common/xmlproxy/ExpansionTest.cpp, tests/common/xmlproxy/ExternalEntityTest.cpp
class XmlParseEnd final : public xercesc::OutOfMemoryException
{
};
