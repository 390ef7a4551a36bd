#include "xmlproxy/plain/PlainDocument.h"

#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/SAXHandler.h"
#include "xmlproxy/XmlText.h"
#include "xmlproxy/plain/PlainSource.h"
#include "xmlproxy/plain/PlainText.h"

#include <algorithm>
#include <string_view>

namespace
{

/// A longer declaration is left to the parser library.
constexpr std::size_t s_LongestDeclaration = 256;

char smallOf(char i_Byte) noexcept
{
    return i_Byte >= 'A' && i_Byte <= 'Z' ? static_cast<char>(i_Byte | 0x20) : i_Byte;
}

bool isSameIgnoringCase(std::string_view i_Left, std::string_view i_Small) noexcept
{
    return std::equal(i_Left.begin(), i_Left.end(), i_Small.begin(), i_Small.end(),
                      [](char i_A, char i_B) { return smallOf(i_A) == i_B; });
}

/// A reader of the pseudo attributes of an XML declaration.
class Declaration
{
public:
    explicit Declaration(std::string_view i_Text) noexcept : m_Rest(i_Text) {}

    /// Reads blanks, \p i_Name, "=" and a quoted value. False, and nothing is read, when there is
    /// something else.
    bool read(std::string_view i_Name, std::string_view& o_Value) noexcept
    {
        Declaration ahead(*this);
        if (!ahead.skipSpaces() || !ahead.skip(i_Name))
        {
            return false;
        }
        ahead.skipSpaces();
        if (!ahead.skip("="))
        {
            return false;
        }
        ahead.skipSpaces();
        if (ahead.m_Rest.empty() || (ahead.m_Rest.front() != '"' && ahead.m_Rest.front() != '\''))
        {
            return false;
        }
        const std::size_t end = ahead.m_Rest.find(ahead.m_Rest.front(), 1);
        if (end == std::string_view::npos)
        {
            return false;
        }
        o_Value = ahead.m_Rest.substr(1, end - 1);
        ahead.m_Rest.remove_prefix(end + 1);
        *this = ahead;
        return true;
    }

    bool isAtEnd() noexcept
    {
        skipSpaces();
        return m_Rest.empty();
    }

private:
    bool skip(std::string_view i_Text) noexcept
    {
        const bool isThere = m_Rest.starts_with(i_Text);
        m_Rest.remove_prefix(isThere ? i_Text.size() : 0);
        return isThere;
    }

    bool skipSpaces() noexcept
    {
        const auto end = std::find_if_not(m_Rest.begin(), m_Rest.end(), PlainText::isSpace);
        const bool isThere = end != m_Rest.begin();
        m_Rest.remove_prefix(static_cast<std::size_t>(end - m_Rest.begin()));
        return isThere;
    }

    std::string_view m_Rest;
};

} // namespace

PlainDocument::PlainDocument(PlainSource& io_Source, std::size_t i_BlockSize, SAXHandler& io_Handler)
    : m_Input(io_Source, i_BlockSize), m_Handler(io_Handler), m_Tag(m_Input)
{
}

bool PlainDocument::read()
{
    const char* pNext = readProlog();
    if (pNext)
    {
        m_Handler.startDocument();
        pNext = readElements(pNext);
    }
    if (pNext)
    {
        pNext = passMiscellaneous(pNext);
    }
    if (!pNext || pNext != m_Input.end() || !m_Input.isComplete())
    {
        return false;
    }
    m_Handler.endDocument();
    return true;
}

/// What stands before the root element, whose "<" is the result.
const char* PlainDocument::readProlog()
{
    const char* pNext = m_Input.end();
    m_Input.provide(pNext, 6);
    m_HasMark = std::string_view(pNext, m_Input.end()).starts_with("\xEF\xBB\xBF");
    if (m_HasMark)
    {
        pNext += 3;
        m_Line.start = 3;
        m_Input.provide(pNext, 6);
    }
    if (std::string_view(pNext, m_Input.end()).starts_with("<?xml "))
    {
        pNext = readDeclaration(pNext);
    }
    pNext = pNext ? passMiscellaneous(pNext) : nullptr;
    return pNext && pNext != m_Input.end() ? pNext : nullptr;
}

