#include "xmlproxy/XercesProxy.h"

#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/Utf16Text.h"
#include "xmlproxy/XercesText.h"
#include "xmlproxy/XmlAssert.h"
#include "xmlproxy/XmlTreeMemory.h"

#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>

#include <memory>
#include <string>

namespace
{

int lineOf(const xercesc::SAXParseException& i_Exception)
{
    return static_cast<int>(i_Exception.getLineNumber());
}

} // namespace

void XercesProxy::setDocumentLocator(const xercesc::Locator* const i_pLocator)
{
    m_pLocator = i_pLocator;
}

void XercesProxy::startDocument()
{
    m_pHandler->startDocument();
}

void XercesProxy::endDocument()
{
    m_pHandler->endDocument();
}

void XercesProxy::addAttributes(const xercesc::AttributeList& i_Attributes, AttributeTable* o_Out)
{
    if (!o_Out)
    {
        wideAssert(L"o_Out != 0", L"./../../../src/common/xmlproxy/XercesProxy", 141);
    }
    const XMLSize_t count = i_Attributes.getLength();
    for (XMLSize_t index = 0; index < count; ++index)
    {
        o_Out->add(fromXercesText(i_Attributes.getName(index)), fromXercesText(i_Attributes.getValue(index)),
                   String::valueOf(m_Counter++));
    }
}

std::unique_ptr<AttributeTable> XercesProxy::makeTable(const xercesc::AttributeList& i_Attributes)
{
    auto pTable = std::make_unique<AttributeTable>(1);
    addAttributes(i_Attributes, pTable.get());
    return pTable;
}

std::unique_ptr<AttributeTable> XercesProxy::makeTable(const xercesc::AttributeList& i_Attributes,
                                                       XmlTreeMemory& io_Memory)
{
    m_Sources.clear();
    const XMLSize_t count = i_Attributes.getLength();
    for (XMLSize_t index = 0; index < count; ++index)
    {
        const XmlName* pName = io_Memory.addAttribute(utf16Of(i_Attributes.getName(index)));
        if (!pName)
        {
            return makeTable(i_Attributes); // numbers that are not consecutive
        }
        const char16_t* pValue = utf16Of(i_Attributes.getValue(index));
        m_Sources.push_back({pName, pValue, std::char_traits<char16_t>::length(pValue)});
    }
    const unsigned first = m_Counter;
    m_Counter += static_cast<unsigned>(count);
    return std::unique_ptr<AttributeTable>(AttributeTable::create(io_Memory, m_Sources, first));
}

void XercesProxy::startElement(const XMLCh* const i_pName, xercesc::AttributeList& i_Attributes)
{
    if (XmlTreeMemory* pMemory = m_pHandler->memory())
    {
        const XmlName& name = pMemory->startTag(utf16Of(i_pName));
        passOn(name.text(), makeTable(i_Attributes, *pMemory));
    }
    else
    {
        passOn(fromXercesText(i_pName), makeTable(i_Attributes));
    }
}

void XercesProxy::passOn(const String& i_Name, std::unique_ptr<AttributeTable> i_pAttributes)
{
    const unsigned sequence = m_Counter++;
    if (m_pLocator)
    {
        m_pHandler->startElement(i_Name, i_pAttributes.release(), static_cast<unsigned>(m_pLocator->getLineNumber()),
                                 static_cast<unsigned>(m_pLocator->getColumnNumber()), sequence);
    }
    else
    {
        m_pHandler->startElement(i_Name, i_pAttributes.release(), sequence, 0, 0);
    }
}

/// Mostly the same name as the last time, which saves making it again.
void XercesProxy::endElement(const XMLCh* const i_pName)
{
    if (!isSameText(m_EndName, utf16Of(i_pName)))
    {
        m_EndName = fromXercesText(i_pName);
    }
    m_pHandler->endElement(m_EndName);
}

void XercesProxy::processingInstruction(const XMLCh* const, const XMLCh* const) {}

void XercesProxy::notationDecl(const XMLCh* const, const XMLCh* const, const XMLCh* const) {}

void XercesProxy::unparsedEntityDecl(const XMLCh* const, const XMLCh* const, const XMLCh* const, const XMLCh* const) {}

void XercesProxy::warning(const xercesc::SAXParseException& i_Exception)
{
    m_pHandler->warning(fromXercesText(i_Exception.getMessage()), lineOf(i_Exception));
}

void XercesProxy::error(const xercesc::SAXParseException& i_Exception)
{
    m_pHandler->error(fromXercesText(i_Exception.getMessage()), lineOf(i_Exception));
}

void XercesProxy::fatalError(const xercesc::SAXParseException& i_Exception)
{
    m_pHandler->fatalError(fromXercesText(i_Exception.getMessage()), lineOf(i_Exception));
}
