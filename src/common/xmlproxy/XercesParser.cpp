#include "xmlproxy/XercesParser.h"

#include "base/ZipFile.h"
#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/XercesEnvironment.h"
#include "xmlproxy/XercesLibrary.h"
#include "xmlproxy/XercesMemory.h"
#include "xmlproxy/XercesProxy.h"
#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlDocumentFile.h"
#include "xmlproxy/XmlEntityResolver.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlExpansionBudget.h"
#include "xmlproxy/XmlFileInputSource.h"
#include "xmlproxy/XmlFilePath.h"
#include "xmlproxy/XmlParseEnd.h"
#include "xmlproxy/XmlStreamList.h"
#include "xmlproxy/XmlZipInputSource.h"

#include <xercesc/framework/XMLAttr.hpp>
#include <xercesc/framework/XMLElementDecl.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/internal/XMLScanner.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>

#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <stdexcept>

namespace
{

/// The library's parser, with each element charged to a budget.
class BudgetedParser final : public xercesc::SAXParser
{
public:
    BudgetedParser(XercesMemory& io_Memory, XmlExpansionBudget& io_Budget)
        : SAXParser(nullptr, &io_Memory), m_Memory(io_Memory), m_Budget(io_Budget)
    {
        m_Budget.watch(getScanner().getReaderMgr());
    }
    ~BudgetedParser() override { m_Budget.watch(nullptr); }
    BudgetedParser(const BudgetedParser&) = delete;
    BudgetedParser& operator=(const BudgetedParser&) = delete;

    /// Throws where memory has run out or the budget is exceeded, which the library does not tell.
    void throwIfEnded() const
    {
        throwIfRunOut();
        m_Budget.throwIfExceeded();
    }
    void throwIfRunOut() const
    {
        if (m_Memory.hasRunOut())
        {
            throw xercesc::OutOfMemoryException();
        }
    }

    void startElement(const xercesc::XMLElementDecl& i_Element, const unsigned int i_UrlId,
                      const XMLCh* const i_pPrefix, const xercesc::RefVectorOf<xercesc::XMLAttr>& i_Attributes,
                      const XMLSize_t i_Count, const bool i_IsEmpty, const bool i_IsRoot) override
    {
        charge(i_Element, i_Attributes, i_Count);
        SAXParser::startElement(i_Element, i_UrlId, i_pPrefix, i_Attributes, i_Count, i_IsEmpty, i_IsRoot);
    }

private:
    void charge(const xercesc::XMLElementDecl& i_Element, const xercesc::RefVectorOf<xercesc::XMLAttr>& i_Attributes,
                XMLSize_t i_Count) const
    {
        std::size_t defaults = 0;
        std::size_t units = 0;
        for (XMLSize_t index = 0; index < i_Count; ++index)
        {
            const xercesc::XMLAttr& attribute = *i_Attributes.elementAt(index);
            if (!attribute.getSpecified())
            {
                ++defaults;
                units += xercesc::XMLString::stringLen(attribute.getValue());
            }
        }
        m_Budget.chargeElement(i_Element.getFullName(), i_Count, defaults, units);
    }

