#include "xmlproxy/plain/PlainParser.h"

#include "PlainComparison.h"
#include "TestFiles.h"
#include "TestTrees.h"
#include "xmlproxy/DefaultSAXHandler.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{

using namespace std::string_literals;

/// Elements as `name line:column#sequence{attribute=value#ordinal}`, end tags as `/name`.
class TextRecorder final : public SAXHandler
{
public:
    explicit TextRecorder(bool i_HasMemory) : m_pMemory(i_HasMemory ? new XmlTreeMemory : nullptr) {}

    void startDocument() override { text += "["; }
    void endDocument() override { text += "]"; }
    void startElement(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
                      unsigned i_Sequence) override
    {
        const std::unique_ptr<AttributeTable> pAttributes(i_pAttributes);
        text += i_Name.toNarrow() + " " + std::to_string(i_Line) + ":" + std::to_string(i_Column) + "#" +
                std::to_string(i_Sequence);
        for (int index = 0; index < pAttributes->count(); ++index)
        {
            text += (index == 0 ? "{" : " ") + narrow(pAttributes->nameAt(index)) + "=" +
                    narrow(pAttributes->valueAt(index)) + "#" + std::to_string(pAttributes->orderAt(index));
        }
        text += pAttributes->count() > 0 ? "} " : " ";
    }
    void endElement(const String& i_Name) override { text += "/" + i_Name.toNarrow() + " "; }
    void characters(const String&, unsigned, unsigned, unsigned) override { text += "characters "; }
    void warning(const String&, int) override { text += "warning "; }
    void error(const String&, int) override { text += "error "; }
    void fatalError(const String&, int) override { text += "fatal "; }
    XmlTreeMemory* memory() override { return m_pMemory.get(); }

    std::string text;

private:
    std::unique_ptr<XmlTreeMemory> m_pMemory;
};

/// What the parser tells of the document, or "gave up".
std::string eventsOf(const std::string& i_Document, bool i_HasMemory, std::size_t i_BlockSize = 65536)
{
    TextRecorder recorder(i_HasMemory);
    PlainParser parser(&recorder);
    parser.setBlockSize(i_BlockSize);
    PlainBytesSource source(i_Document);
    return parser.parse(source) == 0 ? recorder.text : "gave up";
}

struct Row
{
    const char* name;
    std::string document;
    const char* events;
};

