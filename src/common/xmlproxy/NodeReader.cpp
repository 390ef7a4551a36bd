#include "xmlproxy/NodeReader.h"

#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/NodeSink.h"
#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/plain/PlainParser.h"

#include <memory>
#include <stdexcept>

namespace
{

/// Keeps the root until it is known that all of the document is plain.
class HeldRoot final : public NodeSink
{
public:
    TErrorCode setRoot(Node* i_pRoot) override
    {
        m_pRoot.reset(i_pRoot);
        return XML_SUCCESS;
    }
    Node* release() noexcept { return m_pRoot.release(); }

private:
    std::unique_ptr<Node> m_pRoot;
};

} // namespace

bool NodeReader::s_ReadsPlainDocuments = XMLPLUGIN_PLAIN_READER != 0;

NodeReader::NodeReader(NodeSink* i_pSink) : m_pSink(i_pSink) {}

NodeReader::~NodeReader() = default;

void NodeReader::setOptions(SAXParser& o_Parser) const
{
    o_Parser.setFullSchemaChecking(m_FullSchemaChecking);
    o_Parser.setNamespaces(m_Namespaces);
    o_Parser.setSchema(m_Schema);
    o_Parser.setValidationScheme(m_ValidationScheme);
    o_Parser.setNoNamespaceSchemaLocation(m_NoNamespaceSchemaLocation);
    o_Parser.setSchemaLocation(m_SchemaLocation);
}

/// False when the document is not plain, of which the sink learns nothing.
bool NodeReader::readPlain(const String& i_Path)
{
    HeldRoot sink;
    {
        DefaultSAXHandler handler(&sink, 0);
        PlainParser parser(&handler);
        setOptions(parser);
        if (parser.parse(i_Path, m_pProgress) != XML_SUCCESS)
        {
            return false;
        }
    }
    m_ErrorCount = 0;
    m_pSink->setRoot(sink.release());
    return true;
}

TErrorCode NodeReader::read(const String& i_Path, int i_SkipDepth)
{
    try
    {
        return readDocument(i_Path, i_SkipDepth);
    }
    catch (const std::runtime_error& error) // names the module that could not be loaded
    {
        DefaultSAXHandler(m_pSink, i_SkipDepth).fatalError(String(error.what()), 0);
        m_ErrorCount = 1;
        return XML_ERROR_PARSER_INITIALIZE;
    }
}

TErrorCode NodeReader::readDocument(const String& i_Path, int i_SkipDepth)
{
    // Trees of inner elements go to the sink one by one, and cannot be taken back from it.
    if (s_ReadsPlainDocuments && i_SkipDepth == 0 && readPlain(i_Path))
    {
        return XML_SUCCESS;
    }
    DefaultSAXHandler handler(m_pSink, i_SkipDepth);
    const std::unique_ptr<SAXParser> pParser = ParserLibrary::instance().makeParser(&handler);
    setOptions(*pParser);
    const TErrorCode code = pParser->parse(i_Path, m_pProgress);
    m_ErrorCount = pParser->errorCount();
    return code;
}
