#include "xmlproxy/XmlZipInputSource.h"

#include "base/InputStream.h"
#include "base/ZipFile.h"
#include "xmlproxy/XmlStreamList.h"
#include "xmlproxy/XmlZipInputStream.h"

#include <memory>
#include <utility>

XmlZipInputSource::XmlZipInputSource(const String& i_Path, XmlStreamList* i_pStreams)
    : InputSource(xercesc::XMLPlatformUtils::fgMemoryManager), m_Path(i_Path), m_pStreams(i_pStreams)
{
}

xercesc::BinInputStream* XmlZipInputSource::makeStream() const
{
    ZipFile archive(m_Path);
    ZipEntry* pEntry = archive.getEntry(0);
    if (!pEntry)
    {
        return nullptr;
    }
    std::unique_ptr<InputStream> pInputStream(archive.getEntryStream(pEntry));
    if (!pInputStream)
    {
        return nullptr;
    }
    std::unique_ptr<xercesc::BinInputStream> pStream(new (getMemoryManager()) XmlZipInputStream(pInputStream.get()));
    pInputStream.release(); // NOLINT(bugprone-unused-return-value): the stream has it
    return m_pStreams ? m_pStreams->guard(std::move(pStream)) : pStream.release();
}
