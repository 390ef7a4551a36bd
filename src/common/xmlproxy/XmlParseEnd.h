#pragma once

#include <xercesc/util/OutOfMemoryException.hpp>

/// Ends a parse for a reason that the one who throws it has noted down for `XercesParser`. The parser
/// library lets an exception of this kind pass from everywhere, and touches nothing on its way.
///
/// Tested by: tests/common/xmlproxy/ExpansionTest.cpp, tests/common/xmlproxy/ExternalEntityTest.cpp
class XmlParseEnd final : public xercesc::OutOfMemoryException
{
};
