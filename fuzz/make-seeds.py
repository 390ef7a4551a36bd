#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets anew, into seeds/ beside this file. Only for whoever changes them."""
import os
import shutil
import struct
import zlib

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "seeds")

EXPRESSIONS = r"""
a
@id
a/@id
//a
//b/@t
/r/a[1]/b
r/a/b[@id='2']/@t
//*
//*//*//*/@id
//@*
..
.
a/../b/@id
a//b|b|//c/@n
//a[1][@n]/@id
//a[last()]/@id
//*[position()=2]
//b[@t='abc' or @id=4]/@id
*/descendant::b/@id
*/a/following::*
*/a/b/preceding::b/@id
*/*/c/ancestor::*/@id
*/*/c/ancestor-or-self::*
*/a/self::a/@id
*/a/parent::*/@id
*/a/preceding-sibling::b
*/b/following-sibling::a
child::a/attribute::id
//a[b]
//b[]
//a[+]
a[b[1]]
//text()
text()()
1 + 2 * 3 - 4 div 5 mod 6
-(--1)
- 5
'- 5' + 1
5.
.5
1e3
99999999999999999999 * 99999999999999999999
0 div 0 = 0 div 0
1 div 0 > -1 div 0
-0
1 < 2 and 3 > 2 and true() or false()
a and b and c
//a/@n = //b/@id
//@n != '1'
//@n <= 2.5
count(//b) >= 3
count(//*) + sum(//@n)
concat('a', "b", 1, //a/@id)
concat('it"s', "it's")
starts-with('abc', 'a')
contains(//b/@t, 'b')
substring('12345', 2, 3)
substring('12345', 0 div 0, 1 div 0)
substring-before('a/b', '/')
substring-after('a/b', '/')
string-length(' pad ')
normalize-space(' a  b ')
normalize-space()
translate('bar', 'abc', 'AB')
local-name(//x:y)
name(//a)
name()
string(//a)
string()
number('5.0')
number()
boolean(//none)
not(//a)
floor(-2.5)
ceiling(2.5)
round(-0.5)
position()
last()
true()
false()
string(number(boolean(not(count(//a)))))
$v + 1
(//a)/@id
(//a)[1]
p:item
p:*
a -b
'a'|'b'|c
processing-instruction('x')
comment()()
namespace::a
descendant-or-self::a
'unclosed
((((((1))))))
()
a//
//[1]
größe | 日本
'😀'
long-name/@n
d_e
endfunction()
""".strip().split("\n")

