#include "xmlproxy/XmlEntityResolver.h"

#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlFileInputStream.h"
#include "xmlproxy/XmlFilePath.h"
#include "xmlproxy/XmlParseEnd.h"
#include "xmlproxy/XmlStreamList.h"

#include <xercesc/framework/XMLBuffer.hpp>
#include <xercesc/sax/InputSource.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/XMLResourceIdentifier.hpp>
#include <xercesc/util/XMLURL.hpp>
#include <xercesc/util/XMLUri.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace
{

/// A file with the stream over it.
class OwningStream final : public xercesc::BinInputStream
{
public:
    explicit OwningStream(std::unique_ptr<XmlDocumentFile> i_pFile) noexcept
        : m_pFile(std::move(i_pFile)), m_Stream(*m_pFile)
    {
    }
    OwningStream(const OwningStream&) = delete;
    OwningStream& operator=(const OwningStream&) = delete;

    XMLFilePos curPos() const override { return m_Stream.curPos(); }
    XMLSize_t readBytes(XMLByte* const o_pBuffer, const XMLSize_t i_MaxToRead) override
    {
        return m_Stream.readBytes(o_pBuffer, i_MaxToRead);
    }
    const XMLCh* getContentType() const override { return nullptr; }

private:
    std::unique_ptr<XmlDocumentFile> m_pFile;
    XmlFileInputStream m_Stream;
};

/// The file or URL that the entity is named in.
const XMLCh* baseOf(const xercesc::XMLResourceIdentifier& i_Identifier)
{
    const XMLCh* pBase = i_Identifier.getBaseURI();
    const bool isNamed = pBase && *pBase != 0;
    return isNamed || !i_Identifier.getLocator() ? pBase : i_Identifier.getLocator()->getSystemId();
}

int lineOf(const xercesc::XMLResourceIdentifier& i_Identifier)
{
    const xercesc::Locator* pLocator = i_Identifier.getLocator();
    return pLocator ? static_cast<int>(pLocator->getLineNumber()) : 0;
}

int valueOfDigit(XMLCh i_Unit) noexcept
{
    constexpr std::u16string_view digits = u"0123456789abcdef";
    const auto place = digits.find(static_cast<char16_t>(i_Unit >= u'A' && i_Unit <= u'F' ? i_Unit + 32 : i_Unit));
    return place == std::u16string_view::npos ? -1 : static_cast<int>(place);
}

/// With each `%xx` replaced by the unit that it stands for.
std::basic_string<XMLCh> withoutEscapes(const XMLCh* i_pText)
{
    std::basic_string<XMLCh> text;
    for (; *i_pText != 0; ++i_pText)
    {
        const int high = *i_pText == u'%' ? valueOfDigit(i_pText[1]) : -1;
        const int low = high < 0 ? -1 : valueOfDigit(i_pText[2]);
        text.push_back(low < 0 ? *i_pText : static_cast<XMLCh>(high * 16 + low));
        i_pText += low < 0 ? 0 : 2;
    }
    return text;
}

/// The path in a URL; in one with a drive there is a slash before the drive.
String pathOf(const xercesc::XMLURL& i_Url)
{
    const std::basic_string<XMLCh> path = withoutEscapes(i_Url.getPath() ? i_Url.getPath() : u"");
#if defined(_WIN32)
    const bool hasDrive = path.size() > 2 && path[0] == u'/' && path[2] == u':';
    return fromXercesText(path.c_str() + (hasDrive ? 1 : 0));
#else
    return fromXercesText(path.c_str());
#endif
}

bool isOnThisComputer(const xercesc::XMLURL& i_Url)
{
    const XMLCh* pHost = i_Url.getHost();
    return i_Url.getProtocol() == xercesc::XMLURL::File &&
           (!pHost || *pHost == 0 || xercesc::XMLString::compareIStringASCII(pHost, u"localhost") == 0);
}

/// Where something lies.
struct Place
{
    String identifier; ///< as the library has it
    String path;
    bool isFile = true; ///< otherwise somewhere in a network
};

/// What is an absolute URL, be it by its base, is taken as one; everything else is a local file.
Place placeOf(const XMLCh* i_pBase, const XMLCh* i_pSystemId, xercesc::MemoryManager& io_Memory)
{
    xercesc::XMLURL url(&io_Memory);
    if (url.setURL(i_pBase, i_pSystemId, url) && !url.isRelative())
    {
        return {fromXercesText(url.getURLText()), pathOf(url), isOnThisComputer(url)};
    }
    xercesc::XMLBuffer name(1023, &io_Memory);
    xercesc::XMLUri::normalizeURI(i_pSystemId, name);
    const String path = XmlFilePath::resolve(fromXercesText(i_pBase), fromXercesText(name.getRawBuffer()));
    return {XmlFilePath::toIdentifier(path), path};
}

} // namespace

