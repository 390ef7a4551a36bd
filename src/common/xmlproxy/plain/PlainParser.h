#pragma once

#include "xmlproxy/SAXParser.h"

#include <cstddef>

class PlainSource;

/// The parser for plain documents: many times faster than the parser library, and with the same
/// events. It gives up on every document that is not plain, which the parser library then reads.
///
/// Plain is a well-formed document of XML 1.0 in UTF-8 or US-ASCII that has no document type
/// declaration. Nothing else is read to its end, nor is every plain document: what nobody writes is
/// left to the parser library.
///
/// Ownership: the handler is not owned and outlives the parser.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/plain/PlainParserTest.cpp
class PlainParser final : public SAXParser
{
public:
    /// Result of a parse that has given up. What the handler was told up to there is void.
    static constexpr TErrorCode s_GaveUp = 1;

    explicit PlainParser(SAXHandler* i_pHandler) noexcept : SAXParser(i_pHandler) {}

    /// 0 when the document has been read, which then has no error; otherwise `s_GaveUp`, at once when
    /// an option is set or there is a callback. `std::bad_alloc` when memory is exhausted.
    TErrorCode parse(const String& i_Path, ProgressCallback i_pProgress) override;
    TErrorCode parseFile(const XmlDocumentFile& i_File, ProgressCallback i_pProgress) override;
    /// Same, for a document from elsewhere, without options.
    TErrorCode parse(PlainSource& io_Source);

    /// Bytes that are read at once, at least 1; 65,536 unless set.
    void setBlockSize(std::size_t i_Bytes) noexcept { m_BlockSize = i_Bytes; }

private:
    bool hasOptions() const noexcept;

    std::size_t m_BlockSize = 65536;
};
