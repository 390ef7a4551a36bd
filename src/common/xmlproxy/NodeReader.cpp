#include "xmlproxy/NodeReader.h"

#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/XercesParser.h"

NodeReader::NodeReader(NodeSink* i_pSink) : m_pSink(i_pSink) {}

NodeReader::~NodeReader() = default;

TErrorCode NodeReader::read(const String& i_Path, int i_SkipDepth)
{
    DefaultSAXHandler handler(m_pSink, i_SkipDepth);
    XercesParser parser(&handler);
    parser.setFullSchemaChecking(m_FullSchemaChecking);
    parser.setNamespaces(m_Namespaces);
    parser.setSchema(m_Schema);
    parser.setValidationScheme(m_ValidationScheme);
    parser.setNoNamespaceSchemaLocation(m_NoNamespaceSchemaLocation);
    parser.setSchemaLocation(m_SchemaLocation);
    const TErrorCode code = parser.parse(i_Path, m_pProgress);
    m_ErrorCount = parser.errorCount();
    return code;
}
