#pragma once

#include "xmlproxy/SAXParser.h"

#include <cstddef>

/// The parser over Xerces-C, which is initialised and terminated around every parse.
///
/// Entity expansion is bounded: a document that asks for more expansions than the limit is refused
/// with a fatal error. External entities follow the library's default rules.
///
/// Ownership: the handler is not owned and outlives the parser.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XercesParserTest.cpp
class XercesParser final : public SAXParser
{
public:
    explicit XercesParser(SAXHandler* i_pHandler) noexcept : SAXParser(i_pHandler) {}

    /// Expansions of entities in one document, 1,000,000 unless set. At least 1.
    void setEntityExpansionLimit(std::size_t i_Limit) noexcept { m_EntityExpansionLimit = i_Limit; }
    std::size_t entityExpansionLimit() const noexcept { return m_EntityExpansionLimit; }

    TErrorCode parse(const String& i_Path, ProgressCallback i_pProgress) override;

private:
    TErrorCode parseInitialised(const String& i_Path, ProgressCallback i_pProgress);
    TErrorCode run(const String& i_Path, ProgressCallback i_pProgress);

    std::size_t m_EntityExpansionLimit = 1000000;
};
