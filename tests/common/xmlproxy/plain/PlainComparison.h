#pragma once

#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/XercesProxy.h"
#include "xmlproxy/XmlTreeMemory.h"
#include "xmlproxy/plain/PlainParser.h"
#include "xmlproxy/plain/PlainSource.h"

#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>

#include <cstddef>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// The parser for plain documents beside the parser library, on the same bytes.

/// Keeps all events of a parse in one buffer of code units.
class EventRecorder final : public SAXHandler
{
public:
    /// \p i_HasMemory: tables are made in the memory of a tree, otherwise one by one.
    explicit EventRecorder(bool i_HasMemory) : m_HasMemory(i_HasMemory) { clear(); }

    void clear()
    {
        m_Events.clear();
        m_pMemory = m_HasMemory ? std::make_unique<XmlTreeMemory>() : nullptr;
    }
    const std::wstring& events() const noexcept { return m_Events; }

    void startDocument() override { m_Events += L'['; }
    void endDocument() override { m_Events += L']'; }
    void startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
                      unsigned i_Sequence) override
    {
        const std::unique_ptr<AttributeTable> pAttributes(i_pAttributes);
        m_Events += L'<';
        put(viewOf(i_Name));
        putNumber(i_Line);
        putNumber(i_Column);
        putNumber(i_Sequence);
        for (int index = 0; index < pAttributes->count(); ++index)
        {
            m_Events += L'@';
            put(pAttributes->nameAt(index));
            put(pAttributes->valueAt(index));
            putNumber(pAttributes->orderAt(index));
        }
    }
    void endElement(const String& i_Name) override
    {
        m_Events += L'/';
        put(viewOf(i_Name));
    }
    void characters(const String& i_Text, unsigned, unsigned, unsigned) override { message(L't', i_Text, 0); }
    void warning(const String& i_Message, int i_Line) override { message(L'w', i_Message, i_Line); }
    void error(const String& i_Message, int i_Line) override { message(L'e', i_Message, i_Line); }
    void fatalError(const String& i_Message, int i_Line) override { message(L'f', i_Message, i_Line); }
    XmlTreeMemory* memory() override { return m_pMemory.get(); }

private:
    void message(wchar_t i_Kind, const String& i_Message, int i_Line)
    {
        m_Events += L'!';
        m_Events += i_Kind;
        put(viewOf(i_Message));
        putNumber(static_cast<unsigned>(i_Line));
    }
    void put(std::wstring_view i_Text)
    {
        putNumber(static_cast<unsigned>(i_Text.size()));
        m_Events += i_Text;
        m_Events += L' ';
    }
    void putNumber(unsigned i_Number)
    {
        // As two code units: numbers are only compared.
        m_Events += static_cast<wchar_t>(i_Number >> 16U);
        m_Events += static_cast<wchar_t>(i_Number & 0xFFFFU);
    }

    bool m_HasMemory;
    std::wstring m_Events;
    std::unique_ptr<XmlTreeMemory> m_pMemory;
};

/// Both parsers, kept from document to document.
class PlainComparison
{
public:
    PlainComparison()
    {
        m_Parser.emplace();
        m_Parser->setSecurityManager(&m_Security);
        m_Parser->setValidationScheme(xercesc::SAXParser::Val_Never);
        m_Parser->setLoadExternalDTD(false);
        m_Security.setEntityExpansionLimit(1000000); // as XercesParser does
    }
    PlainComparison(const PlainComparison&) = delete;
    PlainComparison& operator=(const PlainComparison&) = delete;

    /// True when the plain parser takes the document; its events are `taken`.
    bool takes(std::string_view i_Bytes, std::size_t i_BlockSize = 65536)
    {
        m_Plain.clear();
        PlainBytesSource source(i_Bytes);
        PlainParser parser(&m_Plain);
        parser.setBlockSize(i_BlockSize);
        return parser.parse(source) == 0;
    }
    const std::wstring& taken() const noexcept { return m_Plain.events(); }

    /// The parser library's events, with its messages among them.
    const std::wstring& expected(std::string_view i_Bytes)
    {
        m_Library.clear();
        XercesProxy proxy(&m_Library);
        m_Parser->setDocumentHandler(&proxy);
        m_Parser->setErrorHandler(&proxy);
        const xercesc::MemBufInputSource input(reinterpret_cast<const XMLByte*>(i_Bytes.data()), i_Bytes.size(),
                                               static_cast<const XMLCh*>(nullptr));
        try
        {
            xercesc::XMLPScanToken token;
            bool more = m_Parser->parseFirst(input, token);
            while (more)
            {
                more = m_Parser->parseNext(token);
            }
        }
        catch (const xercesc::XMLException&)
        {
            m_Library.fatalError(L"exception", 0);
        }
        return m_Library.events();
    }

private:
    /// Initialises the library for as long as this lives.
    struct Library
    {
        Library() { xercesc::XMLPlatformUtils::Initialize(); }
        ~Library() { xercesc::XMLPlatformUtils::Terminate(); }
        Library(const Library&) = delete;
        Library& operator=(const Library&) = delete;
    };

    Library m_Initialised;
    xercesc::SecurityManager m_Security;
    std::optional<xercesc::SAXParser> m_Parser;
    EventRecorder m_Plain{true};
    EventRecorder m_Library{true};
};
