#include "xmlproxy/XmlEntityResolver.h"

#include "xmlproxy/XmlStreamList.h"

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/URLInputSource.hpp>
#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUri.hpp>

#include <memory>
#include <string>
#include <utility>

namespace
{

/// The library's own source, with its streams guarded.
class GuardedSource final : public xercesc::InputSource
{
public:
    /// \p i_pName is the entity's system identifier as the document writes it.
    GuardedSource(std::unique_ptr<xercesc::InputSource> i_pSource, const XMLCh* i_pName, XmlStreamList& io_Streams,
                  xercesc::MemoryManager& io_Memory)
        : InputSource(i_pSource->getSystemId(), i_pSource->getPublicId(), &io_Memory),
          m_pSource(std::move(i_pSource)),
          m_Name(i_pName),
          m_Streams(io_Streams)
    {
    }
    GuardedSource(const GuardedSource&) = delete;
    GuardedSource& operator=(const GuardedSource&) = delete;

    xercesc::BinInputStream* makeStream() const override
    {
        std::unique_ptr<xercesc::BinInputStream> pStream(m_pSource->makeStream());
        return pStream ? m_Streams.guardEntity(std::move(pStream), m_Name.c_str()) : nullptr;
    }

private:
    std::unique_ptr<xercesc::InputSource> m_pSource;
    std::basic_string<XMLCh> m_Name;
    XmlStreamList& m_Streams;
};

/// The file or URL that the entity is named in.
const XMLCh* baseOf(const xercesc::XMLResourceIdentifier& i_Identifier)
{
    const XMLCh* pBase = i_Identifier.getBaseURI();
    const bool isNamed = pBase && *pBase != 0;
    return isNamed || !i_Identifier.getLocator() ? pBase : i_Identifier.getLocator()->getSystemId();
}

/// What is an absolute URL, be it by its base, is taken as one; everything else is a local file.
std::unique_ptr<xercesc::InputSource> makeSource(const XMLCh* i_pBase, const XMLCh* i_pSystemId,
                                                 xercesc::MemoryManager& io_Memory)
{
    xercesc::XMLURL url(&io_Memory);
    if (url.setURL(i_pBase, i_pSystemId, url) && !url.isRelative())
    {
        return std::unique_ptr<xercesc::InputSource>(new (&io_Memory) xercesc::URLInputSource(url, &io_Memory));
    }
    xercesc::XMLBuffer path(1023, &io_Memory);
    xercesc::XMLUri::normalizeURI(i_pSystemId, path);
    return std::unique_ptr<xercesc::InputSource>(
        new (&io_Memory) xercesc::LocalFileInputSource(i_pBase, path.getRawBuffer(), &io_Memory));
}

} // namespace

xercesc::InputSource* XmlEntityResolver::resolveEntity(xercesc::XMLResourceIdentifier* i_pIdentifier)
{
    if (i_pIdentifier->getResourceIdentifierType() != xercesc::XMLResourceIdentifier::ExternalEntity)
    {
        return nullptr;
    }
    std::unique_ptr<xercesc::InputSource> pSource =
        makeSource(baseOf(*i_pIdentifier), i_pIdentifier->getSystemId(), m_Memory);
    return new (&m_Memory) GuardedSource(std::move(pSource), i_pIdentifier->getSystemId(), m_Streams, m_Memory);
}