// clang-format off
const Row s_Taken[] = {
    // Elements.
    {"empty_element", "<a/>", "[a 1:5#0 /a ]"},
    {"start_and_end_tag", "<a></a>", "[a 1:4#0 /a ]"},
    {"blanks_in_tags", "<a  ><b \t/></a \n >", "[a 1:6#0 b 1:12#1 /b /a ]"},
    {"nested", "<a><b><c/></b><d/></a>", "[a 1:4#0 b 1:7#1 c 1:11#2 /c /b d 1:19#3 /d /a ]"},
    {"line_ends_in_tags", "<a\n  x='1'\r\n  y='2'\r>\n<b/></a>", "[a 4:2#2{x=1#0 y=2#1} b 5:5#3 /b /a ]"},
    {"colon_in_name", "<p:a q:x='1'/>", "[p:a 1:15#1{q:x=1#0} /p:a ]"},
    {"odd_name_characters", "<_a.b-c1/>", "[_a.b-c1 1:11#0 /_a.b-c1 ]"},
    {"names_of_16_and_17", "<a234567890123456><b2345678901234567/></a234567890123456>", "[a234567890123456 1:19#0 b2345678901234567 1:39#1 /b2345678901234567 /a234567890123456 ]"},
    {"name_that_begins_like_another", "<a><b/><a><b/><aa><b/></aa></a></a>", "[a 1:4#0 b 1:8#1 /b a 1:11#2 b 1:15#3 /b aa 1:19#4 b 1:23#5 /b /aa /a /a ]"},
    {"names_beyond_ascii", "<\xc3\xa4 \xe0\xb8\x81='1'><b/></\xc3\xa4>", "[\xc3\xa4 1:10#1{\xe0\xb8\x81=1#0} b 1:14#2 /b /\xc3\xa4 ]"},
    {"column_after_end_tag_beyond_ascii", "<a><\xc3\xa4></\xc3\xa4><b/></a>", "[a 1:4#0 \xc3\xa4 1:7#1 /\xc3\xa4 b 1:15#2 /b /a ]"},
    // Attributes.
    {"attributes", "<a x='1' y=\"2\"/>", "[a 1:17#2{x=1#0 y=2#1} /a ]"},
    {"empty_value", "<a x='' y=\"\"/>", "[a 1:15#2{x=#0 y=#1} /a ]"},
    {"blanks_around_equals", "<a x = '1' y\n=\t'2'/>", "[a 2:8#2{x=1#0 y=2#1} /a ]"},
    {"other_quote_in_value", "<a x='\"' y=\"'\"/>", "[a 1:17#2{x=\"#0 y='#1} /a ]"},
    {"greater_in_value", "<a x='>' y='/>'/>", "[a 1:18#2{x=>#0 y=/>#1} /a ]"},
    {"white_space_in_value", "<a x=' 1\t2\n3\r4\r\n5 ' y='\r'/>", "[a 5:4#2{x= 1 2 3 4 5 #0 y= #1} /a ]"},
    {"entities_in_value", "<a x='&lt;&gt;&amp;&quot;&apos;'/>", "[a 1:35#1{x=<>&\"'#0} /a ]"},
    {"characters_by_number_in_value", "<a x='&#65;&#x42;&#10;&#13;&#9;&#x20;'/>", "[a 1:41#1{x=AB\n\r\t #0} /a ]"},
    {"large_characters_by_number", "<a x='&#x1F600;&#xFFFD;&#x10FFFF;&#000065;'/>", "[a 1:46#1{x=\xf0\x9f\x98\x80\xef\xbf\xbd\xf4\x8f\xbf\xbf" "A#0} /a ]"},
    {"value_beyond_ascii", "<a x='\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80' y='1'/>", "[a 1:20#2{x=\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80#0 y=1#1} /a ]"},
    {"value_of_17", "<a x='12345678901234567' y='1234567890123456'/>", "[a 1:48#2{x=12345678901234567#0 y=1234567890123456#1} /a ]"},
    {"same_attribute_in_two_elements", "<a x='1'><a x='2'/></a>", "[a 1:10#1{x=1#0} a 1:20#3{x=2#2} /a /a ]"},
    // What is passed over.
    {"text", "<a>text\n more <b/> ]] > end</a>", "[a 1:4#0 b 2:11#1 /b /a ]"},
    {"text_beyond_ascii", "<a>\xc3\xa4\xe2\x82\xac\xf0\x9f\x98\x80<b/></a>", "[a 1:4#0 b 1:12#1 /b /a ]"},
    {"references_in_text", "<a>&lt;&#65;&#x1F600;<b/></a>", "[a 1:4#0 b 1:26#1 /b /a ]"},
    {"line_ends_in_text", "<a>\r\n\r\r\n\n<b/></a>", "[a 1:4#0 b 5:5#1 /b /a ]"},
    {"comment", "<!--c--><a><!----><!-- - - --><b/></a><!--d-->", "[a 1:12#0 b 1:35#1 /b /a ]"},
    {"comment_with_markup", "<a><!-- <x> & ]]> \n-> --><b/></a>", "[a 1:4#0 b 2:11#1 /b /a ]"},
    {"instruction", "<?p?><a><?p d?><?p ?\?><b/></a><?p:q ?><?xmlx?>", "[a 1:9#0 b 1:27#1 /b /a ]"},
    {"instruction_beyond_ascii", "<a><?\xc3\xa4 \xc3\xa4?><b/></a>", "[a 1:4#0 b 1:15#1 /b /a ]"},
    {"style_sheet", "<?xml-stylesheet href='x'?>\n<a/>", "[a 2:5#0 /a ]"},
    {"section", "<a><![CDATA[<b>&x;]]]]><![CDATA[]]]><b/></a>", "[a 1:4#0 b 1:41#1 /b /a ]"},
    {"section_with_line_ends", "<a><![CDATA[\r\n\xe2\x82\xac]]><b/></a>", "[a 1:4#0 b 2:9#1 /b /a ]"},
    {"delete_and_c1", "<a>\x7f\xc2\x80<b/></a>", "[a 1:4#0 b 1:10#1 /b /a ]"},
    // Before and after the root.
    {"white_space_outside", " \n\t<a/>\r\n ", "[a 2:6#0 /a ]"},
    {"declaration", "<?xml version='1.0'?>\n<a/>", "[a 2:5#0 /a ]"},
    {"whole_declaration", "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\" ?><a/>", "[a 1:61#0 /a ]"},
    {"declaration_with_line_ends", "<?xml version='1.0'\r\n encoding = 'utf-8'\n?><a/>", "[a 3:7#0 /a ]"},
    {"ascii", "<?xml version='1.0' encoding='us-ascii'?><a x='1'/>", "[a 1:52#1{x=1#0} /a ]"},
    {"no_standalone", "<?xml version='1.0' standalone='no'?><a/>", "[a 1:42#0 /a ]"},
    {"mark", "\xef\xbb\xbf<a/>", "[a 1:5#0 /a ]"},
    {"mark_and_declaration", "\xef\xbb\xbf<?xml version='1.0' encoding='UTF-8'?><a/>", "[a 1:43#0 /a ]"},
};

