#include "xmlproxy/XmlFileInputSource.h"

#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlFileInputStream.h"
#include "xmlproxy/XmlFilePath.h"
#include "xmlproxy/XmlStreamList.h"

#include <memory>
#include <utility>

XmlFileInputSource::XmlFileInputSource(const XmlDocumentFile& i_File, XmlStreamList* i_pStreams,
                                       xercesc::MemoryManager* i_pMemory)
    : InputSource(toXercesText(XmlFilePath::toIdentifier(i_File.path())).c_str(), i_pMemory),
      m_File(i_File),
      m_pStreams(i_pStreams)
{
}

xercesc::BinInputStream* XmlFileInputSource::makeStream() const
{
    std::unique_ptr<xercesc::BinInputStream> pStream(new (getMemoryManager()) XmlFileInputStream(m_File));
    return m_pStreams ? m_pStreams->guard(std::move(pStream)) : pStream.release();
}
