#pragma once

#include "FuzzTarget.h"

#include "XPathPrinter.h"
#include "XmlFileParser.h"
#include "XmlNodeSink.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"

#include <memory>
#include <string>
#include <vector>

/// What one parse of a file gives.
struct ParsedFile
{
    explicit ParsedFile(const String& i_Path)
    {
        XmlPlugin::XmlNodeSink sink;
        m_Status = XmlPlugin::XmlFileParser(i_Path, sink).status();
        m_pRoot.reset(sink.release());
    }

    /// The verdict and, for a document without error, its tree.
    std::string print() const
    {
        if (m_Status != 0)
            return "error\n";
        return m_pRoot ? XmlPlugin::printTree(*m_pRoot).toNarrow() : "no tree\n";
    }

    int m_Status = 0;
    std::unique_ptr<Node> m_pRoot;
};

/// The numbers of one element: its attributes in turn, then itself.
inline void checkNumbers(const Node& i_Node, unsigned& io_Next)
{
    const AttributeTable* pTable = i_Node.attributes();
    for (int i = 0; pTable && i < pTable->count(); ++i)
    {
        const std::wstring_view name = pTable->nameAt(i);
        FUZZ_CHECK(pTable->ordinalAt(i) == String::valueOf(io_Next++).view(), i_Node.name().toNarrow());
        FUZZ_CHECK(pTable->indexOf(String(name.data(), name.size())) == i, i_Node.name().toNarrow());
    }
    FUZZ_CHECK(i_Node.sequence() == io_Next++, i_Node.name().toNarrow());
}

/// A parsed tree: elements only, linked both ways, numbered in document order without a gap.
inline void checkParsedTree(const Node& i_Root)
{
    FUZZ_CHECK(!i_Root.getParent(), i_Root.name().toNarrow());
    unsigned next = 0;
    for (const Node* pNode = &i_Root; pNode;)
    {
        FUZZ_CHECK(pNode->getType() == Node::ElementNode && !pNode->name().isEmpty(), pNode->name().toNarrow());
        checkNumbers(*pNode, next);
        unsigned count = 0;
        const Node* pPrevious = nullptr;
        for (const Node* pChild : pNode->children())
        {
            FUZZ_CHECK(pChild->getParent() == pNode && pChild->previousSibling() == pPrevious,
                       pNode->name().toNarrow());
            pPrevious = pChild;
            ++count;
        }
        FUZZ_CHECK(count == pNode->childCount() && pPrevious == pNode->children().back(), pNode->name().toNarrow());

        const Node* pNext = pNode->children().front();
        while (!pNext && pNode)
        {
            pNext = pNode->nextSibling();
            if (!pNext)
                pNode = pNode->getParent();
        }
        pNode = pNext;
    }
}
