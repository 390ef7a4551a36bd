#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/XmlName.h"

#include <cstddef>
#include <iosfwd>
#include <iterator>
#include <memory>
#include <new>
#include <utility>

class Node;
class XmlTreeMemory;

/// The children of one node in document order: a doubly linked list threaded through the nodes themselves, so a node is
/// in one list at most.
///
/// Ownership: the `Node` that has the list owns the children; the list does not.
class NodeList
{
public:
    class Iterator
    {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Node*;
        using difference_type = std::ptrdiff_t;
        using pointer = Node* const*;
        using reference = Node*;

        Iterator() noexcept = default;
        Iterator(Node* i_pNode, Node* i_pLast) noexcept : m_pNode(i_pNode), m_pLast(i_pLast) {}

        inline Node* operator*() const noexcept { return m_pNode; }
        inline Iterator& operator++() noexcept;
        inline Iterator operator++(int) noexcept;
        inline Iterator& operator--() noexcept;
        inline Iterator operator--(int) noexcept;
        friend bool operator==(const Iterator& i_Left, const Iterator& i_Right) noexcept
        {
            return i_Left.m_pNode == i_Right.m_pNode;
        }

    private:
        Node* m_pNode = nullptr; ///< null past the last node
        Node* m_pLast = nullptr;
    };

    Iterator begin() const noexcept { return {m_pFirst, m_pLast}; }
    Iterator end() const noexcept { return {nullptr, m_pLast}; }
    bool empty() const noexcept { return m_pFirst == nullptr; }
    Node* front() const noexcept { return m_pFirst; }
    Node* back() const noexcept { return m_pLast; }

private:
    friend class Node;
    Node* m_pFirst = nullptr;
    Node* m_pLast = nullptr;
};

/// One element of a document: its name, place, attributes, children and parent.
///
/// Ownership: a node owns its attributes and its children. Destroying a node destroys its whole subtree, without
/// recursion. The parent pointer does not own. The nodes of a parsed tree are in a memory of their own, which the root
/// owns: deleting the root frees it at once.
/// Threads: a finished tree may be read by any number of threads.
/// Tested by: tests/common/xmlproxy/NodeTest.cpp
class Node
{
public:
    enum Type : int
    {
        ElementNode = 0,
        CharacterDataNode = 1
    };

    /// Makes a node without parent and children, and takes ownership of \p i_pAttributes (null: no attributes). Line
    /// and column are counted from 1; 0 when unknown. `std::bad_alloc` when memory is exhausted; the attributes are
    /// then still the caller's.
    Node(const String& i_Name, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column, unsigned i_Sequence);
    /// Makes a node in \p io_Memory, with a name of that memory. The first node made there is the tree's root. Only the
    /// root is deleted, which frees the memory. Ownership of \p i_pAttributes and failures as above.
    static Node* create(XmlTreeMemory& io_Memory, const XmlName& i_Name, AttributeTable* i_pAttributes, unsigned i_Line,
                        unsigned i_Column, unsigned i_Sequence);
    virtual ~Node(); // slot 0
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    static void* operator new(std::size_t i_Bytes);
    static void operator delete(void* i_pNode) noexcept;
    /// In a derived class, the node must be the first base.
    static void operator delete(Node* i_pNode, std::destroying_delete_t) noexcept;

    virtual int getType() const; // slot 1
    /// Makes a deep copy, owned by the caller. In the copy sequence numbers are 0, ordinals are "0", and parent
    /// pointers are null. `std::bad_alloc` when memory is exhausted.
    virtual Node* clone() const; // slot 2
    /// Writes the subtree as XML text in UTF-8, indented by \p i_Depth blanks. Returns 0; a failed stream shows only in
    /// the stream's state.
    virtual TErrorCode write(std::ostream& o_Out, int i_Depth) const; // slot 3

