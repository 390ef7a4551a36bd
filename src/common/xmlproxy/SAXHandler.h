#pragma once

#include "base/String.h"

class AttributeTable;
class XmlTreeMemory;

/// The events of one parse in the document layer's own types; a handler never sees the parser library.
///
/// Ownership: not owned by its callers.
/// Threads: called on the thread that parses.
/// Tested by: tests/common/xmlproxy/XercesProxyTest.cpp, tests/common/xmlproxy/DefaultSAXHandlerTest.cpp
class SAXHandler
{
public:
    virtual void startDocument() = 0; // slot 0
    virtual void endDocument() = 0;   // slot 1
    /// Takes ownership of \p i_pAttributes (null: none), also when it throws. Line and column are counted from 1; the
    /// sequence is the element's position in document order.
    virtual void startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
                              unsigned i_Sequence) = 0; // slot 2
    virtual void endElement(const String& i_Name) = 0;  // slot 3
    virtual void characters(const String& i_Text, unsigned i_Line, unsigned i_Column,
                            unsigned i_Sequence) = 0; // slot 4
    /// Messages of the parser, each with its line, counted from 1; 0 when there is none.
    virtual void warning(const String& i_Message, int i_Line) = 0;    // slot 5
    virtual void error(const String& i_Message, int i_Line) = 0;      // slot 6
    virtual void fatalError(const String& i_Message, int i_Line) = 0; // slot 7

    /// The memory in which the next start tag's name, attribute names and table must be made: that of the tree under
    /// construction, owned by the handler. Null: on the heap.
    virtual XmlTreeMemory* memory() { return nullptr; } // slot 8

protected:
    ~SAXHandler() = default;
};
