// The lower limit for queries: loops written by hand for each of them, over the tree that the plug-in makes, with the
// values delivered to the list of a host.

#include "Peer.h"

#include "base/String.h"
#include "boundary/XmlFileParser.h"
#include "boundary/XmlNodeSink.h"
#include "pluginsdk/StringVector.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"

#include <map>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace
{

using List = PluginSDK::StringVector;

/// The names in the one tree that there is: the same name has the same address there. Null when no element has it.
struct ElementNames
{
    const XmlName* pItem = nullptr;
    const XmlName* pGroup = nullptr;
};

ElementNames s_Names;

bool isElement(const Node& i_Node, const XmlName* i_pName)
{
    return &i_Node.nameEntry() == i_pName;
}

/// The value lies in the tree, terminated by a null.
void deliver(const Node& i_Node, const XmlName& i_Attribute, List& o_Values)
{
    const AttributeTable* pAttributes = i_Node.attributes();
    if (pAttributes == nullptr)
    {
        return;
    }
    const int index = pAttributes->indexOf(i_Attribute);
    if (index >= 0)
    {
        o_Values.addString(pAttributes->valueAt(index).data());
    }
}

bool hasValue(const Node& i_Node, const XmlName& i_Attribute, std::wstring_view i_Value)
{
    const AttributeTable* pAttributes = i_Node.attributes();
    const int index = pAttributes == nullptr ? -1 : pAttributes->indexOf(i_Attribute);
    return index >= 0 && pAttributes->valueAt(index) == i_Value;
}

/// Calls \p i_Visit for each node of the tree in document order.
template <class Visit>
void forAll(const Node& i_Root, Visit&& i_Visit)
{
    const Node* pNode = &i_Root;
    while (pNode != nullptr)
    {
        i_Visit(*pNode);
        if (const Node* pChild = pNode->children().front())
        {
            pNode = pChild;
            continue;
        }
        while (pNode != &i_Root && pNode->nextSibling() == nullptr)
        {
            pNode = pNode->getParent();
        }
        pNode = pNode == &i_Root ? nullptr : pNode->nextSibling();
    }
}

template <class Visit>
void forChildren(const Node& i_Node, const XmlName* i_pName, Visit&& i_Visit)
{
    for (const Node* pChild = i_Node.children().front(); pChild != nullptr; pChild = pChild->nextSibling())
    {
        if (isElement(*pChild, i_pName))
        {
            i_Visit(*pChild);
        }
    }
}

/// The child number \p i_Place of that name, counted from 1; null when there are fewer.
const Node* childAt(const Node& i_Node, const XmlName* i_pName, int i_Place)
{
    for (const Node* pChild = i_Node.children().front(); pChild != nullptr; pChild = pChild->nextSibling())
    {
        if (isElement(*pChild, i_pName) && --i_Place == 0)
        {
            return pChild;
        }
    }
    return nullptr;
}

const XmlName s_Id(L"id");
const XmlName s_Name(L"name");
const XmlName s_Kind(L"kind");

ElementNames namesOf(const Node& i_Root)
{
    ElementNames names;
    forAll(i_Root,
           [&](const Node& i_Node)
           {
               if (i_Node.name() == L"item")
               {
                   names.pItem = &i_Node.nameEntry();
               }
               else if (i_Node.name() == L"group")
               {
                   names.pGroup = &i_Node.nameEntry();
               }
           });
    return names;
}

void allItemIds(const Node& i_Root, List& o_Values)
{
    forAll(i_Root,
           [&](const Node& i_Node)
           {
               if (isElement(i_Node, s_Names.pItem))
               {
                   deliver(i_Node, s_Id, o_Values);
               }
           });
}

void itemIdsByPath(const Node& i_Root, List& o_Values)
{
    forChildren(i_Root, s_Names.pGroup,
                [&](const Node& i_Group)
                { forChildren(i_Group, s_Names.pItem, [&](const Node& i_Item) { deliver(i_Item, s_Id, o_Values); }); });
}

void nameOfOneItem(const Node& i_Root, List& o_Values)
{
    forAll(i_Root,
           [&](const Node& i_Node)
           {
               if (isElement(i_Node, s_Names.pItem) && hasValue(i_Node, s_Id, L"x500"))
               {
                   deliver(i_Node, s_Name, o_Values);
               }
           });
}

void itemByPlaces(const Node& i_Root, List& o_Values)
{
    const Node* pGroup = childAt(i_Root, s_Names.pGroup, 2);
    const Node* pItem = pGroup == nullptr ? nullptr : childAt(*pGroup, s_Names.pItem, 3);
    if (pItem != nullptr)
    {
        deliver(*pItem, s_Id, o_Values);
    }
}

void namesInGroupsOfKind(const Node& i_Root, List& o_Values)
{
    forAll(i_Root,
           [&](const Node& i_Node)
           {
               if (isElement(i_Node, s_Names.pGroup) && hasValue(i_Node, s_Kind, L"b"))
               {
                   forChildren(i_Node, s_Names.pItem, [&](const Node& i_Item) { deliver(i_Item, s_Name, o_Values); });
               }
           });
}

void secondItems(const Node& i_Root, List& o_Values)
{
    forAll(i_Root,
           [&](const Node& i_Node)
           {
               if (const Node* pItem = childAt(i_Node, s_Names.pItem, 2))
               {
                   deliver(*pItem, s_Id, o_Values);
               }
           });
}

void countItems(const Node& i_Root, List& o_Values)
{
    std::size_t count = 0;
    forAll(i_Root, [&](const Node& i_Node) { count += isElement(i_Node, s_Names.pItem) ? 1U : 0U; });
    o_Values.addString(std::to_wstring(count).c_str());
}

void groupNamesAndItemIds(const Node& i_Root, List& o_Values)
{
    forChildren(i_Root, s_Names.pGroup,
                [&](const Node& i_Group)
                {
                    deliver(i_Group, s_Name, o_Values);
                    forChildren(i_Group, s_Names.pItem, [&](const Node& i_Item) { deliver(i_Item, s_Id, o_Values); });
                });
}

using Walk = void (*)(const Node& i_Root, List& o_Values);

const std::map<std::string_view, Walk> s_Walks = {
    {"/root/group/item/@id", itemIdsByPath},
    {"//item/@id", allItemIds},
    {"//item[@id='x500']/@name", nameOfOneItem},
    {"/root/group[2]/item[3]/@id", itemByPlaces},
    {"//group[@kind='b']/item/@name", namesInGroupsOfKind},
    {"//item[position()=2]/@id", secondItems},
    {"count(//item)", countItems},
    {"/root/group/@name | /root/group/item/@id", groupNamesAndItemIds},
};

class PointerWalkPeer final : public Peer
{
public:
    void load(const std::string& i_Path) override
    {
        XmlPlugin::XmlNodeSink sink;
        const XmlPlugin::XmlFileParser parser(String(i_Path.c_str()), sink);
        m_pRoot.reset(sink.release());
        if (parser.status() != 0 || !m_pRoot)
        {
            throw std::runtime_error("cannot read " + i_Path);
        }
        s_Names = namesOf(*m_pRoot);
    }
    void unload() override { m_pRoot.reset(); }

    void prepare(const std::string& i_Expression) override
    {
        const auto pWalk = s_Walks.find(i_Expression);
        m_pWalk = pWalk == s_Walks.end() ? nullptr : pWalk->second;
    }

    std::size_t query() override
    {
        if (m_pWalk == nullptr)
        {
            throw std::runtime_error("no walk was written for this expression");
        }
        m_Values = List();
        m_pWalk(*m_pRoot, m_Values);
        return m_Values.count();
    }

    std::vector<std::string> values() const override
    {
        std::vector<std::string> texts;
        for (std::size_t i = 0; i < m_Values.count(); ++i)
        {
            texts.push_back(String(m_Values.get(i)).toNarrow());
        }
        return texts;
    }

private:
    std::unique_ptr<Node> m_pRoot;
    Walk m_pWalk = nullptr;
    List m_Values;
};

} // namespace

extern "C" __attribute__((visibility("default"))) Peer* createPeer(const char*)
{
    return new PointerWalkPeer;
}
