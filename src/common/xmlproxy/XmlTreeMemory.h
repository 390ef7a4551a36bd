#pragma once

#include "xmlproxy/XmlArena.h"
#include "xmlproxy/XmlName.h"
#include "xmlproxy/XmlShortText.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>

/// The storage of one parsed tree: the memory of its nodes and attribute tables, and its names, each stored once.
///
/// Ownership: owned by the builder until the tree is finished, then by the root, whose deletion deletes it. Nodes and
/// tables in it are not destroyed individually.
/// Threads: one at a time while the tree is built. Nothing changes afterwards.
/// Tested by: tests/common/xmlproxy/XmlTreeMemoryTest.cpp
class XmlTreeMemory
{
public:
    /// A name, in the forms by which readers look it up.
    class Entry
    {
    public:
        Entry(const String& i_Text, XmlTreeMemory* i_pMemory)
            : m_Name(i_Text, i_pMemory), m_Bytes(i_Text.toNarrow()), m_ShortText(shortTextOf(i_Text, m_Bytes))
        {
        }

        const XmlName& name() const noexcept { return m_Name; }
        /// The name in UTF-8.
        std::string_view bytes() const noexcept { return m_Bytes; }
        /// The same bytes; matches nowhere if they are too long for it or not ASCII.
        const XmlShortText& shortText() const noexcept { return m_ShortText; }

    private:
        friend class XmlTreeMemory;

        static XmlShortText shortTextOf(const String& i_Text, std::string_view i_Bytes) noexcept
        {
            return XmlShortText(viewOf(i_Text).size() == i_Bytes.size() ? i_Bytes : std::string_view());
        }

        XmlName m_Name;
        std::string m_Bytes;
        XmlShortText m_ShortText;
        Entry* m_pFollower = nullptr;
        std::size_t m_Tag = 0; ///< number of the last start tag with this attribute
    };

    XmlTreeMemory() = default;
    XmlTreeMemory(const XmlTreeMemory&) = delete;
    XmlTreeMemory& operator=(const XmlTreeMemory&) = delete;

    /// Uninitialised memory; throws `std::bad_alloc`. Nodes and tables are kept apart, because most walks read only
    /// nodes.
    void* allocateNode(std::size_t i_Bytes) { return m_Nodes.allocate(i_Bytes); }
    void* allocateTable(std::size_t i_Bytes) { return m_Tables.allocate(i_Bytes); }

    /// Begins a start tag with this text (null-terminated, not null) as its name. Returns the tree's only name with
    /// this text.
    const XmlName& startTag(const char16_t* i_pText) { return begin(next(i_pText)).name(); }
    /// Adds an attribute with this text (null-terminated, not null) as its name to the current start tag. Returns the
    /// tree's only name with this text, or null if the start tag already has such an attribute.
    const XmlName* addAttribute(const char16_t* i_pText)
    {
        const Entry* pEntry = add(next(i_pText));
        return pEntry ? &pEntry->name() : nullptr;
    }

    /// The name that came next the last time; null if there was none.
    Entry* expected() const noexcept { return m_pLast ? m_pLast->m_pFollower : nullptr; }
    /// Returns the tree's only name with this text in UTF-8; null if the tree has none yet.
    Entry* find(std::string_view i_Bytes);
    /// Creates a name that the tree does not have yet, from well-formed UTF-8.
    Entry& make(std::string_view i_Bytes);
    /// Begins a start tag with a name of this tree.
    void startTag(Entry& io_Name) noexcept { begin(follow(&io_Name)); }
    /// Adds the next attribute to that start tag. False if the tag already has it.
    bool addAttribute(Entry& io_Name) noexcept { return add(follow(&io_Name)) != nullptr; }

    /// Returns the tree's only name with this text; fast for the text that `startTag` returned last.
    const XmlName& nameOf(const String& i_Text)
    {
        return m_pTag && &m_pTag->m_Name.text() == &i_Text ? m_pTag->m_Name : lookUp(i_Text);
    }

    /// Records that something on the heap belongs to the tree as well.
    void setHasOthers() noexcept { m_HasOthers = true; }
    bool hasOthers() const noexcept { return m_HasOthers; }
    /// Records that nodes from another memory were added to the tree, which may include text.
    void setMayHaveText() noexcept { m_MayHaveText = true; }
    bool mayHaveText() const noexcept { return m_MayHaveText; }

private:
    Entry& begin(Entry* i_pEntry) noexcept
    {
        m_pTag = i_pEntry;
        ++m_Tags;
        return *i_pEntry;
    }
    Entry* add(Entry* i_pEntry) noexcept
    {
        if (i_pEntry->m_Tag == m_Tags)
        {
            return nullptr;
        }
        i_pEntry->m_Tag = m_Tags;
        return i_pEntry;
    }

    Entry* next(const char16_t* i_pText);
    /// Makes this the last name, and the one that is expected after the previous name, because documents repeat
    /// themselves.
    Entry* follow(Entry* i_pEntry) noexcept
    {
        if (m_pLast)
        {
            m_pLast->m_pFollower = i_pEntry;
        }
        m_pLast = i_pEntry;
        return i_pEntry;
    }
    template <typename Unit>
    Entry* findHashed(std::basic_string_view<Unit> i_Text) noexcept;
    Entry& insert(const String& i_Text);
    const XmlName& lookUp(const String& i_Text);

    XmlArena m_Nodes;
    XmlArena m_Tables;
    std::deque<Entry> m_Entries;
    std::unordered_multimap<std::size_t, Entry*> m_ByHash;
    Entry* m_pLast = nullptr; ///< the last name read
    Entry* m_pTag = nullptr;  ///< the name of the last start tag
    std::size_t m_Tags = 0;   ///< start tags so far
    bool m_HasOthers = false;
    bool m_MayHaveText = false;
};
