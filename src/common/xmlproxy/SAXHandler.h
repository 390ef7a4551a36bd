#pragma once

#include "base/String.h"

class AttributeTable;
class XmlTreeMemory;

/// Receives the events of one parse, in the document layer's own types. Implementations never see the parser library.
///
/// Ownership: its callers do not own it.
/// Threads: called on the thread that parses.
/// Tested by: tests/common/xmlproxy/XercesProxyTest.cpp, tests/common/xmlproxy/DefaultSAXHandlerTest.cpp
class SAXHandler
{
public:
    virtual void startDocument() = 0; // slot 0
    virtual void endDocument() = 0;   // slot 1
    /// Takes ownership of \p i_pAttributes, even if it throws. Line and column are counted from 1. The sequence is the
    /// element's position in document order.
    virtual void startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
                              unsigned i_Sequence) = 0; // slot 2
    virtual void endElement(const String& i_Name) = 0;  // slot 3
    virtual void characters(const String& i_Text, unsigned i_Line, unsigned i_Column,
                            unsigned i_Sequence) = 0; // slot 4
    /// Messages of the parser, with their line, counted from 1.
    virtual void warning(const String& i_Message, int i_Line) = 0;    // slot 5
    virtual void error(const String& i_Message, int i_Line) = 0;      // slot 6
    virtual void fatalError(const String& i_Message, int i_Line) = 0; // slot 7

    /// The memory of the tree that the handler builds. It receives the attribute table of the next start tag, its name
    /// and the names of its attributes. Null: they go on the heap.
    virtual XmlTreeMemory* memory() { return nullptr; } // slot 8

protected:
    ~SAXHandler() = default;
};
