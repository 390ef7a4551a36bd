#include "xmlproxy/NodeReader.h"

#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using namespace std::string_literals;

/// The ASCII text as UTF-16 code units, in that byte order.
std::string utf16(std::string_view i_Text, bool i_BigEndian)
{
    std::string bytes;
    for (const char character : i_Text)
    {
        bytes += i_BigEndian ? std::string{'\0', character} : std::string{character, '\0'};
    }
    return bytes;
}

class Reading : public testing::Test
{
protected:
    TErrorCode read(const String& i_Path, int i_SkipDepth = 0) { return m_Reader.read(i_Path, i_SkipDepth); }
    TErrorCode readBytes(std::string_view i_Bytes, int i_SkipDepth = 0)
    {
        return read(m_Folder.write("document.xml", i_Bytes), i_SkipDepth);
    }

    /// The first words of the messages: level and line.
    std::vector<std::string> places() const
    {
        std::vector<std::string> places;
        for (const std::string& message : m_Sink.messages)
        {
            places.push_back(message.substr(0, message.find(' ', message.find(' ') + 1)));
        }
        return places;
    }

    TestFolder m_Folder;
    RecordingSink m_Sink;
    NodeReader m_Reader{&m_Sink};
};

struct GoodRow
{
    const char* name;
    std::string document;
    const char* tree;
};