class XmlEntityResolver::Source final : public xercesc::InputSource
{
public:
    /// \p i_pName is what the document calls it.
    Source(XmlEntityResolver& io_Resolver, Place i_Place, const XMLCh* i_pName, int i_Line, ExternalEntities i_Allowed)
        : InputSource(toXercesText(i_Place.identifier).c_str(), &io_Resolver.m_Memory),
          m_Resolver(io_Resolver),
          m_Place(std::move(i_Place)),
          m_Name(i_pName),
          m_Line(i_Line),
          m_Allowed(i_Allowed)
    {
    }
    Source(const Source&) = delete;
    Source& operator=(const Source&) = delete;

    xercesc::BinInputStream* makeStream() const override
    {
        if (m_Allowed == ExternalEntities::None)
        {
            refuse(L"no external entities are read");
        }
        if (!m_Place.isFile)
        {
            refuse(L"only files are read, nothing from a network");
        }
        if (XmlFilePath::isOfTheSystem(m_Place.path))
        {
            refuse(L"it is a device, or a file of the system itself");
        }
        auto pFile = std::make_unique<XmlDocumentFile>(m_Place.path);
        if (!pFile->isOpen())
        {
            return nullptr;
        }
        if (m_Allowed == ExternalEntities::FilesInFolder &&
            !XmlFilePath::isInFolderOf(m_Place.path, m_Resolver.m_Document.path()))
        {
            refuse(L"it is not in the folder of the document");
        }
        if (pFile->isSameFile(m_Resolver.m_Document) || m_Resolver.m_Streams.isReading(*pFile))
        {
            refuse(L"it is being read already");
        }
        const XmlDocumentFile& file = *pFile;
        return m_Resolver.m_Streams.guardEntity(
            std::unique_ptr<xercesc::BinInputStream>(new (getMemoryManager()) OwningStream(std::move(pFile))),
            m_Name.c_str(), file);
    }

private:
    [[noreturn]] void refuse(const wchar_t* i_pReason) const
    {
        m_Resolver.refuse(fromXercesText(m_Name.c_str()), i_pReason, m_Line);
    }

    XmlEntityResolver& m_Resolver;
    Place m_Place;
    std::basic_string<XMLCh> m_Name;
    int m_Line;
    ExternalEntities m_Allowed;
};

xercesc::InputSource* XmlEntityResolver::resolveEntity(xercesc::XMLResourceIdentifier* i_pIdentifier)
{
    const XMLCh* pSystemId = i_pIdentifier->getSystemId();
    if (!pSystemId)
    {
        return nullptr;
    }
    const bool isEntity = i_pIdentifier->getResourceIdentifierType() == xercesc::XMLResourceIdentifier::ExternalEntity;
    return new (&m_Memory) Source(*this, placeOf(baseOf(*i_pIdentifier), pSystemId, m_Memory), pSystemId,
                                  lineOf(*i_pIdentifier), isEntity ? m_Allowed : ExternalEntities::Files);
}

void XmlEntityResolver::refuse(const String& i_Name, const wchar_t* i_pReason, int i_Line)
{
    m_Refusal = String(L"The external entity '").concat(i_Name).concat(L"' is refused: ").concat(i_pReason);
    m_RefusalLine = i_Line;
    throw XmlParseEnd();
}
