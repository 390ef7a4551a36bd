#include "xmlproxy/XercesParser.h"

#include "TestFiles.h"
#include "TestTrees.h"
#include "support/VirtualSlot.h"
#include "xmlproxy/DefaultSAXHandler.h"
#include "xmlproxy/ParserLibrary.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <xercesc/util/PlatformUtils.hpp>

#include <new>
#include <string>
#include <vector>

namespace
{

/// Parses into trees with given options.
class Parsing : public testing::Test
{
protected:
    Parsing() { ParserLibrary::release(); }
    ~Parsing() override
    {
        // Every way out of a parse terminates the library as often as it was initialised.
        EXPECT_EQ(nullptr, xercesc::XMLPlatformUtils::fgMemoryManager);
    }

    TErrorCode parse(const String& i_Path, ProgressCallback i_pProgress = nullptr)
    {
        return m_Parser.parse(i_Path, i_pProgress);
    }
    TErrorCode parseBytes(std::string_view i_Bytes, ProgressCallback i_pProgress = nullptr)
    {
        return parse(m_Folder.write("document.xml", i_Bytes), i_pProgress);
    }

    TestFolder m_Folder;
    RecordingSink m_Sink;
    DefaultSAXHandler m_Handler{&m_Sink, 0};
    XercesParser m_Parser{&m_Handler};
};

int s_Calls = 0;

TEST_F(Parsing, ACallbackThatSaysStopAtOnceStopsAfterTheFirstChunk)
{
    s_Calls = 0;
    EXPECT_EQ(XML_ERROR_CANCELLED, parseBytes("<a><b/><c/></a>", [] { return ++s_Calls; }));
    EXPECT_EQ(1, s_Calls);
    EXPECT_EQ(0, m_Parser.errorCount());
    EXPECT_TRUE(m_Sink.roots.empty());
    EXPECT_EQ(1, m_Handler.depth());
}

TEST_F(Parsing, TheErrorCountIsReadAfterAStop)
{
    s_Calls = 0;
    m_Parser.setValidationScheme(SAXParser::ValidateAlways);
    EXPECT_EQ(XML_ERROR_CANCELLED, parseBytes("<a><b/><c/></a>", [] { return ++s_Calls > 1 ? 1 : 0; }));
    EXPECT_EQ(2, s_Calls);
    EXPECT_LT(0, m_Parser.errorCount());
    EXPECT_EQ(m_Sink.messages.size(), static_cast<std::size_t>(m_Parser.errorCount()));
}

TEST_F(Parsing, AStopAfterTheLastChunkIsAStopAllTheSame)
{
    EXPECT_EQ(XML_ERROR_CANCELLED, parseBytes("<a/>", [] { return 1; }));
    EXPECT_EQ("a#0", m_Sink.trees());
}

struct ProgressRow
{
    const char* name;
    ProgressCallback callback;
    TErrorCode code;
};

const ProgressRow s_ProgressRows[] = {
    {"none", nullptr, XML_SUCCESS},
    {"zero", [] { return 0; }, XML_SUCCESS},
    {"one", [] { return 1; }, XML_ERROR_CANCELLED},
    {"minus_one", [] { return -1; }, XML_ERROR_CANCELLED},
    {"low_byte_zero", [] { return 256; }, XML_SUCCESS},
    {"low_byte_not_zero", [] { return 257; }, XML_ERROR_CANCELLED},
    {"highest_bit_only", [] { return 128; }, XML_ERROR_CANCELLED},
};

class Progress : public Parsing, public testing::WithParamInterface<ProgressRow>
{
};

TEST_P(Progress, StopsByTheLowByte)
{
    EXPECT_EQ(GetParam().code, parseBytes("<a><b/></a>", GetParam().callback));
    EXPECT_EQ(GetParam().code == XML_SUCCESS ? "a#0(b#1)" : "", m_Sink.trees());
}

INSTANTIATE_TEST_SUITE_P(Rows, Progress, testing::ValuesIn(s_ProgressRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST_F(Parsing, AnArchiveWithoutMembersEndsByAnException)
{
    EXPECT_EQ(XML_ERROR_PARSER_EXCEPTION, parse(m_Folder.write("a.zip", ZipBuilder().bytes())));
    EXPECT_EQ(0, m_Parser.errorCount());
    ASSERT_EQ(1U, m_Sink.messages.size());
    EXPECT_EQ("critical", m_Sink.messages[0].substr(0, 8));
}

TEST_F(Parsing, AFirstLineThatCannotBeDecodedEndsByAnException)
{
    EXPECT_EQ(XML_ERROR_PARSER_EXCEPTION, parseBytes("<?xml version='1.0' \xff?><a/>"));
    EXPECT_EQ(0, m_Parser.errorCount());
    EXPECT_EQ(1U, m_Sink.messages.size());
}

TEST_F(Parsing, AFileThatIsGoneIsACountedError)
{
    EXPECT_EQ(XML_SUCCESS, parse(m_Folder.pathOf("missing.xml")));
    EXPECT_EQ(1, m_Parser.errorCount());
    EXPECT_EQ(1U, m_Sink.messages.size());
}

TEST_F(Parsing, AFolderIsACountedError)
{
    EXPECT_EQ(XML_SUCCESS, parse(m_Folder.pathOf("")));
    EXPECT_EQ(1, m_Parser.errorCount());
    EXPECT_EQ(1U, m_Sink.messages.size());
}

#ifndef _WIN32
TEST_F(Parsing, ARelativePathInAFolderThatIsGoneHasNoInput)
{
    const std::filesystem::path before = std::filesystem::current_path();
    {
        const TestFolder folder;
        std::filesystem::current_path(folder.path());
    }
    EXPECT_EQ(XML_ERROR_NO_INPUT, parse(L"a.xml"));
    std::filesystem::current_path(before);
    EXPECT_EQ(0, m_Parser.errorCount());
    EXPECT_TRUE(m_Sink.messages.empty());
}
#endif

TEST_F(Parsing, RelativePathsStartAtTheWorkingDirectory)
{
    m_Folder.write("a.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'b.xml'>]><a>&e;</a>");
    m_Folder.write("b.xml", "<b/>");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_Folder.path());
    EXPECT_EQ(XML_SUCCESS, parse(L"a.xml"));
    std::filesystem::current_path(before);
    EXPECT_EQ("a#0(b#1)", m_Sink.trees());
}

/// A handler that throws in the middle of the document.
template <typename Exception>
class ThrowingHandler final : public SAXHandler
{
public:
    void startDocument() override {}
    void endDocument() override {}
    void startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned, unsigned, unsigned) override
    {
        delete i_pAttributes;
        if (i_Name == String(L"b"))
        {
            throw Exception();
        }
    }
    void endElement(const String&) override {}
    void characters(const String&, unsigned, unsigned, unsigned) override {}
    void warning(const String&, int) override {}
    void error(const String&, int) override {}
    void fatalError(const String&, int) override { ++messages; }

    int messages = 0;
};

struct OtherException
{
};

TEST_F(Parsing, AForeignExceptionBecomesACode)
{
    ThrowingHandler<OtherException> handler;
    XercesParser parser(&handler);
    EXPECT_EQ(XML_SUCCESS, parser.parse(m_Folder.write("bad.xml", "<a>"), nullptr));
    EXPECT_EQ(1, parser.errorCount());
    handler.messages = 0;
    EXPECT_EQ(XML_ERROR_UNKNOWN_EXCEPTION, parser.parse(m_Folder.write("a.xml", "<a><b/></a>"), nullptr));
    EXPECT_EQ(0, parser.errorCount());
    EXPECT_EQ(0, handler.messages);
}

TEST_F(Parsing, MemoryExhaustionIsPassedOn)
{
    ThrowingHandler<std::bad_alloc> handler;
    XercesParser parser(&handler);
    EXPECT_THROW(parser.parse(m_Folder.write("a.xml", "<a><b/></a>"), nullptr), std::bad_alloc);
    EXPECT_EQ(XML_SUCCESS, parser.parse(m_Folder.write("c.xml", "<a><c/></a>"), nullptr));
}

/// Entities of which each of `i_Levels` stands for ten of the one before.
std::string laughs(int i_Levels, const std::string& i_Use)
{
    std::string document = "<!DOCTYPE a [<!ENTITY e0 'ha'>";
    for (int level = 1; level <= i_Levels; ++level)
    {
        document += "<!ENTITY e" + std::to_string(level) + " '";
        for (int count = 0; count < 10; ++count)
        {
            document += "&e" + std::to_string(level - 1) + ";";
        }
        document += "'>";
    }
    return document + "]>" + i_Use;
}

struct LaughsRow
{
    const char* name;
    std::size_t limit; ///< 0: the parser's own
    int levels;
    const char* use;
    int errors;
};

// Two levels ask for 1 + 10 + 100 expansions.
const LaughsRow s_LaughsRows[] = {
    {"few_in_content", 0, 4, "<a>&e4;</a>", 0},
    {"few_in_value", 0, 4, "<a x='&e4;'/>", 0},
    {"at_the_limit_in_content", 111, 2, "<a>&e2;</a>", 0},
    {"at_the_limit_in_value", 111, 2, "<a x='&e2;'/>", 0},
    {"beyond_the_limit_in_content", 110, 2, "<a>&e2;</a>", 1},
    {"beyond_the_limit_in_value", 110, 2, "<a x='&e2;'/>", 1},
    {"billion_in_content", 5000, 9, "<a>&e9;</a>", 1},
    {"billion_in_value", 5000, 9, "<a x='&e9;'/>", 1},
#ifndef __SANITIZE_ADDRESS__
    // A million expansions take a minute there, and nothing but the number is another.
    {"billion_in_content_at_the_own_limit", 0, 9, "<a>&e9;</a>", 1},
    {"billion_in_value_at_the_own_limit", 0, 9, "<a x='&e9;'/>", 1},
#endif
};

class EntityExpansion : public Parsing, public testing::WithParamInterface<LaughsRow>
{
};

TEST_P(EntityExpansion, IsBounded)
{
    if (GetParam().limit > 0)
    {
        m_Parser.setEntityExpansionLimit(GetParam().limit);
    }
    EXPECT_EQ(XML_SUCCESS, parseBytes(laughs(GetParam().levels, GetParam().use)));
    EXPECT_EQ(GetParam().errors, m_Parser.errorCount());
    EXPECT_EQ(GetParam().errors == 0, m_Sink.roots.size() == 1);
}

TEST_F(Parsing, TheLimitOfEntityExpansions)
{
    EXPECT_EQ(1000000U, m_Parser.entityExpansionLimit());
}

INSTANTIATE_TEST_SUITE_P(Rows, EntityExpansion, testing::ValuesIn(s_LaughsRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

struct ValidationRow
{
    const char* name;
    unsigned scheme;
    const char* document;
    int errors;
};

const char* const s_Valid = "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>";
const char* const s_Invalid = "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><a/></a>";
const char* const s_NoGrammar = "<a/>";

const ValidationRow s_ValidationRows[] = {
    {"never_valid", SAXParser::ValidateNever, s_Valid, 0},
    {"never_invalid", SAXParser::ValidateNever, s_Invalid, 0},
    {"never_no_grammar", SAXParser::ValidateNever, s_NoGrammar, 0},
    {"always_valid", SAXParser::ValidateAlways, s_Valid, 0},
    {"always_invalid", SAXParser::ValidateAlways, s_Invalid, 1},
    {"always_no_grammar", SAXParser::ValidateAlways, s_NoGrammar, 1},
    {"automatic_valid", SAXParser::ValidateAutomatically, s_Valid, 0},
    {"automatic_invalid", SAXParser::ValidateAutomatically, s_Invalid, 1},
    {"automatic_no_grammar", SAXParser::ValidateAutomatically, s_NoGrammar, 0},
    {"other_is_the_default", 3, s_NoGrammar, 0},
};

class Validation : public Parsing, public testing::WithParamInterface<ValidationRow>
{
};

TEST_P(Validation, FollowsTheScheme)
{
    m_Parser.setValidationScheme(GetParam().scheme);
    EXPECT_EQ(XML_SUCCESS, parseBytes(GetParam().document));
    EXPECT_EQ(GetParam().errors, m_Parser.errorCount());
    EXPECT_EQ(static_cast<std::size_t>(GetParam().errors), m_Sink.messages.size());
    EXPECT_EQ(1U, m_Sink.roots.size());
}

INSTANTIATE_TEST_SUITE_P(Rows, Validation, testing::ValuesIn(s_ValidationRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

const char* const s_Schema = R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" %>
  <xs:element name="a"><xs:complexType><xs:attribute name="x" type="xs:int"/></xs:complexType></xs:element>
</xs:schema>)";

std::string schema(const std::string& i_Attributes)
{
    std::string text = s_Schema;
    return text.replace(text.find('%'), 1, i_Attributes);
}

TEST_F(Parsing, ASchemaWithoutNamespaceIsApplied)
{
    m_Folder.write("a.xsd", schema(""));
    m_Parser.setValidationScheme(SAXParser::ValidateAlways);
    m_Parser.setNamespaces(true);
    m_Parser.setSchema(true);
    m_Parser.setNoNamespaceSchemaLocation(L"a.xsd");
    EXPECT_EQ(XML_SUCCESS, parseBytes("<a x='1'/>"));
    EXPECT_EQ(0, m_Parser.errorCount());
    EXPECT_EQ(XML_SUCCESS, parseBytes("<a x='one'/>"));
    EXPECT_EQ(1, m_Parser.errorCount());
}

TEST_F(Parsing, ASchemaForANamespaceIsApplied)
{
    m_Folder.write("a.xsd", schema("targetNamespace='urn:a'"));
    m_Parser.setValidationScheme(SAXParser::ValidateAlways);
    m_Parser.setNamespaces(true);
    m_Parser.setSchema(true);
    m_Parser.setSchemaLocation(L"urn:a a.xsd");
    EXPECT_EQ(XML_SUCCESS, parseBytes("<p:a xmlns:p='urn:a' x='1'/>"));
    EXPECT_EQ(0, m_Parser.errorCount());
    EXPECT_EQ(XML_SUCCESS, parseBytes("<p:a xmlns:p='urn:a' x='one'/>"));
    EXPECT_EQ(1, m_Parser.errorCount());
}

TEST_F(Parsing, FullCheckingLooksAtTheSchemaItself)
{
    // Which of the two elements is meant cannot be told.
    m_Folder.write("a.xsd", R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema">
      <xs:element name="a"><xs:complexType><xs:sequence>
        <xs:element name="b" minOccurs="0" type="xs:string"/><xs:element name="b" type="xs:string"/>
      </xs:sequence></xs:complexType></xs:element></xs:schema>)");
    m_Parser.setValidationScheme(SAXParser::ValidateAlways);
    m_Parser.setNamespaces(true);
    m_Parser.setSchema(true);
    m_Parser.setNoNamespaceSchemaLocation(L"a.xsd");
    EXPECT_EQ(XML_SUCCESS, parseBytes("<a><b/></a>"));
    EXPECT_EQ(0, m_Parser.errorCount());
    m_Parser.setFullSchemaChecking(true);
    EXPECT_EQ(XML_SUCCESS, parseBytes("<a><b/></a>"));
    EXPECT_LT(0, m_Parser.errorCount());
}

TEST_F(Parsing, NamespacesOnRefusesAnUnboundPrefix)
{
    m_Parser.setNamespaces(true);
    EXPECT_EQ(XML_SUCCESS, parseBytes("<p:a/>"));
    EXPECT_EQ(1, m_Parser.errorCount());
}

#if defined(TEST_VIRTUAL_SLOTS)
TEST(SAXParser, KeepsTheOrderOfItsOperations)
{
    EXPECT_EQ(1U, slotOf(&SAXParser::parse));
}
#endif

} // namespace
