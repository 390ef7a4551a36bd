#include "xmlproxy/XmlZipInputStream.h"

#include "base/InputStream.h"
#include "xmlproxy/XmlAssert.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLExceptMsgs.hpp>
#include <xercesc/util/XMLException.hpp>

#include <algorithm>
#include <limits>

XmlZipInputStream::XmlZipInputStream(InputStream* i_pInputStream) : m_pInputStream(i_pInputStream)
{
    if (!m_pInputStream)
    {
        wideAssert(L"i_InputStream != 0", L"./../../../src/common/xmlproxy/XmlZipInputStream", 24);
    }
    m_Size = m_pInputStream->size(); // cppcheck-suppress nullPointerRedundantCheck ; wideAssert does not return
}

XmlZipInputStream::~XmlZipInputStream()
{
    m_pInputStream->close();
}

XMLFilePos XmlZipInputStream::curPos() const
{
    return m_Position;
}

XMLSize_t XmlZipInputStream::readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead)
{
    constexpr XMLSize_t most = std::numeric_limits<std::int32_t>::max();
    const std::int32_t count = m_pInputStream->read(o_pBuffer, static_cast<std::int32_t>(std::min(i_MaxToRead, most)));
    if (count < 0)
    {
        ThrowXML(xercesc::XMLPlatformUtilsException, xercesc::XMLExcepts::File_CouldNotReadFromFile);
    }
    m_Position += static_cast<std::uint64_t>(count);
    return static_cast<XMLSize_t>(count);
}

const XMLCh* XmlZipInputStream::getContentType() const
{
    return nullptr;
}