/// XMLDecl ::= '<?xml' VersionInfo EncodingDecl? SDDecl? S? '?>'
const char* PlainDocument::readDeclaration(const char* i_pNext)
{
    const char* pNext = i_pNext;
    m_Input.provide(pNext, s_LongestDeclaration);
    const auto available = static_cast<std::size_t>(m_Input.end() - pNext);
    const std::string_view text(pNext, std::min(available, s_LongestDeclaration));
    const std::size_t length = text.find("?>");
    if (length == std::string_view::npos || !isTakenDeclaration(pNext + 5, pNext + length))
    {
        return nullptr;
    }
    const char* const pEnd = pNext + length + 2;
    while (pNext < pEnd)
    {
        pNext = *pNext == '\n' || *pNext == '\r' ? passLineEnd(pNext) : pNext + 1;
    }
    return pEnd;
}

bool PlainDocument::isTakenDeclaration(const char* i_pNext, const char* i_pEnd) noexcept
{
    Declaration declaration({i_pNext, i_pEnd});
    std::string_view value;
    if (!declaration.read("version", value) || value != "1.0")
    {
        return false;
    }
    if (declaration.read("encoding", value))
    {
        // With a byte-order mark the library reads UTF-8, and believes the declaration all the same.
        m_IsAscii = isSameIgnoringCase(value, "us-ascii");
        if (m_IsAscii ? m_HasMark : !isSameIgnoringCase(value, "utf-8"))
        {
            return false;
        }
    }
    if (declaration.read("standalone", value) && value != "yes" && value != "no")
    {
        return false;
    }
    return declaration.isAtEnd();
}

/// element
const char* PlainDocument::readElements(const char* i_pRoot)
{
    const char* pNext = readStartTag(i_pRoot);
    while (pNext && isOpen())
    {
        pNext = passText(pNext);
        pNext = pNext ? readMarkup(pNext) : nullptr;
    }
    return pNext;
}

/// STag | ETag | EmptyElemTag | CDSect | PI | Comment
const char* PlainDocument::readMarkup(const char* i_pNext)
{
    const char* pNext = i_pNext;
    if (!m_Input.provide(pNext, 2))
    {
        return nullptr;
    }
    switch (pNext[1])
    {
    case '/':
        return readEndTag(pNext);
    case '!':
    case '?':
        return readOtherMarkup(pNext);
    default:
        return readStartTag(pNext);
    }
}

/// A table of the tag's attributes, each with the next number of the counter: in the memory of a
/// tree, or on the heap.
std::unique_ptr<AttributeTable> PlainDocument::makeTable(XmlTreeMemory* io_pMemory)
{
    const unsigned first = m_Counter;
    m_Counter += static_cast<unsigned>(m_Tag.attributes().size());
    if (io_pMemory)
    {
        return std::unique_ptr<AttributeTable>(AttributeTable::create(*io_pMemory, m_Tag.attributes(), first));
    }
    auto pTable = std::make_unique<AttributeTable>(1);
    unsigned ordinal = first;
    for (const PackedAttributes::Source& attribute : m_Tag.attributes())
    {
        const String value = attribute.pAscii ? String(attribute.pAscii, attribute.length)
                                              : fromUtf16(attribute.pValue, attribute.length);
        pTable->add(attribute.pName->text(), value, String::valueOf(ordinal++));
    }
    return pTable;
}

/// STag | EmptyElemTag
const char* PlainDocument::readStartTag(const char* i_pNext)
{
    XmlTreeMemory* const pMemory = m_Handler.memory();
    const char* const pAfter = m_Tag.read(i_pNext, m_Line, names(pMemory), m_IsAscii);
    if (!pAfter)
    {
        return nullptr;
    }
    std::unique_ptr<AttributeTable> pTable = makeTable(pMemory);
    const XmlTreeMemory::Entry& name = m_Tag.name();
    const String& text = name.name().text();
    m_Handler.startElement(text, pTable.release(), m_Line.number, m_Input.columnOf(pAfter, m_Line), m_Counter++);
    if (m_Tag.isEmptyElement())
    {
        m_Handler.endElement(text);
    }
    else
    {
        m_Open.push_back(&name);
    }
    return pAfter;
}