XML = {
    "plain": b'<r id="r" n="1"><a id="1" n="2.5"><b id="2" t="abc"/></a><b id="4" t="a b"/></r>',
    "declared": b'<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n<r/>\n',
    "version-1.1": b'<?xml version="1.1"?><r a="&#1;&#x85;">\xc2\x85\xe2\x80\xa8</r>',
    "latin-1": b'<?xml version="1.0" encoding="ISO-8859-1"?><gr\xf6\xdfe t="\xe9"/>',
    "utf-16": '\ufeff<?xml version="1.0" encoding="UTF-16"?><r t="\u65e5\U0001f600"/>'.encode("utf-16-le"),
    "utf-16-be": '\ufeff<r t="\u65e5"/>'.encode("utf-16-be"),
    "ebcdic": '<?xml version="1.0" encoding="EBCDIC-CP-US"?><r n="1"/>'.encode("cp037"),
    "byte-order-mark": b'\xef\xbb\xbf<r/>',
    "references": b'<r t="&lt;&gt;&amp;&quot;&apos;&#10;&#9;&#x10FFFF;">&#x41;</r>',
    "sections": b'<?pi x?><!-- c --><r><![CDATA[<a>&]]><!-- d --><?pi y?></r><!-- e -->',
    "internal-subset": b'<!DOCTYPE r [<!ELEMENT r (a|b)*><!ELEMENT a EMPTY><!ATTLIST a n CDATA "1" t (x|y) #IMPLIED>'
                       b'<!ENTITY e "v"><!ENTITY f "&e;&e;"><!NOTATION n PUBLIC "n">]>'
                       b'<r><a t="x"/><a n="&f;"/></r>',
    "parameter-entity": b'<!DOCTYPE r [<!ENTITY % p "<!ENTITY e \'w\'>">%p;]><r t="&e;"/>',
    "entity-with-elements": b'<!DOCTYPE r [<!ENTITY g "<b n=\'1\'/>">]><r>&g;&g;</r>',
    "entity-loop": b'<!DOCTYPE r [<!ENTITY e "&f;"><!ENTITY f "&e;">]><r t="&e;"/>',
    "entity-growth": b'<!DOCTYPE r [<!ENTITY a "0123456789"><!ENTITY b "&a;&a;&a;&a;"><!ENTITY c "&b;&b;&b;&b;">]>'
                     b'<r t="&c;">&c;</r>',
    "external-subset": b'<!DOCTYPE r SYSTEM "none.dtd"><r/>',
    "external-entity": b'<!DOCTYPE r [<!ENTITY s SYSTEM "none">]><r>&s;</r>',
    "unknown-entity": b'<r t="&none;"/>',
    "names": b'<x:y xmlns:x="n" x:a="1" xml:lang="en"><a.b-c_d/><\xe6\x97\xa5/></x:y>',
    "many-attributes": b'<r ' + b' '.join(b'a%d="%d"' % (i, i) for i in range(40)) + b'/>',
    "deep": b'<a>' * 60 + b'</a>' * 60,
    "siblings": b'<r>' + b'<a/>' * 60 + b'</r>',
    "line-ends": b'<r\r\n t="a\r\nb\tc\nd"\r>\r\n<a/>\r</r>\r\n',
    "duplicate-attribute": b'<r a="1" a="2"/>',
    "mismatched": b'<r><a></r>',
    "cut-short": b'<r><a id="1"><b',
    "two-roots": b'<r/><r/>',
    "empty": b'',
    "text": b'no document',
    "bad-utf-8": b'<r t="\xc0\x80\xed\xa0\x80"/>',
    "nul": b'<r>\0</r>',
}

QUERIES = [
    ("//a/@id", "plain"), ("//b/@t", "plain"), ("count(//*)", "siblings"), ("//a//a//a", "deep"),
    ("//a[position()=2]", "siblings"), ("r/@*", "many-attributes"), ("//@*", "internal-subset"),
    ("//b[@n='1']", "entity-with-elements"), ("string(r/@t)", "references"), ("name(*)", "names"),
    ("r/@t", "utf-16"), ("//a[2]/preceding-sibling::*", "siblings"), ("*/b/following::*/@id", "plain"),
    ("//@n = //@id", "plain"), ("sum(//@n) div 2", "plain"), ("//a", "cut-short"), ("//a[", "plain"),
    ("", "plain"), ("//a/..|//b/ancestor::*", "plain"), ("/r/a[@id and @n]/b[1]/@t", "plain"),
    ("//text()", "sections"), ("'x'", "empty"), ("1 div 0", "text"), ("//*[last()]", "deep"),
]


def record(signature, *fields):
    return signature + b"".join(fields)


def member(name, data, method=0, flags=0, crc=None, extra=b"", packed=None, sizes=None):
    if packed is None:
        packed = data
        if method == 8:
            packer = zlib.compressobj(9, zlib.DEFLATED, -15)
            packed = packer.compress(data) + packer.flush()
    crc = zlib.crc32(data) if crc is None else crc
    packed_size, size = sizes or (len(packed), len(data))
    header = struct.pack("<HHHHHIIIHH", 20, flags, method, 0, 0x2100, crc, packed_size, size, len(name), len(extra))
    return name, header, packed, extra