    const XercesMemory& m_Memory;
    XmlExpansionBudget& m_Budget;
};

/// What the library takes from elsewhere, a file or the decoder of an encoding, it reports as not
/// there when that has found no memory. The system's error number still tells.
void throwIfMemoryRanOut()
{
    if (errno == ENOMEM)
    {
        throw std::bad_alloc();
    }
}

void report(SAXHandler& i_Handler, const xercesc::XMLException& i_Exception)
{
    i_Handler.fatalError(fromXercesText(i_Exception.getMessage()), static_cast<int>(i_Exception.getSrcLine()));
}

void setValidation(xercesc::SAXParser& io_Parser, unsigned i_Scheme)
{
    switch (i_Scheme)
    {
    case SAXParser::ValidateNever:
        io_Parser.setValidationScheme(xercesc::SAXParser::Val_Never);
        io_Parser.setLoadExternalDTD(false);
        break;
    case SAXParser::ValidateAlways:
        io_Parser.setValidationScheme(xercesc::SAXParser::Val_Always);
        break;
    case SAXParser::ValidateAutomatically:
        io_Parser.setValidationScheme(xercesc::SAXParser::Val_Auto);
        break;
    default:
        break;
    }
}

/// Whether an archive could not be read to the end of its first member: it has gone or changed since
/// it was looked at, or its data is damaged.
bool isDamaged(const String& i_Path)
{
    if (ZipFile::isValid(i_Path) != 0)
    {
        return true;
    }
    const std::unique_ptr<xercesc::BinInputStream> pStream(XmlZipInputSource(i_Path).makeStream());
    std::array<XMLByte, 16384> bytes;
    try
    {
        while (pStream && pStream->readBytes(bytes.data(), bytes.size()) > 0)
        {
        }
    }
    catch (const xercesc::XMLException&)
    {
        return true;
    }
    return false;
}

/// The source of the document, which is in an archive of this name unless the name is empty.
std::unique_ptr<xercesc::InputSource> createInput(const XmlDocumentFile& i_File, const String& i_Archive,
                                                  XmlStreamList& io_Streams, XercesMemory& io_Memory)
{
    if (i_Archive.length() > 0)
    {
        return std::make_unique<XmlZipInputSource>(i_Archive, &io_Streams);
    }
    return std::make_unique<XmlFileInputSource>(i_File, &io_Streams, &io_Memory);
}

/// A relative path in a working directory that was removed.
bool isNowhere(const XmlDocumentFile& i_File)
{
    return !i_File.isOpen() && XmlFilePath::isRelative(i_File.path()) && !XmlFilePath::hasWorkingFolder();
}

bool isCancelled(ProgressCallback i_pProgress)
{
    return i_pProgress && (static_cast<unsigned>(i_pProgress()) & 0xFFU) != 0;
}

/// True when the callback stopped the parse, at which one more chunk is read.
bool parseChunks(BudgetedParser& io_Parser, const xercesc::InputSource& i_Input, ProgressCallback i_pProgress)
{
    xercesc::XMLPScanToken token;
    bool more = io_Parser.parseFirst(i_Input, token);
    bool cancelled = false;
    while (more && !cancelled)
    {
        cancelled = isCancelled(i_pProgress);
        io_Parser.throwIfEnded();
        more = io_Parser.parseNext(token);
    }
    return cancelled;
}

/// `parseChunks`, with the errors counted in \p o_ErrorCount, also when it throws. \p i_Archive is
/// the name of the archive that the document is in, or empty.
bool scan(BudgetedParser& io_Parser, const xercesc::InputSource& i_Input, const String& i_Archive,
          ProgressCallback i_pProgress, int& o_ErrorCount)
{
    errno = 0;
    bool cancelled = false;
    try
    {
        cancelled = parseChunks(io_Parser, i_Input, i_pProgress);
    }
    catch (const xercesc::XMLException&)
    {
        io_Parser.throwIfRunOut();
        throwIfMemoryRanOut();
        // Not the document's fault then, although the library has not come to where it would show.
        o_ErrorCount = i_Archive.length() > 0 && isDamaged(i_Archive) ? 1 : 0;
        throw;
    }
    io_Parser.throwIfRunOut();
    o_ErrorCount = static_cast<int>(io_Parser.getErrorCount());
    if (o_ErrorCount > 0)
    {
        throwIfMemoryRanOut();
    }
    return cancelled;
}

} // namespace

TErrorCode XercesParser::parse(const String& i_Path, ProgressCallback i_pProgress)
{
    return parseFile(XmlDocumentFile(i_Path), i_pProgress);
}

