#include "xmlproxy/XercesProxy.h"

#include "base/Assert.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/XercesText.h"

#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/sax/SAXParseException.hpp>
#include <xercesc/util/XMLString.hpp>

#include <memory>

namespace
{

int lineOf(const xercesc::SAXParseException& i_Exception)
{
    return static_cast<int>(i_Exception.getLineNumber());
}

/// Decimal digits of all numbers from \p i_First on, \p i_Count of them.
std::size_t digitsOf(unsigned i_First, std::size_t i_Count)
{
    std::size_t digits = 0;
    unsigned long long number = i_First;
    for (std::size_t left = i_Count; left > 0; --left, ++number)
    {
        for (unsigned long long rest = number; rest > 9; rest /= 10)
        {
            ++digits;
        }
        ++digits;
    }
    return digits;
}

void reserveFor(AttributeTable& io_Table, const xercesc::AttributeList& i_Attributes, unsigned i_Counter)
{
    const XMLSize_t count = i_Attributes.getLength();
    std::size_t nameCharacters = 0;
    std::size_t valueCharacters = 0;
    for (XMLSize_t index = 0; index < count; ++index)
    {
        nameCharacters += xercesc::XMLString::stringLen(i_Attributes.getName(index));
        valueCharacters += xercesc::XMLString::stringLen(i_Attributes.getValue(index));
    }
    io_Table.reserve(static_cast<int>(count), nameCharacters, valueCharacters, digitsOf(i_Counter, count));
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
    if (count == 0)
    {
        return;
    }
    reserveFor(*o_Out, i_Attributes, m_Counter);
    for (XMLSize_t index = 0; index < count; ++index)
    {
        o_Out->add(fromXercesText(i_Attributes.getName(index)), fromXercesText(i_Attributes.getValue(index)),
                   String::valueOf(m_Counter++));
    }
}

void XercesProxy::startElement(const XMLCh* const i_pName, xercesc::AttributeList& i_Attributes)
{
    auto pTable = std::make_unique<AttributeTable>(1);
    addAttributes(i_Attributes, pTable.get());
    const unsigned sequence = m_Counter++;
    const String name = fromXercesText(i_pName);
    if (m_pLocator)
    {
        m_pHandler->startElement(name, pTable.release(), static_cast<unsigned>(m_pLocator->getLineNumber()),
                                 static_cast<unsigned>(m_pLocator->getColumnNumber()), sequence);
    }
    else
    {
        m_pHandler->startElement(name, pTable.release(), sequence, 0, 0);
    }
}

void XercesProxy::endElement(const XMLCh* const i_pName)
{
    m_pHandler->endElement(fromXercesText(i_pName));
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