def archive(members, comment=b"", count=None, offset=0, prefix=b""):
    body, directory = prefix, b""
    for name, header, packed, extra in members:
        place = len(body) + offset
        body += b"PK\3\4" + header + name + extra + packed
        directory += b"PK\1\2\x14\0" + header + struct.pack("<HHHII", 0, 0, 0, 0, place) + name + extra
    count = len(members) if count is None else count
    end = struct.pack("<HHHHIIH", 0, 0, count, count, len(directory), len(body) + offset, len(comment))
    return body + directory + b"PK\5\6" + end + comment


def archives():
    xml = XML["plain"]
    sound = member(b"d.xml", xml)
    deflated = member(b"d.xml", xml, 8)
    return {
        "stored": archive([sound]),
        "deflated": archive([deflated]),
        "two-members": archive([deflated, member(b"e.xml", b"<e/>")]),
        "comment": archive([sound], b"a comment"),
        "no-members": archive([]),
        "folder-first": archive([member(b"f/", b""), sound]),
        "empty-member": archive([member(b"d.xml", b"")]),
        "wrong-checksum": archive([member(b"d.xml", xml, crc=1)]),
        "wrong-size": archive([member(b"d.xml", xml, 8, sizes=(len(xml), 5))]),
        "unknown-method": archive([member(b"d.xml", xml, 99, packed=xml)]),
        "bzip2-method": archive([member(b"d.xml", xml, 12, packed=b"BZh9" + xml)]),
        "encrypted": archive([member(b"d.xml", xml, flags=1)]),
        "damaged-data": archive([member(b"d.xml", xml, 8, packed=b"\xff" * 40)]),
        "wrong-count": archive([sound], count=3),
        "wrong-offset": archive([sound], offset=7),
        "extra-field": archive([member(b"d.xml", xml, extra=b"\x01\0\x10\0" + b"\xff" * 16)]),
        "cut-short": archive([deflated])[:-9],
        "prefix": archive([sound], prefix=b"PK\3\4"),
        "zeros": archive([member(b"d.xml", b"<r>" + b" " * 60000 + b"</r>", 8)]),
        "not-xml": archive([member(b"d.txt", b"text", 8)]),
        "nested": archive([member(b"d.zip", archive([sound]))]),
        "made-stored": b"\0\0" + xml,
        "made-deflated": b"\1\0" + xml,
        "made-two-members": b"\2\0" + xml,
        "made-long-name": b"\7\0" + xml,
        "made-damaged": b"\1\1\x40\0\1" + xml,
        "made-damaged-twice": b"\0\2\x0e\0\xff\x12\0\x80" + xml,
    }


def structures():
    return {
        "vector-append": bytes([0, 0] + [2, 3, 0, 1, 2] * 6),
        "vector-insert-remove": bytes([0, 7] + [2, 4, 0, 1, 2, 3, 0, 1, 2, 5, 5, 5, 1, 0] * 5),
        "vector-long": bytes([0, 39, 2, 12, 255] + list(range(200)) + [5, 1, 8, 1, 9, 9]),
        "vector-find-clear": bytes([0, 3, 2, 2, 0, 1, 4, 2, 0, 1, 0, 0, 3, 1, 8, 0, 4, 0, 0]),
        "table-few": bytes([1, 0] + [5, 2, 0, 1, 2, 3, 4, 7] * 4 + [0, 1, 1, 2, 0, 1]),
        "table-many": bytes([1, 15, 3, 29, 3, 29, 2, 29, 9, 9, 1, 0, 5, 5, 0, 0, 0, 1]),
        "table-duplicates": bytes([1, 3] + [5, 1, 0, 1, 1, 1] * 8),
        "tree-flat": bytes([2, 1, 0, 1] + [8, 2, 0, 1, 1, 0] * 6),
        "tree-deep": bytes([2, 1, 0, 1] + [1, 1, 0, 1] * 40),
        "tree-texts": bytes([2, 1, 0, 0, 1, 2, 3, 1, 9] + [200, 3, 8, 9, 10, 1, 1, 2, 0] * 5),
    }


