#include "xmlproxy/Node.h"

#include "xmlproxy/UTF8XMLEncoding.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlTreeMemory.h"

#include <algorithm>
#include <ostream>
#include <string_view>
#include <vector>

namespace
{

void writeRaw(std::ostream& o_Out, std::string_view i_Text)
{
    o_Out.write(i_Text.data(), static_cast<std::streamsize>(i_Text.size()));
}

void writeBlanks(std::ostream& o_Out, long long i_Count)
{
    static constexpr std::string_view blanks = "                                                                ";
    for (long long left = i_Count; left > 0; left -= static_cast<long long>(blanks.size()))
    {
        writeRaw(o_Out, blanks.substr(0, static_cast<std::size_t>(std::min<long long>(left, blanks.size()))));
    }
}

/// Names go through the narrow form before they are escaped.
void writeName(std::ostream& o_Out, const String& i_Name)
{
    o_Out << UTF8XMLEncoding(i_Name.toNarrow().c_str());
}

/// Without \p i_pTable: null.
std::unique_ptr<AttributeTable> cloneAttributes(const AttributeTable* i_pTable)
{
    if (!i_pTable)
    {
        return nullptr;
    }
    auto pCopy = std::make_unique<AttributeTable>(i_pTable->blockSize());
    const String ordinal(L"0");
    String name;
    String value;
    for (int index = 0; index < i_pTable->count(); ++index)
    {
        i_pTable->getAt(index, name, value);
        pCopy->add(name, value, ordinal);
    }
    return pCopy;
}

} // namespace

Node::Node(const XmlName* i_pName, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
           unsigned i_Sequence) noexcept
    : m_pName(i_pName), m_Column(i_Column), m_Line(i_Line), m_Sequence(i_Sequence), m_pAttributes(i_pAttributes)
{
}

Node::Node(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column, unsigned i_Sequence)
    : Node(new XmlName(i_Name), i_pAttributes, i_Line, i_Column, i_Sequence)
{
}

Node* Node::create(XmlTreeMemory& io_Memory, const XmlName& i_Name, AttributeTable* i_pAttributes, unsigned i_Line,
                   unsigned i_Column, unsigned i_Sequence)
{
    void* pPlace = io_Memory.allocateNode(sizeof(Node));
    if (i_pAttributes && !i_pAttributes->isInMemory())
    {
        io_Memory.setHasOthers();
    }
    return new (pPlace) Node(&i_Name, i_pAttributes, i_Line, i_Column, i_Sequence);
}

Node::~Node()
{
    destroyChildren();
    if (!memory())
    {
        delete m_pName;
    }
}

void* Node::operator new(std::size_t i_Bytes)
{
    return ::operator new(i_Bytes);
}

void Node::operator delete(void* i_pNode) noexcept
{
    ::operator delete(i_pNode);
}

void Node::operator delete(Node* i_pNode, std::destroying_delete_t) noexcept
{
    XmlTreeMemory* pMemory = i_pNode->memory();
    if (!pMemory)
    {
        i_pNode->~Node();
        ::operator delete(static_cast<void*>(i_pNode));
        return;
    }
    if (pMemory->hasOthers())
    {
        i_pNode->destroyChildren();
        i_pNode->m_pAttributes.reset();
    }
    delete pMemory;
}

/// Each node's children take their place behind it in one long list before it goes, so that it has
/// none left: no recursion and no memory, whatever the depth. The root of another parsed tree takes
/// its subtree along by itself.
void Node::destroyChildren() noexcept
{
    Node* pNode = std::exchange(m_Children, NodeList()).m_pFirst;
    while (pNode)
    {
        const bool isOfThisTree = pNode->memory() && pNode->memory() == memory();
        NodeList& children = pNode->m_Children;
        if (!children.empty() && (isOfThisTree || !pNode->memory()))
        {
            children.m_pLast->m_pNext = pNode->m_pNext;
            pNode->m_pNext = children.m_pFirst;
            children = NodeList();
        }
        Node* pNext = pNode->m_pNext;
        if (isOfThisTree)
        {
            pNode->m_pAttributes.reset();
        }
        else
        {
            delete pNode;
        }
        pNode = pNext;
    }
}

int Node::getType() const
{
    return ElementNode;
}

bool Node::mayHaveText() const noexcept
{
    return !memory() || memory()->mayHaveText();
}

