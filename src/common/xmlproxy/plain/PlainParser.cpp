#include "xmlproxy/plain/PlainParser.h"

#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/plain/PlainDocument.h"
#include "xmlproxy/plain/PlainSource.h"

bool PlainParser::hasOptions() const noexcept
{
    return m_ValidationScheme != ValidateNever || m_Namespaces || m_Schema || m_FullSchemaChecking ||
           m_NoNamespaceSchemaLocation.length() > 0 || m_SchemaLocation.length() > 0;
}

TErrorCode PlainParser::parse(const String& i_Path, ProgressCallback i_pProgress)
{
    return parseFile(XmlDocumentFile(i_Path), i_pProgress);
}

TErrorCode PlainParser::parseFile(const XmlDocumentFile& i_File, ProgressCallback i_pProgress)
{
    m_ErrorCount = 0;
    if (hasOptions() || i_pProgress)
    {
        return s_GaveUp;
    }
    const std::unique_ptr<PlainSource> pSource = PlainSource::open(i_File);
    return pSource ? parse(*pSource) : s_GaveUp;
}

TErrorCode PlainParser::parse(PlainSource& io_Source)
{
    m_ErrorCount = 0;
    PlainDocument document(io_Source, m_BlockSize, *m_pHandler);
    return document.read() ? XML_SUCCESS : s_GaveUp;
}
