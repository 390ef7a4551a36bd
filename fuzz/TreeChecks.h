#pragma once

#include "FuzzTarget.h"

#include "TestTrees.h"
#include "boundary/XmlFileParser.h"
#include "boundary/XmlNodeSink.h"
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
        {
            return "error\n";
        }
        return m_pRoot ? printTree(*m_pRoot) : "no tree\n";
    }

    int m_Status = 0;
    std::unique_ptr<Node> m_pRoot;
};

/// The numbers of one element: its attributes in turn, then itself. Result: how many are left out.
/// A number is left out for an attribute that the library does not notice to be there twice, which
/// takes a row of attributes that makes a table of its own grow.
inline unsigned checkNumbers(const Node& i_Node, unsigned& io_Next)
{
    constexpr int fewAttributes = 28;
    unsigned missing = 0;
    const auto expect = [&](unsigned i_Number)
    {
        FUZZ_CHECK(i_Number >= io_Next, i_Node.name().toNarrow());
        missing += i_Number - io_Next;
        io_Next = i_Number + 1;
    };
    const AttributeTable* pTable = i_Node.attributes();
    const int count = pTable ? pTable->count() : 0;
    for (int i = 0; i < count; ++i)
    {
        const std::wstring_view name = pTable->nameAt(i);
        FUZZ_CHECK(pTable->indexOf(String(name.data(), name.size())) == i, i_Node.name().toNarrow());
        expect(static_cast<unsigned>(std::stoul(std::wstring(pTable->ordinalAt(i)))));
    }
    expect(i_Node.sequence());
    FUZZ_CHECK(missing == 0 || count > fewAttributes, i_Node.name().toNarrow());
    return missing;
}

/// A parsed tree: elements only, linked both ways, numbered in document order. Result: how many
/// numbers are left out.
inline unsigned checkParsedTree(const Node& i_Root)
{
    unsigned missing = 0;
    FUZZ_CHECK(!i_Root.getParent(), i_Root.name().toNarrow());
    unsigned next = 0;
    for (const Node* pNode = &i_Root; pNode;)
    {
        FUZZ_CHECK(pNode->getType() == Node::ElementNode && !pNode->name().isEmpty(), pNode->name().toNarrow());
        missing += checkNumbers(*pNode, next);
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
            {
                pNode = pNode->getParent();
            }
        }
        pNode = pNext;
    }
    return missing;
}
