#pragma once

#include "base/String.h"
#include "xmlproxy/PackedAttributes.h"

#include <xercesc/sax/HandlerBase.hpp>

#include <memory>
#include <vector>

class AttributeTable;
class SAXHandler;
class XmlTreeMemory;

/// Translates the parser library's callbacks into the document layer's own events. Numbers attributes and elements in
/// document order with a single counter.
///
/// Character data is dropped. The message callbacks do not throw, so the library decides whether the parse continues.
///
/// Ownership: owns neither the handler nor the locator.
/// Threads: one at a time; serves one parse.
/// Tested by: tests/common/xmlproxy/XercesProxyTest.cpp
class XercesProxy final : public xercesc::HandlerBase
{
public:
    explicit XercesProxy(SAXHandler* i_pHandler) noexcept : m_pHandler(i_pHandler) {}
    XercesProxy(const XercesProxy&) = delete;
    XercesProxy& operator=(const XercesProxy&) = delete;

    void setDocumentLocator(const xercesc::Locator* const i_pLocator) override;
    void startDocument() override;
    void endDocument() override;
    void startElement(const XMLCh* const i_pName, xercesc::AttributeList& i_Attributes) override;
    void endElement(const XMLCh* const i_pName) override;
    void processingInstruction(const XMLCh* const i_pTarget, const XMLCh* const i_pData) override;
    void notationDecl(const XMLCh* const i_pName, const XMLCh* const i_pPublicId,
                      const XMLCh* const i_pSystemId) override;
    void unparsedEntityDecl(const XMLCh* const i_pName, const XMLCh* const i_pPublicId, const XMLCh* const i_pSystemId,
                            const XMLCh* const i_pNotationName) override;
    void warning(const xercesc::SAXParseException& i_Exception) override;
    void error(const xercesc::SAXParseException& i_Exception) override;
    void fatalError(const xercesc::SAXParseException& i_Exception) override;

    /// Appends the attributes to \p o_Out (not null), each with the next number of the counter.
    void addAttributes(const xercesc::AttributeList& i_Attributes, AttributeTable* o_Out);

private:
    /// Creates a table of the attributes, each with the next number of the counter, in the memory of a tree or on the
    /// heap.
    std::unique_ptr<AttributeTable> makeTable(const xercesc::AttributeList& i_Attributes, XmlTreeMemory& io_Memory);
    std::unique_ptr<AttributeTable> makeTable(const xercesc::AttributeList& i_Attributes);
    void passOn(const String& i_Name, std::unique_ptr<AttributeTable> i_pAttributes);

    SAXHandler* m_pHandler;
    const xercesc::Locator* m_pLocator = nullptr;
    unsigned m_Counter = 0;
    std::vector<PackedAttributes::Source> m_Sources; ///< of the current start tag
    String m_EndName;                                ///< of the last end tag
};
