#include "TestFiles.h"
#include "TestTrees.h"
#include "support/FailingAllocator.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/NodeReader.h"
#include "xmlproxy/StringVector.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <memory>
#include <new>
#include <string>

namespace
{

/// On Windows each library has an allocator of its own, so that what one allocates may be released by another.
#ifdef _WIN32
constexpr bool s_CountsAll = false;
#else
constexpr bool s_CountsAll = true;
#endif

const TestFolder* s_pFolder = nullptr;

class TreeSink final : public NodeSink
{
public:
    TErrorCode setRoot(Node* i_pRoot) override
    {
        m_pRoot.reset(i_pRoot);
        return 0;
    }

private:
    std::unique_ptr<Node> m_pRoot;
};

void build()
{
    TreeSink sink;
    DefaultSAXHandler handler(&sink, 0);
    handler.startElement(L"a name that does not fit into a short text", nullptr, 1, 2, 3);
    for (int index = 0; index < 3; ++index)
    {
        auto pTable = std::make_unique<AttributeTable>(1);
        pTable->add(L"name", L"a value that does not fit into a short text", L"0");
        handler.startElement(L"b", pTable.release(), 1, 2, 3);
        handler.characters(L"some text that does not fit into a short one", 1, 2, 3);
        handler.endElement(L"b");
    }
    handler.endElement(L"a");
    handler.endDocument();
}

std::unique_ptr<Node> s_pTree; // for copy()

void copy()
{
    const std::unique_ptr<Node> pCopy(s_pTree->clone());
    EXPECT_EQ(3U, pCopy->childCount());
}

/// A failed `add` or `insert` changes nothing.
void fillTable()
{
    AttributeTable table(1);
    try
    {
        for (int index = 0; index < 70; ++index)
        {
            const String number = String::valueOf(index);
            EXPECT_EQ(XML_SUCCESS, table.add(L"name" + number, L"value" + number, number));
        }
    }
    catch (const std::bad_alloc&)
    {
        FailingAllocator::disarm();
        const int count = table.count();
        EXPECT_TRUE(table.nameAt(count).empty() && table.valueAt(count).empty() && table.ordinalAt(count).empty());
        const String last = String::valueOf(count - 1);
        EXPECT_EQ(count - 1, table.indexOf(L"name" + last));
        EXPECT_EQ(count > 0 ? L"value" + last : String(), String(std::wstring(table.valueAt(count - 1)).c_str()));
        EXPECT_EQ(-1, table.indexOf(L"name" + String::valueOf(count)));
        EXPECT_EQ(XML_SUCCESS, table.add(L"other", L"", L""));
    }
}

void read(const char* i_Name)
{
    TreeSink sink;
    NodeReader reader(&sink);
    reader.read(s_pFolder->pathOf(i_Name), 0);
}

struct Row
{
    const char* name;
    void (*run)();
};

const Row s_Rows[] = {
    {"build_tree", build},
    {"copy_tree", copy},
    {"fill_table", fillTable},
    {"read_file", [] { read("good.xml"); }},
    {"read_plain_file", [] { read("plain.xml"); }},
    {"read_plain_archive", [] { read("plain.zip"); }},
    {"read_plain_file_with_error", [] { read("error.xml"); }},
    {"read_file_with_error", [] { read("bad.xml"); }},
    {"read_file_with_external_entity", [] { read("external.xml"); }},
    {"read_missing_file", [] { read("missing.xml"); }},
    {"read_archive", [] { read("good.zip"); }},
    {"read_archive_without_members", [] { read("empty.zip"); }},
};

/// The library is held, because it does not survive an exhaustion while it is initialised.
class MemoryExhaustion : public testing::TestWithParam<Row>
{
protected:
    MemoryExhaustion()
    {
        xercesc::XMLPlatformUtils::Initialize();
        s_pFolder = &m_Folder;
        const std::string document = "<!DOCTYPE a [<!ENTITY e 'value'><!ATTLIST a z CDATA 'default'>]>"
                                     "<a x='&e;'><b y='1'>text</b><c id='2'/></a>";
        m_Folder.write("good.xml", document);
        const std::string plain = "<a-name-that-is-not-short x='&lt;\xc3\xa4' y='2'><b y='1'>text</b><c id='2'/>"
                                  "</a-name-that-is-not-short>";
        m_Folder.write("plain.xml", plain);
        m_Folder.write("plain.zip", ZipBuilder().add("a.xml", plain, true).bytes());
        m_Folder.write("error.xml", plain + "<");
        m_Folder.write("bad.xml", "<a><b></a>");
        m_Folder.write("external.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'entity.xml'>]><a>&e;</a>");
        m_Folder.write("entity.xml", "<b/>");
        m_Folder.write("good.zip", ZipBuilder().add("a.xml", document, true).bytes());
        m_Folder.write("empty.zip", ZipBuilder().bytes());
        RecordingSink sink;
        NodeReader(&sink).read(m_Folder.pathOf("good.xml"), 0);
        s_pTree = std::move(sink.roots.at(0));
        s_pTree->addChild(new TextNode(L"some text that does not fit into a short one", 1, 2, 3));
    }
    ~MemoryExhaustion() override
    {
        s_pTree.reset();
        xercesc::XMLPlatformUtils::Terminate();
    }

    TestFolder m_Folder;
};

TEST_P(MemoryExhaustion, IsPassedOnAndNothingIsLost)
{
    bool failed = true;
    for (long number = 1; failed; ++number)
    {
        ASSERT_GT(10000, number);
        bool thrown = false;
        FailingAllocator::arm(number);
        try
        {
            GetParam().run();
        }
        catch (const std::bad_alloc&)
        {
            thrown = true;
        }
        const long live = FailingAllocator::live();
        failed = FailingAllocator::disarm();
        if (GetParam().run != fillTable) // which disarms by itself; what it loses shows under the sanitizers
        {
            ASSERT_EQ(failed, thrown) << "allocation " << number;
            ASSERT_TRUE(!s_CountsAll || live == 0) << "allocation " << number;
        }
    }
    GetParam().run();
}

INSTANTIATE_TEST_SUITE_P(Rows, MemoryExhaustion, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

} // namespace
