#pragma once

#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"
#include "xpathlanguage/XPathAxisTable.h"
#include "xpathlanguage/XPathFunctionTable.h"
#include "xpathlanguage/XPathOperatorTable.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Support of the tests: random expressions and random small documents. The same seed gives the
/// same cases on every machine.

/// Numbers from a seed (splitmix64).
class Random
{
public:
    explicit Random(std::uint64_t i_Seed) noexcept : m_State(i_Seed) {}

    std::uint64_t next() noexcept
    {
        m_State += 0x9e3779b97f4a7c15U;
        std::uint64_t mixed = m_State;
        mixed = (mixed ^ (mixed >> 30U)) * 0xbf58476d1ce4e5b9U;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94d049bb133111ebU;
        return mixed ^ (mixed >> 31U);
    }
    /// From 0 to \p i_Count - 1; \p i_Count greater than 0.
    std::size_t below(std::size_t i_Count) noexcept { return static_cast<std::size_t>(next() % i_Count); }
    /// True in \p i_Percent of 100 cases.
    bool chance(unsigned i_Percent) noexcept { return below(100) < i_Percent; }

    template <typename Table>
    std::string_view pick(const Table& i_Table) noexcept
    {
        return i_Table[below(std::size(i_Table))];
    }

private:
    std::uint64_t m_State;
};

// Expressions ask for the names that documents have, so that many of them select something.
inline constexpr std::array s_ElementNames{"a", "b", "c", "long-name", "d_e", "x:y", "größe"};
inline constexpr std::array s_AttributeNames{"id", "n", "t", "x-y"};
inline constexpr std::array s_Texts{"",    "1",  "2",   "-3.5", "007", "abc",  "a b",   "  pad  ",   "x/y",
                                    "[1]", "it", "5.0", "nan",  "'q'", "日本", "\"w\"", "\U0001F600"};

/// Mostly one of the first three.
inline std::string_view elementName(Random& io_Random) noexcept
{
    return s_ElementNames[io_Random.below(io_Random.chance(85) ? 3 : s_ElementNames.size())];
}

/// Makes documents of up to some twenty elements, some with text.
class DocumentMaker
{
public:
    explicit DocumentMaker(Random& io_Random) noexcept : m_Random(io_Random) {}

    std::unique_ptr<Node> make()
    {
        m_Sequence = 0;
        m_Elements.clear();
        std::unique_ptr<Node> pRoot(element());
        for (std::size_t left = m_Random.below(20); left > 0; --left)
        {
            append(*m_Elements[m_Random.below(m_Elements.size())]);
        }
        return pRoot;
    }

    /// The elements of the last document, the root first.
    const std::vector<Node*>& elements() const noexcept { return m_Elements; }

private:
    Node* element()
    {
        std::unique_ptr<AttributeTable> pAttributes;
        if (m_Random.chance(70))
        {
            pAttributes = std::make_unique<AttributeTable>(16);
            for (std::size_t left = m_Random.below(4); left > 0; --left)
            {
                const String name(std::string(m_Random.pick(s_AttributeNames)).c_str());
                const String value(std::string(m_Random.pick(s_Texts)).c_str());
                if (pAttributes->add(name, value, String::valueOf(m_Sequence)) == 0)
                {
                    ++m_Sequence;
                }
            }
        }
        const String name(std::string(elementName(m_Random)).c_str());
        Node* const pNode = new Node(name, pAttributes.release(), 1, 1, m_Sequence++);
        m_Elements.push_back(pNode);
        return pNode;
    }

    void append(Node& io_Parent)
    {
        Node* pChild = nullptr;
        if (m_Random.chance(15))
        {
            pChild = new TextNode(String(std::string(m_Random.pick(s_Texts)).c_str()), 1, 1, m_Sequence++);
        }
        else
        {
            pChild = element();
        }
        pChild->setParent(&io_Parent);
        io_Parent.addChild(pChild);
    }

    Random& m_Random;
    unsigned m_Sequence = 0;
    std::vector<Node*> m_Elements;
};

/// Every operator between two operands.
inline const std::vector<std::string_view>& operators()
{
    static const std::vector<std::string_view> s_Operators = []
    {
        std::vector<std::string_view> texts;
        for (const XPathLanguage::Operator& row : XPathLanguage::s_Operators)
        {
            if (row.level != XPathLanguage::Level::None)
            {
                texts.push_back(row.text.text());
            }
        }
        return texts;
    }();
    return s_Operators;
}

