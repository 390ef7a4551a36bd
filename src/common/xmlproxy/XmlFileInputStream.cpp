#include "xmlproxy/XmlFileInputStream.h"

#include "xmlproxy/XmlDocumentFile.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLException.hpp>

XMLSize_t XmlFileInputStream::readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead)
{
    if (!m_File.isOpen())
    {
        ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::File_CouldNotOpenFile);
    }
    const std::size_t count = m_File.readAt(m_Position, o_pBuffer, i_MaxToRead);
    if (count == XmlDocumentFile::s_Failed)
    {
        ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::File_CouldNotReadFromFile);
    }
    m_Position += count;
    return count;
}
