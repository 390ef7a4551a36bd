#include "Comparison.h"

#include "base/String.h"
#include "boundary/XmlCache.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XercesMemory.h"

#include <xercesc/framework/LocalFileInputSource.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/parsers/SAXParser.hpp>
#include <xercesc/sax/AttributeList.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax/Locator.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/SecurityManager.hpp>
#include <xercesc/util/XMLException.hpp>

#include <deque>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace
{

using XercesText = std::basic_string<XMLCh>;

struct Attribute
{
    XercesText name;
    XercesText value;
};

struct Element
{
    XercesText name;
    std::vector<Attribute> attributes;
    std::size_t parent; ///< place in the list; its own for the root
    unsigned line;
    unsigned column;
};

/// Writes down all elements of a document in the order of their start tags.
class Recorder final : public xercesc::HandlerBase
{
public:
    std::deque<Element> elements;

    void setDocumentLocator(const xercesc::Locator* const i_pLocator) override { m_pLocator = i_pLocator; }
    void startElement(const XMLCh* const i_pName, xercesc::AttributeList& i_Attributes) override
    {
        Element element{i_pName,
                        {},
                        m_Open.empty() ? elements.size() : m_Open.back(),
                        static_cast<unsigned>(m_pLocator->getLineNumber()),
                        static_cast<unsigned>(m_pLocator->getColumnNumber())};
        for (XMLSize_t index = 0; index < i_Attributes.getLength(); ++index)
        {
            element.attributes.push_back({i_Attributes.getName(index), i_Attributes.getValue(index)});
        }
        m_Open.push_back(elements.size());
        elements.push_back(std::move(element));
    }
    void endElement(const XMLCh* const) override { m_Open.pop_back(); }
    // The library decides what is fatal; the default here would throw.
    void fatalError(const xercesc::SAXParseException&) override {}

private:
    const xercesc::Locator* m_pLocator = nullptr;
    std::vector<std::size_t> m_Open;
};

XercesText toXerces(const String& i_Text)
{
    XercesText text;
    for (const wchar_t unit : viewOf(i_Text))
    {
        text.push_back(static_cast<XMLCh>(unit));
    }
    return text;
}

bool isEqual(std::wstring_view i_Left, const XercesText& i_Right)
{
    return String(i_Left.data(), i_Left.size()) ==
           fromUtf16(reinterpret_cast<const char16_t*>(i_Right.data()), i_Right.size());
}

void parse(const String& i_File, Recorder& o_Recorder, Comparison& o_Comparison)
{
    XercesMemory memory; // the library does not give back everything
    xercesc::SecurityManager security;
    security.setEntityExpansionLimit(1000000);
    xercesc::SAXParser parser(nullptr, &memory);
    parser.setSecurityManager(&security);
    parser.setValidationScheme(xercesc::SAXParser::Val_Never);
    parser.setLoadExternalDTD(false);
    parser.setDoNamespaces(false);
    parser.setDoSchema(false);
    parser.setValidationSchemaFullChecking(false);
    parser.setDocumentHandler(&o_Recorder);
    parser.setErrorHandler(&o_Recorder);
    try
    {
        const xercesc::LocalFileInputSource source(toXerces(i_File).c_str());
        xercesc::XMLPScanToken token;
        for (bool more = parser.parseFirst(source, token); more;)
        {
            more = parser.parseNext(token);
        }
        o_Comparison.libraryErrors = static_cast<int>(parser.getErrorCount());
    }
    catch (const xercesc::XMLException&)
    {
        o_Comparison.libraryThrew = true;
    }
}

std::string differenceAt(const Element& i_Element, const std::string& i_What)
{
    return "element at line " + std::to_string(i_Element.line) + ", column " + std::to_string(i_Element.column) + ": " +
           i_What;
}

/// The attributes without those that are there twice, which the library now and then does not notice:
/// the first one stays, and the other has used up a number.
std::vector<std::pair<const Attribute*, unsigned>> numberedAttributes(const Element& i_Element, unsigned& io_Number)
{
    std::vector<std::pair<const Attribute*, unsigned>> attributes;
    std::unordered_set<std::u16string_view> names;
    for (const Attribute& attribute : i_Element.attributes)
    {
        const unsigned number = io_Number++;
        const auto* pName = reinterpret_cast<const char16_t*>(attribute.name.data());
        if (names.insert({pName, attribute.name.size()}).second)
        {
            attributes.emplace_back(&attribute, number);
        }
    }
    return attributes;
}

/// \p io_Number: the running number of attributes and elements.
std::string compareAttributes(const Element& i_Element, const AttributeTable* i_pTable, unsigned& io_Number)
{
    const auto expected = numberedAttributes(i_Element, io_Number);
    if (expected.size() != (i_pTable ? static_cast<std::size_t>(i_pTable->count()) : 0))
    {
        return differenceAt(i_Element, "another number of attributes");
    }
    for (std::size_t index = 0; index < expected.size(); ++index)
    {
        const auto& [pAttribute, number] = expected[index];
        String name;
        String value;
        String namedValue;
        String ordinal;
        i_pTable->getAt(static_cast<int>(index), name, value);
        if (!isEqual(viewOf(name), pAttribute->name) || !isEqual(viewOf(value), pAttribute->value) ||
            i_pTable->getByName(name, namedValue, ordinal) != 0 || namedValue != value)
        {
            return differenceAt(i_Element, "attribute " + std::to_string(index) + " differs");
        }
        if (ordinal != String::valueOf(number))
        {
            return differenceAt(i_Element, "the place of attribute " + std::to_string(index) + " differs");
        }
    }
    return {};
}

/// The node behind \p i_Node in the order of start tags; null behind the last.
const Node* nextNode(const Node* i_pNode)
{
    if (!i_pNode->children().empty())
    {
        return i_pNode->children().front();
    }
    while (i_pNode && !i_pNode->nextSibling())
    {
        i_pNode = i_pNode->getParent();
    }
    return i_pNode ? i_pNode->nextSibling() : nullptr;
}

std::string compareTree(const std::deque<Element>& i_Elements, const Node* i_pRoot)
{
    std::vector<const Node*> nodes;
    unsigned number = 0;
    const Node* pNode = i_pRoot;
    for (const Element& element : i_Elements)
    {
        if (!pNode)
        {
            return differenceAt(element, "not in the tree");
        }
        const bool isRoot = element.parent == nodes.size();
        if (pNode->getType() != Node::ElementNode || !isEqual(viewOf(pNode->name()), element.name))
        {
            return differenceAt(element, "another name");
        }
        if (pNode->getParent() != (isRoot ? nullptr : nodes[element.parent]))
        {
            return differenceAt(element, "another parent");
        }
        if (pNode->line() != element.line || pNode->column() != element.column)
        {
            return differenceAt(element, "another line or column");
        }
        const std::string difference = compareAttributes(element, pNode->attributes(), number);
        if (!difference.empty())
        {
            return difference;
        }
        if (pNode->sequence() != number++)
        {
            return differenceAt(element, "another place");
        }
        nodes.push_back(pNode);
        pNode = nextNode(pNode);
    }
    return pNode ? "the tree has more elements than the document" : "";
}

} // namespace

Comparison compare(const std::string& i_File)
{
    const String file(i_File.c_str());
    Comparison comparison;
    Node* pRoot = nullptr;
    XmlPlugin::XmlCache::destroyInstance();
    comparison.code = XmlPlugin::XmlCache::getInstance()->getDocument(file, pRoot);

    xercesc::XMLPlatformUtils::Initialize();
    {
        Recorder recorder;
        parse(file, recorder, comparison);
        // What the library gives up without counting an error is a document without a tree.
        const std::int32_t expected = comparison.libraryErrors > 0 ? -15103 : 0;
        if (comparison.code != expected)
        {
            comparison.difference = "the plug-in says " + std::to_string(comparison.code) + ", the library counts " +
                                    std::to_string(comparison.libraryErrors) + " errors" +
                                    (comparison.libraryThrew ? " and throws" : "");
        }
        else if (comparison.isWellFormed())
        {
            comparison.difference = compareTree(recorder.elements, pRoot);
        }
        else if (pRoot)
        {
            comparison.difference = "there is a tree of a document that was not read to its end";
        }
    }
    xercesc::XMLPlatformUtils::Terminate();
    XmlPlugin::XmlCache::destroyInstance();
    return comparison;
}
