#include "xmlproxy/plain/PlainStartTag.h"

#include "xmlproxy/plain/PlainText.h"

#include <string_view>

namespace
{

/// The name that is expected, if it is the one at \p i_pName; otherwise null.
XmlTreeMemory::Entry* expectedAt(const XmlTreeMemory& i_Names, const char* i_pName) noexcept
{
    XmlTreeMemory::Entry* const pExpected = i_Names.expected();
    const bool isThere = pExpected && pExpected->shortText().isAt(i_pName) &&
                         !PlainText::isNameByte(i_pName[pExpected->shortText().length()]);
    return isThere ? pExpected : nullptr;
}

const char* findInValue(const char* i_pValue, char i_Quote) noexcept
{
    return i_Quote == '"' ? PlainText::find(i_pValue, '"', '<', '&') : PlainText::find(i_pValue, '\'', '<', '&');
}

} // namespace

const char* PlainStartTag::read(const char* i_pTag, PlainInput::Line& io_Line, XmlTreeMemory& io_Names, bool i_IsAscii)
{
    static_assert(PlainInput::s_Padding >= PlainText::s_LongestReference + PlainText::s_Readable);
    static_assert(PlainInput::s_Padding >= XmlShortText::s_Most);
    m_IsAscii = i_IsAscii;
    const char* pTag = i_pTag;
    for (;;)
    {
        m_Line = io_Line;
        if (const char* pEnd = scan(pTag, io_Names))
        {
            io_Line = m_Line;
            return pEnd;
        }
        // The reason may be that the tag goes on in the next block.
        const bool isCut = m_Input.end() - m_pStop <= static_cast<std::ptrdiff_t>(PlainText::s_LongestReference);
        if (!isCut || !m_Input.readMore(pTag))
        {
            return nullptr;
        }
    }
}

/// A name other than the expected one.
XmlTreeMemory::Entry* PlainStartTag::readOtherName(const char*& io_pNext, XmlTreeMemory& io_Names)
{
    const char* pEnd = io_pNext;
    while (PlainText::isNameByte(*pEnd))
    {
        ++pEnd;
    }
    const std::string_view name(io_pNext, pEnd);
    XmlTreeMemory::Entry* pName = io_Names.find(name);
    const bool isKnown = pName && pName->shortText().length() > 0;
    if (*pEnd == '\0' || (!isKnown && !PlainText::isName(name)))
    {
        stopAt(pEnd);
        return nullptr;
    }
    if (!pName)
    {
        pName = &io_Names.make(name);
    }
    const std::size_t surplus = isKnown ? 0 : PlainText::surplusOf(name);
    if (m_IsAscii && surplus > 0)
    {
        stopAt(pEnd);
        return nullptr;
    }
    m_Line.start += static_cast<std::int64_t>(surplus);
    io_pNext = pEnd;
    return pName;
}

/// The name at \p io_pNext, which moves on; null when the scan stops there.
inline XmlTreeMemory::Entry* PlainStartTag::readName(const char*& io_pNext, XmlTreeMemory& io_Names)
{
    XmlTreeMemory::Entry* const pExpected = expectedAt(io_Names, io_pNext);
    if (!pExpected)
    {
        return readOtherName(io_pNext, io_Names);
    }
    io_pNext += pExpected->shortText().length();
    return pExpected;
}

inline const char* PlainStartTag::scanAttribute(const char* i_pName, XmlTreeMemory& io_Names)
{
    const char* pNext = i_pName;
    XmlTreeMemory::Entry* const pName = readName(pNext, io_Names);
    if (!pName)
    {
        return nullptr;
    }
    pNext = passSpaces(pNext);
    if (*pNext != '=')
    {
        return stopAt(pNext);
    }
    pNext = passSpaces(pNext + 1);
    const char quote = *pNext;
    // A name that the tag has already is left to the parser library, which overlooks some.
    if ((quote != '"' && quote != '\'') || !io_Names.addAttribute(*pName))
    {
        return stopAt(pNext);
    }
    const char* const pValue = pNext + 1;
    const char* pEnd = findInValue(pValue, quote);
    if (*pEnd != quote)
    {
        pEnd = scanUnusualValue(pEnd, quote);
        if (!pEnd)
        {
            return nullptr;
        }
        m_Unusual.push_back(m_Attributes.size());
    }
    m_Attributes.push_back({&pName->name(), nullptr, static_cast<std::size_t>(pEnd - pValue), pValue});
    return pEnd + 1;
}

