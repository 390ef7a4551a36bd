#pragma once

#include "xmlproxy/SAXParser.h"

#include <cstddef>

/// The parser on top of Xerces-C, which is initialised before every parse and terminated after it.
///
/// What entities and default values add to a document is bounded in number and in size (see `XmlExpansionBudget`). A
/// document that exceeds a bound fails with a fatal error, which is counted.
///
/// Ownership: the handler is not owned and must outlive the parser.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XercesParserTest.cpp
class XercesParser final : public SAXParser
{
public:
    explicit XercesParser(SAXHandler* i_pHandler) noexcept : SAXParser(i_pHandler) {}

    /// Maximum number of entity expansions in one document: at least 1; 1,000,000 by default.
    void setEntityExpansionLimit(std::size_t i_Limit) noexcept { m_EntityExpansionLimit = i_Limit; }
    std::size_t entityExpansionLimit() const noexcept { return m_EntityExpansionLimit; }

    /// Number of bytes that entities and default values may add to a small document, 16 MiB by default. To a larger
    /// document they may add eight times its size.
    void setExpansionLimit(std::size_t i_Bytes) noexcept { m_ExpansionLimit = i_Bytes; }
    std::size_t expansionLimit() const noexcept { return m_ExpansionLimit; }

    TErrorCode parse(const String& i_Path, ProgressCallback i_pProgress) override;
    TErrorCode parseFile(const XmlDocumentFile& i_File, ProgressCallback i_pProgress) override;

private:
    TErrorCode parseInitialised(const XmlDocumentFile& i_File, ProgressCallback i_pProgress);
    TErrorCode run(const XmlDocumentFile& i_File, ProgressCallback i_pProgress);
    template <class Parser>
    void setOptions(Parser& o_Parser) const;
    void reportError(const String& i_Message, int i_Line);

    std::size_t m_EntityExpansionLimit = 1000000;
    std::size_t m_ExpansionLimit = std::size_t{16} << 20;
};
