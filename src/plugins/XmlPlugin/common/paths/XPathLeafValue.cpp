#include "paths/XPathLeafValue.h"

#include "paths/XPathStep.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

namespace XmlPlugin
{

namespace
{

/// The order key in the wrap-around arithmetic of unsigned numbers.
std::int32_t orderKey(unsigned i_Sequence, int i_Index = 0) noexcept
{
    return static_cast<std::int32_t>(i_Sequence + static_cast<unsigned>(i_Index));
}

} // namespace

TErrorCode XPathLeafValue::add(const Node& i_Node, XPathOutputCollector& io_Output) const
{
    switch (m_Kind)
    {
    case Kind::Text:
        return addText(i_Node, io_Output);
    case Kind::OneAttribute:
        return addAttribute(i_Node, io_Output);
    case Kind::AllAttributes:
        addAllAttributes(i_Node, io_Output);
        break;
    case Kind::WholeNode:
        addNode(i_Node, io_Output);
        break;
    }
    return XML_SUCCESS;
}

TErrorCode XPathLeafValue::addText(const Node& i_Node, XPathOutputCollector& io_Output)
{
    const Node* pText = nullptr;
    XPathStep::findTextChild(&i_Node, pText);
    if (!pText)
    {
        return XML_PLUGIN_ERROR_XPATH_NODE_WITHOUT_VALUE;
    }
    const XPathLentText text(viewOf(pText->name()));
    io_Output.addUnlessPresent({text, text, orderKey(pText->sequence()), &i_Node});
    return XML_SUCCESS;
}

/// D-39: the keys count on from the element's own number and so meet those of the elements
/// behind it, whose values are then dropped as duplicates. XPath 1.0 says that all are values.
void XPathLeafValue::addAllAttributes(const Node& i_Node, XPathOutputCollector& io_Output)
{
    const AttributeTable* pAttributes = i_Node.attributes();
    for (int i = 0; pAttributes && i < pAttributes->count(); ++i)
    {
        const XPathLentText value(pAttributes->valueAt(i));
        io_Output.add({value, value, orderKey(i_Node.sequence(), i), &i_Node});
    }
}

TErrorCode XPathLeafValue::addAttribute(const Node& i_Node, XPathOutputCollector& io_Output) const
{
    const AttributeTable* pAttributes = i_Node.attributes();
    const int index = pAttributes ? pAttributes->indexOf(m_Name) : -1;
    if (index < 0)
    {
        return XML_PLUGIN_ERROR_XPATH_NODE_WITHOUT_VALUE;
    }
    const XPathLentText value(pAttributes->valueAt(index));
    io_Output.add({value, value, orderKey(pAttributes->orderAt(index)), &i_Node});
    return XML_SUCCESS;
}

/// D-27: a whole node fills the node text only, so that its value is the empty string. XPath 1.0
/// says that it is the element's text.
void XPathLeafValue::addNode(const Node& i_Node, XPathOutputCollector& io_Output)
{
    const Node* pText = nullptr;
    XPathStep::findTextChild(&i_Node, pText);
    const XPathLentText text = pText ? XPathLentText(viewOf(pText->name())) : XPathLentText();
    io_Output.addUnlessPresent({text, XPathLentText(), orderKey(i_Node.sequence()), &i_Node});
}

} // namespace XmlPlugin
