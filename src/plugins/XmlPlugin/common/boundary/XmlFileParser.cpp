#include "boundary/XmlFileParser.h"

#include "base/File.h"
#include "xmlproxy/NodeReader.h"
#include "xmlproxy/NodeSink.h"

namespace XmlPlugin
{

XmlFileParser::XmlFileParser(const String& i_File, NodeSink& io_Sink)
{
    if (!File(i_File).exists())
    {
        m_Status = 1;
        return;
    }
    NodeReader reader(&io_Sink);
    // Only counted errors decide. The reader's code is not asked: a document that the library gave
    // up without one leaves what the sink was given.
    reader.read(i_File, 0);
    m_Status = reader.errorCount();
}

XmlFileParser::~XmlFileParser() = default;

} // namespace XmlPlugin
