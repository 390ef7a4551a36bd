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

/// What the entities and default values of one document may add to it.
///
/// The parser library expands parameter entities, and entities in default values, without telling
/// anybody. But each expansion reads from a reader of its own, and allocates: so the parse's memory
/// asks this class to look at the current reader whenever it hands something out or takes it back.
///
/// The limit is eight times the document as far as it has been read, and at least what the parser
/// was told. Everything is counted in bytes:
///   - a unit of replacement text or of a default value, a byte of an external entity: 1;
///   - a reference in the document itself: 16; in an entity: 128, and 16 for each entity that is
///     open around that one, because the library compares a new entity with all open ones;
///   - an element that comes out of an entity: 32, and 16 for each of its attributes;
///   - an attribute that comes out of a default value: 16.
///
/// Ownership: nothing is owned; what it watches outlives the watch.
/// Threads: one at a time; serves one parse.
/// Tested by: tests/common/xmlproxy/ExpansionTest.cpp
class XmlExpansionBudget
{
public:
    static constexpr std::size_t s_Factor = 8; ///< times the document
    /// From this size on a piece of the library's memory is refused once the budget is exceeded.
    /// Smaller ones are needed to clean up; every expansion needs a larger one.
    static constexpr std::size_t s_LargePiece = std::size_t{32} << 10;

    /// \p i_Least is what a small document may add.
    explicit XmlExpansionBudget(std::size_t i_Least) noexcept : m_Least(i_Least) {}
    XmlExpansionBudget(const XmlExpansionBudget&) = delete;
    XmlExpansionBudget& operator=(const XmlExpansionBudget&) = delete;

    /// From now on `look` looks at these; null: at nothing.
    void watch(const xercesc::ReaderMgr* i_pReaders) noexcept { m_pReaders = i_pReaders; }
    /// Charges the current reader's entity, unless it was seen before.
    void look() noexcept;

    /// The document is larger by these bytes than was known so far.
    void addDocument(std::size_t i_Bytes) noexcept { m_Document = sum(m_Document, i_Bytes); }
    /// Bytes of the external entity with this system identifier. Throws `XmlParseEnd`.
    void chargeExternal(const XMLCh* i_pSystemId, std::size_t i_Bytes);
    /// An element with these attributes, of which \p i_Defaults have a default value, with
    /// \p i_DefaultUnits units in all. Throws `XmlParseEnd`.
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
    /// What went beyond the limit, for a message; empty before that.
    String message() const;
    /// The line of the document, or of the external entity, where that was; 0 before that.
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
    std::size_t m_LastReader = 0; ///< readers are numbered in the order in which they are made
    std::size_t m_Least;
    std::size_t m_Document = 0;
    std::size_t m_Spent = 0;
    bool m_IsExceeded = false;
    Payer m_Payer = Payer::Entity;      ///< who went beyond the limit
    XMLCh m_Name[s_NameUnits + 1] = {}; ///< its name, or the beginning of that
    int m_Line = 0;
};