const Row s_GivenUp[] = {
    // Not plain.
    {"type_declaration", "<!DOCTYPE a><a/>", ""},
    {"type_declaration_after_comment", "<!-- --><!DOCTYPE a [<!ENTITY e 'x'>]><a/>", ""},
    {"version_1_1", "<?xml version='1.1'?><a/>", ""},
    {"latin_1", "<?xml version='1.0' encoding='ISO-8859-1'?><a/>", ""},
    {"utf_16", "\xff\xfe<\0a\0/\0>\0"s, ""},
    {"ascii_with_mark", "\xef\xbb\xbf<?xml version='1.0' encoding='US-ASCII'?><a/>", ""},
    {"mark_twice", "\xef\xbb\xbf\xef\xbb\xbf<a/>", ""},
    // Left to the library, which has quirks there.
    {"duplicate_attribute", "<a x='1' x='2'/>", ""},
    {"next_line", "<a>\xc2\x85</a>", ""},
    {"line_separator", "<a x='\xe2\x80\xa8'/>", ""},
    {"two_colons", "<a:b:c/>", ""},
    {"leading_colon", "<:a/>", ""},
    {"long_reference", "<a>&#00000000000000065;</a>", ""},
    {"declaration_after_tab", "<?xml\tversion='1.0'?><a/>", ""},
    {"long_declaration", "<?xml version='1.0'" + std::string(300, ' ') + "?><a/>", ""},
    // Malformed.
    {"nothing", "", ""},
    {"white_space_only", " \n", ""},
    {"mark_only", "\xef\xbb\xbf", ""},
    {"text_only", "a", ""},
    {"less_only", "<", ""},
    {"no_end", "<a>", ""},
    {"cut_in_end_tag", "<a></a", ""},
    {"wrong_end", "<a></b>", ""},
    {"longer_end", "<a></aa>", ""},
    {"end_with_attribute", "<a></a x='1'>", ""},
    {"end_first", "</a>", ""},
    {"two_roots", "<a/><b/>", ""},
    {"text_after_root", "<a/>x", ""},
    {"less_after_root", "<a/><", ""},
    {"reference_after_root", "<a/>&#32;", ""},
    {"section_after_root", "<a/><![CDATA[]]>", ""},
    {"null_character", "<a>\0</a>"s, ""},
    {"null_character_after_root", "<a/>\0"s, ""},
    {"null_character_in_tag", "<a \0/>"s, ""},
    {"control_character", "<a>\x01</a>", ""},
    {"control_character_in_value", "<a x='\x1f'/>", ""},
    {"noncharacter", "<a>\xef\xbf\xbe</a>", ""},
    {"surrogate", "<a>\xed\xa0\x80</a>", ""},
    {"overlong", "<a>\xc0\x80</a>", ""},
    {"overlong_of_three", "<a>\xe0\x80\x80</a>", ""},
    {"too_large", "<a>\xf4\x90\x80\x80</a>", ""},
    {"wrong_first_byte", "<a>\xff</a>", ""},
    {"continuation_first", "<a>\x80</a>", ""},
    {"cut_character", "<a>\xe2\x82</a>", ""},
    {"cut_character_in_value", "<a x='\xe2\x82'/>", ""},
    {"not_ascii", "<?xml version='1.0' encoding='US-ASCII'?><a>\xc3\xa4</a>", ""},
    {"name_not_ascii", "<?xml version='1.0' encoding='US-ASCII'?><\xc3\xa4/>", ""},
    {"value_not_ascii", "<?xml version='1.0' encoding='US-ASCII'?><a x='\xc3\xa4'/>", ""},
    {"target_not_ascii", "<?xml version='1.0' encoding='US-ASCII'?><?\xc3\xa4?><a/>", ""},
    {"name_from_digit", "<1a/>", ""},
    {"name_after_blank", "< a/>", ""},
    {"name_from_hyphen", "<a -x='1'/>", ""},
    {"digit_after_colon", "<a:1/>", ""},
    {"colon_at_end", "<a:/>", ""},
    {"name_with_wrong_character", "<a\xc3\x97/>", ""},
    {"attribute_without_value", "<a x/>", ""},
    {"attribute_without_quotes", "<a x=1/>", ""},
    {"attributes_without_blank", "<a x='1'y='2'/>", ""},
    {"less_in_value", "<a x='<'/>", ""},
    {"ampersand_in_value", "<a x='&'/>", ""},
    {"open_value", "<a x='1/>", ""},
    {"blank_after_slash", "<a / >", ""},
    {"section_end_in_text", "<a>]]></a>", ""},
    {"section_end_after_bracket", "<a>]]]></a>", ""},
    {"open_section", "<a><![CDATA[</a>", ""},
    {"open_comment", "<a><!-- </a>", ""},
    {"hyphens_in_comment", "<a><!-- -- --></a>", ""},
    {"hyphen_before_end_of_comment", "<a><!-- ---></a>", ""},
    {"open_instruction", "<a><?p </a>", ""},
    {"instruction_without_target", "<a><? p?></a>", ""},
    {"instruction_without_blank", "<a><?p?d?></a>", ""},
    {"instruction_for_xml", "<a><?XmL d?></a>", ""},
    {"declaration_late", " <?xml version='1.0'?><a/>", ""},
    {"declaration_in_content", "<a><?xml version='1.0'?></a>", ""},
    {"unknown_entity", "<a>&x;</a>", ""},
    {"open_reference", "<a>&lt</a>", ""},
    {"open_character_reference", "<a>&#65</a>", ""},
    {"empty_character_reference", "<a>&#;&#x;</a>", ""},
    {"capital_x_in_reference", "<a>&#X41;</a>", ""},
    {"reference_to_nothing", "<a>&#0;</a>", ""},
    {"reference_to_surrogate", "<a>&#xD800;</a>", ""},
    {"reference_too_large", "<a>&#x110000;</a>", ""},
    {"reference_overflow", "<a>&#4294967361;</a>", ""},
    {"element_declaration", "<a><!ELEMENT a ANY></a>", ""},
    {"version_missing", "<?xml encoding='UTF-8'?><a/>", ""},
    {"standalone_unknown", "<?xml version='1.0' standalone='maybe'?><a/>", ""},
    {"declaration_in_wrong_order", "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a/>", ""},
    {"declaration_without_blank", "<?xml version='1.0'encoding='UTF-8'?><a/>", ""},
    {"declaration_open", "<?xml version='1.0'><a/>", ""},
};
// clang-format on