/// ETag ::= '</' Name S? '>'
const char* PlainDocument::readEndTag(const char* i_pNext)
{
    const XmlTreeMemory::Entry& name = *m_Open.back();
    const char* pNext = i_pNext;
    const std::size_t length = name.bytes().size();
    if (!m_Input.provide(pNext, 2 + length + 1))
    {
        return nullptr;
    }
    if (!name.shortText().isAt(pNext + 2))
    {
        if (std::string_view(pNext + 2, length) != name.bytes())
        {
            return nullptr;
        }
        m_Line.start += static_cast<std::int64_t>(PlainText::surplusOf(name.bytes()));
    }
    pNext += 2 + length;
    if (*pNext != '>')
    {
        pNext = passSpaces(pNext);
        if (!pNext || *pNext != '>')
        {
            return nullptr;
        }
    }
    m_Open.pop_back();
    m_Handler.endElement(name.name().text());
    return pNext + 1;
}

/// Comment | CDSect | PI
const char* PlainDocument::readOtherMarkup(const char* i_pNext)
{
    constexpr std::string_view comment = "<!--";
    constexpr std::string_view section = "<![CDATA[";
    const char* pNext = i_pNext;
    m_Input.provide(pNext, section.size());
    const std::string_view text(pNext, m_Input.end());
    if (text.starts_with(comment))
    {
        return passComment(pNext + comment.size());
    }
    if (isOpen() && text.starts_with(section))
    {
        return passSection(pNext + section.size());
    }
    return text.starts_with("<?") ? readInstruction(pNext + 2) : nullptr;
}

/// PITarget (S (Char* - (Char* '?>' Char*)))? '?>'
const char* PlainDocument::readInstruction(const char* i_pNext)
{
    const char* pNext = i_pNext;
    std::size_t length = 0;
    do
    {
        while (PlainText::isNameByte(pNext[length]))
        {
            ++length;
        }
    } while (pNext + length == m_Input.end() && m_Input.readMore(pNext));
    const std::string_view target(pNext, length);
    const std::size_t surplus = PlainText::surplusOf(target);
    if (!PlainText::isName(target) || isSameIgnoringCase(target, "xml") || (m_IsAscii && surplus > 0))
    {
        return nullptr;
    }
    m_Line.start += static_cast<std::int64_t>(surplus);
    pNext += length;
    if (PlainText::isSpace(*pNext))
    {
        return passData(pNext);
    }
    return m_Input.provide(pNext, 2) && pNext[0] == '?' && pNext[1] == '>' ? pNext + 2 : nullptr;
}

/// (Char* - (Char* '?>' Char*)) '?>'
const char* PlainDocument::passData(const char* i_pNext)
{
    const char* pNext = i_pNext;
    while (pNext)
    {
        pNext = PlainText::find(pNext, '?');
        if (*pNext != '?')
        {
            pNext = passUnusual(pNext);
            continue;
        }
        if (!m_Input.provide(pNext, 2))
        {
            return nullptr;
        }
        if (pNext[1] == '>')
        {
            return pNext + 2;
        }
        ++pNext;
    }
    return nullptr;
}

/// ((Char - '-') | ('-' (Char - '-')))* '-->'
const char* PlainDocument::passComment(const char* i_pNext)
{
    const char* pNext = i_pNext;
    while (pNext)
    {
        pNext = PlainText::find(pNext, '-');
        if (*pNext != '-')
        {
            pNext = passUnusual(pNext);
            continue;
        }
        if (!m_Input.provide(pNext, 3))
        {
            return nullptr;
        }
        if (pNext[1] == '-')
        {
            return pNext[2] == '>' ? pNext + 3 : nullptr;
        }
        ++pNext;
    }
    return nullptr;
}

