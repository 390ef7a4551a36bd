#pragma once

#include "xmlproxy/PackedAttributes.h"
#include "xmlproxy/XmlTreeMemory.h"
#include "xmlproxy/plain/PlainInput.h"
#include "xmlproxy/plain/PlainText.h"

#include <cstddef>
#include <span>
#include <vector>

/// One start tag or empty-element tag at a time: its name and its attributes.
///
/// A value that is ASCII and needs no change is not copied: it stays in the input. So a tag stands in
/// the input as a whole.
///
/// Ownership: the input is not owned; names belong to the memory that they were looked up in, values
/// are valid until the next tag or reading.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/plain/PlainParserTest.cpp
class PlainStartTag
{
public:
    explicit PlainStartTag(PlainInput& io_Input) noexcept : m_Input(io_Input) {}
    PlainStartTag(const PlainStartTag&) = delete;
    PlainStartTag& operator=(const PlainStartTag&) = delete;

    /// Reads the tag at \p i_pTag, which points to "<". Returns the place after its ">" with
    /// \p io_Line moved on; null when this is no start tag, or none that is taken, which leaves
    /// \p io_Line alone. \p i_IsAscii: no other characters are allowed.
    const char* read(const char* i_pTag, PlainInput::Line& io_Line, XmlTreeMemory& io_Names, bool i_IsAscii);

    // Of the last tag.
    const XmlTreeMemory::Entry& name() const noexcept { return *m_pName; }
    std::span<const PackedAttributes::Source> attributes() const noexcept { return m_Attributes; }
    bool isEmptyElement() const noexcept { return m_IsEmptyElement; }

private:
    const char* scan(const char* i_pTag, XmlTreeMemory& io_Names);
    inline XmlTreeMemory::Entry* readName(const char*& io_pNext, XmlTreeMemory& io_Names);
    XmlTreeMemory::Entry* readOtherName(const char*& io_pNext, XmlTreeMemory& io_Names);
    inline const char* scanAttributes(const char* i_pNext, XmlTreeMemory& io_Names);
    inline const char* scanAttribute(const char* i_pName, XmlTreeMemory& io_Names);
    const char* scanUnusualValue(const char* i_pNext, char i_Quote);
    const char* passInValue(const char* i_pNext);
    const char* passSpaces(const char* i_pNext)
    {
        const char* pNext = i_pNext;
        while (*pNext <= ' ' && PlainText::isSpace(*pNext))
        {
            pNext = *pNext == '\n' || *pNext == '\r' ? passLineEnd(pNext) : pNext + 1;
        }
        return pNext;
    }
    const char* passLineEnd(const char* i_pNext);
    const char* stopAt(const char* i_pPlace) noexcept
    {
        m_pStop = i_pPlace;
        return nullptr;
    }
    void decodeValues();
    char16_t* decode(PackedAttributes::Source& io_Attribute, char16_t* o_pUnits) noexcept;

    PlainInput& m_Input;
    PlainInput::Line m_Line;       ///< where the scan is
    const char* m_pStop = nullptr; ///< where it could not go on
    const XmlTreeMemory::Entry* m_pName = nullptr;
    std::vector<PackedAttributes::Source> m_Attributes;
    std::vector<std::size_t> m_Unusual; ///< those whose values must be decoded
    std::vector<char16_t> m_Units;      ///< the decoded values
    bool m_IsEmptyElement = false;
    bool m_IsAscii = false;
};