class Taken : public testing::TestWithParam<Row>
{
};

TEST_P(Taken, InAnyBlocks)
{
    EXPECT_EQ(GetParam().events, eventsOf(GetParam().document, true));
    EXPECT_EQ(GetParam().events, eventsOf(GetParam().document, false));
    for (std::size_t blockSize = 1; blockSize < 70; ++blockSize)
    {
        ASSERT_EQ(GetParam().events, eventsOf(GetParam().document, true, blockSize)) << blockSize;
    }
}

TEST_P(Taken, AsTheParserLibraryTakesIt)
{
    PlainComparison parsers;
    EXPECT_TRUE(parsers.takes(GetParam().document));
    EXPECT_EQ(parsers.expected(GetParam().document), parsers.taken());
}

INSTANTIATE_TEST_SUITE_P(Rows, Taken, testing::ValuesIn(s_Taken), [](const auto& i_Info) { return i_Info.param.name; });

class GivenUp : public testing::TestWithParam<Row>
{
};

TEST_P(GivenUp, InAnyBlocks)
{
    for (std::size_t blockSize = 1; blockSize < 70; ++blockSize)
    {
        ASSERT_EQ("gave up", eventsOf(GetParam().document, true, blockSize)) << blockSize;
    }
    EXPECT_EQ("gave up", eventsOf(GetParam().document, true));
    EXPECT_EQ("gave up", eventsOf(GetParam().document, false));
}