const GoodRow s_GoodRows[] = {
    {"single_empty_root", "<a/>", "a#0"},
    {"start_and_end_tag", "<a></a>", "a#0"},
    {"numbering", R"(<a x="1" y="2"><b z="3"/><c/></a>)", "a#2{x=1#0 y=2#1}(b#4{z=3#3} c#5)"},
    {"nested_and_siblings", "<a><b><c/></b><d/></a>", "a#0(b#1(c#2) d#3)"},
    {"character_data_is_dropped", "<a>x<b>y</b>z<![CDATA[w]]></a>", "a#0(b#1)"},
    {"comments_and_instructions_are_dropped", "<?p d?><!--c--><a><!--c--><?p d?><b/></a><!--c-->", "a#0(b#1)"},
    {"prefixes_stay", R"(<p:a xmlns:p="u" p:x="1"/>)", "p:a#2{xmlns:p=u#0 p:x=1#1}"},
    {"unbound_prefix", R"(<p:a q:x="1"/>)", "p:a#1{q:x=1#0}"},
    {"empty_value", R"(<a x=""/>)", "a#1{x=#0}"},
    {"single_quotes", "<a x='\"'/>", "a#1{x=\"#0}"},
    {"predefined_entities", R"(<a x="&lt;&gt;&amp;&quot;&apos;"/>)", "a#1{x=<>&\"'#0}"},
    {"character_references", R"(<a x="&#65;&#x42;&#10;&#9;"/>)", "a#1{x=AB\n\t#0}"},
    {"white_space_in_value_is_normalised", "<a x=\"1\t2\n3\"/>", "a#1{x=1 2 3#0}"},
    {"carriage_return_line_feed", "<a\r\n x=\"1\r\n2\">\r\n<b/>\r\n</a>\r\n", "a#1{x=1 2#0}(b#2)"},
    {"declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n<a/>", "a#0"},
    {"utf8", "<\xc3\xa4 \xc3\xb6=\"\xe2\x82\xac\"/>", "\xc3\xa4#1{\xc3\xb6=\xe2\x82\xac#0}"},
    {"utf8_with_mark", "\xef\xbb\xbf<a x=\"1\"/>", "a#1{x=1#0}"},
    {"utf16_little_endian", "\xff\xfe" + utf16("<a x='1'/>", false), "a#1{x=1#0}"},
    {"utf16_big_endian", "\xfe\xff" + utf16("<a x='1'/>", true), "a#1{x=1#0}"},
    {"utf16_declared", "\xff\xfe" + utf16("<?xml version='1.0' encoding='UTF-16'?><a/>", false), "a#0"},
    {"latin1", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><\xe4 \xf6=\"\xfc\"/>",
     "\xc3\xa4#1{\xc3\xb6=\xc3\xbc#0}"},
    {"windows_1252", "<?xml version=\"1.0\" encoding=\"windows-1252\"?><a x=\"\x80\"/>", "a#1{x=\xe2\x82\xac#0}"},
    {"ascii", "<?xml version=\"1.0\" encoding=\"US-ASCII\"?><a x=\"1\"/>", "a#1{x=1#0}"},
    {"pair_in_value", "<a x=\"\xf0\x9f\x98\x80\"/>", "a#1{x=\xf0\x9f\x98\x80#0}"},
    {"pair_by_reference", "<a x=\"&#x1F600;\"/>", "a#1{x=\xf0\x9f\x98\x80#0}"},
    {"pair_in_name", "<\xf0\x9f\x98\x80/>", "\xf0\x9f\x98\x80#0"},
    {"pair_in_name_of_version_1_1", "<?xml version=\"1.1\"?><\xf0\x9f\x98\x80/>", "\xf0\x9f\x98\x80#0"},
    {"default_attribute", "<!DOCTYPE a [<!ATTLIST a x CDATA 'd'>]><a y='1'/>", "a#2{y=1#0 x=d#1}"},
    {"entity_in_value", "<!DOCTYPE a [<!ENTITY e 'v'>]><a x='[&e;]'/>", "a#1{x=[v]#0}"},
    {"entity_with_elements", "<!DOCTYPE a [<!ENTITY e '<b/><c/>'>]><a>&e;&e;</a>", "a#0(b#1 c#2 b#3 c#4)"},
    {"invalid_but_well_formed", "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b/></a>", "a#0(b#1)"},
    {"missing_external_subset", "<!DOCTYPE a SYSTEM 'missing.dtd'><a/>", "a#0"},
};

class GoodDocuments : public Reading, public testing::WithParamInterface<GoodRow>
{
};

TEST_P(GoodDocuments, BecomeTrees)
{
    EXPECT_EQ(XML_SUCCESS, readBytes(GetParam().document));
    EXPECT_EQ(0, m_Reader.errorCount());
    EXPECT_EQ(GetParam().tree, m_Sink.trees());
    EXPECT_EQ(std::vector<std::string>{}, m_Sink.messages);
}

TEST_P(GoodDocuments, BecomeTheSameTreesOutOfAnArchive)
{
    for (const bool deflate : {false, true})
    {
        const std::string archive = ZipBuilder().add("any.name", GetParam().document, deflate).bytes();
        m_Sink.roots.clear();
        EXPECT_EQ(XML_SUCCESS, read(m_Folder.write("document.zip", archive)));
        EXPECT_EQ(0, m_Reader.errorCount());
        EXPECT_EQ(GetParam().tree, m_Sink.trees());
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, GoodDocuments, testing::ValuesIn(s_GoodRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

struct BadRow
{
    const char* name;
    std::string document;
    const char* place;     ///< of the only message
    const char* tree = ""; ///< what the sink had been given before
};

const BadRow s_BadRows[] = {
    {"empty", "", "critical 1"},
    {"blank", " \n\n", "critical 3"},
    {"text_only", "hello", "critical 1"},
    {"unclosed", "<a>\n<b>\n</b>\n", "critical 4"},
    {"mismatched", "<a>\n<b>\n</a>\n", "critical 3"},
    {"two_roots", "<a/>\n<b/>", "critical 2", "a#0"},
    {"text_behind_root", "<a/>\nx", "critical 2", "a#0"},
    {"duplicate_attribute", "<a\nx='1' x='2'/>", "critical 2"},
    {"unquoted_value", "<a x=1/>", "critical 1"},
    {"less_in_value", "<a x='<'/>", "critical 1"},
    {"undefined_entity", "<a>\n\n&e;</a>", "critical 3"},
    {"control_character", "<a x='\x01'/>", "critical 1"},
    {"null_byte", "<a x='\0'/>"s, "critical 1"},
    {"bad_utf8", "<a x='\xff'/>", "critical 1"},
    {"cut_utf8", "<a x='\xc3", "critical 1"},
    {"unknown_encoding", "<?xml version='1.0' encoding='x-none'?><a/>", "critical 1"},
    {"unknown_version", "<?xml version='2.0'?><a/>", "critical 1"},
    {"declaration_not_first", " <?xml version='1.0'?><a/>", "critical 1"},
    {"recursive_entity", "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>", "critical 1"},
    {"missing_external_entity", "<!DOCTYPE a [<!ENTITY e SYSTEM 'missing.xml'>]><a>&e;</a>", "critical 1"},
};

class BadDocuments : public Reading, public testing::WithParamInterface<BadRow>
{
};

TEST_P(BadDocuments, AreCounted)
{
    EXPECT_EQ(XML_SUCCESS, readBytes(GetParam().document));
    EXPECT_EQ(1, m_Reader.errorCount());
    EXPECT_EQ(GetParam().tree, m_Sink.trees());
    EXPECT_EQ(std::vector<std::string>{GetParam().place}, places()) << testing::PrintToString(m_Sink.messages);
}

INSTANTIATE_TEST_SUITE_P(Rows, BadDocuments, testing::ValuesIn(s_BadRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST_F(Reading, NodesKnowWhereTheirStartTagEnds)
{
    EXPECT_EQ(XML_SUCCESS, readBytes("<a>\n  <b\n x='1'/>\n</a>"));
    ASSERT_EQ(1U, m_Sink.roots.size());
    const Node* pRoot = m_Sink.roots[0].get();
    const Node* pChild = pRoot->children().front();
    EXPECT_EQ(1U, pRoot->line());
    EXPECT_EQ(4U, pRoot->column());
    EXPECT_EQ(3U, pChild->line());
    EXPECT_EQ(9U, pChild->column());
    EXPECT_EQ(pRoot, pChild->getParent());
    EXPECT_EQ(1, pRoot->attributes()->blockSize());
}

struct SkipRow
{
    const char* name;
    int depth;
    const char* trees;
};

const SkipRow s_SkipRows[] = {
    {"nothing", 0, "a#1{x=1#0}(b#2(c#3) d#5{y=2#4} e#6)"},
    {"root", 1, "b#2(c#3)\nd#5{y=2#4}\ne#6"},
    {"two_levels", 2, "c#3"},
    {"more_than_there_is", 3, ""},
};

class SkippedLevels : public Reading, public testing::WithParamInterface<SkipRow>
{
};

TEST_P(SkippedLevels, AreNotBuilt)
{
    EXPECT_EQ(XML_SUCCESS, readBytes("<a x='1'><b><c/></b><d y='2'/><e/></a>", GetParam().depth));
    EXPECT_EQ(GetParam().trees, m_Sink.trees());
}

INSTANTIATE_TEST_SUITE_P(Rows, SkippedLevels, testing::ValuesIn(s_SkipRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

/// An option, and what it makes of a document that is read without a word when no option is set.
struct OptionRow
{
    const char* name;
    void (*set)(NodeReader& io_Reader);
    const char* document;
    TErrorCode code;
    std::vector<std::string> places; ///< of the messages
};

void setSchema(NodeReader& io_Reader)
{
    io_Reader.setValidationScheme(SAXParser::ValidateAlways);
    io_Reader.setNamespaces(true);
    io_Reader.setSchema(true);
}

const OptionRow s_OptionRows[] = {
    {"none", [](NodeReader&) {}, "<p:a><b/></p:a>", XML_SUCCESS, {}},
    {"validation",
     [](NodeReader& r) { r.setValidationScheme(SAXParser::ValidateAlways); },
     "<!DOCTYPE a [<!ELEMENT a EMPTY>]>\n<a><a/></a>",
     XML_SUCCESS,
     {"error 2"}},
    {"namespaces", [](NodeReader& r) { r.setNamespaces(true); }, "<a>\n<p:b/></a>", XML_SUCCESS, {"critical 2"}},
    {"schema_without_location", setSchema, "<a x='1'/>", XML_SUCCESS, {"error 1", "error 1"}},
    {"schema_without_namespace",
     [](NodeReader& r)
     {
         setSchema(r);
         r.setNoNamespaceSchemaLocation(L"a.xsd");
     },
     "<a\nx='one'/>",
     XML_SUCCESS,
     {"error 2"}},
    {"schema_of_a_namespace",
     [](NodeReader& r)
     {
         setSchema(r);
         r.setSchemaLocation(L"urn:a na.xsd");
     },
     "<p:a xmlns:p='urn:a' x='one'/>",
     XML_SUCCESS,
     {"error 1"}},
    {"schema_that_is_not_switched_on",
     [](NodeReader& r)
     {
         setSchema(r);
         r.setSchema(false);
         r.setNoNamespaceSchemaLocation(L"a.xsd");
     },
     "<a x='1'/>",
     XML_SUCCESS,
     {"error 1", "error 1"}},
    {"schema_of_a_valid_document",
     [](NodeReader& r)
     {
         setSchema(r);
         r.setNoNamespaceSchemaLocation(L"a.xsd");
     },
     "<a x='1'/>",
     XML_SUCCESS,
     {}},
    {"ambiguous_schema",
     [](NodeReader& r)
     {
         setSchema(r);
         r.setNoNamespaceSchemaLocation(L"ambiguous.xsd");
     },
     "<a><b/></a>",
     XML_SUCCESS,
     {}},
    {"full_checking_of_an_ambiguous_schema",
     [](NodeReader& r)
     {
         setSchema(r);
         r.setFullSchemaChecking(true);
         r.setNoNamespaceSchemaLocation(L"ambiguous.xsd");
     },
     "<a><b/></a>",
     XML_SUCCESS,
     {"error 1", "error 1"}},
    {"progress_goes_on",
     [](NodeReader& r) { r.setProgressCallback([] { return 0; }); },
     "<a><b/></a>",
     XML_SUCCESS,
     {}},
    {"progress_stops",
     [](NodeReader& r) { r.setProgressCallback([] { return 1; }); },
     "<a><b/></a>",
     XML_ERROR_CANCELLED,
     {}},
};

class ReaderOptions : public Reading, public testing::WithParamInterface<OptionRow>
{
protected:
    ReaderOptions()
    {
        const std::string element = "<xs:element name='a'><xs:complexType><xs:attribute name='x' type='xs:int'/>"
                                    "</xs:complexType></xs:element>";
        // Which of the two elements is meant cannot be told.
        const std::string ambiguous = "<xs:element name='a'><xs:complexType><xs:sequence>"
                                      "<xs:element name='b' minOccurs='0'/><xs:element name='b'/>"
                                      "</xs:sequence></xs:complexType></xs:element>";
        writeSchema("a.xsd", "", element);
        writeSchema("na.xsd", " targetNamespace='urn:a'", element);
        writeSchema("ambiguous.xsd", "", ambiguous);
    }

private:
    void writeSchema(const char* i_Name, const std::string& i_Attributes, const std::string& i_Content) const
    {
        m_Folder.write(i_Name, "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'" + i_Attributes + ">" +
                                   i_Content + "</xs:schema>");
    }
};

TEST_P(ReaderOptions, ReachTheParser)
{
    GetParam().set(m_Reader);
    EXPECT_EQ(GetParam().code, readBytes(GetParam().document));
    EXPECT_EQ(GetParam().places, places()) << testing::PrintToString(m_Sink.messages);
    EXPECT_EQ(static_cast<int>(GetParam().places.size()), m_Reader.errorCount());
}

INSTANTIATE_TEST_SUITE_P(Rows, ReaderOptions, testing::ValuesIn(s_OptionRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

TEST_F(Reading, TreesFinishedBeforeAnErrorStayWithTheSink)
{
    EXPECT_EQ(XML_SUCCESS, readBytes("<a><b/><c></a>", 1));
    EXPECT_EQ(1, m_Reader.errorCount());
    EXPECT_EQ("b#1", m_Sink.trees());
}

TEST_F(Reading, TheErrorCountIsThatOfTheLastDocument)
{
    readBytes("<a>");
    EXPECT_EQ(1, m_Reader.errorCount());
    readBytes("<a/>");
    EXPECT_EQ(0, m_Reader.errorCount());
}

TEST_F(Reading, FileNamesNeedNotBeAscii)
{
    EXPECT_EQ(XML_SUCCESS, read(m_Folder.write("\xc3\xa4 \xe2\x82\xac \xf0\x9f\x98\x80.xml", "<a/>")));
    EXPECT_EQ("a#0", m_Sink.trees());
}

TEST_F(Reading, TheSecondMemberOfAnArchiveIsNotReached)
{
    const std::string archive = ZipBuilder().add("mimetype", "text").add("a.xml", "<a/>").bytes();
    EXPECT_EQ(XML_SUCCESS, read(m_Folder.write("a.zip", archive)));
    EXPECT_EQ(1, m_Reader.errorCount());
    EXPECT_EQ("", m_Sink.trees());
}

TEST_F(Reading, ExternalEntitiesAreResolvedAgainstTheDocument)
{
    m_Folder.write("entity.xml", "<b x='1'/>");
    EXPECT_EQ(XML_SUCCESS, readBytes("<!DOCTYPE a [<!ENTITY e SYSTEM 'entity.xml'>]><a>&e;</a>"));
    EXPECT_EQ(0, m_Reader.errorCount());
    EXPECT_EQ("a#0(b#2{x=1#1})", m_Sink.trees());
}

/// A member of an archive has no place of its own.
TEST_F(Reading, ExternalEntitiesOfAnArchiveAreResolvedAgainstTheWorkingDirectory)
{
    const char* const pDocument = "<!DOCTYPE a [<!ENTITY e SYSTEM 'entity.xml'>]><a>&e;</a>";
    const String path = m_Folder.write("a.zip", ZipBuilder().add("a.xml", pDocument).bytes());
    m_Folder.write("entity.xml", "<b/>");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(m_Folder.path());
    EXPECT_EQ(XML_SUCCESS, read(path));
    std::filesystem::current_path(before);
    EXPECT_EQ(0, m_Reader.errorCount());
    EXPECT_EQ("a#0(b#1)", m_Sink.trees());
    EXPECT_EQ(XML_SUCCESS, read(path));
    EXPECT_EQ(1, m_Reader.errorCount());
}

struct SubsetRow
{
    const char* name;
    unsigned scheme;
    const char* tree;
};

const SubsetRow s_SubsetRows[] = {
    {"never", SAXParser::ValidateNever, "a#0"},
    {"always", SAXParser::ValidateAlways, "a#1{x=d#0}"},
    {"automatic", SAXParser::ValidateAutomatically, "a#1{x=d#0}"},
    {"other_leaves_the_library_alone", 3, "a#1{x=d#0}"},
};

class ExternalSubset : public Reading, public testing::WithParamInterface<SubsetRow>
{
};

TEST_P(ExternalSubset, IsNotReadForTheSchemeNever)
{
    m_Folder.write("a.dtd", "<!ELEMENT a EMPTY><!ATTLIST a x CDATA 'd'>");
    m_Reader.setValidationScheme(GetParam().scheme);
    EXPECT_EQ(XML_SUCCESS, readBytes("<!DOCTYPE a SYSTEM 'a.dtd'><a/>"));
    EXPECT_EQ(GetParam().tree, m_Sink.trees());
    EXPECT_EQ(0, m_Reader.errorCount());
}

INSTANTIATE_TEST_SUITE_P(Rows, ExternalSubset, testing::ValuesIn(s_SubsetRows),
                         [](const auto& i_Info) { return i_Info.param.name; });

std::string deepDocument(std::size_t i_Depth)
{
    std::string document;
    document.reserve(i_Depth * 7);
    for (std::size_t level = 0; level < i_Depth; ++level)
    {
        document += "<a>";
    }
    for (std::size_t level = 0; level < i_Depth; ++level)
    {
        document += "</a>";
    }
    return document;
}

TEST_F(Reading, AMillionLevelsFitASmallStack)
{
    constexpr unsigned depth = 1000000;
    const String path = m_Folder.write("deep.xml", deepDocument(depth));
    runOnSmallStack(
        [&]
        {
            EXPECT_EQ(XML_SUCCESS, read(path));
            ASSERT_EQ(1U, m_Sink.roots.size());
            unsigned levels = 0;
            for (const Node* pNode = m_Sink.roots[0].get(); pNode; pNode = pNode->children().front())
            {
                ++levels;
            }
            EXPECT_EQ(depth, levels);
            m_Sink.roots.clear();
        });
}

TEST_F(Reading, AMillionOpenLevelsAreDestroyedAfterAnError)
{
    const std::string document = deepDocument(1000000);
    const String path = m_Folder.write("deep.xml", document.substr(0, document.size() / 2));
    runOnSmallStack(
        [&]
        {
            EXPECT_EQ(XML_SUCCESS, read(path));
            EXPECT_EQ(1, m_Reader.errorCount());
            EXPECT_TRUE(m_Sink.roots.empty());
        });
}

TEST_F(Reading, AHundredThousandAttributes)
{
    constexpr int count = 100000;
    std::string document = "<a";
    for (int index = 0; index < count; ++index)
    {
        document += " n" + std::to_string(index) + "='" + std::to_string(index) + "'";
    }
    EXPECT_EQ(XML_SUCCESS, readBytes(document + "/>"));
    ASSERT_EQ(1U, m_Sink.roots.size());
    const AttributeTable* pTable = m_Sink.roots[0]->attributes();
    ASSERT_EQ(count, pTable->count());
    for (int index = count - 1; index >= 0; --index)
    {
        const String number = String::valueOf(index);
        ASSERT_EQ(index, pTable->indexOf(L"n" + number));
        ASSERT_EQ(viewOf(number), pTable->valueAt(index));
        ASSERT_EQ(viewOf(number), pTable->ordinalAt(index));
    }
}

/// The library loses the attribute at which a table of its own grows, the 29th of an element, and does
/// not notice when it is there once more.
TEST_F(Reading, AnAttributeThatTheLibraryTakesTwiceKeepsItsFirstValue)
{
    std::string attributes;
    for (int index = 0; index < 28; ++index)
    {
        attributes += " n" + std::to_string(index) + "=''";
    }
    for (int index = 0; index < 20; ++index)
    {
        const std::string name = "twice" + std::to_string(index);
        EXPECT_EQ(XML_SUCCESS, readBytes("<a" + attributes + " " + name + "='1' " + name + "='2'/>"));
        const bool isNoticed = m_Reader.errorCount() > 0;
        ASSERT_EQ(isNoticed ? 0U : 1U, m_Sink.roots.size()) << name;
        if (!isNoticed)
        {
            const AttributeTable* pTable = m_Sink.roots[0]->attributes();
            EXPECT_EQ(29, pTable->count()) << name;
            EXPECT_EQ(L"1", pTable->valueAt(28)) << name;
            EXPECT_EQ(L"28", pTable->ordinalAt(28)) << name;
            EXPECT_EQ(30U, m_Sink.roots[0]->sequence()) << name; // the second one has used up a number
        }
        m_Sink.roots.clear();
    }
}

} // namespace
