#pragma once

#include "xmlproxy/PackedAttributes.h"
#include "xmlproxy/XmlTreeMemory.h"
#include "xmlproxy/plain/PlainInput.h"
#include "xmlproxy/plain/PlainText.h"

#include <cstddef>
#include <span>
#include <vector>

/// Reads one start tag or empty-element tag at a time: its name and its attributes.
///
/// An ASCII value that needs no change is not copied but stays in the input. So the whole tag must be in the input.
///
/// Ownership: the input is not owned. Names belong to the memory in which they were looked up. Values are valid until
/// the next tag, or until the input reads on.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/plain/PlainParserTest.cpp
class PlainStartTag
{
public:
    explicit PlainStartTag(PlainInput& io_Input) noexcept : m_Input(io_Input) {}
    PlainStartTag(const PlainStartTag&) = delete;
    PlainStartTag& operator=(const PlainStartTag&) = delete;

    /// Reads the tag at \p i_pTag, which must point to "<". Returns the place after its ">" and advances \p io_Line.
    /// Returns null, and does not change \p io_Line, if this is not a start tag or must be left to the parser library.
    /// \p i_IsAscii: only ASCII characters are allowed.
    const char* read(const char* i_pTag, PlainInput::Line& io_Line, XmlTreeMemory& io_Names, bool i_IsAscii);

    // About the last tag.
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
    const char* m_pStop = nullptr; ///< where it could not continue
    const XmlTreeMemory::Entry* m_pName = nullptr;
    std::vector<PackedAttributes::Source> m_Attributes;
    std::vector<std::size_t> m_Unusual; ///< indices of attributes whose values must be decoded
    std::vector<char16_t> m_Units;      ///< the decoded values
    bool m_IsEmptyElement = false;
    bool m_IsAscii = false;
};
