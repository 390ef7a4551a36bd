#pragma once

#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/XmlTreeMemory.h"

#include <memory>

class Node;
class NodeSink;

/// Builds node trees from the events of one parse and hands each finished root to a sink.
///
/// Elements whose depth is less than the skip depth are not built. Each element at the skip depth is the root of a tree
/// of its own.
///
/// Ownership: owns the unfinished tree and destroys it with itself, for instance after a parse that stopped at an
/// error. The sink is not owned.
/// Threads: one at a time.
/// Invariants: the elements under construction are the innermost open element and its ancestors.
/// Tested by: tests/common/xmlproxy/DefaultSAXHandlerTest.cpp
class DefaultSAXHandler final : public SAXHandler
{
public:
    /// \p i_pSink must not be null; \p i_SkipDepth is at least 0.
    DefaultSAXHandler(NodeSink* i_pSink, int i_SkipDepth);
    ~DefaultSAXHandler();
    DefaultSAXHandler(const DefaultSAXHandler&) = delete;
    DefaultSAXHandler& operator=(const DefaultSAXHandler&) = delete;

    void startDocument() override;
    void endDocument() override;
    void startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
                      unsigned i_Sequence) override;
    void endElement(const String& i_Name) override;
    /// Drops text outside the elements that are built.
    void characters(const String& i_Text, unsigned i_Line, unsigned i_Column, unsigned i_Sequence) override;
    void warning(const String& i_Message, int i_Line) override;
    void error(const String& i_Message, int i_Line) override;
    void fatalError(const String& i_Message, int i_Line) override;

    /// One memory per tree; null while the elements are above the skip depth.
    XmlTreeMemory* memory() override
    {
        return m_Depth < m_SkipDepth ? nullptr : m_pMemory ? m_pMemory.get() : makeMemory();
    }

    /// Number of open elements.
    int depth() const noexcept { return m_Depth; }

private:
    XmlTreeMemory* makeMemory();
    void push(Node* i_pNode) noexcept;
    /// Removes and returns the innermost element under construction; null if there is none.
    Node* pop() noexcept;

    int m_Depth = 0;
    std::unique_ptr<XmlTreeMemory> m_pMemory; ///< of the tree under construction
    Node* m_pBottom = nullptr;
    Node* m_pTop = nullptr; ///< the stack's links are the parent pointers
    NodeSink* m_pSink;
    int m_SkipDepth;
};
