#include "xmlproxy/XmlFileInputSource.h"

#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlStreamList.h"

#include <xercesc/util/BinFileInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLException.hpp>

#include <memory>
#include <utility>

namespace
{

/// The library's file stream, with the failure to open the file left to the first read.
class FileStream final : public xercesc::BinInputStream
{
public:
#ifdef _WIN32
    explicit FileStream(const String& i_Path) : m_File(toXercesText(i_Path).c_str()) {}
#else
    explicit FileStream(const String& i_Path) : m_File(i_Path.toNarrow().c_str()) {}
#endif
    FileStream(const FileStream&) = delete;
    FileStream& operator=(const FileStream&) = delete;

    XMLFilePos curPos() const override
    {
        return m_File.curPos();
    }

    XMLSize_t readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead) override
    {
        if (!m_File.getIsOpen())
        {
            ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::File_CouldNotOpenFile);
        }
        return m_File.readBytes(o_pBuffer, i_MaxToRead);
    }

    const XMLCh* getContentType() const override
    {
        return nullptr;
    }

private:
    xercesc::BinFileInputStream m_File;
};

} // namespace

XmlFileInputSource::XmlFileInputSource(const String& i_Path, const XMLCh* i_pPath, XmlStreamList* i_pStreams,
                                       xercesc::MemoryManager* i_pMemory)
    : LocalFileInputSource(i_pPath, i_pMemory), m_Path(i_Path), m_pStreams(i_pStreams)
{
}

xercesc::BinInputStream* XmlFileInputSource::makeStream() const
{
    std::unique_ptr<xercesc::BinInputStream> pStream(new (getMemoryManager()) FileStream(m_Path));
    return m_pStreams ? m_pStreams->guard(std::move(pStream)) : pStream.release();
}
