#pragma once

#include "xmlproxy/SAXParser.h"

#include <cstddef>

class PlainSource;

/// The parser for plain documents. It is many times faster than the parser library and sends the same events. It gives
/// up on every document that is not plain; the parser library then reads it.
///
/// A plain document is a well-formed XML 1.0 document in UTF-8 or US-ASCII without a document type declaration. No
/// other document is read to its end. Nor is every plain document: constructs that nobody writes are left to the parser
/// library.
///
/// Ownership: the handler is not owned and must outlive the parser.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/plain/PlainParserTest.cpp
class PlainParser final : public SAXParser
{
public:
    /// Result of a parse that has given up. The events that the handler has received are then void.
    static constexpr TErrorCode s_GaveUp = 1;

    explicit PlainParser(SAXHandler* i_pHandler) noexcept : SAXParser(i_pHandler) {}

    /// Returns 0 if the document has been read, which means that it has no error. Otherwise returns `s_GaveUp`; if an
    /// option or a callback is set, without reading anything. Throws `std::bad_alloc` if memory is exhausted.
    TErrorCode parse(const String& i_Path, ProgressCallback i_pProgress) override;
    TErrorCode parseFile(const XmlDocumentFile& i_File, ProgressCallback i_pProgress) override;
    /// Same, for a document from another source, without options.
    TErrorCode parse(PlainSource& io_Source);

    /// Number of bytes that are read at once: at least 1; 65,536 by default.
    void setBlockSize(std::size_t i_Bytes) noexcept { m_BlockSize = i_Bytes; }

private:
    bool hasOptions() const noexcept;

    std::size_t m_BlockSize = 65536;
};