INSTANTIATE_TEST_SUITE_P(Rows, GivenUp, testing::ValuesIn(s_GivenUp),
                         [](const auto& i_Info) { return i_Info.param.name; });

class PlainParserFiles : public testing::Test
{
protected:
    TErrorCode parse(const String& i_Path)
    {
        DefaultSAXHandler handler(&m_Sink, 0);
        PlainParser parser(&handler);
        const TErrorCode code = parser.parse(i_Path, nullptr);
        EXPECT_EQ(0, parser.errorCount());
        return code;
    }

    TestFolder m_Folder;
    RecordingSink m_Sink;
};

TEST_F(PlainParserFiles, MakesTheTreeOfAFileAndOfAnArchive)
{
    const std::string document = "<a x='1'><b/>\n<c y='\xc3\xa4'/></a>";
    EXPECT_EQ(0, parse(m_Folder.write("a.xml", document)));
    EXPECT_EQ(0, parse(m_Folder.write("a.zip", ZipBuilder().add("n", document, true).bytes())));
    EXPECT_EQ("a#1{x=1#0}(b#2 c#4{y=\xc3\xa4#3})\na#1{x=1#0}(b#2 c#4{y=\xc3\xa4#3})", m_Sink.trees());
    EXPECT_EQ(1, m_Sink.roots[0]->attributes()->blockSize());
}

TEST_F(PlainParserFiles, GivesUpWhatIsNotThere)
{
    EXPECT_EQ(PlainParser::s_GaveUp, parse(m_Folder.pathOf("missing.xml")));
    EXPECT_EQ(PlainParser::s_GaveUp, parse(m_Folder.pathOf(".")));
    EXPECT_EQ(PlainParser::s_GaveUp, parse(m_Folder.write("empty.zip", ZipBuilder().bytes())));
}

struct OptionRow
{
    const char* name;
    void (*set)(PlainParser& io_Parser);
};

const OptionRow s_Options[] = {
    {"validation", [](PlainParser& p) { p.setValidationScheme(SAXParser::ValidateAutomatically); }},
    {"unknown_validation", [](PlainParser& p) { p.setValidationScheme(7); }},
    {"namespaces", [](PlainParser& p) { p.setNamespaces(true); }},
    {"schema", [](PlainParser& p) { p.setSchema(true); }},
    {"schema_checking", [](PlainParser& p) { p.setFullSchemaChecking(true); }},
    {"schema_location", [](PlainParser& p) { p.setSchemaLocation(L"n s.xsd"); }},
    {"schema_without_namespace", [](PlainParser& p) { p.setNoNamespaceSchemaLocation(L"s.xsd"); }},
};

