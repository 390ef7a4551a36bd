#pragma once

#include "xmlproxy/XmlArena.h"
#include "xmlproxy/XmlName.h"

#include <cstddef>
#include <deque>
#include <string_view>
#include <unordered_map>

/// What one parsed tree is made of: the memory of its nodes and attribute tables, and its names,
/// each kept once.
///
/// Ownership: owned by the builder until the tree is finished, then by the tree's root, whose
/// deletion deletes it. Nodes and tables in it are not destroyed one by one.
/// Threads: one at a time while the tree is built; nothing changes afterwards.
/// Tested by: tests/common/xmlproxy/XmlTreeMemoryTest.cpp
class XmlTreeMemory
{
public:
    XmlTreeMemory() = default;
    XmlTreeMemory(const XmlTreeMemory&) = delete;
    XmlTreeMemory& operator=(const XmlTreeMemory&) = delete;

    /// Nodes lie apart from the tables: most walks read nodes only.
    void* allocateNode(std::size_t i_Bytes) { return m_Nodes.allocate(i_Bytes); }
    void* allocateTable(std::size_t i_Bytes) { return m_Tables.allocate(i_Bytes); }

    /// The one name of this text (null-terminated), with which a start tag begins.
    const XmlName& startTag(const char16_t* i_pText);
    /// The one name of this text (null-terminated), as the next attribute of the start tag that was
    /// begun last; null when that has it already.
    const XmlName* addAttribute(const char16_t* i_pText);
    /// The one name of this text; quick for the text of the name that `startTag` gave last.
    const XmlName& nameOf(const String& i_Text);

    /// Something on the heap belongs to the tree as well.
    void setHasOthers() noexcept { m_HasOthers = true; }
    bool hasOthers() const noexcept { return m_HasOthers; }

private:
    /// Documents repeat themselves: the name that followed this one the last time mostly does again.
    struct Record
    {
        Record(const String& i_Text, XmlTreeMemory* i_pMemory) : name(i_Text, i_pMemory) {}

        XmlName name;
        Record* pFollower = nullptr;
        std::size_t tag = 0; ///< number of the last start tag with this attribute
    };

    Record* next(const char16_t* i_pText);
    template <typename Unit>
    Record* find(std::basic_string_view<Unit> i_Text, std::size_t i_Hash) noexcept;
    Record* add(const String& i_Text);

    XmlArena m_Nodes;
    XmlArena m_Tables;
    std::deque<Record> m_Records;
    std::unordered_multimap<std::size_t, Record*> m_ByHash;
    Record* m_pLast = nullptr; ///< the name that was read last
    Record* m_pTag = nullptr;  ///< the name of the last start tag
    std::size_t m_Tags = 0;    ///< start tags so far
    bool m_HasOthers = false;
};
