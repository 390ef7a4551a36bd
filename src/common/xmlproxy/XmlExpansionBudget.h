#pragma once

#include "base/String.h"
#include "xmlproxy/XmlParseEnd.h"

#include <xercesc/util/XercesDefs.hpp>

#include <algorithm>
#include <cstddef>

namespace XERCES_CPP_NAMESPACE
{
class ReaderMgr;
class XMLEntityDecl;
} // namespace XERCES_CPP_NAMESPACE

/// Bounds what the entities and default values of one document may add to it.
///
/// The parser library does not report the expansion of parameter entities, or of entities in default values. But each
/// expansion has its own reader and allocates memory. So the memory of the parse makes this class look at the current
/// reader on every allocation and deallocation.
///
/// The limit is eight times the part of the document that has been read, and at least the number given to the parser.
/// Everything is counted in bytes:
///   - a unit of replacement text or of a default value, or a byte of an external entity: 1;
///   - a reference in the document itself: 16;
///   - a reference in an entity: 128, plus 16 per entity that is open around that one, because the library compares a
///     new entity with all open ones;
///   - an element that comes from an entity: 32, plus 16 per attribute;
///   - an attribute that comes from a default value: 16.
///
/// Ownership: owns nothing. What it watches must outlive the watch.
/// Threads: one at a time; serves one parse.
/// Tested by: tests/common/xmlproxy/ExpansionTest.cpp
class XmlExpansionBudget
{
public:
    static constexpr std::size_t s_Factor = 8; ///< times the document
    /// Once the budget is exceeded, the library gets no piece of memory of this size or larger. It needs smaller pieces
    /// to clean up; every expansion needs a larger one.
    static constexpr std::size_t s_LargePiece = std::size_t{32} << 10;

    /// \p i_Least: the number of bytes that may be added to a small document.
    explicit XmlExpansionBudget(std::size_t i_Least) noexcept : m_Least(i_Least) {}
    XmlExpansionBudget(const XmlExpansionBudget&) = delete;
    XmlExpansionBudget& operator=(const XmlExpansionBudget&) = delete;

    /// Sets the readers for `look`; null for none.
    void watch(const xercesc::ReaderMgr* i_pReaders) noexcept { m_pReaders = i_pReaders; }
    /// Charges the entity of the current reader, unless it was charged before.
    void look() noexcept;

    /// Reports that more bytes of the document have been read.
    void addDocument(std::size_t i_Bytes) noexcept { m_Document = sum(m_Document, i_Bytes); }
    /// Charges bytes of the external entity with this system identifier. Throws `XmlParseEnd` if the budget is
    /// exceeded.
    void chargeExternal(const XMLCh* i_pSystemId, std::size_t i_Bytes);
    /// Charges an element with this number of attributes, of which \p i_Defaults have a default value, \p
    /// i_DefaultUnits units in total. Throws `XmlParseEnd` if the budget is exceeded.
    void chargeElement(const XMLCh* i_pName, std::size_t i_Attributes, std::size_t i_Defaults,
                       std::size_t i_DefaultUnits);
    void throwIfExceeded() const
    {
        if (m_IsExceeded)
        {
            throw XmlParseEnd();
        }
    }

    bool isExceeded() const noexcept { return m_IsExceeded; }
    std::size_t limit() const noexcept
    {
        return std::max(m_Least, m_Document > s_Most / s_Factor ? s_Most : m_Document * s_Factor);
    }
    std::size_t spent() const noexcept { return m_Spent; }
    /// What exceeded the limit, for a message; empty before that.
    String message() const;
    /// The line of the document or external entity where that happened; 0 before that.
    int line() const noexcept { return m_Line; }

private:
    enum class Payer
    {
        Entity,
        ExternalEntity,
        Element
    };

    static constexpr std::size_t s_Most = static_cast<std::size_t>(-1);
    static constexpr std::size_t s_NameUnits = 64;

    static std::size_t sum(std::size_t i_Left, std::size_t i_Right) noexcept
    {
        return i_Left > s_Most - i_Right ? s_Most : i_Left + i_Right;
    }
    void charge(std::size_t i_Bytes, Payer i_Payer, const XMLCh* i_pName) noexcept;
    void chargeReference(const xercesc::XMLEntityDecl& i_Entity) noexcept;

    const xercesc::ReaderMgr* m_pReaders = nullptr;
    std::size_t m_LastReader = 0; ///< readers are numbered in the order of their creation
    std::size_t m_Least;
    std::size_t m_Document = 0;
    std::size_t m_Spent = 0;
    bool m_IsExceeded = false;
    Payer m_Payer = Payer::Entity;      ///< what exceeded the limit
    XMLCh m_Name[s_NameUnits + 1] = {}; ///< its name, or the beginning of its name
    int m_Line = 0;
};
