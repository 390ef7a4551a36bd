#pragma once

#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/XercesLibrary.h"

/// Xerces-C as the parser library. Initialised from the first parser until this object is destroyed.
///
/// Tested by: tests/common/xmlproxy/ParserLibraryTest.cpp
class XercesParserLibrary final : public ParserLibrary
{
public:
    /// A library that cannot be initialised is not an error yet: each parse tries again and reports it.
    std::unique_ptr<SAXParser> makeParser(SAXHandler* i_pHandler) override;

private:
    XercesLibrary m_Library;
};