/// Every axis that no other hides from the tokenizer.
inline const std::vector<std::string_view>& reachableAxes()
{
    static const std::vector<std::string_view> s_Axes = []
    {
        std::vector<std::string_view> names;
        for (const XPathLanguage::Axis& axis : XPathLanguage::s_Axes)
        {
            if (XPathLanguage::hidingAxis(axis.name.text()).empty())
            {
                names.push_back(axis.name.text());
            }
        }
        return names;
    }();
    return s_Axes;
}

/// Makes expressions from the grammar, and texts that only look like some.
class ExpressionMaker
{
public:
    explicit ExpressionMaker(Random& io_Random) noexcept : m_Random(io_Random) {}

    /// A text of the grammar; nearly all are recognised.
    std::string grammatical()
    {
        m_Text.clear();
        expression(1 + static_cast<int>(m_Random.below(3)));
        return m_Text;
    }

    /// A text of the grammar with one to three damages.
    std::string mutated()
    {
        std::string text = grammatical();
        for (std::size_t left = 1 + m_Random.below(3); left > 0; --left)
        {
            damage(text);
        }
        return text;
    }

    /// Pieces of the language in any order.
    std::string garbage()
    {
        std::string text;
        for (std::size_t left = m_Random.below(14); left > 0; --left)
        {
            text += m_Random.pick(s_Pieces);
            if (m_Random.chance(25))
            {
                text += ' ';
            }
        }
        return text;
    }

private:
    static constexpr std::array s_Pieces{"(",
                                         ")",
                                         "[",
                                         "]",
                                         "/",
                                         "//",
                                         "|",
                                         "@",
                                         "::",
                                         ",",
                                         "'",
                                         "\"",
                                         "'a'",
                                         "''",
                                         "\"b\"",
                                         "1",
                                         "2.5",
                                         ".",
                                         "..",
                                         "*",
                                         "+",
                                         "-",
                                         "=",
                                         "!=",
                                         "<",
                                         "<=",
                                         ">",
                                         ">=",
                                         "and",
                                         "or",
                                         "div",
                                         "mod",
                                         "a",
                                         "b",
                                         "@id",
                                         "@*",
                                         "$",
                                         "$v",
                                         "::b",
                                         "child",
                                         "parent",
                                         "self::",
                                         "count(",
                                         "concat(",
                                         "name()",
                                         "not(",
                                         "[1]",
                                         "[]",
                                         "\t",
                                         "\n",
                                         "é",
                                         "\xff",
                                         "[@id]",
                                         "last()",
                                         "string()",
                                         "text()",
                                         "text()()",
                                         "a:b",
                                         "a:*",
                                         "_",
                                         "true()",
                                         "position()",
                                         "substring(",
                                         "endfunction()",
                                         "descendant::",
                                         "a | b",
                                         "/a/b",
                                         "//a",
                                         "99999999999"};
    static constexpr std::array s_Comparisons{"=", "=", "!=", " = ", "<", "<=", ">", " >= "};
    static constexpr std::array s_Literals{"''",     "'abc'",   "\"abc\"", "'12'",        "\"-3.5\"", "' 7 '",
                                           "'a[1]'", "\"x/y\"", "'(a|b'",  "'it\"s'",     "\"it's\"", "'- 5'",
                                           "'.'",    "'5.0'",   "'日本'",  "'\U0001F600'"};
    static constexpr std::array s_Numbers{
        "0",  "1",   "2",  "3",   "5.",         "2.5",         "0.5",
        "10", "007", "64", "1e3", "4294967296", "123456789.5", "99999999999999999999"};
    void gap()
    {
        if (m_Random.chance(20))
        {
            m_Text += m_Random.chance(30) ? "  " : " ";
        }
    }

    void expression(int i_Depth)
    {
        gap();
        if (i_Depth > 0 && m_Random.chance(45))
        {
            operation(i_Depth - 1);
        }
        else
        {
            primary(i_Depth);
        }
        gap();
    }

    void operation(int i_Depth)
    {
        expression(i_Depth);
        for (std::size_t left = 1 + m_Random.below(2); left > 0; --left)
        {
            m_Text += ' ';
            m_Text += m_Random.pick(operators());
            if (m_Random.chance(85))
            {
                m_Text += ' ';
            }
            expression(i_Depth);
        }
    }

