"""Documents that every reader of XML must either read or refuse, with the answer that the language demands.

The language is XML 1.0, fifth edition; documents that declare version 1.1 follow that one. One row per document:

    GOOD       name, bytes, expression, values that the expression selects, in document order
    MALFORMED  name, bytes; the language demands that a reader reports a fatal error

A text stands for its UTF-8 bytes.
"""

A = "//*/@a"


def encoded(encoding, text):
    """The text in an encoding, below a declaration that names it."""
    return f"<?xml version='1.0' encoding='{encoding}'?>{text}".encode(encoding)


def utf16(order, text):
    """UTF-16 with a byte order mark."""
    return ("\ufeff" + text).encode("utf-16-" + order)


def deep(levels):
    return "<b>" * levels + "<c a='1'/>" + "</b>" * levels


def entities_doubled(levels):
    """Each entity holds the one before twice."""
    doubled = "".join(f"<!ENTITY e{i} '&e{i - 1};&e{i - 1};'>" for i in range(1, levels + 1))
    return f"<!DOCTYPE r [<!ENTITY e0 'x'>{doubled}]><r a='&e{levels};'/>"


# What xmlvalue gets wrong. It takes these documents for well-formed, or for empty, because its parser library does.
KNOWN = {
    "utf16_half_a_character",  # the odd byte at the end is passed over
    "utf16_lone_surrogate",  # accepted in a value, refused in text
    "utf8_bad_in_declaration",  # the library gives up without an error: no values, status 1
    "utf8_declared_as_utf16",  # the declaration is passed over
}

