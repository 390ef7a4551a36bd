#include "Comparison.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>
#include <string_view>

// Documents around every rule of well-formedness. Each row says what the language demands, and that
// the plug-in and the bare parser library agree.

using namespace std::string_view_literals;

namespace
{

enum Verdict
{
    Good,     ///< well-formed: the tree is the document
    Lenient,  ///< ill-formed, and the library takes it nevertheless: the tree is what it made of it
    Bad,      ///< refused with -15103
    Uncounted ///< the library throws before it counts: no tree and no error
};

struct Row
{
    const char* name;
    Verdict verdict;
    std::string_view bytes;
};

void PrintTo(const Row& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

#define UTF16_A "<\0a\0 \0x\0=\0'\0\xE9\0'\0/\0>\0"
#define UTF16BE_A "\0<\0a\0 \0x\0=\0'\0\xE9\0'\0/\0>"

const Row s_Rows[] = {
    // The document
    {"minimal", Good, "<a/>"sv},
    {"start_and_end_tag", Good, "<a></a>"sv},
    {"space_in_tags", Good, "<a\n\t\r ></a \n>"sv},
    {"space_around_the_root", Good, "\n\t <a/>\r\n "sv},
    {"nested", Good, "<a><b><c/></b><b/><c><a/></c></a>"sv},
    {"empty_file", Bad, ""sv},
    {"spaces_only", Bad, "  \n "sv},
    {"declaration_only", Bad, "<?xml version='1.0'?>"sv},
    {"text_only", Bad, "text"sv},
    {"two_roots", Bad, "<a/><b/>"sv},
    {"text_before_the_root", Bad, "text<a/>"sv},
    {"text_behind_the_root", Bad, "<a/>text"sv},
    {"reference_behind_the_root", Bad, "<a/>&#32;"sv},
    {"root_not_closed", Bad, "<a><b/>"sv},
    {"start_tag_not_closed", Bad, "<a"sv},
    {"end_tag_of_nothing", Bad, "<a/></a>"sv},
    {"other_end_tag", Bad, "<a></b>"sv},
    {"end_tag_of_other_case", Bad, "<a></A>"sv},
    {"overlapping", Bad, "<a><b></a></b>"sv},
    {"end_tag_with_attribute", Bad, "<a></a x='1'>"sv},
    {"space_before_the_name", Bad, "< a/>"sv},
    {"space_in_empty_tag_end", Bad, "<a/ >"sv},
    // Attributes
    {"attributes", Good, "<a x='1' y=\"2\" z = '3'/>"sv},
    {"quotes_in_values", Good, "<a x='\"' y=\"'\"/>"sv},
    {"greater_in_value", Good, "<a x='>'/>"sv},
    {"empty_value", Good, "<a x=''/>"sv},
    {"spaces_in_value", Good, "<a x=' 1\t2\n3\r\n4 '/>"sv},
    {"spaces_by_reference_in_value", Good, "<a x='&#9;&#10;&#13;'/>"sv},
    {"less_in_value", Bad, "<a x='<'/>"sv},
    {"ampersand_in_value", Bad, "<a x='&'/>"sv},
    {"same_attribute_twice", Bad, "<a x='1' x='2'/>"sv},
    {"same_attribute_twice_among_many", Bad,
     "<a a='' b='' c='' d='' e='' f='' g='' h='' i='' j='' k='' l='' m='' n='' o='' p='' q='' r='' a=''/>"sv},
    {"attributes_of_other_case", Good, "<a x='1' X='2'/>"sv},
    {"no_value", Bad, "<a x/>"sv},
    {"no_quotes", Bad, "<a x=1/>"sv},
    {"no_space_between_attributes", Bad, "<a x='1'y='2'/>"sv},
    {"value_not_closed", Bad, "<a x='1/>"sv},
    // Names and namespaces, which nobody looks at
    {"name_characters", Good, "<_a.b-c1 \xC3\xA9='1'/>"sv},
    {"name_of_other_letters", Good, "<\xE6\x96\x87\xE5\xAD\x97/>"sv},
    {"name_begins_with_digit", Bad, "<1a/>"sv},
    {"name_begins_with_dash", Bad, "<-a/>"sv},
    {"name_with_sign", Bad, "<a+b/>"sv},
    {"name_above_the_basic_plane", Lenient, "<\xF0\x90\x80\x80/>"sv},
    {"prefix_without_declaration", Good, "<p:a q:x='1'/>"sv},
    {"prefixes", Good, "<p:a xmlns:p='urn:1' xmlns='urn:2'><b p:x='1' x='2'/></p:a>"sv},
    {"same_name_by_two_prefixes", Good, "<a xmlns:p='urn:1' xmlns:q='urn:1' p:x='1' q:x='2'/>"sv},
    {"many_colons", Good, "<a:b:c :x='1'/>"sv},
    // Characters
    {"references", Good, "<a x='&#65;&#x42;&#x63;'>&#x1F600;</a>"sv},
    {"predefined_entities", Good, "<a x='&lt;&gt;&amp;&apos;&quot;'/>"sv},
    {"largest_character", Good, "<a x='&#x10FFFF;'/>"sv},
    {"surrogate_pair", Good, "<a x='\xF0\x9F\x98\x80'/>"sv},
    {"beyond_the_last_character", Bad, "<a x='&#x110000;'/>"sv},
    {"reference_to_null", Bad, "<a x='&#0;'/>"sv},
    {"reference_to_control_character", Bad, "<a x='&#1;'/>"sv},
    {"reference_to_surrogate", Bad, "<a x='&#xD800;'/>"sv},
    {"reference_to_no_character", Bad, "<a x='&#xFFFE;'/>"sv},
    {"reference_without_end", Bad, "<a x='&#65'/>"sv},
    {"reference_without_digits", Bad, "<a x='&#;'/>"sv},
    {"null_in_text", Bad, "<a>\0</a>"sv},
    {"control_character_in_text", Bad, "<a>\x01</a>"sv},
    {"no_character_in_text", Bad, "<a>\xEF\xBF\xBE</a>"sv},
    {"replacement_character_in_text", Good, "<a>\xEF\xBF\xBD</a>"sv},
    {"delete_character_in_text", Good, "<a>\x7F</a>"sv},
    {"line_ends", Good, "<a>\r\n<b/>\r<c/>\n<d/></a>"sv},
    // Comments, instructions and sections
    {"comment", Good, "<!-- a - b --><a><!----></a><!--<b>-->"sv},
    {"comment_with_two_dashes", Bad, "<a><!-- -- --></a>"sv},
    {"comment_with_three_dashes_at_its_end", Bad, "<a><!-- ---></a>"sv},
    {"comment_not_closed", Bad, "<a/><!-- "sv},
    {"instruction", Good, "<?p?><a><?xml-stylesheet <b>?></a><?q  data ? ?>"sv},
    {"instruction_not_closed", Bad, "<a><?p "sv},
    {"instruction_named_xml", Bad, "<a><?xml version='1.0'?></a>"sv},
    {"instruction_named_XML", Bad, "<a><?XML x?></a>"sv},
    {"instruction_without_name", Bad, "<a><? x?></a>"sv},
    {"section", Good, "<a><![CDATA[<b>&]]]]><![CDATA[]]></a>"sv},
    {"section_not_closed", Bad, "<a><![CDATA[ ]] ></a>"sv},
    {"section_outside_of_the_root", Bad, "<a/><![CDATA[]]>"sv},
    {"section_named_otherwise", Bad, "<a><![cdata[]]></a>"sv},
    {"section_end_in_text", Bad, "<a>]]></a>"sv},
    {"brackets_in_text", Good, "<a>]]</a>"sv},
    // The XML declaration
    {"declaration", Good, "<?xml version='1.0' encoding=\"UTF-8\" standalone='yes' ?><a/>"sv},
    {"declaration_behind_space", Bad, " <?xml version='1.0'?><a/>"sv},
    {"declaration_without_version", Bad, "<?xml encoding='UTF-8'?><a/>"sv},
    {"declaration_of_other_version", Bad, "<?xml version='2.0'?><a/>"sv},
    {"declaration_of_version_1_1", Good, "<?xml version='1.1'?><a x='&#1;'/>"sv},
    {"declaration_in_other_order", Bad, "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><a/>"sv},
    {"declaration_with_other_attribute", Bad, "<?xml version='1.0' x='1'?><a/>"sv},
    {"declaration_standalone_perhaps", Bad, "<?xml version='1.0' standalone='perhaps'?><a/>"sv},
    {"declaration_in_capitals", Bad, "<?XML version='1.0'?><a/>"sv},
    // Encodings
    {"utf8_mark", Good, "\xEF\xBB\xBF<a/>"sv},
    {"utf8_mark_and_declaration", Good, "\xEF\xBB\xBF<?xml version='1.0' encoding='UTF-8'?><a x='\xC3\xA9'/>"sv},
    {"utf16_little", Good, "\xFF\xFE" UTF16_A ""sv},
    {"utf16_big", Good, "\xFE\xFF" UTF16BE_A ""sv},
    {"utf16_half_a_character", Lenient, "\xFF\xFE" UTF16_A "<"sv},
    {"utf16_surrogate_pair", Good, "\xFF\xFE<\0a\0>\0\x3D\xD8\x00\xDE<\0/\0a\0>\0"sv},
    {"utf16_lone_surrogate", Bad, "\xFF\xFE<\0a\0>\0\x3D\xD8<\0/\0a\0>\0"sv},
    {"latin1", Good, "<?xml version='1.0' encoding='ISO-8859-1'?><a x='\xE9'/>"sv},
#ifndef _WIN32 // where the system decides which encodings there are
    {"latin9", Good, "<?xml version='1.0' encoding='ISO-8859-15'?><a x='\xA4'/>"sv},
#endif
    {"windows1252", Good, "<?xml version='1.0' encoding='windows-1252'?><a x='\x80'/>"sv},
    {"ascii", Good, "<?xml version='1.0' encoding='US-ASCII'?><a/>"sv},
    {"ascii_with_other_byte", Bad, "<?xml version='1.0' encoding='US-ASCII'?><a x='\xE9'/>"sv},
    {"unknown_encoding", Bad, "<?xml version='1.0' encoding='no-such-encoding'?><a/>"sv},
    {"encoding_without_name", Bad, "<?xml version='1.0' encoding=''?><a/>"sv},
    {"utf8_declared_as_utf16", Lenient, "<?xml version='1.0' encoding='UTF-16'?><a/>"sv},
    {"utf8_wrong_byte", Bad, "<a>\xFF</a>"sv},
    {"utf8_wrong_byte_in_the_first_line", Uncounted, "<?xml version='1.0' \xFF?><a/>"sv},
    {"utf8_too_long", Bad, "<a>\xC0\x80</a>"sv},
    {"utf8_surrogate", Bad, "<a>\xED\xA0\x80</a>"sv},
    {"utf8_lone_continuation", Bad, "<a>\x80</a>"sv},
    {"utf8_cut_short", Bad, "<a>\xC3</a>"sv},
    {"utf8_beyond_the_last_character", Bad, "<a>\xF4\x90\x80\x80</a>"sv},
    // The document type and its entities
    {"doctype", Good, "<!DOCTYPE a><a/>"sv},
    {"doctype_of_other_name", Good, "<!DOCTYPE b><a/>"sv},
    {"doctype_with_external_subset", Good, "<!DOCTYPE a PUBLIC '-//p//' 'missing.dtd'><a/>"sv},
    {"doctype_twice", Bad, "<!DOCTYPE a><!DOCTYPE a><a/>"sv},
    {"doctype_behind_the_root", Bad, "<a/><!DOCTYPE a>"sv},
    {"doctype_not_closed", Bad, "<!DOCTYPE a [<a/>"sv},
    {"subset", Good,
     "<!DOCTYPE a [<!-- c --><?p?><!ELEMENT a (b|c)*><!ATTLIST a x CDATA #IMPLIED><!NOTATION n SYSTEM 'n'>]><a/>"sv},
    {"invalid_but_well_formed", Good, "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b/></a>"sv},
    {"default_values", Good, "<!DOCTYPE a [<!ATTLIST a x CDATA 'd' y CDATA #FIXED 'f'>]><a><a x='1'/></a>"sv},
    {"tokens_in_values", Good, "<!DOCTYPE a [<!ATTLIST a x NMTOKENS #IMPLIED>]><a x='  1   2 '/>"sv},
    {"broken_element_declaration", Bad, "<!DOCTYPE a [<!ELEMENT a (b>]><a/>"sv},
    {"broken_attribute_declaration", Bad, "<!DOCTYPE a [<!ATTLIST a x>]><a/>"sv},
    {"unknown_declaration", Bad, "<!DOCTYPE a [<!NOTHING a>]><a/>"sv},
    {"entity", Good, "<!DOCTYPE a [<!ENTITY e 'text'>]><a x='&e;'>&e;</a>"sv},
    {"entity_of_entities", Good, "<!DOCTYPE a [<!ENTITY e '1&f;2'><!ENTITY f '&#51;'>]><a x='&e;'/>"sv},
    {"entity_with_elements", Good, "<!DOCTYPE a [<!ENTITY e '<b x=\"1\"><c/></b>'>]><a>&e;&e;</a>"sv},
    {"entity_declared_twice", Good, "<!DOCTYPE a [<!ENTITY e '1'><!ENTITY e '2'>]><a x='&e;'/>"sv},
    {"entity_not_declared", Bad, "<a>&e;</a>"sv},
    {"entity_not_declared_in_value", Bad, "<a x='&e;'/>"sv},
    {"entity_in_itself", Bad, "<!DOCTYPE a [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><a>&e;</a>"sv},
    {"entity_in_itself_in_value", Bad, "<!DOCTYPE a [<!ENTITY e '&e;'>]><a x='&e;'/>"sv},
    {"entity_with_half_an_element", Bad, "<!DOCTYPE a [<!ENTITY e '<b>'>]><a>&e;</b></a>"sv},
    {"entity_with_end_of_the_element", Bad, "<!DOCTYPE a [<!ENTITY e '</a>'>]><a>&e;"sv},
    {"entity_with_less_in_value", Bad, "<!DOCTYPE a [<!ENTITY e '&#60;'>]><a x='&e;'/>"sv},
    {"entity_with_bare_ampersand", Bad, "<!DOCTYPE a [<!ENTITY e '&'>]><a/>"sv},
    {"entity_reference_without_end", Bad, "<!DOCTYPE a [<!ENTITY e '1'>]><a>&e</a>"sv},
    {"parameter_entity", Good, "<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"1\">'>%p;]><a x='&e;'/>"sv},
    {"parameter_entity_within_declaration", Bad, "<!DOCTYPE a [<!ENTITY % p 'a'><!ELEMENT %p; ANY>]><a/>"sv},
    {"parameter_entity_in_content", Good, "<!DOCTYPE a [<!ENTITY % p 'x'>]><a>%p;</a>"sv},
    {"unparsed_entity", Bad, "<!DOCTYPE a [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'e' NDATA n>]><a>&e;</a>"sv},
    // External entities: files in the folder of the test
    {"external_entity", Good, "<!DOCTYPE a [<!ENTITY e SYSTEM 'element.ent'>]><a>&e;<c/>&e;</a>"sv},
    {"external_entity_with_declaration", Good, "<!DOCTYPE a [<!ENTITY e SYSTEM 'latin.ent'>]><a>&e;</a>"sv},
    {"external_entity_with_entities", Good,
     "<!DOCTYPE a [<!ENTITY e SYSTEM 'below/two.ent'><!ENTITY f SYSTEM 'below/element.ent'>]><a>&e;</a>"sv},
    {"external_entity_by_parameter", Good,
     "<!DOCTYPE a [<!ENTITY % p SYSTEM 'below/declarations.ent'>%p;]><a>&f;</a>"sv},
    {"external_entity_with_spaces_in_name", Good, "<!DOCTYPE a [<!ENTITY e SYSTEM 'with spaces.ent'>]><a>&e;</a>"sv},
    {"external_entity_with_percent_in_name", Lenient,
     "<!DOCTYPE a [<!ENTITY e SYSTEM 'with%20spaces.ent'>]><a>&e;</a>"sv},
    {"external_entity_above", Good, "<!DOCTYPE a [<!ENTITY e SYSTEM './below/../element.ent'>]><a>&e;</a>"sv},
    {"external_entity_missing", Bad, "<!DOCTYPE a [<!ENTITY e SYSTEM 'missing.ent'>]><a>&e;</a>"sv},
    {"external_entity_missing_and_not_used", Good, "<!DOCTYPE a [<!ENTITY e SYSTEM 'missing.ent'>]><a/>"sv},
    {"external_entity_is_a_folder", Bad, "<!DOCTYPE a [<!ENTITY e SYSTEM 'below'>]><a>&e;</a>"sv},
    {"external_entity_in_value", Bad, "<!DOCTYPE a [<!ENTITY e SYSTEM 'element.ent'>]><a x='&e;'/>"sv},
    {"external_entity_ill_formed", Bad, "<!DOCTYPE a [<!ENTITY e SYSTEM 'broken.ent'>]><a>&e;</a>"sv},
    {"external_entity_of_unknown_kind", Bad, "<!DOCTYPE a [<!ENTITY e SYSTEM 'nothing://x/y'>]><a>&e;</a>"sv},
    {"external_entity_that_is_the_document", Bad, "<!DOCTYPE a [<!ENTITY e SYSTEM 'document.xml'>]><a>&e;</a>"sv},
};

class WellFormedness : public testing::TestWithParam<Row>
{
protected:
    WellFormedness()
    {
        std::filesystem::create_directory(m_Folder.path() / "below");
        m_Folder.write("element.ent", "<b x='1'/>");
        m_Folder.write("with spaces.ent", "<b x='2'/>");
        m_Folder.write("latin.ent", "<?xml encoding='ISO-8859-1'?><b x='\xE9'/>");
        m_Folder.write("broken.ent", "<b>");
        m_Folder.write("below/two.ent", "<d/>&f;");
        m_Folder.write("below/element.ent", "<b x='3'/>");
        m_Folder.write("below/declarations.ent", "<!ENTITY f SYSTEM 'element.ent'>");
    }

    const TemporaryFolder m_Folder;
};

TEST_P(WellFormedness, IsJudgedAsByTheLibrary)
{
    const Comparison comparison = compare(m_Folder.write("document.xml", GetParam().bytes));
    EXPECT_EQ("", comparison.difference);
    EXPECT_EQ(GetParam().verdict == Bad ? -15103 : 0, comparison.code);
    EXPECT_EQ(GetParam().verdict == Good || GetParam().verdict == Lenient, comparison.isWellFormed());
}

INSTANTIATE_TEST_SUITE_P(Rows, WellFormedness, testing::ValuesIn(s_Rows),
                         [](const auto& i_Info) { return i_Info.param.name; });

} // namespace