    void primary(int i_Depth)
    {
        switch (m_Random.below(i_Depth > 0 ? 12 : 6))
        {
        case 0:
            m_Text += m_Random.pick(s_Literals);
            break;
        case 1:
            m_Text += m_Random.pick(s_Numbers);
            break;
        case 2:
            limit();
            break;
        case 6:
        case 7:
        case 8:
            call(i_Depth - 1);
            break;
        case 9:
            m_Text += '(';
            expression(i_Depth - 1);
            m_Text += ')';
            break;
        case 10:
            m_Text += m_Random.chance(25) ? "- -" : "-";
            primary(i_Depth - 1);
            break;
        case 11:
            location(i_Depth);
            m_Text += m_Random.chance(50) ? "|" : " | ";
            location(i_Depth);
            break;
        default:
            location(i_Depth);
        }
    }

    /// Not a number, the infinities, a negative zero, and no value.
    void limit()
    {
        static constexpr std::array s_Limits{"(0 div 0)", "(1 div 0)", "(-1 div 0)", "-0", "number()", "name(//none)"};
        m_Text += m_Random.pick(s_Limits);
    }

    void call(int i_Depth)
    {
        const XPathLanguage::Function& function =
            XPathLanguage::s_Functions[m_Random.below(std::size(XPathLanguage::s_Functions))];
        const std::size_t onTop = function.mayGoOn() ? 3 : function.optional();
        std::size_t count = function.required() + m_Random.below(onTop + 1);
        if (m_Random.chance(8))
        {
            count = m_Random.below(5);
        }
        m_Text += function.name.text();
        gap();
        m_Text += '(';
        for (std::size_t i = 0; i < count; ++i)
        {
            if (i > 0)
            {
                m_Text += ',';
            }
            expression(i_Depth);
        }
        m_Text += ')';
    }

    void location(int i_Depth)
    {
        static constexpr std::array s_Starts{"//", "//", "//", "/", "*/", "a/", "/a/", "a//", "", ""};
        m_Text += m_Random.pick(s_Starts);
        for (std::size_t left = m_Random.below(3);; --left)
        {
            step(i_Depth);
            if (left == 0)
            {
                break;
            }
            gap();
            m_Text += m_Random.chance(25) ? "//" : "/";
            gap();
        }
        if (m_Random.chance(30))
        {
            m_Text += "/@";
            m_Text += m_Random.chance(20) ? "*" : m_Random.pick(s_AttributeNames);
        }
    }

    void step(int i_Depth)
    {
        if (m_Random.chance(12))
        {
            m_Text += m_Random.chance(50) ? "." : "..";
            return;
        }
        if (m_Random.chance(20))
        {
            m_Text += m_Random.pick(reachableAxes());
            m_Text += "::";
        }
        else if (m_Random.chance(4))
        {
            m_Text += '@';
        }
        if (m_Random.chance(30))
        {
            m_Text += '*';
        }
        else
        {
            m_Text += m_Random.chance(5) ? m_Random.pick(s_AttributeNames) : elementName(m_Random);
        }
        while (i_Depth > 0 && m_Random.chance(30))
        {
            predicate(i_Depth - 1);
        }
    }

    void predicate(int i_Depth)
    {
        m_Text += '[';
        switch (m_Random.below(5))
        {
        case 0:
            m_Text += static_cast<char>('1' + m_Random.below(3));
            break;
        case 1:
            m_Text += m_Random.chance(50) ? "position()=2" : "last()";
            break;
        case 2:
            m_Text += "@";
            m_Text += m_Random.pick(s_AttributeNames);
            if (m_Random.chance(50))
            {
                m_Text += m_Random.pick(s_Comparisons);
                m_Text += m_Random.chance(50) ? m_Random.pick(s_Literals) : m_Random.pick(s_Numbers);
            }
            break;
        default:
            expression(i_Depth);
        }
        m_Text += ']';
    }

    void damage(std::string& io_Text)
    {
        const std::size_t place = m_Random.below(io_Text.size() + 1);
        switch (m_Random.below(5))
        {
        case 0:
            io_Text.erase(place, 1 + m_Random.below(3));
            break;
        case 1:
            io_Text.resize(place);
            break;
        case 2:
            if (place < io_Text.size())
            {
                io_Text[place] = static_cast<char>(1 + m_Random.below(255));
            }
            break;
        case 3:
        {
            const std::size_t begin = m_Random.below(io_Text.size() + 1);
            io_Text.insert(place, io_Text.substr(begin, 1 + m_Random.below(10)));
            break;
        }
        default:
            io_Text.insert(place, m_Random.pick(s_Pieces));
        }
    }

    Random& m_Random;
    std::string m_Text;
};