/// (Char* - (Char* ']]>' Char*)) ']]>'
const char* PlainDocument::passSection(const char* i_pNext)
{
    const char* pNext = i_pNext;
    while (pNext)
    {
        pNext = PlainText::find(pNext, ']');
        if (*pNext != ']')
        {
            pNext = passUnusual(pNext);
            continue;
        }
        if (!m_Input.provide(pNext, 3))
        {
            return nullptr;
        }
        if (pNext[1] == ']' && pNext[2] == '>')
        {
            return pNext + 3;
        }
        ++pNext;
    }
    return nullptr;
}

/// (CharData | Reference)*, up to a "<".
const char* PlainDocument::passText(const char* i_pNext)
{
    const char* pNext = i_pNext;
    while (pNext)
    {
        pNext = PlainText::find(pNext, '<', '&', ']');
        switch (*pNext)
        {
        case '<':
            return pNext;
        case '&':
            pNext = passReference(pNext);
            break;
        case ']':
            m_Input.provide(pNext, 3);
            pNext = pNext[1] == ']' && pNext[2] == '>' ? nullptr : pNext + 1;
            break;
        default:
            pNext = passUnusual(pNext);
            break;
        }
    }
    return nullptr;
}

/// Reference
const char* PlainDocument::passReference(const char* i_pNext)
{
    const char* pNext = i_pNext;
    m_Input.provide(pNext, PlainText::s_LongestReference);
    const std::size_t length = PlainText::referenceAt(pNext).length;
    return length > 0 ? pNext + length : nullptr;
}

/// (Comment | PI | S)*, up to a start tag or the end of the document.
const char* PlainDocument::passMiscellaneous(const char* i_pNext)
{
    const char* pNext = i_pNext;
    while (pNext)
    {
        pNext = passSpaces(pNext);
        if (pNext == m_Input.end())
        {
            break;
        }
        if (!m_Input.provide(pNext, 2) || pNext[0] != '<')
        {
            return nullptr;
        }
        if (pNext[1] != '!' && pNext[1] != '?')
        {
            break;
        }
        pNext = readOtherMarkup(pNext);
    }
    return pNext;
}

/// S?
const char* PlainDocument::passSpaces(const char* i_pNext)
{
    const char* pNext = i_pNext;
    for (;;)
    {
        while (PlainText::isSpace(*pNext))
        {
            pNext = *pNext == '\n' || *pNext == '\r' ? passLineEnd(pNext) : pNext + 1;
        }
        if (pNext != m_Input.end() || !m_Input.readMore(pNext))
        {
            return pNext;
        }
    }
}

/// Char, where `find` has stopped for its sake, or the end of a block.
const char* PlainDocument::passUnusual(const char* i_pNext)
{
    const char* pNext = i_pNext;
    if (static_cast<signed char>(*pNext) < 0)
    {
        if (m_IsAscii || !m_Input.provide(pNext, PlainText::lengthAt(*pNext)))
        {
            return nullptr;
        }
        const PlainText::Character character = PlainText::characterBeyondAscii(pNext);
        if (character.length == 0)
        {
            return nullptr;
        }
        m_Line.start += static_cast<std::int64_t>(PlainText::surplusOf(character));
        return pNext + character.length;
    }
    switch (*pNext)
    {
    case '\t':
        return pNext + 1;
    case '\n':
    case '\r':
        return passLineEnd(pNext);
    default:
        return pNext == m_Input.end() && m_Input.readMore(pNext) ? pNext : nullptr;
    }
}

/// #xD #xA | #xA | #xD
const char* PlainDocument::passLineEnd(const char* i_pNext)
{
    const char* pNext = i_pNext;
    if (*pNext == '\r')
    {
        m_Input.provide(pNext, 2);
        pNext += pNext[1] == '\n' ? 1 : 0;
    }
    ++pNext;
    ++m_Line.number;
    m_Line.start = m_Input.offsetOf(pNext);
    return pNext;
}
