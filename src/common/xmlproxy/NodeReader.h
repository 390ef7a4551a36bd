#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "xmlproxy/SAXParser.h"

class NodeSink;

/// Reads documents into node trees. Holds the parser options and runs one parse at a time.
///
/// The parser for plain documents reads whole documents. The parser library reads, from its beginning, any document
/// that the former does not take, and every document if an option is set.
///
/// Ownership: the sink is not owned and must outlive the reader. The sink owns the trees that it receives. The reader
/// destroys what it has built of a document that could not be read to the end.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/NodeReaderTest.cpp
class NodeReader
{
public:
    /// Starts with all options off, no schema locations and no callback. \p i_pSink must not be null.
    explicit NodeReader(NodeSink* i_pSink);
    virtual ~NodeReader();
    NodeReader(const NodeReader&) = delete;
    NodeReader& operator=(const NodeReader&) = delete;

    /// Reads the document at \p i_Path and builds the elements at a depth of \p i_SkipDepth (0: the whole document) and
    /// below. Returns what `SAXParser::parse` returns; `errorCount` says whether the document had errors.
    /// If the parser library cannot be loaded, that counts as one error, the sink is told which file is missing, and
    /// the result is -1003. If the file changes while a whole document is read, it is read once more. A file that then
    /// changes again has an error, and so has a file that changes while a part of its document is built.
    TErrorCode read(const String& i_Path, int i_SkipDepth);

    void setValidationScheme(unsigned i_Scheme) noexcept { m_ValidationScheme = i_Scheme; }
    void setNamespaces(bool i_On) noexcept { m_Namespaces = i_On; }
    void setSchema(bool i_On) noexcept { m_Schema = i_On; }
    void setFullSchemaChecking(bool i_On) noexcept { m_FullSchemaChecking = i_On; }
    void setNoNamespaceSchemaLocation(const String& i_Location) { m_NoNamespaceSchemaLocation = i_Location; }
    void setSchemaLocation(const String& i_Location) { m_SchemaLocation = i_Location; }
    /// Restricts what the document may refer to; by default, any file.
    void setExternalEntities(ExternalEntities i_Allowed) noexcept { m_ExternalEntities = i_Allowed; }
    void setProgressCallback(ProgressCallback i_pProgress) noexcept { m_pProgress = i_pProgress; }

    /// Number of errors in the last parse.
    int errorCount() const noexcept { return m_ErrorCount; }

    /// Whether the parser for plain documents is used at all, in the whole process. For tests: the trees and results
    /// are the same with and without it.
    static bool readsPlainDocuments() noexcept { return s_ReadsPlainDocuments; }
    static void setReadsPlainDocuments(bool i_On) noexcept { s_ReadsPlainDocuments = i_On; }

private:
    /// Throws `std::runtime_error` if a module cannot be loaded.
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
