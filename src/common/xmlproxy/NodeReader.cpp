#include "xmlproxy/NodeReader.h"

#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/NodeSink.h"
#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/plain/PlainParser.h"

#include <memory>
#include <stdexcept>

namespace
{

/// Keeps the root until it is known that all of the document is what the one who reads it took it
/// for; the messages go on.
class HeldRoot final : public NodeSink
{
public:
    explicit HeldRoot(NodeSink& io_Sink) noexcept : m_Sink(io_Sink) {}

    TErrorCode setRoot(Node* i_pRoot) override
    {
        m_pRoot.reset(i_pRoot);
        return XML_SUCCESS;
    }
    TErrorCode onWarning(const String& i_Message, int i_Line) override { return m_Sink.onWarning(i_Message, i_Line); }
    TErrorCode onError(const String& i_Message, int i_Line) override { return m_Sink.onError(i_Message, i_Line); }
    TErrorCode onCriticalError(const String& i_Message, int i_Line) override
    {
        return m_Sink.onCriticalError(i_Message, i_Line);
    }

    void drop() noexcept { m_pRoot.reset(); }
    void passOn()
    {
        if (m_pRoot)
        {
            m_Sink.setRoot(m_pRoot.release());
        }
    }

private:
    NodeSink& m_Sink;
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
    o_Parser.setExternalEntities(m_ExternalEntities);
}

/// False when the document is not plain, of which the sink learns nothing.
bool NodeReader::readPlain(const XmlDocumentFile& i_File, NodeSink& io_Sink)
{
    HeldRoot sink(io_Sink);
    {
        DefaultSAXHandler handler(&sink, 0);
        PlainParser parser(&handler);
        setOptions(parser);
        if (parser.parseFile(i_File, m_pProgress) != XML_SUCCESS)
        {
            return false;
        }
    }
    m_ErrorCount = 0;
    sink.passOn();
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
    const bool isWhole = i_SkipDepth == 0;
    HeldRoot held(*m_pSink);
    NodeSink& sink = isWhole ? static_cast<NodeSink&>(held) : *m_pSink;
    TErrorCode code = XML_SUCCESS;
    bool hasChanged = true;
    for (int attempts = isWhole ? 2 : 1; hasChanged && attempts > 0; --attempts)
    {
        held.drop();
        const XmlDocumentFile file(i_Path);
        code = readOnce(file, i_SkipDepth, sink);
        hasChanged = file.hasChanged();
    }
    if (hasChanged)
    {
        held.drop();
        ++m_ErrorCount;
        m_pSink->onCriticalError(L"The file changes while it is read", 0);
    }
    held.passOn();
    return code;
}

TErrorCode NodeReader::readOnce(const XmlDocumentFile& i_File, int i_SkipDepth, NodeSink& io_Sink)
{
    if (s_ReadsPlainDocuments && i_SkipDepth == 0 && readPlain(i_File, io_Sink))
    {
        return XML_SUCCESS;
    }
    DefaultSAXHandler handler(&io_Sink, i_SkipDepth);
    const std::unique_ptr<SAXParser> pParser = ParserLibrary::instance().makeParser(&handler);
    setOptions(*pParser);
    const TErrorCode code = pParser->parseFile(i_File, m_pProgress);
    m_ErrorCount = pParser->errorCount();
    return code;
}
