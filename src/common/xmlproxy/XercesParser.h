#pragma once

#include "xmlproxy/SAXParser.h"

/// The parser over Xerces-C, which is initialised and terminated around every parse.
///
/// Entity expansion is bounded: a document that asks for more than 1,000,000 expansions is refused
/// with a fatal error. External entities follow the library's default rules.
///
/// Ownership: the handler is not owned and outlives the parser.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XercesParserTest.cpp
class XercesParser final : public SAXParser
{
public:
    explicit XercesParser(SAXHandler* i_pHandler) noexcept : SAXParser(i_pHandler) {}

    TErrorCode parse(const String& i_Path, ProgressCallback i_pProgress) override;

private:
    TErrorCode parseInitialised(const String& i_Path, ProgressCallback i_pProgress);
    TErrorCode run(const String& i_Path, ProgressCallback i_pProgress);
};