inline const char* PlainStartTag::scanAttributes(const char* i_pNext, XmlTreeMemory& io_Names)
{
    const char* pNext = i_pNext;
    while (pNext)
    {
        if (*pNext == '>')
        {
            m_IsEmptyElement = false;
            return pNext + 1;
        }
        if (*pNext == '/')
        {
            m_IsEmptyElement = true;
            return pNext[1] == '>' ? pNext + 2 : stopAt(pNext + 1);
        }
        if (!PlainText::isSpace(*pNext))
        {
            return stopAt(pNext);
        }
        pNext = passSpaces(pNext);
        if (*pNext != '>' && *pNext != '/')
        {
            pNext = scanAttribute(pNext, io_Names);
        }
    }
    return nullptr;
}

const char* PlainStartTag::scan(const char* i_pTag, XmlTreeMemory& io_Names)
{
    const char* pNext = i_pTag + 1;
    XmlTreeMemory::Entry* const pName = readName(pNext, io_Names);
    if (!pName)
    {
        return nullptr;
    }
    io_Names.startTag(*pName);
    m_pName = pName;
    m_Attributes.clear();
    m_Unusual.clear();
    pNext = scanAttributes(pNext, io_Names);
    if (pNext && !m_Unusual.empty())
    {
        decodeValues();
    }
    return pNext;
}

/// The rest of a value that is not all ASCII, or that must be changed: its closing quote.
const char* PlainStartTag::scanUnusualValue(const char* i_pNext, char i_Quote)
{
    const char* pNext = i_pNext;
    while (*pNext != i_Quote)
    {
        pNext = passInValue(pNext);
        if (!pNext)
        {
            return nullptr;
        }
        pNext = findInValue(pNext, i_Quote);
    }
    return pNext;
}

/// What `find` has stopped at and is not the quote.
const char* PlainStartTag::passInValue(const char* i_pNext)
{
    if (PlainText::isSpace(*i_pNext))
    {
        return *i_pNext == '\t' ? i_pNext + 1 : passLineEnd(i_pNext);
    }
    if (*i_pNext == '&')
    {
        const std::size_t length = PlainText::referenceAt(i_pNext).length;
        return length > 0 ? i_pNext + length : stopAt(i_pNext);
    }
    if (m_IsAscii || static_cast<signed char>(*i_pNext) >= 0)
    {
        return stopAt(i_pNext);
    }
    const PlainText::Character character = PlainText::characterBeyondAscii(i_pNext);
    if (character.length == 0)
    {
        return stopAt(i_pNext);
    }
    m_Line.start += static_cast<std::int64_t>(PlainText::surplusOf(character));
    return i_pNext + character.length;
}

const char* PlainStartTag::passLineEnd(const char* i_pNext)
{
    const char* const pAfter = i_pNext + (i_pNext[0] == '\r' && i_pNext[1] == '\n' ? 2 : 1);
    ++m_Line.number;
    m_Line.start = m_Input.offsetOf(pAfter);
    return pAfter;
}

void PlainStartTag::decodeValues()
{
    std::size_t bytes = 0;
    for (const std::size_t index : m_Unusual)
    {
        bytes += m_Attributes[index].length;
    }
    // No character takes more units than bytes.
    m_Units.resize(bytes);
    char16_t* pUnits = m_Units.data();
    for (const std::size_t index : m_Unusual)
    {
        pUnits = decode(m_Attributes[index], pUnits);
    }
}

char16_t* PlainStartTag::decode(PackedAttributes::Source& io_Attribute, char16_t* o_pUnits) noexcept
{
    char16_t* pUnits = o_pUnits;
    const char* pNext = io_Attribute.pAscii;
    const char* const pEnd = pNext + io_Attribute.length;
    while (pNext < pEnd)
    {
        if (PlainText::isSpace(*pNext))
        {
            pNext += pNext[0] == '\r' && pNext[1] == '\n' ? 2 : 1;
            *pUnits++ = u' ';
            continue;
        }
        const PlainText::Character character =
            *pNext == '&' ? PlainText::referenceAt(pNext) : PlainText::characterAt(pNext);
        PlainText::put(character.code, pUnits);
        pNext += character.length;
    }
    io_Attribute.pValue = o_pUnits;
    io_Attribute.length = static_cast<std::size_t>(pUnits - o_pUnits);
    io_Attribute.pAscii = nullptr;
    return pUnits;
}