TEST_F(PlainParserFiles, GivesUpWithOptionsOrACallback)
{
    const String path = m_Folder.write("a.xml", "<a/>");
    DefaultSAXHandler handler(&m_Sink, 0);
    for (const OptionRow& row : s_Options)
    {
        PlainParser parser(&handler);
        row.set(parser);
        EXPECT_EQ(PlainParser::s_GaveUp, parser.parse(path, nullptr)) << row.name;
    }
    PlainParser parser(&handler);
    EXPECT_EQ(PlainParser::s_GaveUp, parser.parse(path, [] { return 0; }));
    EXPECT_EQ("", m_Sink.trees());
    EXPECT_EQ(0, parser.parse(path, nullptr));
    EXPECT_EQ("a#0", m_Sink.trees());
}

/// A source that hands out the document a few bytes at a time, and fails or ends where it is told to.
class FailingSource final : public PlainSource
{
public:
    FailingSource(std::string_view i_Bytes, std::size_t i_End, bool i_Fails)
        : m_Rest(i_Bytes.substr(0, i_End)), m_Fails(i_Fails)
    {
    }
    std::size_t read(char* o_pBuffer, std::size_t i_Size) override
    {
        if (m_Rest.empty() && m_Fails)
        {
            return s_Failed;
        }
        const std::size_t count = m_Rest.copy(o_pBuffer, std::min<std::size_t>(i_Size, 7));
        m_Rest.remove_prefix(count);
        return count;
    }

private:
    std::string_view m_Rest;
    bool m_Fails;
};

TEST(PlainParserSources, ThatFailAreGivenUpAtEachByte)
{
    const std::string document = "<?xml version='1.0'?><!-- c --><a x='&lt;'>text<b/><![CDATA[x]]></a> <?p d?> ";
    for (const bool fails : {true, false})
    {
        for (std::size_t end = 0; end <= document.size(); ++end)
        {
            TextRecorder recorder(true);
            PlainParser parser(&recorder);
            FailingSource source(document, end, fails);
            const bool isWhole = document.substr(0, end).find("</a>") != std::string::npos &&
                                 (end <= document.find("<?p") || end > document.rfind("?>") + 1);
            ASSERT_EQ(isWhole && !fails ? 0 : PlainParser::s_GaveUp, parser.parse(source)) << end;
        }
    }
}

/// Values, names and tags that are longer than any block, and deep nesting.
TEST(PlainParserSizes, DoNotMatter)
{
    const std::string longText(300000, 'x');
    const std::string document = "<" + longText + " y='" + longText + "' " + longText + "='&amp;" + longText + "'>" +
                                 longText + "</" + longText + ">";
    const std::string expected =
        "[" + longText + " 1:1200017#2{y=" + longText + "#0 " + longText + "=&" + longText + "#1} /" + longText + " ]";
    EXPECT_EQ(expected, eventsOf(document, true));
    EXPECT_EQ(expected, eventsOf(document, false, 13));

    const std::size_t depth = 500000;
    std::string deep;
    for (std::size_t level = 0; level < depth; ++level)
    {
        deep += "<d>";
    }
    EXPECT_EQ("gave up", eventsOf(deep, true));
    for (std::size_t level = 0; level < depth; ++level)
    {
        deep += "</d>";
    }
    RecordingSink sink;
    DefaultSAXHandler handler(&sink, 0);
    PlainParser parser(&handler);
    PlainBytesSource source(deep);
    EXPECT_EQ(0, parser.parse(source));
    ASSERT_EQ(1U, sink.roots.size());
    EXPECT_EQ(1U, sink.roots[0]->childCount());
}

TEST(PlainParserSizes, ManyAttributesAreCompared)
{
    std::string document = "<a";
    for (int number = 0; number < 100000; ++number)
    {
        document += " n" + std::to_string(number) + "='" + std::to_string(number) + "'";
    }
    EXPECT_NE("gave up", eventsOf(document + "/>", true));
    EXPECT_EQ("gave up", eventsOf(document + " n50000=''/>", true));
}

} // namespace