GOOD = [
    # Tags and attributes
    ("empty_element", "<r a='1'/>", A, ["1"]),
    ("start_and_end_tag", "<r a='1'></r>", A, ["1"]),
    ("document_order", "<r a='1'><b a='2'><c a='3'/></b><b a='4'/></r>", A, ["1", "2", "3", "4"]),
    ("both_quotes", "<r a='1'><b a=\"2\"/></r>", A, ["1", "2"]),
    ("other_quote_in_value", "<r a='\"'><b a=\"'\"/></r>", A, ['"', "'"]),
    ("space_in_tags", "<r\n\ta = '1'\r\n></r\t\n>", A, ["1"]),
    ("space_around_the_root", "\r\n\t <r a='1'/> \t\r\n", A, ["1"]),
    ("empty_value", "<r a=''><b a='1'/></r>", A, ["", "1"]),
    ("greater_in_value", "<r a='1 > 0'/>", A, ["1 > 0"]),
    ("section_end_in_value", "<r a=']]>'/>", A, ["]]>"]),
    ("names_by_case", "<r a='1' A='2'/>", "/r/@A", ["2"]),
    ("nested_200_levels", "<r>" + deep(200) + "</r>", A, ["1"]),
    ("1000_attributes", "<r " + " ".join(f"n{i}='{i}'" for i in range(1000)) + "/>", "/r/@n999", ["999"]),
    ("value_of_100000_characters", "<r a='" + "x" * 100000 + "'/>", A, ["x" * 100000]),
    ("namespaces", "<p:r xmlns:p='urn:p' a='1'><p:b a='2'/></p:r>", A, ["1", "2"]),
    # Encodings
    ("utf8", "<r a='\u00e9\u20ac\U0001f600'/>", A, ["\u00e9\u20ac\U0001f600"]),
    ("utf8_mark", "\ufeff<r a='\u00e9'/>", A, ["\u00e9"]),
    ("utf8_declaration", encoded("UTF-8", "<r a='\u00e9'/>"), A, ["\u00e9"]),
    ("utf8_mark_and_declaration", b"\xef\xbb\xbf" + encoded("UTF-8", "<r a='\u00e9'/>"), A, ["\u00e9"]),
    ("utf8_declared_in_small_letters", encoded("utf-8", "<r a='\u00e9'/>"), A, ["\u00e9"]),
    ("utf16_little", utf16("le", "<r a='\u00e9\u20ac'/>"), A, ["\u00e9\u20ac"]),
    ("utf16_big", utf16("be", "<r a='\u00e9\u20ac'/>"), A, ["\u00e9\u20ac"]),
    ("utf16_little_declared", utf16("le", "<?xml version='1.0' encoding='UTF-16'?><r a='\u00e9'/>"), A, ["\u00e9"]),
    ("utf16_big_declared", utf16("be", "<?xml version='1.0' encoding='UTF-16'?><r a='\u00e9'/>"), A, ["\u00e9"]),
    ("utf16_little_without_mark", encoded("UTF-16LE", "<r a='\u00e9'/>"), A, ["\u00e9"]),
    ("utf16_big_without_mark", encoded("UTF-16BE", "<r a='\u00e9'/>"), A, ["\u00e9"]),
    ("utf16_pair", utf16("le", "<r a='\U0001f600'/>"), A, ["\U0001f600"]),
    ("iso_8859_1", encoded("ISO-8859-1", "<r a='\u00e9\u00ff'/>"), A, ["\u00e9\u00ff"]),
    ("iso_8859_1_in_small_letters", encoded("iso-8859-1", "<r a='\u00e9'/>"), A, ["\u00e9"]),
    ("iso_8859_2", encoded("ISO-8859-2", "<r a='\u0159'/>"), A, ["\u0159"]),
    ("iso_8859_15", encoded("ISO-8859-15", "<r a='\u20ac'/>"), A, ["\u20ac"]),
    ("windows_1252", encoded("windows-1252", "<r a='\u20ac\u201c\u201d'/>"), A, ["\u20ac\u201c\u201d"]),
    ("windows_1251", encoded("windows-1251", "<r a='\u043a\u043b\u044e\u0447'/>"), A, ["\u043a\u043b\u044e\u0447"]),
    ("koi8_r", encoded("KOI8-R", "<r a='\u043a\u043b\u044e\u0447'/>"), A, ["\u043a\u043b\u044e\u0447"]),
    ("shift_jis", encoded("Shift_JIS", "<r a='\u6587\u5b57'/>"), A, ["\u6587\u5b57"]),
    ("euc_jp", encoded("EUC-JP", "<r a='\u6587\u5b57'/>"), A, ["\u6587\u5b57"]),
    ("us_ascii", encoded("US-ASCII", "<r a='1&#233;'/>"), A, ["1\u00e9"]),
    # References
    ("decimal_reference", "<r a='&#65;&#233;'/>", A, ["A\u00e9"]),
    ("hexadecimal_reference", "<r a='&#x41;&#xe9;&#xE9;'/>", A, ["A\u00e9\u00e9"]),
    ("reference_with_zeros", "<r a='&#0000000065;'/>", A, ["A"]),
    ("reference_beyond_the_basic_plane", "<r a='&#x1F600;&#x10FFFF;'/>", A, ["\U0001f600\U0010ffff"]),
    ("five_entities", "<r a='&lt;&gt;&amp;&apos;&quot;'/>", A, ["<>&'\""]),
    ("reference_that_makes_no_entity", "<r a='&#38;lt;'/>", A, ["&lt;"]),
    # Normalisation of values and line ends
    ("tab_and_line_ends_in_value", "<r a='1\t2\n3\r\n4\r5'/>", A, ["1 2 3 4 5"]),
    ("spaces_in_value_stay", "<r a='  1   2  '/>", A, ["  1   2  "]),
    ("white_space_by_reference", "<r a='1&#9;2&#10;3&#13;4'/>", A, ["1\t2\n3\r4"]),
    ("crlf_line_ends", "<r a='1'>\r\n<b\r\na='2'/>\r\n</r>\r\n", A, ["1", "2"]),
    ("cr_line_ends", "<r a='1'>\r<b\ra='2'/>\r</r>\r", A, ["1", "2"]),
    ("tokens", "<!DOCTYPE r [<!ATTLIST r a NMTOKENS #IMPLIED>]><r a=' \n x  y\t z '/>", A, ["x y z"]),
    ("enumeration", "<!DOCTYPE r [<!ATTLIST r a (x|y) 'y'>]><r a=' x '/>", A, ["x"]),
    ("white_space_of_entities", "<!DOCTYPE r [<!ENTITY d '&#xD;'><!ENTITY n '&#xA;'><!ENTITY dn '&#xD;&#xA;'>]>"
     "<r a='&d;&d;A&n;&#x20;&n;B&dn;'/>", A, ["  A   B  "]),
    # Default values
    ("default_value", "<!DOCTYPE r [<!ATTLIST r a CDATA 'd'>]><r/>", A, ["d"]),
    ("default_value_replaced", "<!DOCTYPE r [<!ATTLIST r a CDATA 'd'>]><r a='1'/>", A, ["1"]),
    ("fixed_value", "<!DOCTYPE r [<!ATTLIST b a CDATA #FIXED 'f'>]><r><b/><b/></r>", A, ["f", "f"]),
    ("default_value_with_entity", "<!DOCTYPE r [<!ENTITY e '1'><!ATTLIST r a CDATA '&e;&e;'>]><r/>", A, ["11"]),
    ("first_default_value_counts", "<!DOCTYPE r [<!ATTLIST r a CDATA '1'><!ATTLIST r a CDATA '2'>]><r/>", A, ["1"]),
    ("default_value_by_parameter_entity",
     "<!DOCTYPE r [<!ENTITY % p '<!ATTLIST r a CDATA \"d\">'>%p;]><r/>", A, ["d"]),
    # Entities
    ("entity_in_value", "<!DOCTYPE r [<!ENTITY e 'text'>]><r a='(&e;)'/>", A, ["(text)"]),
    ("entities_nested", "<!DOCTYPE r [<!ENTITY e '1&f;2'><!ENTITY f '(&g;)'><!ENTITY g '&#51;'>]><r a='&e;'/>", A,
     ["1(3)2"]),
    ("first_entity_counts", "<!DOCTYPE r [<!ENTITY e '1'><!ENTITY e '2'>]><r a='&e;'/>", A, ["1"]),
    ("entity_with_quotes", "<!DOCTYPE r [<!ENTITY e '\"&#39;'>]><r a='&e;' b='1'/>", A, ["\"'"]),
    ("entity_with_escaped_less", "<!DOCTYPE r [<!ENTITY e '&#38;#60;'>]><r a='&e;'/>", A, ["<"]),
    ("entity_with_ampersand", "<!DOCTYPE r [<!ENTITY e '&#38;#38;'>]><r a='&e;'/>", A, ["&"]),
    ("entity_with_elements", "<!DOCTYPE r [<!ENTITY e '<b a=\"1\"/>'>]><r>&e;&e;</r>", A, ["1", "1"]),
    ("entity_with_elements_nested", "<!DOCTYPE r [<!ENTITY e '<b>&f;</b>'><!ENTITY f '<c a=\"&g;\"/>'>"
     "<!ENTITY g '1'>]><r>&e;</r>", A, ["1"]),
    ("five_entities_declared", "<!DOCTYPE r [<!ENTITY lt '&#38;#60;'><!ENTITY gt '&#62;'>]><r a='&lt;&gt;'/>", A,
     ["<>"]),
    ("entity_of_parameter_entity", "<!DOCTYPE r [<!ENTITY % p '&#37;q;'><!ENTITY % q '&#60;!ENTITY e \"1\">'>%p;]>"
     "<r a='&e;'/>", A, ["1"]),
    ("entities_doubled_4_times", entities_doubled(4), A, ["x" * 16]),
    # What is passed over
    ("section", "<r><![CDATA[<b a='0'/>&e;]]]]><![CDATA[>]]><c a='1'/></r>", A, ["1"]),
    ("comments", "<!-- <r> --><r a='1'><!----><!-- - -><b a='0'/> --><b a='2'/></r><!-- & -->", A, ["1", "2"]),
    ("instructions", "<?p <?><r a='1'><?xml-stylesheet a='0'?><?q?><b a='2'/></r><?p & ?>", A, ["1", "2"]),
    ("text", "<r a='1'>a='0' ' \" > ]] &amp; &#60;b/><b a='2'/></r>", A, ["1", "2"]),
    ("document_type", "<!DOCTYPE r [<!-- ]> --><?p ]> ?><!ELEMENT r ANY><!NOTATION n SYSTEM ']>'>]><r a='1'/>", A,
     ["1"]),
    ("invalid_but_well_formed", "<!DOCTYPE x [<!ELEMENT r EMPTY>]><r a='1'><b a='2'/></r>", A, ["1", "2"]),
    ("declaration_in_full", "<?xml version=\"1.0\" encoding='UTF-8' standalone = \"yes\" ?>\n<r a='1'/>", A, ["1"]),
    # Names
    ("names_of_latin_letters", "<\u00e9l\u00e9ment \u00e9='1'/>", "/*/@*", ["1"]),
    ("names_of_cyrillic_letters", "<\u043a\u043b\u044e\u0447 \u0438\u043c\u044f='1'/>",
     "/*/@*", ["1"]),
    ("names_of_ideographs", "<\u6587\u5b57 \u540d='1'/>", "/*/@*", ["1"]),
    ("names_with_marks", "<_r.b-c1 a='1'/>", "/*/@a", ["1"]),
    ("names_beyond_the_basic_plane", "<r><\U00010400 a='1'/></r>", A, ["1"]),
    ("names_of_the_fifth_edition", "<r><\u0660\u1200\u2c00 a='1'/></r>", A, ["1"]),
    # XML 1.1
    ("version_1_1", "<?xml version='1.1'?><r a='1'/>", A, ["1"]),
    ("version_1_1_control_character", "<?xml version='1.1'?><r a='&#1;'/>", A, ["\x01"]),
    ("version_1_1_line_ends", "<?xml version='1.1'?><r a='1\u00852\u20283'/>", A, ["1 2 3"]),
    ("version_1_1_names", "<?xml version='1.1'?><r><\u0660 a='1'/></r>", A, ["1"]),
]

