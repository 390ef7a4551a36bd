// Input: a byte that chooses the structure, then commands and their operands. Every answer and the
// whole content afterwards are compared with a plain model.
#include "FuzzTarget.h"

#include "base/String.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/StringVector.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace
{

std::string narrow(std::wstring_view i_Text)
{
    return String(i_Text.data(), i_Text.size()).toNarrow();
}

/// The bytes of the input as numbers and texts; zeros and empty texts at its end.
class Commands
{
public:
    explicit Commands(std::string_view i_Bytes) noexcept : m_Bytes(i_Bytes) {}

    bool more() const noexcept { return m_Next < m_Bytes.size(); }
    unsigned byte() noexcept { return more() ? static_cast<unsigned char>(m_Bytes[m_Next++]) : 0; }
    /// From 0 to \p i_Count - 1.
    unsigned below(unsigned i_Count) noexcept { return byte() % i_Count; }
    /// From one below the first index to one past \p i_Count.
    int index(int i_Count) noexcept { return static_cast<int>(below(static_cast<unsigned>(i_Count) + 3)) - 1; }
    /// Short, seldom long; of characters that are written in different ways.
    std::wstring text()
    {
        static constexpr std::wstring_view alphabet = L"abc019 <>&\"'\t\n\r\x01\x1f\x7f\x85é日\xD83D\xDE00\xFFFE";
        constexpr unsigned longText = 12;
        unsigned length = below(longText + 1);
        if (length == longText)
        {
            length = byte() * 3;
        }
        std::wstring text;
        while (length-- > 0)
        {
            text += alphabet[below(static_cast<unsigned>(alphabet.size()))];
        }
        return text;
    }

private:
    std::string_view m_Bytes;
    std::size_t m_Next = 0;
};

// --- String vector ------------------------------------------------------------------------------

class VectorCheck
{
public:
    explicit VectorCheck(Commands& io_Commands)
        : m_Commands(io_Commands), m_BlockSize(1 + static_cast<int>(io_Commands.below(40))), m_Vector(m_BlockSize)
    {
    }

    void run()
    {
        // Comparing takes as long as the content is: after few commands each time, later now and then, and at the end.
        constexpr unsigned often = 16;
        for (unsigned done = 1; m_Commands.more(); ++done)
        {
            step();
            if (done < often || done % often == 0)
            {
                compare();
            }
        }
        compare();
    }

private:
    void step()
    {
        switch (m_Commands.below(9))
        {
        case 0:
        case 1:
            return insert(m_Commands.index(count()));
        case 2:
            return insert(count());
        case 3:
            return get();
        case 4:
            return find();
        case 5:
        case 6:
            return remove();
        case 7:
            FUZZ_CHECK(m_Vector.insert(m_Commands.index(count()), nullptr) == XML_ERROR_NULL_TEXT, "null");
            return;
        default:
            return seldom();
        }
    }

    void insert(int i_Index)
    {
        const std::wstring text = m_Commands.text();
        const bool isValid = i_Index >= 0 && i_Index <= count();
        FUZZ_CHECK(m_Vector.insert(i_Index, text.c_str()) == (isValid ? 0 : XML_ERROR_INDEX_RANGE), narrow(text));
        if (isValid)
        {
            m_Model.insert(m_Model.begin() + i_Index, text);
        }
    }

    void get()
    {
        const int index = m_Commands.index(count());
        const auto place = static_cast<std::size_t>(std::max(index, 0));
        const bool isValid = place < m_Model.size();
        String text(L"before");
        FUZZ_CHECK(m_Vector.get(index, text) == (isValid ? 0 : XML_ERROR_INDEX_RANGE), std::to_string(index));
        FUZZ_CHECK(viewOf(text) == (isValid ? m_Model[place] : L"before"), text.toNarrow());
    }

    void find()
    {
        std::wstring wanted = m_Commands.text();
        if (!m_Model.empty() && m_Commands.below(2) == 0)
        {
            wanted = m_Model[m_Commands.below(static_cast<unsigned>(m_Model.size()))];
        }
        const auto pFound = std::find(m_Model.begin(), m_Model.end(), wanted);
        int index = -7;
        const TErrorCode code = m_Vector.find(String(wanted.c_str()), index);
        FUZZ_CHECK(code == (pFound == m_Model.end() ? XML_ERROR_NOT_FOUND : 0), narrow(wanted));
        FUZZ_CHECK(index == (pFound == m_Model.end() ? -7 : static_cast<int>(pFound - m_Model.begin())),
                   std::to_string(index));
    }

    void remove()
    {
        const int index = m_Commands.index(count());
        const bool isValid = index >= 0 && index < count();
        FUZZ_CHECK(m_Vector.remove(index) == (isValid ? 0 : XML_ERROR_INDEX_RANGE), std::to_string(index));
        if (isValid)
        {
            m_Model.erase(m_Model.begin() + index);
        }
    }

    void seldom()
    {
        if (m_Commands.below(4) == 0)
        {
            m_Vector.clear();
            m_Model.clear();
        }
        else
        {
            const unsigned reserved = m_Commands.below(20);
            m_Vector.reserve(static_cast<int>(reserved), reserved + m_Commands.byte());
        }
    }

    void compare() const
    {
        FUZZ_CHECK(m_Vector.count() == count(), std::to_string(m_Vector.count()));
        std::size_t used = 0;
        for (int i = 0; i < count(); ++i)
        {
            const std::wstring& text = m_Model[static_cast<std::size_t>(i)];
            FUZZ_CHECK(m_Vector.at(i) == text, narrow(text));
            used += text.size() + 1;
        }
        FUZZ_CHECK(m_Vector.at(-1).empty() && m_Vector.at(count()).empty(), "no such text");
        const auto size = static_cast<std::size_t>(m_BlockSize);
        const std::size_t blocks = (used + size - 1) / size;
        FUZZ_CHECK(static_cast<std::size_t>(m_Vector.blocks()) == blocks, std::to_string(m_Vector.blocks()));
        FUZZ_CHECK(static_cast<std::size_t>(m_Vector.freeCharacters()) == blocks * size - used,
                   std::to_string(m_Vector.freeCharacters()));
        FUZZ_CHECK(m_Vector.blockSize() == m_BlockSize, std::to_string(m_Vector.blockSize()));
    }

    int count() const noexcept { return static_cast<int>(m_Model.size()); }

    Commands& m_Commands;
    int m_BlockSize;
    StringVector m_Vector;
    std::vector<std::wstring> m_Model;
};

// --- Attribute table ----------------------------------------------------------------------------

struct ModelAttribute
{
    std::wstring m_Name;
    std::wstring m_Value;
    std::wstring m_Ordinal;
};

using ModelAttributes = std::vector<ModelAttribute>;

/// Adds one attribute to the table and to its model.
void addAttribute(AttributeTable& io_Table, ModelAttributes& io_Model, const ModelAttribute& i_New)
{
    const bool isNew = std::none_of(io_Model.begin(), io_Model.end(),
                                    [&](const ModelAttribute& i_Old) { return i_Old.m_Name == i_New.m_Name; });
    const TErrorCode code =
        io_Table.add(String(i_New.m_Name.c_str()), String(i_New.m_Value.c_str()), String(i_New.m_Ordinal.c_str()));
    FUZZ_CHECK(code == (isNew ? 0 : XML_ERROR_DUPLICATE), narrow(i_New.m_Name));
    if (isNew)
    {
        io_Model.push_back(i_New);
    }
}

class TableCheck
{
public:
    explicit TableCheck(Commands& io_Commands)
        : m_Commands(io_Commands), m_Table(1 + static_cast<int>(io_Commands.below(40)))
    {
    }

    void run()
    {
        // Comparing takes as long as the content is: after few commands each time, later now and then, and at the end.
        constexpr unsigned often = 16;
        for (unsigned done = 1; m_Commands.more(); ++done)
        {
            step();
            if (done < often || done % often == 0)
            {
                compare();
            }
        }
        compare();
    }

private:
    void step()
    {
        switch (m_Commands.below(6))
        {
        case 0:
            return getAt();
        case 1:
        case 2:
            return getByName();
        case 3:
            for (unsigned left = m_Commands.below(30); left > 0; --left)
            {
                addAttribute(m_Table, m_Model, {L"n" + std::to_wstring(m_Model.size() + left), L"v", L"1"});
            }
            return;
        default:
            return addAttribute(m_Table, m_Model, {name(), m_Commands.text(), std::to_wstring(m_Commands.byte())});
        }
    }

    std::wstring name()
    {
        if (!m_Model.empty() && m_Commands.below(3) == 0)
        {
            return m_Model[m_Commands.below(static_cast<unsigned>(m_Model.size()))].m_Name;
        }
        return m_Commands.text();
    }

    void getAt()
    {
        const int index = m_Commands.index(m_Table.count());
        const auto place = static_cast<std::size_t>(std::max(index, 0));
        const bool isValid = place < m_Model.size();
        String found(L"before");
        String value(L"before");
        m_Table.getAt(index, found, value);
        FUZZ_CHECK(viewOf(found) == (isValid ? m_Model[place].m_Name : L"before"), found.toNarrow());
        FUZZ_CHECK(viewOf(value) == (isValid ? m_Model[place].m_Value : L"before"), value.toNarrow());
    }

    void getByName()
    {
        const std::wstring wanted = name();
        const auto pFound = std::find_if(m_Model.begin(), m_Model.end(),
                                         [&](const ModelAttribute& i_One) { return i_One.m_Name == wanted; });
        const bool isThere = pFound != m_Model.end();
        String value(L"before");
        String ordinal(L"before");
        const TErrorCode code = m_Table.getByName(String(wanted.c_str()), value, ordinal);
        FUZZ_CHECK(code == (isThere ? 0 : XML_ERROR_NOT_FOUND), narrow(wanted));
        FUZZ_CHECK(viewOf(value) == (isThere ? pFound->m_Value : L"before"), value.toNarrow());
        FUZZ_CHECK(viewOf(ordinal) == (isThere ? pFound->m_Ordinal : L"before"), ordinal.toNarrow());
        FUZZ_CHECK(m_Table.indexOf(String(wanted.c_str())) ==
                       (isThere ? static_cast<int>(pFound - m_Model.begin()) : -1),
                   narrow(wanted));
    }

    void compare() const
    {
        FUZZ_CHECK(static_cast<std::size_t>(m_Table.count()) == m_Model.size(), std::to_string(m_Table.count()));
        for (int i = 0; i < m_Table.count(); ++i)
        {
            const ModelAttribute& one = m_Model[static_cast<std::size_t>(i)];
            FUZZ_CHECK(m_Table.nameAt(i) == one.m_Name, narrow(one.m_Name));
            FUZZ_CHECK(m_Table.valueAt(i) == one.m_Value, narrow(one.m_Value));
            FUZZ_CHECK(m_Table.ordinalAt(i) == one.m_Ordinal, narrow(one.m_Ordinal));
        }
    }

    Commands& m_Commands;
    AttributeTable m_Table;
    ModelAttributes m_Model;
};

// --- Node tree ----------------------------------------------------------------------------------

struct ModelNode
{
    std::wstring m_Name;
    bool m_IsText = false;
    ModelAttributes m_Attributes;
    std::vector<std::unique_ptr<ModelNode>> m_Children;
};

/// The text in UTF-8 with the characters escaped that XML cannot have as they are.
std::string escaped(std::wstring_view i_Text)
{
    std::wstring text;
    for (const wchar_t unit : i_Text)
    {
        static constexpr std::pair<wchar_t, const wchar_t*> s_Entities[] = {
            {L'\t', L"&#9;"}, {L'\n', L"&#10;"},  {L'\r', L"&#13;"}, {L'"', L"&quot;"},
            {L'&', L"&amp;"}, {L'\'', L"&apos;"}, {L'<', L"&lt;"},   {L'>', L"&gt;"},
        };
        const auto* const pEntity = std::find_if(std::begin(s_Entities), std::end(s_Entities),
                                                 [unit](const auto& i_Entity) { return i_Entity.first == unit; });
        if (pEntity != std::end(s_Entities))
        {
            text += pEntity->second;
        }
        else if (unit >= L' ')
        {
            text += unit;
        }
    }
    return narrow(text);
}

/// Names become UTF-8 before they are escaped, so that what is left out then joins no surrogates.
std::string escapedName(const std::wstring& i_Name)
{
    return escaped(viewOf(String(narrow(i_Name).c_str())));
}

/// What `Node::write` is to write.
std::string writtenModel(const ModelNode& i_Node, std::size_t i_Depth)
{
    if (i_Node.m_IsText)
    {
        return escaped(i_Node.m_Name);
    }
    const std::string name = escapedName(i_Node.m_Name);
    std::string text = std::string(i_Depth, ' ') + "<" + name;
    for (const ModelAttribute& one : i_Node.m_Attributes)
    {
        text += " " + escapedName(one.m_Name) + "=\"" + escaped(one.m_Value) + "\"";
    }
    if (i_Node.m_Children.empty())
    {
        return text + "/>";
    }
    const bool isIndented = !i_Node.m_Children.front()->m_IsText;
    text += isIndented ? ">\n" : ">";
    for (const auto& pChild : i_Node.m_Children)
    {
        text += writtenModel(*pChild, i_Depth + 1);
    }
    return text + (isIndented ? std::string(i_Depth, ' ') : "") + "</" + name + ">\n";
}

class TreeCheck
{
public:
    explicit TreeCheck(Commands& io_Commands) : m_Commands(io_Commands)
    {
        m_pModel = std::make_unique<ModelNode>();
        m_pRoot.reset(makeElement(*m_pModel));
        m_Elements.emplace_back(m_pRoot.get(), m_pModel.get());
    }

    void run()
    {
        // The model is written by recursion, so its depth is bounded.
        constexpr std::size_t mostElements = 600;
        while (m_Commands.more() && m_Elements.size() < mostElements)
        {
            append();
        }
        compare();
        const std::unique_ptr<Node> pClone(m_pRoot->clone());
        const int depth = static_cast<int>(m_Commands.below(70));
        compare(*pClone, depth);
    }

private:
    Node* makeElement(ModelNode& o_Model)
    {
        o_Model.m_Name = m_Commands.text();
        std::unique_ptr<AttributeTable> pTable;
        if (m_Commands.below(2) == 0)
        {
            pTable = std::make_unique<AttributeTable>(1);
            for (unsigned left = m_Commands.below(4); left > 0; --left)
            {
                addAttribute(*pTable, o_Model.m_Attributes, {m_Commands.text(), m_Commands.text(), L"1"});
            }
        }
        return new Node(String(o_Model.m_Name.c_str()), pTable.release(), 1, 2, 3);
    }

    /// Puts a new node below any of the elements, mostly one of the last.
    void append()
    {
        const unsigned choice = m_Commands.byte();
        const std::size_t back = choice % 8 == 0 ? m_Commands.byte() : choice / 8 % 3;
        const auto [pParent, pModel] = m_Elements[m_Elements.size() - 1 - back % m_Elements.size()];
        auto pNew = std::make_unique<ModelNode>();
        Node* pNode = nullptr;
        if (choice >= 200)
        {
            pNew->m_IsText = true;
            pNew->m_Name = m_Commands.text();
            pNode = new TextNode(String(pNew->m_Name.c_str()), 1, 2, 3);
        }
        else
        {
            pNode = makeElement(*pNew);
            m_Elements.emplace_back(pNode, pNew.get());
        }
        pNode->setParent(pParent);
        FUZZ_CHECK(pParent->addChild(pNode) == 0, "addChild");
        pModel->m_Children.push_back(std::move(pNew));
    }

    void compare() const
    {
        for (const auto& [pNode, pModel] : m_Elements)
        {
            FUZZ_CHECK(pNode->childCount() == pModel->m_Children.size(), pNode->name().toNarrow());
            const NodeList* pChildren = nullptr;
            FUZZ_CHECK(pNode->getChildren(pChildren) == 0 && pChildren == &pNode->children(), "getChildren");
            std::size_t i = 0;
            for (const Node* pChild : *pChildren)
            {
                const ModelNode& model = *pModel->m_Children.at(i++);
                FUZZ_CHECK(pChild->getParent() == pNode && viewOf(pChild->name()) == model.m_Name,
                           narrow(model.m_Name));
                FUZZ_CHECK((pChild->getType() == Node::CharacterDataNode) == model.m_IsText, narrow(model.m_Name));
            }
            FUZZ_CHECK(i == pModel->m_Children.size(), std::to_string(i));
            for (auto pPlace = pChildren->end(); pPlace != pChildren->begin();)
            {
                FUZZ_CHECK(viewOf((*--pPlace)->name()) == pModel->m_Children.at(--i)->m_Name, std::to_string(i));
            }
            FUZZ_CHECK(i == 0, std::to_string(i));
        }
        compare(*m_pRoot, 0);
    }

    void compare(const Node& i_Node, int i_Depth) const
    {
        const std::string expected = writtenModel(*m_pModel, static_cast<std::size_t>(i_Depth));
        const std::string text = written(i_Node, i_Depth);
        FUZZ_CHECK(text == expected, text + "\nexpected:\n" + expected);
    }

    static std::string written(const Node& i_Node, int i_Depth)
    {
        std::ostringstream out;
        FUZZ_CHECK(i_Node.write(out, i_Depth) == 0, "write");
        return out.str();
    }

    Commands& m_Commands;
    std::unique_ptr<ModelNode> m_pModel;
    std::unique_ptr<Node> m_pRoot;
    std::vector<std::pair<Node*, ModelNode*>> m_Elements;
};

} // namespace

void fuzzOne(std::string_view i_Bytes)
{
    Commands commands(i_Bytes);
    switch (commands.below(3))
    {
    case 0:
        return VectorCheck(commands).run();
    case 1:
        return TableCheck(commands).run();
    default:
        return TreeCheck(commands).run();
    }
}
