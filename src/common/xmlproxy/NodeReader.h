#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "xmlproxy/SAXParser.h"

class NodeSink;

/// Reads documents into node trees: holds the parser options and runs one parse at a time.
///
/// A whole document is read by the parser for plain documents. Everything that this does not take is
/// read by the parser library from its beginning, and so is every document when an option is set.
///
/// Ownership: the sink is not owned and outlives the reader; it owns the trees that it is given.
/// What is left of a document that could not be read to its end is destroyed.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/NodeReaderTest.cpp
class NodeReader
{
public:
    /// All options off, no schema locations, no callback.
    explicit NodeReader(NodeSink* i_pSink);
    virtual ~NodeReader();
    NodeReader(const NodeReader&) = delete;
    NodeReader& operator=(const NodeReader&) = delete;

    /// Builds the elements at a depth of \p i_SkipDepth (0: the whole document) and below. The
    /// result is that of `SAXParser::parse`; whether the document had errors is told by `errorCount`.
    /// A parser library that cannot be loaded is one error and -1003; the sink is told which file is missing.
    /// A file that changes while it is read is read once more, when the whole document is built; one
    /// that then changes again, or is built without its outer levels, has an error.
    TErrorCode read(const String& i_Path, int i_SkipDepth);

    void setValidationScheme(unsigned i_Scheme) noexcept { m_ValidationScheme = i_Scheme; }
    void setNamespaces(bool i_On) noexcept { m_Namespaces = i_On; }
    void setSchema(bool i_On) noexcept { m_Schema = i_On; }
    void setFullSchemaChecking(bool i_On) noexcept { m_FullSchemaChecking = i_On; }
    void setNoNamespaceSchemaLocation(const String& i_Location) { m_NoNamespaceSchemaLocation = i_Location; }
    void setSchemaLocation(const String& i_Location) { m_SchemaLocation = i_Location; }
    /// What the document may refer to; any file, unless set.
    void setExternalEntities(ExternalEntities i_Allowed) noexcept { m_ExternalEntities = i_Allowed; }
    void setProgressCallback(ProgressCallback i_pProgress) noexcept { m_pProgress = i_pProgress; }

    /// Errors counted in the last parse.
    int errorCount() const noexcept { return m_ErrorCount; }

    /// Whether the parser for plain documents is asked at all, in the whole process. For tests: with
    /// it or without it the trees and the results are the same.
    static bool readsPlainDocuments() noexcept { return s_ReadsPlainDocuments; }
    static void setReadsPlainDocuments(bool i_On) noexcept { s_ReadsPlainDocuments = i_On; }

private:
    /// Throws `std::runtime_error` when a module cannot be loaded.
    TErrorCode readDocument(const String& i_Path, int i_SkipDepth);
    TErrorCode readOnce(const XmlDocumentFile& i_File, int i_SkipDepth, NodeSink& io_Sink);
    bool readPlain(const XmlDocumentFile& i_File, NodeSink& io_Sink);
    void setOptions(SAXParser& o_Parser) const;

    static bool s_ReadsPlainDocuments;

    NodeSink* m_pSink;
    unsigned m_ValidationScheme = SAXParser::ValidateNever;
    bool m_Namespaces = false;
    bool m_Schema = false;
    bool m_FullSchemaChecking = false;
    int m_ErrorCount = 0;
    String m_NoNamespaceSchemaLocation;
    String m_SchemaLocation;
    ExternalEntities m_ExternalEntities = ExternalEntities::Files;
    ProgressCallback m_pProgress = nullptr;
};
