#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "xmlproxy/ExternalEntities.h"

class SAXHandler;
class XmlDocumentFile;

/// Called between two chunks of a parse. A result whose low byte is not 0 stops the parse.
using ProgressCallback = int (*)();

/// A parser that sends the events of one document to a handler, with its options.
///
/// Ownership: the handler is not owned and must outlive the parser.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XercesParserTest.cpp
class SAXParser
{
public:
    enum ValidationScheme : unsigned
    {
        ValidateNever = 0, ///< nor is an external DTD subset read
        ValidateAlways = 1,
        ValidateAutomatically = 2
    };

    virtual ~SAXParser() = default; // slot 0
    SAXParser(const SAXParser&) = delete;
    SAXParser& operator=(const SAXParser&) = delete;

    /// Parses the document at \p i_Path: a plain file, or the first member of a ZIP archive.
    /// Returns 0, also for a document with errors, which the handler receives and `errorCount` counts; -1003, -1004 or
    /// -1005 when the parser library failed, with no error counted, except one with -1004 when the archive around the
    /// document is damaged; -1010 when \p i_pProgress (null: none) stopped the parse; -1011 when there is no input
    /// source. `std::bad_alloc` when memory is exhausted.
    virtual TErrorCode parse(const String& i_Path, ProgressCallback i_pProgress) = 0; // slot 1
    /// Same, for a file that has already been opened, successfully or not.
    virtual TErrorCode parseFile(const XmlDocumentFile& i_File, ProgressCallback i_pProgress) = 0; // slot 2

    /// One of `ValidationScheme`; any other value keeps the library's default.
    void setValidationScheme(unsigned i_Scheme) noexcept { m_ValidationScheme = i_Scheme; }
    void setNamespaces(bool i_On) noexcept { m_Namespaces = i_On; }
    void setSchema(bool i_On) noexcept { m_Schema = i_On; }
    void setFullSchemaChecking(bool i_On) noexcept { m_FullSchemaChecking = i_On; }
    /// An empty text means no location.
    void setNoNamespaceSchemaLocation(const String& i_Location) { m_NoNamespaceSchemaLocation = i_Location; }
    /// Pairs of namespace and location, separated by blanks. An empty text means none.
    void setSchemaLocation(const String& i_Location) { m_SchemaLocation = i_Location; }

    /// Restricts what the document may refer to.
    void setExternalEntities(ExternalEntities i_Allowed) noexcept { m_ExternalEntities = i_Allowed; }

    /// Number of errors that the parser library counted in the last parse, without warnings.
    int errorCount() const noexcept { return m_ErrorCount; }

protected:
    explicit SAXParser(SAXHandler* i_pHandler) noexcept : m_pHandler(i_pHandler) {}

    SAXHandler* m_pHandler;
    unsigned m_ValidationScheme = ValidateNever;
    bool m_Namespaces = false;
    bool m_Schema = false;
    bool m_FullSchemaChecking = false;
    ExternalEntities m_ExternalEntities = ExternalEntities::Files;
    int m_ErrorCount = 0;
    String m_NoNamespaceSchemaLocation;
    String m_SchemaLocation;
};
