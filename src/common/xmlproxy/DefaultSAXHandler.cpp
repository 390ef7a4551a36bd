#include "xmlproxy/DefaultSAXHandler.h"

#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/NodeSink.h"
#include "xmlproxy/XmlAssert.h"

#include <memory>

DefaultSAXHandler::DefaultSAXHandler(NodeSink* i_pSink, int i_SkipDepth) : m_pSink(i_pSink), m_SkipDepth(i_SkipDepth)
{
    if (m_SkipDepth < 0)
    {
        wideAssert(L"m_SkipDepth >= 0", L"./../../../src/common/xmlproxy/DefaultSAXHandler", 23);
    }
}

DefaultSAXHandler::~DefaultSAXHandler()
{
    if (m_pBottom)
    {
        m_pMemory.release(); // NOLINT(bugprone-unused-return-value): the root has it
        delete m_pBottom;
    }
}

XmlTreeMemory* DefaultSAXHandler::makeMemory()
{
    m_pMemory = std::make_unique<XmlTreeMemory>();
    return m_pMemory.get();
}

void DefaultSAXHandler::push(Node* i_pNode) noexcept
{
    i_pNode->setParent(m_pTop);
    if (m_pTop)
    {
        m_pTop->addChild(i_pNode);
    }
    else
    {
        m_pBottom = i_pNode;
    }
    m_pTop = i_pNode;
}

Node* DefaultSAXHandler::pop() noexcept
{
    Node* pNode = m_pTop;
    if (pNode)
    {
        m_pTop = pNode->getParent();
    }
    if (!m_pTop)
    {
        m_pBottom = nullptr;
    }
    return pNode;
}

void DefaultSAXHandler::startDocument() {}

void DefaultSAXHandler::endDocument()
{
    if (m_Depth != 0)
    {
        m_pSink->onCriticalError(L"Malformed XML: inconsistent depth at end of document", 0);
    }
}

void DefaultSAXHandler::startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line,
                                     unsigned i_Column, unsigned i_Sequence)
{
    std::unique_ptr<AttributeTable> pAttributes(i_pAttributes);
    if (XmlTreeMemory* pMemory = memory())
    {
        const XmlName& name = pMemory->nameOf(i_Name);
        push(Node::create(*pMemory, name, pAttributes.get(), i_Line, i_Column, i_Sequence));
        pAttributes.release(); // NOLINT(bugprone-unused-return-value): the node has it
    }
    ++m_Depth;
}

void DefaultSAXHandler::endElement(const String&)
{
    --m_Depth;
    Node* pNode = pop();
    if (m_Depth == m_SkipDepth)
    {
        m_pMemory.release(); // NOLINT(bugprone-unused-return-value): the root has it
        m_pSink->setRoot(pNode);
    }
}

void DefaultSAXHandler::characters(const String& i_Text, unsigned i_Line, unsigned i_Column, unsigned i_Sequence)
{
    if (m_pTop)
    {
        m_pTop->addChild(new TextNode(i_Text, i_Line, i_Column, i_Sequence));
    }
}

void DefaultSAXHandler::warning(const String& i_Message, int i_Line)
{
    m_pSink->onWarning(i_Message, i_Line);
}

void DefaultSAXHandler::error(const String& i_Message, int i_Line)
{
    m_pSink->onError(i_Message, i_Line);
}

void DefaultSAXHandler::fatalError(const String& i_Message, int i_Line)
{
    m_pSink->onCriticalError(i_Message, i_Line);
}
