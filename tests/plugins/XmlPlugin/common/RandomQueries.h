#pragma once

#include "base/String.h"
#include "xmlproxy/AttributeTable.h"
#include "xmlproxy/Node.h"
#include "xpathlanguage/XPathAxisTable.h"

#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <vector>

/// Support of the tests: small random trees and random location paths on them. The same seed gives
/// the same ones on every platform.

class RandomSource
{
public:
    explicit RandomSource(unsigned i_Seed) : m_Engine(i_Seed) {}

    /// A number from 0 to \p i_Count - 1.
    unsigned below(unsigned i_Count) { return static_cast<unsigned>(m_Engine() % i_Count); }
    bool oneIn(unsigned i_Count) { return below(i_Count) == 0; }
    const char* pick(const std::vector<const char*>& i_Texts)
    {
        return i_Texts[below(static_cast<unsigned>(i_Texts.size()))];
    }

private:
    std::mt19937 m_Engine;
};

/// A tree of elements a, b, c with attributes x, y and a few texts, numbered as a parse does.
class RandomTree
{
public:
    RandomTree(RandomSource& io_Random, unsigned i_Elements, bool i_HasTexts = true)
        : m_Random(io_Random), m_HasTexts(i_HasTexts)
    {
        m_Nodes.push_back(nullptr);
        grow(i_Elements);
        m_Nodes.erase(m_Nodes.begin());
        m_pRoot.reset(m_Nodes.front());
    }

    Node* root() const { return m_pRoot.get(); }
    const std::vector<Node*>& elements() const { return m_Nodes; }

private:
    /// Elements in document order: each is put below the last one or one of its ancestors.
    void grow(unsigned i_Elements)
    {
        Node* pLast = nullptr;
        for (unsigned i = 0; i < i_Elements; ++i)
        {
            Node* pParent = pLast;
            while (pParent && pParent->getParent() && m_Random.oneIn(2))
            {
                pParent = pParent->getParent();
            }
            pLast = element(pParent);
            if (m_HasTexts && m_Random.oneIn(5))
            {
                pLast->addChild(new TextNode(String(m_Random.pick({"t", "1", "2"})), 1, 1, ++m_Sequence));
            }
        }
    }

    Node* element(Node* i_pParent)
    {
        auto pAttributes = std::make_unique<AttributeTable>(8);
        for (const char* pName : {"x", "y"})
        {
            if (m_Random.oneIn(2))
            {
                pAttributes->add(String(pName), String(m_Random.pick({"1", "2", "a"})), String::valueOf(++m_Sequence));
            }
        }
        const String name(m_Random.pick({"a", "a", "b", "c"}));
        const unsigned sequence = ++m_Sequence;
        Node* pNode = new Node(name, pAttributes.release(), 1, 1, sequence);
        if (i_pParent)
        {
            pNode->setParent(i_pParent);
            i_pParent->addChild(pNode);
        }
        m_Nodes.push_back(pNode);
        return pNode;
    }

    RandomSource& m_Random;
    const bool m_HasTexts;
    unsigned m_Sequence = 0;
    std::vector<Node*> m_Nodes;
    std::unique_ptr<Node> m_pRoot;
};

inline std::string randomPredicate(RandomSource& io_Random)
{
    return io_Random.pick({"[@x]",
                           "[@x]",
                           "[@y='1']",
                           "[@x!='1']",
                           "[@y>=2]",
                           "[b]",
                           "[1]",
                           "[2]",
                           "[position()=2]",
                           "[last()]",
                           "[position()<3]",
                           "[not(@x)]",
                           "[count(*)=1]",
                           "[@x and @y]",
                           "[..]",
                           "[name()='a']",
                           "['']",
                           "[2.0]",
                           "[position()=last()]",
                           "[.='1']",
                           "[parent::a]",
                           "[false()]",
                           "[3]",
                           "[position()=1]",
                           "[position()=3]",
                           "[position()>1]",
                           "[last()-1]",
                           "[@x='1']",
                           "[@x mod 2]",
                           "[count(b)]",
                           "[name(@x)]",
                           "[preceding::a]",
                           "[following::b]",
                           "[ancestor::a]",
                           "[ancestor-or-self::b]",
                           "[descendant::b]",
                           "[preceding-sibling::a]",
                           "[not(preceding::b)]",
                           "[count(preceding::*)=2]",
                           "[count(following::a)>1]",
                           "[count(descendant::*)=1]",
                           "[count(ancestor::*)=2]",
                           "[name(preceding::*)='b']",
                           "[preceding::a='']",
                           "[following::a!='t']",
                           "[string(following::*)='t']",
                           "[preceding::a and following::a]",
                           "[sum(preceding::a)=0]",
                           "[]",
                           "[local-name()]",
                           "[+]"});
}

inline std::string randomStep(RandomSource& io_Random, bool i_IsFirst)
{
    std::string text;
    if (!i_IsFirst && io_Random.oneIn(3))
    {
        constexpr auto known = static_cast<unsigned>(std::size(XPathLanguage::s_Axes));
        const unsigned axis = io_Random.below(known + 1);
        text = axis < known ? std::string(XPathLanguage::s_Axes[axis].name.text()) : "unknown";
        text += "::";
    }
    if (text.empty() && io_Random.oneIn(12))
    {
        return io_Random.pick({".", ".."});
    }
    text += io_Random.pick({"a", "a", "b", "c", "*", "*", "*", "node()"});
    while (io_Random.oneIn(4))
    {
        text += randomPredicate(io_Random);
    }
    return text;
}

inline std::string randomBranch(RandomSource& io_Random)
{
    std::string text = io_Random.pick({"", "/", "//", "//"});
    const unsigned count = 1 + io_Random.below(4);
    for (unsigned i = 0; i < count; ++i)
    {
        if (i > 0)
        {
            text += io_Random.pick({"/", "/", "//"});
        }
        text += i == 0 && io_Random.oneIn(2) ? std::string("*") : randomStep(io_Random, i == 0);
    }
    return text + io_Random.pick({"", "", "/@x", "/@y", "/@*", "//@x", "/text()", "//text()", "/@x[1]"});
}

/// From every element along an axis whose lists share their nodes, with predicates.
inline std::string randomLongPath(RandomSource& io_Random)
{
    std::string text = io_Random.pick({"//*", "//a", "//*/*", "*//b", "//*[@x]"});
    for (unsigned left = 1 + io_Random.below(2); left > 0; --left)
    {
        text += io_Random.pick({"/", "/", "/", "//"});
        text += io_Random.pick({"following::", "preceding::", "ancestor::", "ancestor-or-self::", "following-sibling::",
                                "preceding-sibling::", "descendant::", "descendant-or-self::", "parent::"});
        text += io_Random.pick({"a", "a", "b", "*", "*", "node()"});
        for (unsigned predicates = io_Random.below(4); predicates > 0; --predicates)
        {
            text += randomPredicate(io_Random);
        }
    }
    return text + io_Random.pick({"", "", "/@x", "/@*", "/*", "/b[@x]/@y", "/text()"});
}

/// One branch, or a union of two.
inline std::string randomPath(RandomSource& io_Random)
{
    std::string text = randomBranch(io_Random);
    if (io_Random.oneIn(6))
    {
        text += "|" + randomBranch(io_Random);
    }
    return text;
}
