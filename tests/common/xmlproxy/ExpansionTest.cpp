#include "CountingMemory.h"
#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/XercesParser.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

// What entities and default values may add to a document: `XmlExpansionBudget` in whole parses.

namespace
{

std::string times(int i_Count, const std::string& i_Text)
{
    std::string text;
    for (int count = 0; count < i_Count; ++count)
    {
        text += i_Text;
    }
    return text;
}

std::string named(const char* i_Name, int i_Number)
{
    return i_Name + std::to_string(i_Number);
}

/// Entities of which each one stands twice for the one before.
std::string doubling(int i_Levels)
{
    std::string text = "<!ENTITY e0 'x'>";
    for (int level = 1; level <= i_Levels; ++level)
    {
        const std::string reference = named("&e", level - 1) + ";";
        text += "<!ENTITY " + named("e", level) + " '" + reference + reference + "'>\n";
    }
    return text;
}

/// The same of parameter entities, and a reference to the last one.
std::string doublingParameters(int i_Levels)
{
    std::string text = "<!ENTITY % p0 ' '>";
    for (int level = 1; level <= i_Levels; ++level)
    {
        const std::string reference = named("&#37;p", level - 1) + ";";
        text += "<!ENTITY % " + named("p", level) + " '" + reference + reference + "'>\n";
    }
    return text + named("%p", i_Levels) + ";";
}

/// Entities that are open within one another, all at once.
std::string chain(int i_Length)
{
    std::string text = "<!ENTITY e0 'x'>";
    for (int link = 1; link <= i_Length; ++link)
    {
        text += "<!ENTITY " + named("e", link) + " '&e" + std::to_string(link - 1) + ";'>\n";
    }
    return text;
}

std::string defaults(int i_Count)
{
    std::string text = "<!ATTLIST b";
    for (int index = 0; index < i_Count; ++index)
    {
        text += " " + named("x", index) + " CDATA ''";
    }
    return text + ">";
}

std::string document(const std::string& i_Declarations, const std::string& i_Content)
{
    return "<!DOCTYPE a [" + i_Declarations + "]>\n" + i_Content;
}

struct Row
{
    const char* name;
    std::string document;
    const char* culprit; ///< what the message begins with; empty: the document is read
    int line = 0;        ///< 0: any
};

void PrintTo(const Row& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

std::string entityOf(int i_Length)
{
    return "<!ENTITY e '" + std::string(static_cast<std::size_t>(i_Length), 'x') + "'>";
}

// clang-format off
const Row s_Rows[] = {
    {"parameters_few", document(doublingParameters(8), "<a/>"), ""},
    {"parameters_2_to_20", document(doublingParameters(20), "<a/>"), "The entity 'p", 21},
    {"parameters_2_to_40", document(doublingParameters(40), "<a/>"), "The entity 'p", 41},
    {"default_few", document(doubling(8) + "<!ATTLIST b y CDATA '&e8;'>", "<a/>"), ""},
    {"default_2_to_22", document(doubling(22) + "<!ATTLIST b y CDATA '&e22;'>", "<a/>"), "The entity 'e", 23},
    {"default_2_to_39", document(doubling(39) + "<!ATTLIST b y CDATA '&e39;'>", "<a/>"), "The entity 'e", 40},
    {"value_few", document(doubling(8), "<a x='&e8;'/>"), ""},
    {"value_2_to_39", document(doubling(39), "<a x='&e39;'/>"), "The entity 'e", 41},
    {"content_2_to_39", document(doubling(39), "<a>&e39;</a>"), "The entity 'e", 41},
    {"large_in_value_few", document(entityOf(50000), "<a x='" + times(300, "&e;") + "'/>"), ""},
    {"large_in_value", document(entityOf(50000), "<a x='" + times(8000, "&e;") + "'/>"), "The entity 'e'", 2},
    {"large_in_content", document(entityOf(50000), "<a>" + times(8000, "&e;") + "</a>"), "The entity 'e'", 2},
    {"large_in_values", document(entityOf(50000), "<a>" + times(8000, "<b x='&e;'/>\n") + "</a>"), "The entity 'e'"},
    {"elements_few", document("<!ENTITY e '" + times(200, "<b/>") + "'>", "<a>" + times(300, "&e;") + "</a>"), ""},
    {"elements", document("<!ENTITY e '" + times(2000, "<b/>") + "'>", "<a>" + times(3000, "&e;") + "</a>"), "The entity 'e'", 2},
    {"attributes", document("<!ENTITY e '<b c=\"\" d=\"\" f=\"\" g=\"\"/>'>", "<a>" + times(200000, "&e;") + "</a>"), "The entity 'e'", 2},
    {"defaults_few", document(defaults(1000), "<a>" + times(100, "<b/>") + "</a>"), ""},
    {"defaults", document(defaults(20000), "<a>" + times(1000, "<b/>") + "</a>"), "The default values of element 'b'", 2},
    {"open_at_once_few", document(chain(500), "<a x='&e500;'/>"), ""},
    {"open_at_once", document(chain(20000), "<a x='&e20000;'/>"), "The entity 'e", 20002},
    {"references_of_a_large_document", document("<!ENTITY e 'ab'>", "<a>" + times(300000, "&e;") + "</a>"), ""},
};
// clang-format on

class Budget : public testing::Test
{
protected:
    CountingMemory m_Memory;
    const TestFolder m_Folder;
    RecordingSink m_Sink;
    DefaultSAXHandler m_Handler{&m_Sink, 0};
    XercesParser m_Parser{&m_Handler};
};

class Expansion : public Budget, public testing::WithParamInterface<Row>
{
};

TEST_P(Expansion, IsWithinTheBudget)
{
    const Row& row = GetParam();
    const bool isRead = *row.culprit == '\0';
    EXPECT_EQ(XML_SUCCESS, m_Parser.parse(m_Folder.write("document.xml", row.document), nullptr));
    EXPECT_EQ(isRead ? 0 : 1, m_Parser.errorCount());
    ASSERT_EQ(isRead ? 0U : 1U, m_Sink.messages.size());
    if (!isRead)
    {
        const std::string& message = m_Sink.messages[0];
        EXPECT_NE(std::string::npos, message.find(row.culprit)) << message;
        EXPECT_NE(std::string::npos, message.find("no more than 16777216 bytes")) << message;
        const std::string place = "critical " + (row.line > 0 ? std::to_string(row.line) + " " : "");
        EXPECT_EQ(place, message.substr(0, place.size()));
        // Each expansion makes some ten requests, and costs at least 16 bytes.
        EXPECT_GT(2000000U, m_Memory.requests());
        EXPECT_GT((std::size_t{256} << 20), m_Memory.peak());
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, Expansion, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST_F(Budget, TheLimitOfASmallDocument)
{
    EXPECT_EQ(std::size_t{16} << 20, m_Parser.expansionLimit());
}

// A reference costs 16 and its text, 1016 in all; the first document has 1060 bytes, eight times of which are 8480.
TEST_F(Budget, GrowsWithTheDocument)
{
    m_Parser.setExpansionLimit(1);
    const std::string entity = entityOf(1000);
    m_Parser.parse(m_Folder.write("a.xml", document(entity, "<a>" + times(8, "&e;") + "</a>")), nullptr);
    EXPECT_EQ(0, m_Parser.errorCount());
    m_Parser.parse(m_Folder.write("b.xml", document(entity, "<a>" + times(9, "&e;") + "</a>")), nullptr);
    EXPECT_EQ(1, m_Parser.errorCount());
}

TEST_F(Budget, ExternalEntitiesAreWithinTheBudget)
{
    m_Folder.write("e.ent", std::string(40000, ' '));
    const std::string declaration = "<!ENTITY e SYSTEM 'e.ent'>";
    m_Parser.parse(m_Folder.write("a.xml", document(declaration, "<a>" + times(100, "&e;") + "</a>")), nullptr);
    EXPECT_EQ(0, m_Parser.errorCount());
    m_Parser.parse(m_Folder.write("b.xml", document(declaration, "<a>\n" + times(500, "&e;") + "</a>")), nullptr);
    EXPECT_EQ(1, m_Parser.errorCount());
    ASSERT_EQ(1U, m_Sink.messages.size());
    EXPECT_EQ("critical 3 The external entity 'e.ent'", m_Sink.messages[0].substr(0, 38));
}

TEST_F(Budget, ADocumentAfterARefusedOneIsRead)
{
    m_Parser.parse(m_Folder.write("a.xml", s_Rows[2].document), nullptr);
    EXPECT_EQ(1, m_Parser.errorCount());
    m_Parser.parse(m_Folder.write("b.xml", "<a/>"), nullptr);
    EXPECT_EQ(0, m_Parser.errorCount());
    EXPECT_EQ("a#0", m_Sink.trees());
}

TEST_F(Budget, NothingIsLeftOfARefusedDocument)
{
    const String file = m_Folder.write("a.xml", s_Rows[1].document);
    m_Parser.parse(file, nullptr);
    const std::size_t live = m_Memory.live();
    m_Parser.parse(file, nullptr);
    EXPECT_EQ(live, m_Memory.live());
}

} // namespace