    /// The element's name as the document spells it, prefix included; for a text node, its text.
    const String& name() const noexcept { return m_pName->text(); }
    /// The same name with its hash. Within a parsed tree, equal names have the same address.
    const XmlName& nameEntry() const noexcept { return *m_pName; }
    /// Line and column of the start tag, counted from 1; 0 if unknown.
    unsigned line() const noexcept { return m_Line; }
    unsigned column() const noexcept { return m_Column; }
    /// Position in document order; an element's attributes have the numbers before its own. 0 in copies.
    unsigned sequence() const noexcept { return m_Sequence; }
    /// Owned by the node; null when it has no table.
    AttributeTable* attributes() const noexcept { return m_pAttributes.get(); }

    /// Stores this node's own list, valid as long as the node. Returns 0.
    TErrorCode getChildren(const NodeList*& o_pChildren) const noexcept
    {
        o_pChildren = &m_Children;
        return 0;
    }
    const NodeList& children() const noexcept { return m_Children; }
    /// False if the whole tree contains no character data, so that there is no need to look for any. A parsed tree has
    /// none as long as no node from elsewhere is added to it.
    bool mayHaveText() const noexcept;
    /// Number of children added with `addChild`.
    unsigned childCount() const noexcept { return m_ChildCount; }
    /// Null for the root and for a node that is not in a tree.
    Node* getParent() const noexcept { return m_pParent; }
    void setParent(Node* i_pParent) noexcept { m_pParent = i_pParent; }
    /// Takes ownership of \p i_pChild, which is not null and in no list, and appends it to the children. Setting its
    /// parent pointer is up to the caller. Returns 0.
    TErrorCode addChild(Node* i_pChild) noexcept;

    /// The neighbours in the parent's list; null at its ends.
    Node* nextSibling() const noexcept { return m_pNext; }
    Node* previousSibling() const noexcept { return m_pPrevious; }

protected:
    void setAttributes(std::unique_ptr<AttributeTable> i_pAttributes) noexcept
    {
        m_pAttributes = std::move(i_pAttributes);
    }

private:
    friend class NodeList::Iterator;

    Node(const XmlName* i_pName, AttributeTable* i_pAttributes, unsigned i_Line, unsigned i_Column,
         unsigned i_Sequence) noexcept;
    static void* operator new(std::size_t, void* i_pPlace) noexcept { return i_pPlace; }

    /// Null for a node on the heap; such a node owns its name.
    XmlTreeMemory* memory() const noexcept { return m_pName->memory(); }
    void destroyChildren() noexcept;
    /// A copy of this element without its children and parent.
    std::unique_ptr<Node> cloneElement() const;
    bool isLeaf() const { return m_Children.empty() || getType() != ElementNode; }
    void writeStartTag(std::ostream& o_Out, long long i_Depth) const;
    void writeEndTag(std::ostream& o_Out, long long i_Depth) const;

    const XmlName* m_pName; ///< never null
    unsigned m_Column;
    unsigned m_Line;
    unsigned m_Sequence;
    unsigned m_ChildCount = 0;
    std::unique_ptr<AttributeTable> m_pAttributes;
    NodeList m_Children;
    Node* m_pParent = nullptr;
    Node* m_pNext = nullptr;
    Node* m_pPrevious = nullptr;
};

/// Character data. The name holds the text; there are no attributes and no children.
class TextNode final : public Node
{
public:
    TextNode(const String& i_Text, unsigned i_Line, unsigned i_Column, unsigned i_Sequence);

    int getType() const override;
    Node* clone() const override;
    TErrorCode write(std::ostream& o_Out, int i_Depth) const override;
};

inline NodeList::Iterator& NodeList::Iterator::operator++() noexcept
{
    m_pNode = m_pNode->m_pNext;
    return *this;
}

inline NodeList::Iterator NodeList::Iterator::operator++(int) noexcept
{
    Iterator before = *this;
    ++*this;
    return before;
}

inline NodeList::Iterator& NodeList::Iterator::operator--() noexcept
{
    m_pNode = m_pNode ? m_pNode->m_pPrevious : m_pLast;
    return *this;
}

inline NodeList::Iterator NodeList::Iterator::operator--(int) noexcept
{
    Iterator before = *this;
    --*this;
    return before;
}
