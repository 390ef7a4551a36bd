#pragma once

#include "xmlproxy/XmlTreeMemory.h"
#include "xmlproxy/plain/PlainInput.h"
#include "xmlproxy/plain/PlainStartTag.h"

#include <cstddef>
#include <memory>
#include <vector>

class AttributeTable;
class PlainSource;
class SAXHandler;

/// One document from its first byte to its last: reads it by the grammar and sends its events.
///
/// Text, comments, processing instructions and CDATA sections are checked but not kept.
///
/// Ownership: owns neither the source nor the handler.
/// Threads: one at a time; serves one parse.
/// Tested by: tests/common/xmlproxy/plain/PlainParserTest.cpp
class PlainDocument
{
public:
    PlainDocument(PlainSource& io_Source, std::size_t i_BlockSize, SAXHandler& io_Handler);
    PlainDocument(const PlainDocument&) = delete;
    PlainDocument& operator=(const PlainDocument&) = delete;

    /// True if the document is plain and has been read to its end.
    bool read();

private:
    // Each takes a place in the input and returns the place after what it has read, or null to give up on the document.

    const char* readProlog();
    const char* readDeclaration(const char* i_pNext);
    bool isTakenDeclaration(const char* i_pNext, const char* i_pEnd) noexcept;
    const char* readElements(const char* i_pRoot);
    const char* readMarkup(const char* i_pNext);
    const char* readStartTag(const char* i_pNext);
    const char* readEndTag(const char* i_pNext);
    const char* readOtherMarkup(const char* i_pNext);
    const char* readInstruction(const char* i_pNext);
    const char* passData(const char* i_pNext);
    const char* passText(const char* i_pNext);
    const char* passComment(const char* i_pNext);
    const char* passSection(const char* i_pNext);
    const char* passMiscellaneous(const char* i_pNext);
    const char* passSpaces(const char* i_pNext);
    const char* passUnusual(const char* i_pNext);
    const char* passLineEnd(const char* i_pNext);
    const char* passReference(const char* i_pNext);

    XmlTreeMemory& names(XmlTreeMemory* i_pMemory) noexcept { return i_pMemory ? *i_pMemory : m_Names; }
    std::unique_ptr<AttributeTable> makeTable(XmlTreeMemory* io_pMemory);
    bool isOpen() const noexcept { return !m_Open.empty(); }

    PlainInput m_Input;
    PlainInput::Line m_Line;
    SAXHandler& m_Handler;
    PlainStartTag m_Tag;
    XmlTreeMemory m_Names; ///< used if the handler builds no tree
    std::vector<const XmlTreeMemory::Entry*> m_Open;
    unsigned m_Counter = 0; ///< of attributes and elements
    bool m_HasMark = false;
    bool m_IsAscii = false; ///< according to its declaration
};