MALFORMED = [
    # Tags
    ("empty_file", ""),
    ("only_white_space", " \r\n"),
    ("only_declaration", "<?xml version='1.0'?>"),
    ("only_text", "a='1'"),
    ("only_comment", "<!-- <r a='1'/> -->"),
    ("element_not_closed", "<r a='1'><b/>"),
    ("start_tag_not_closed", "<r a='1'"),
    ("end_tag_not_closed", "<r a='1'></r"),
    ("end_tag_of_other_name", "<r a='1'></s>"),
    ("end_tag_of_other_case", "<r a='1'></R>"),
    ("end_tags_crossed", "<r a='1'><b><c></b></c></r>"),
    ("end_tag_without_start", "<r a='1'/></r>"),
    ("end_tag_with_attribute", "<r a='1'></r a='1'>"),
    ("two_roots", "<r a='1'/><r a='1'/>"),
    ("text_before_the_root", "x<r a='1'/>"),
    ("text_after_the_root", "<r a='1'/>x"),
    ("reference_after_the_root", "<r a='1'/>&#32;"),
    ("section_after_the_root", "<r a='1'/><![CDATA[]]>"),
    ("space_before_the_name", "< r a='1'/>"),
    ("space_within_empty_tag_end", "<r a='1'/ >"),
    ("bare_less_in_text", "<r a='1'>1 < 2</r>"),
    ("name_begins_with_digit", "<1r a='1'/>"),
    ("name_begins_with_dash", "<r a='1'><-b/></r>"),
    ("name_with_bad_character", "<r a='1'><b+c/></r>"),
    # Attributes
    ("attribute_twice", "<r a='1' a='2'/>"),
    ("attribute_twice_among_many", "<r " + " ".join(f"n{i}=''" for i in range(100)) + " n7='' a='1'/>"),
    ("less_in_value", "<r a='<'/>"),
    ("ampersand_in_value", "<r a='1 & 2'/>"),
    ("value_without_quotes", "<r a=1/>"),
    ("value_with_mixed_quotes", "<r a='1\"/>"),
    ("value_not_closed", "<r a='1/>"),
    ("attribute_without_value", "<r a='1' b/>"),
    ("attribute_without_name", "<r a='1' ='2'/>"),
    ("no_space_between_attributes", "<r a='1'b='2'/>"),
    ("no_equals_sign", "<r a '1'/>"),
    # Characters and references
    ("reference_to_null", "<r a='&#0;'/>"),
    ("reference_to_control_character", "<r a='&#1;'/>"),
    ("reference_to_surrogate", "<r a='&#xD800;'/>"),
    ("reference_to_non_character", "<r a='&#xFFFF;'/>"),
    ("reference_beyond_the_last_character", "<r a='&#x110000;'/>"),
    ("reference_beyond_32_bits", "<r a='&#4294967361;'/>"),
    ("reference_without_digits", "<r a='&#;'/>"),
    ("reference_with_other_digits", "<r a='&#6A;'/>"),
    ("reference_with_capital_x", "<r a='&#X41;'/>"),
    ("reference_without_end", "<r a='&#65 '/>"),
    ("reference_with_space", "<r a='& #65;'/>"),
    ("null_in_text", "<r a='1'>\0</r>"),
    ("control_character_in_text", "<r a='1'>\x01</r>"),
    ("control_character_in_value", "<r a='\x1f'/>"),
    ("control_character_in_comment", "<r a='1'><!-- \x02 --></r>"),
    ("form_feed_between_attributes", "<r a='1'\fb='2'/>"),
    ("non_character_in_text", "<r a='1'>\uffff</r>"),
    ("section_end_in_text", "<r a='1'>]]></r>"),
    # Encodings
    ("utf8_byte_of_no_character", b"<r a='\xff'/>"),
    ("utf8_lone_continuation", b"<r a='\x80'/>"),
    ("utf8_cut_short", b"<r a='\xe2\x82'/>"),
    ("utf8_too_long", b"<r a='\xc0\xaf'/>"),
    ("utf8_surrogate", b"<r a='\xed\xa0\x80'/>"),
    ("utf8_beyond_the_last_character", b"<r a='\xf4\x90\x80\x80'/>"),
    ("utf8_bad_in_text", b"<r a='1'>\xe9</r>"),
    ("utf8_bad_in_comment", b"<r a='1'><!-- \xe9 --></r>"),
    ("utf8_bad_in_name", b"<r a='1'><b\xe9/></r>"),
    ("utf8_bad_in_declaration", b"<?xml version='1.0' \xff?><r a='1'/>"),
    ("utf16_lone_surrogate", b"\xff\xfe" + "<r a='".encode("utf-16-le") + b"\x00\xd8" + "'/>".encode("utf-16-le")),
    ("utf16_half_a_character", b"\xff\xfe" + "<r a='1'/>".encode("utf-16-le") + b"<"),
    ("us_ascii_with_other_byte", b"<?xml version='1.0' encoding='US-ASCII'?><r a='\xe9'/>"),
    ("utf8_declared_as_utf16", "<?xml version='1.0' encoding='UTF-16'?><r a='1'/>"),
    ("unknown_encoding", "<?xml version='1.0' encoding='no-such-encoding'?><r a='1'/>"),
    ("encoding_without_name", "<?xml version='1.0' encoding=''?><r a='1'/>"),
    # The declaration
    ("declaration_after_space", " <?xml version='1.0'?><r a='1'/>"),
    ("declaration_without_version", "<?xml encoding='UTF-8'?><r a='1'/>"),
    ("declaration_of_version_2", "<?xml version='2.0'?><r a='1'/>"),
    ("declaration_in_other_order", "<?xml version='1.0' standalone='yes' encoding='UTF-8'?><r a='1'/>"),
    ("declaration_with_other_attribute", "<?xml version='1.0' a='1'?><r a='1'/>"),
    ("declaration_standalone_maybe", "<?xml version='1.0' standalone='maybe'?><r a='1'/>"),
    ("declaration_in_capitals", "<?XML version='1.0'?><r a='1'/>"),
    ("declaration_not_closed", "<?xml version='1.0'><r a='1'/>"),
    ("declaration_twice", "<?xml version='1.0'?><?xml version='1.0'?><r a='1'/>"),
    # Comments, instructions and sections
    ("comment_with_two_dashes", "<r a='1'><!-- a -- b --></r>"),
    ("comment_with_three_dashes", "<r a='1'><!-- a ---></r>"),
    ("comment_not_closed", "<r a='1'/><!-- "),
    ("comment_within_tag", "<r <!-- --> a='1'/>"),
    ("instruction_named_xml", "<r a='1'><?xml version='1.0'?></r>"),
    ("instruction_named_XmL", "<r a='1'><?XmL x?></r>"),
    ("instruction_without_name", "<r a='1'><? x?></r>"),
    ("instruction_not_closed", "<r a='1'><?p x></r>"),
    ("section_not_closed", "<r a='1'><![CDATA[ ]] ></r>"),
    ("section_in_small_letters", "<r a='1'><![cdata[]]></r>"),
    # The document type and its entities
    ("entity_not_declared_in_value", "<r a='&e;'/>"),
    ("entity_not_declared_in_text", "<r a='1'>&e;</r>"),
    ("entity_declared_too_late", "<!DOCTYPE r [<!ATTLIST r a CDATA '&e;'><!ENTITY e '1'>]><r/>"),
    ("entity_in_itself", "<!DOCTYPE r [<!ENTITY e '&e;'>]><r a='&e;'/>"),
    ("entity_in_itself_by_another", "<!DOCTYPE r [<!ENTITY e '&f;'><!ENTITY f '&e;'>]><r a='1'>&e;</r>"),
    ("entity_with_less_in_value", "<!DOCTYPE r [<!ENTITY e '<'>]><r a='&e;'/>"),
    ("entity_with_half_an_element", "<!DOCTYPE r [<!ENTITY e '<b>'>]><r a='1'>&e;</b></r>"),
    ("entity_with_bare_ampersand", "<!DOCTYPE r [<!ENTITY e '1 & 2'>]><r a='1'/>"),
    ("entity_reference_without_end", "<!DOCTYPE r [<!ENTITY e '1'>]><r a='&e'/>"),
    ("external_entity_in_value", "<!DOCTYPE r [<!ENTITY e SYSTEM 'e.txt'>]><r a='&e;'/>"),
    ("unparsed_entity_in_text",
     "<!DOCTYPE r [<!NOTATION n SYSTEM 'n'><!ENTITY e SYSTEM 'e' NDATA n>]><r a='1'>&e;</r>"),
    ("parameter_entity_within_declaration", "<!DOCTYPE r [<!ENTITY % p 'r'><!ELEMENT %p; ANY>]><r a='1'/>"),
    ("conditional_section_inside", "<!DOCTYPE r [<![INCLUDE[<!ELEMENT r ANY>]]>]><r a='1'/>"),
    ("less_in_default_value", "<!DOCTYPE r [<!ATTLIST r a CDATA '<'>]><r a='1'/>"),
    ("broken_element_declaration", "<!DOCTYPE r [<!ELEMENT r (b>]><r a='1'/>"),
    ("broken_attribute_declaration", "<!DOCTYPE r [<!ATTLIST r a>]><r a='1'/>"),
    ("unknown_declaration", "<!DOCTYPE r [<!THING r>]><r a='1'/>"),
    ("document_type_twice", "<!DOCTYPE r><!DOCTYPE r><r a='1'/>"),
    ("document_type_after_the_root", "<r a='1'/><!DOCTYPE r>"),
    ("document_type_not_closed", "<!DOCTYPE r [<r a='1'/>"),
    # XML 1.1
    ("version_1_1_bare_control_character", "<?xml version='1.1'?><r a='1'>\x01</r>"),
    ("version_1_1_reference_to_null", "<?xml version='1.1'?><r a='&#0;'/>"),
]


def content(document):
    """The bytes of a row's document."""
    return document.encode("utf-8") if isinstance(document, str) else document