TErrorCode XercesParser::parseFile(const XmlDocumentFile& i_File, ProgressCallback i_pProgress)
{
    m_ErrorCount = 0;
    XercesLibrary library;
    try
    {
        library.acquire();
    }
    catch (const xercesc::XMLException& exception)
    {
        report(*m_pHandler, exception);
        return XML_ERROR_PARSER_INITIALIZE;
    }
    return parseInitialised(i_File, i_pProgress);
}

/// The library's exceptions end here, while the library still stands.
TErrorCode XercesParser::parseInitialised(const XmlDocumentFile& i_File, ProgressCallback i_pProgress)
{
    try
    {
        return run(i_File, i_pProgress);
    }
    catch (const xercesc::XMLException& exception)
    {
        report(*m_pHandler, exception);
        return XML_ERROR_PARSER_EXCEPTION;
    }
    catch (const xercesc::OutOfMemoryException&)
    {
        throw std::bad_alloc();
    }
    catch (const std::bad_alloc&)
    {
        throw;
    }
    catch (...)
    {
        return XML_ERROR_UNKNOWN_EXCEPTION;
    }
}

void XercesParser::reportError(const String& i_Message, int i_Line)
{
    ++m_ErrorCount;
    m_pHandler->fatalError(i_Message, i_Line);
}

template <class Parser>
void XercesParser::setOptions(Parser& o_Parser) const
{
    setValidation(o_Parser, m_ValidationScheme);
    o_Parser.setDoNamespaces(m_Namespaces);
    o_Parser.setDoSchema(m_Schema);
    o_Parser.setValidationSchemaFullChecking(m_FullSchemaChecking);
    if (m_NoNamespaceSchemaLocation.length() > 0)
    {
        o_Parser.setExternalNoNamespaceSchemaLocation(m_NoNamespaceSchemaLocation.toNarrow().c_str());
    }
    if (m_SchemaLocation.length() > 0)
    {
        o_Parser.setExternalSchemaLocation(m_SchemaLocation.toNarrow().c_str());
    }
}

TErrorCode XercesParser::run(const XmlDocumentFile& i_File, ProgressCallback i_pProgress)
{
    if (isNowhere(i_File))
    {
        return XML_ERROR_NO_INPUT;
    }
    // These outlive the parser.
    XmlExpansionBudget budget(m_ExpansionLimit);
    XercesMemory memory(&budget);
    xercesc::SecurityManager security;
    security.setEntityExpansionLimit(m_EntityExpansionLimit);
    XmlStreamList streams(&budget);
    XmlEntityResolver resolver(i_File, streams, memory, m_ExternalEntities);
    String archive;
    try
    {
        archive = i_File.isArchive() ? i_File.archiveName() : String();
    }
    catch (const std::runtime_error& error) // archives cannot be read at all
    {
        reportError(String(error.what()), 0);
        return XML_ERROR_NO_INPUT;
    }
    const std::unique_ptr<xercesc::InputSource> pInput = createInput(i_File, archive, streams, memory);

    BudgetedParser parser(memory, budget);
    parser.setSecurityManager(&security);
    parser.setXMLEntityResolver(&resolver);
    setOptions(parser);
    XercesProxy proxy(m_pHandler);
    parser.setDocumentHandler(&proxy);
    parser.setErrorHandler(&proxy);
    const XercesEnvironment environment;
    bool cancelled = false;
    try
    {
        cancelled = scan(parser, *pInput, archive, i_pProgress, m_ErrorCount);
    }
    catch (const XmlParseEnd&) // NOLINT(bugprone-empty-catch): the reason is asked for below
    {
    }
    // A document that is refused has an error like one that is not well-formed.
    if (budget.isExceeded())
    {
        reportError(budget.message(), budget.line());
    }
    else if (resolver.refusal().length() > 0)
    {
        reportError(resolver.refusal(), resolver.refusalLine());
    }
    return cancelled ? XML_ERROR_CANCELLED : XML_SUCCESS;
}