# Choices of productions of a document type.
def dtds():
    value, parameter, reference, model, attribute = 0, 3, 5, 6, 7
    return {
        "nothing": b"",
        "value": bytes([value, 0, 2, 0, 9, 1, 7]),
        "doubling": b"".join(bytes([value, level, 2, 2, level - 1, 2, level - 1, 1]) for level in range(1, 8)) * 3,
        "itself": bytes([value, 0, 1, 2, 0, 1]) * 4,
        "parameters": b"".join(bytes([parameter, level, 2, 2, level - 1, 3, level - 1, 1]) for level in range(1, 6))
                      + bytes([reference, 5, 1]),
        "models": b"".join(bytes([model, n % 3, 2 + n % 4, 4, 1, n % 3, 1, 1, 2, 0, 1, 3, 1]) for n in range(12)),
        "defaults": b"".join(bytes([attribute, n % 3, n % 4, n % 4, 3, 0, 200, 2, n, 1, 9, 1]) for n in range(12)),
        "external": bytes([10, 0, 0, 1, 10, 1, 1, 1]) + bytes([0, 0, 2, 0, 0, 0]),
        "content": bytes([8, 0, 5, 1, 1, 2, 1, 0, 1]) * 6,
        "long": bytes(range(256)) * 2,
    }


# Documents for the parser for plain documents: small, and each with a thing of its own.
PLAIN = {
    "attributes": b'<r a="1" b=\'2\' c = "3"\n d="4"><s a="5" b="6"/><s b="7" a="8"/></r>',
    "ascii": b'<?xml version="1.0" encoding="US-ASCII" ?><r a="1"/>',
    "names-beyond-ascii": '<\u00e4\u00f6 \u0e01="1"><\u65e5/></\u00e4\u00f6>'.encode(),
    "values-beyond-ascii": '<r a="\u00e4\u20ac\U0001f600" b="1"/>'.encode(),
    "text": '<a>text \u00e4\u20ac\U0001f600 ] ]] > &lt;&#65;&#x1F600;<b/></a>'.encode(),
    "line-ends-everywhere": b'\r\n<!--\r\n--><r\r\n a="\r\n"\r>\r<?p\r\nx?>\n<![CDATA[\r]]><s/></r\n>\r\n',
    "quotes": b'<r a="\'" b=\'"\' c="&quot;&apos;"/>',
    "names-of-16": b'<a234567890123456 b23456789012345="1"><a23456789012345/></a234567890123456>',
    "repeated": b'<r><i a="1" b="2"/><i a="3" b="4"/><j a="5"/><i b="6" a="7"/></r>',
    "colons": b'<n:r xmlns:n="u" n:a="1"><n:s/></n:r>',
}


def write(folder, name, data):
    path = os.path.join(FOLDER, folder)
    os.makedirs(path, exist_ok=True)
    with open(os.path.join(path, name), "wb") as file:
        file.write(data)


def main():
    shutil.rmtree(FOLDER, ignore_errors=True)
    for number, text in enumerate(EXPRESSIONS):
        write("expressions", "%03d" % number, text.encode())
    write("expressions", "tab", b"a\t=\n1")
    write("expressions", "utf-16", b"\xff\xfe" + "//a[@t='\u65e5']".encode("utf-16-le") + b"\x00\xd8")
    write("expressions", "many-and", b" and ".join([b"a"] * 9))
    write("expressions", "nested", b"(" * 60 + b"1" + b")" * 60)
    write("expressions", "steps", b"/".join([b"a", b"..", b"*", b"."] * 12))
    for name, data in XML.items():
        write("documents", name, data)
    for name, data in dtds().items():
        write("dtds", name, data)
    for name, data in PLAIN.items():
        write("plain", name, data)
    for name in ["plain", "declared", "byte-order-mark", "references", "sections", "names", "many-attributes", "deep"]:
        write("plain", name, XML[name])
    for number, (text, name) in enumerate(QUERIES):
        write("queries", "%03d" % number, text.encode() + b"\n" + XML[name])
    for name, data in archives().items():
        write("archives", name, data)
    for name, data in structures().items():
        write("structures", name, data)


if __name__ == "__main__":
    main()