TErrorCode Node::addChild(Node* i_pChild) noexcept
{
    if (memory() && i_pChild->memory() != memory())
    {
        memory()->setHasOthers();
        memory()->setMayHaveText();
    }
    i_pChild->m_pPrevious = m_Children.m_pLast;
    i_pChild->m_pNext = nullptr;
    (m_Children.m_pLast ? m_Children.m_pLast->m_pNext : m_Children.m_pFirst) = i_pChild;
    m_Children.m_pLast = i_pChild;
    ++m_ChildCount;
    return XML_SUCCESS;
}

std::unique_ptr<Node> Node::cloneElement() const
{
    std::unique_ptr<AttributeTable> pAttributes = cloneAttributes(attributes());
    auto pCopy = std::make_unique<Node>(name(), pAttributes.get(), m_Line, m_Column, 0U);
    pAttributes.release(); // NOLINT(bugprone-unused-return-value): the copy has it
    return pCopy;
}

/// The stack of open elements is explicit, because a tree may have no parent pointers (a copy has
/// none).
Node* Node::clone() const
{
    struct Level
    {
        const Node* pNextChild;
        Node* pCopy;
    };
    std::unique_ptr<Node> pRoot = cloneElement();
    std::vector<Level> levels{{m_Children.front(), pRoot.get()}};
    while (!levels.empty())
    {
        const Node* pChild = levels.back().pNextChild;
        if (!pChild)
        {
            levels.pop_back();
            continue;
        }
        levels.back().pNextChild = pChild->m_pNext;
        Node* pCopy = pChild->isLeaf() ? pChild->clone() : pChild->cloneElement().release();
        levels.back().pCopy->addChild(pCopy);
        if (!pChild->isLeaf())
        {
            levels.push_back({pChild->m_Children.front(), pCopy});
        }
    }
    return pRoot.release();
}

void Node::writeStartTag(std::ostream& o_Out, long long i_Depth) const
{
    writeBlanks(o_Out, i_Depth);
    writeRaw(o_Out, "<");
    writeName(o_Out, name());
    String name;
    String value;
    for (int index = 0; m_pAttributes && index < m_pAttributes->count(); ++index)
    {
        m_pAttributes->getAt(index, name, value);
        writeRaw(o_Out, " ");
        writeName(o_Out, name);
        writeRaw(o_Out, "=\"");
        o_Out << UTF8XMLEncoding(value);
        writeRaw(o_Out, "\"");
    }
    if (m_Children.empty())
    {
        writeRaw(o_Out, "/>");
    }
    else
    {
        writeRaw(o_Out, m_Children.front()->getType() == CharacterDataNode ? ">" : ">\n");
    }
}

void Node::writeEndTag(std::ostream& o_Out, long long i_Depth) const
{
    if (m_Children.front()->getType() != CharacterDataNode)
    {
        writeBlanks(o_Out, i_Depth);
    }
    writeRaw(o_Out, "</");
    writeName(o_Out, name());
    writeRaw(o_Out, ">\n");
}

TErrorCode Node::write(std::ostream& o_Out, int i_Depth) const
{
    struct Level
    {
        const Node* pNode;
        const Node* pNextChild;
    };
    writeStartTag(o_Out, i_Depth);
    if (m_Children.empty())
    {
        return XML_SUCCESS;
    }
    TErrorCode result = XML_SUCCESS;
    std::vector<Level> levels{{this, m_Children.front()}};
    while (!levels.empty())
    {
        // Of the innermost open element; its children stand one deeper.
        const long long depth = static_cast<long long>(i_Depth) + static_cast<long long>(levels.size()) - 1;
        const Node* pChild = levels.back().pNextChild;
        if (!pChild || result != XML_SUCCESS)
        {
            levels.back().pNode->writeEndTag(o_Out, depth);
            levels.pop_back();
            continue;
        }
        levels.back().pNextChild = pChild->m_pNext;
        if (pChild->isLeaf())
        {
            result = pChild->write(o_Out, static_cast<int>(depth + 1));
        }
        else
        {
            pChild->writeStartTag(o_Out, depth + 1);
            levels.push_back({pChild, pChild->m_Children.front()});
        }
    }
    return result;
}

TextNode::TextNode(const String& i_Text, unsigned i_Line, unsigned i_Column, unsigned i_Sequence)
    : Node(i_Text, nullptr, i_Line, i_Column, i_Sequence)
{
    setAttributes(std::make_unique<AttributeTable>(1));
}

int TextNode::getType() const
{
    return CharacterDataNode;
}

Node* TextNode::clone() const
{
    return new TextNode(name(), line(), column(), 0U);
}

TErrorCode TextNode::write(std::ostream& o_Out, int) const
{
    o_Out << UTF8XMLEncoding(name());
    return XML_SUCCESS;
}
