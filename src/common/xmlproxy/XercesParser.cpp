#include "xmlproxy/XercesParser.h"

#include "base/ZipFile.h"
#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/XercesLibrary.h"
#include "xmlproxy/XercesMemory.h"
#include "xmlproxy/XercesProxy.h"
#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlEntityResolver.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlExpansionBudget.h"
#include "xmlproxy/XmlFileInputSource.h"
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
        : SAXParser(nullptr, &io_Memory), m_Budget(io_Budget)
    {
        m_Budget.watch(getScanner().getReaderMgr());
    }
    ~BudgetedParser() override { m_Budget.watch(nullptr); }
    BudgetedParser(const BudgetedParser&) = delete;
    BudgetedParser& operator=(const BudgetedParser&) = delete;

    void throwIfExceeded() const { m_Budget.throwIfExceeded(); }

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

/// Null when the library cannot make a source of the path, for instance because a relative one
/// stands in a working directory that is gone.
std::unique_ptr<xercesc::InputSource> createInput(const String& i_Path, bool i_IsArchive, XmlStreamList& io_Streams,
                                                  XercesMemory& io_Memory)
{
    if (i_IsArchive)
    {
        return std::make_unique<XmlZipInputSource>(i_Path, &io_Streams);
    }
    try
    {
        return std::make_unique<XmlFileInputSource>(i_Path, toXercesText(i_Path).c_str(), &io_Streams, &io_Memory);
    }
    catch (const xercesc::XMLException&)
    {
        return nullptr;
    }
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
        io_Parser.throwIfExceeded();
        more = io_Parser.parseNext(token);
    }
    return cancelled;
}

/// `parseChunks`, with the errors counted in \p o_ErrorCount, also when it throws. \p i_pArchive is
/// the archive that the document is in, or null.
bool scan(BudgetedParser& io_Parser, const xercesc::InputSource& i_Input, const String* i_pArchive,
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
        throwIfMemoryRanOut();
        // Not the document's fault then, although the library has not come to where it would show.
        o_ErrorCount = i_pArchive && isDamaged(*i_pArchive) ? 1 : 0;
        throw;
    }
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
    return parseInitialised(i_Path, i_pProgress);
}

/// The library's exceptions end here, while the library still stands.
TErrorCode XercesParser::parseInitialised(const String& i_Path, ProgressCallback i_pProgress)
{
    try
    {
        return run(i_Path, i_pProgress);
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

/// A document whose entities add too much has an error like one that is not well-formed.
TErrorCode XercesParser::run(const String& i_Path, ProgressCallback i_pProgress)
{
    XmlExpansionBudget budget(m_ExpansionLimit);
    TErrorCode code = XML_SUCCESS;
    try
    {
        code = run(i_Path, i_pProgress, budget);
    }
    catch (const XmlExpansionBudget::Exceeded&) // NOLINT(bugprone-empty-catch): the budget tells
    {
    }
    if (budget.isExceeded())
    {
        ++m_ErrorCount;
        m_pHandler->fatalError(budget.message(), budget.line());
    }
    return code;
}

TErrorCode XercesParser::run(const String& i_Path, ProgressCallback i_pProgress, XmlExpansionBudget& io_Budget)
{
    // These outlive the parser.
    XercesMemory memory(&io_Budget);
    xercesc::SecurityManager security;
    security.setEntityExpansionLimit(m_EntityExpansionLimit);
    XmlStreamList streams(&io_Budget);
    XmlEntityResolver resolver(streams, memory);

    BudgetedParser parser(memory, io_Budget);
    parser.setSecurityManager(&security);
    parser.setXMLEntityResolver(&resolver);
    setValidation(parser, m_ValidationScheme);
    parser.setDoNamespaces(m_Namespaces);
    parser.setDoSchema(m_Schema);
    parser.setValidationSchemaFullChecking(m_FullSchemaChecking);
    if (!m_NoNamespaceSchemaLocation.isEmpty())
    {
        parser.setExternalNoNamespaceSchemaLocation(m_NoNamespaceSchemaLocation.toNarrow().c_str());
    }
    if (!m_SchemaLocation.isEmpty())
    {
        parser.setExternalSchemaLocation(m_SchemaLocation.toNarrow().c_str());
    }
    bool isArchive = false;
    try
    {
        isArchive = ZipFile::isValid(i_Path) == 0;
    }
    catch (const std::runtime_error& error) // archives cannot be read at all
    {
        m_pHandler->fatalError(String(error.what()), 0);
        m_ErrorCount = 1;
        return XML_ERROR_NO_INPUT;
    }
    const std::unique_ptr<xercesc::InputSource> pInput = createInput(i_Path, isArchive, streams, memory);
    if (!pInput)
    {
        return XML_ERROR_NO_INPUT;
    }
    XercesProxy proxy(m_pHandler);
    parser.setDocumentHandler(&proxy);
    parser.setErrorHandler(&proxy);
    const bool cancelled = scan(parser, *pInput, isArchive ? &i_Path : nullptr, i_pProgress, m_ErrorCount);
    return cancelled ? XML_ERROR_CANCELLED : XML_SUCCESS;
}
