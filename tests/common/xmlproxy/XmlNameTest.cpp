#include "xmlproxy/XmlName.h"

#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/NodeReader.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>

namespace
{

struct NameRow
{
    const char* name;
    const wchar_t* left;
    const wchar_t* right;
    bool equal;
};

const NameRow s_NameRows[] = {
    {"same", L"p:item", L"p:item", true},
    {"other_case", L"item", L"Item", false},
    {"prefix", L"item", L"items", false},
    {"both_empty", L"", L"", true},
    {"one_empty", L"", L"item", false},
    {"last_differs", L"item1", L"item2", false},
    {"wide", L"\u20ac\xffff", L"\u20ac\xffff", true},
};

class NameEquality : public testing::TestWithParam<NameRow>
{
};

TEST_P(NameEquality, IsThatOfTheTexts)
{
    const NameRow& row = GetParam();
    const XmlName left{String(row.left)};
    const XmlName right{String(row.right)};
    EXPECT_EQ(row.equal, left == right);
    EXPECT_EQ(row.equal, left.hash() == right.hash());
    EXPECT_EQ(left.hash(), XmlName::hashOf(row.left));
    EXPECT_EQ(XmlName::hashOf(L"name"), XmlName::hashOf(std::string_view("name")));
    EXPECT_EQ(XmlName::hashOf(L"name"), XmlName::hashOf(std::u16string_view(u"name")));
    EXPECT_EQ(String(row.left), left.text());
    const XmlNameView view(row.left);
    EXPECT_EQ(row.equal, view == right) << "of a text and of a name";
    EXPECT_EQ(row.equal, view == XmlNameView(row.right));
    EXPECT_EQ(left.hash(), view.hash());
    EXPECT_EQ(viewOf(left.text()), view.text());
}

INSTANTIATE_TEST_SUITE_P(Rows, NameEquality, testing::ValuesIn(s_NameRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

/// The address of the one entry that each name of the tree has; fails when a name has two.
void collectNames(const Node& i_Node, std::map<std::string, const XmlName*>& io_Names)
{
    const XmlName* pKnown = io_Names.try_emplace(i_Node.name().toNarrow(), &i_Node.nameEntry()).first->second;
    EXPECT_EQ(pKnown, &i_Node.nameEntry()) << i_Node.name().toNarrow();
    EXPECT_EQ(&i_Node.name(), &i_Node.nameEntry().text());
    for (const Node* pChild : i_Node.children())
    {
        collectNames(*pChild, io_Names);
    }
}

std::unique_ptr<Node> read(const TestFolder& i_Folder, const std::string& i_Document)
{
    RecordingSink sink;
    i_Folder.write("a.xml", i_Document);
    NodeReader(&sink).read(i_Folder.pathOf("a.xml"), 0);
    return std::move(sink.roots.at(0));
}

TEST(NodeNames, AreKeptOnceInAParsedDocument)
{
    const TestFolder folder;
    const auto pRoot = read(folder, "<a><b/><a><c/><b/></a><B/><b><b/></b><\xc3\xa4/><\xc3\xa4/></a>");
    std::map<std::string, const XmlName*> names;
    collectNames(*pRoot, names);
    EXPECT_EQ(5U, names.size());
}

TEST(NodeNames, OutliveTheDocumentInACopy)
{
    const TestFolder folder;
    auto pRoot = read(folder, "<a><b/></a>");
    const std::unique_ptr<Node> pCopy(pRoot->clone());
    pRoot.reset();
    EXPECT_EQ("a#0(b#0)", printTree(*pCopy));
}

TEST(NodeNames, OfSingleNodesAreTheirOwn)
{
    const Node first(L"a", nullptr, 0, 0, 0);
    const Node second(L"a", nullptr, 0, 0, 0);
    EXPECT_EQ(first.nameEntry(), second.nameEntry());
}

TEST(XmlName, ASharedSecretGivesTheSameHashes)
{
    const std::uint64_t secret = XmlName::secret();
    const std::size_t hash = XmlName::hashOf(std::wstring_view(L"name"));
    EXPECT_EQ(1U, secret % 2);
    XmlName::shareSecret(secret + 2);
    EXPECT_NE(hash, XmlName::hashOf(std::wstring_view(L"name")));
    XmlName::shareSecret(secret);
    EXPECT_EQ(hash, XmlName::hashOf(std::wstring_view(L"name")));
}

} // namespace
