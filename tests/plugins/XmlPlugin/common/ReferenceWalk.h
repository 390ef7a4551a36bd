#pragma once

#include "paths/XPath.h"
#include "paths/XPathPredicate.h"
#include "paths/XPathStep.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <cstdint>
#include <map>
#include <memory_resource>
#include <string>
#include <vector>

/// Support of the tests: location paths evaluated by plain recursion, without any remembered visit,
/// to be compared with what the product's walk selects. For small trees only: the cost grows
/// exponentially with the number of "//".
///
/// Shares with the product how a step's text is cut and how one predicate filters a list.
class ReferenceWalk
{
public:
    /// Selects from \p i_pRoot. The records, in order, as lines `key|node text|value|name of the node`,
    /// or "error CODE".
    static std::string select(Node* i_pRoot, const String& i_Path)
    {
        ReferenceWalk walk;
        TErrorCode code = 0;
        const std::wstring path(viewOf(i_Path));
        for (std::size_t begin = 0; code == 0 && begin <= path.size();)
        {
            const std::size_t bar = std::min(path.find(L'|', begin), path.size());
            if (bar > begin)
            {
                code = walk.branch(i_pRoot, String(path.data() + begin, bar - begin).trim());
            }
            begin = bar + 1;
        }
        return code != 0 ? "error " + std::to_string(code) : walk.print();
    }

private:
    using NodeVector = XmlPlugin::NodeVector;
    using XPathStep = XmlPlugin::XPathStep;

    struct Record
    {
        std::int32_t key;
        String nodeText;
        String value;
        const Node* pNode;
    };

    struct Place
    {
        Node* pNode;
        bool isMarked;
        bool isParentMarked; ///< mark of the node from which the walk came down
    };

    TErrorCode branch(Node* i_pRoot, String i_Text)
    {
        if (i_Text.length() >= 2 && i_Text.charAt(0) == L'/' && i_Text.charAt(1) != L'/')
        {
            i_Text = i_Text.substring(1);
        }
        if (i_Text == L"/")
        {
            return XML_PLUGIN_ERROR_XPATH_FIRST_STEP; // with a leaf step behind it, it would look like a deep one
        }
        if (!i_Text.endsWith(String(L"text()")))
        {
            XmlPlugin::XPathStepPointer pLast;
            XmlPlugin::XPathStepSplitter::getStep(i_Text, XmlPlugin::XPathStepSplitter::getStepCount(i_Text), m_Memory,
                                                  pLast);
            if (!pLast || pLast->axis() != XmlPlugin::AttributeAxis)
            {
                i_Text = i_Text.concat(L"/endfunction()");
            }
        }
        m_Steps.clear();
        m_Text = i_Text;
        m_Max = XmlPlugin::XPathStepSplitter::getStepCount(m_Text);
        m_Codes.clear();
        for (unsigned i = 0; i <= m_Max; ++i)
        {
            m_Steps.emplace_back();
            m_Codes.push_back(XmlPlugin::XPathStepSplitter::getStep(m_Text, i, m_Memory, m_Steps.back()));
        }
        if (m_Codes.front() != 0)
        {
            return XML_PLUGIN_ERROR_XPATH_FIRST_STEP;
        }
        return evaluateStep(mark(*m_Steps.front(), {i_pRoot}).front(), 0, false);
    }

    static bool matches(const XPathStep& i_Step, const Node& i_Node)
    {
        return i_Step.name() == L"*" || i_Step.name() == L"node()" || i_Step.name() == i_Node.name();
    }

    static TErrorCode applyPredicates(XPathStep& i_Step, NodeVector& io_Nodes)
    {
        NodeVector kept;
        for (Node* pNode : io_Nodes)
        {
            if (matches(i_Step, *pNode))
            {
                kept.push_back(pNode);
            }
        }
        io_Nodes = kept;
        for (XmlPlugin::XPathPredicate& predicate : i_Step.predicates())
        {
            if (const TErrorCode code = predicate.fiterNodes(io_Nodes); code != 0)
            {
                return code;
            }
        }
        return 0;
    }

    static std::vector<Place> mark(XPathStep& i_Step, const NodeVector& i_Nodes, bool i_IsParentMarked = false)
    {
        NodeVector kept = i_Nodes;
        if (i_Step.hasPredicates() && applyPredicates(i_Step, kept) != 0)
        {
            kept.clear();
        }
        std::vector<Place> places;
        for (Node* pNode : i_Nodes)
        {
            const bool isKept = std::find(kept.begin(), kept.end(), pNode) != kept.end();
            const bool isMarked = i_Step.hasPredicates() && matches(i_Step, *pNode) && !isKept;
            places.push_back({pNode, isMarked, i_IsParentMarked});
        }
        return places;
    }

    static NodeVector elementChildren(const Node& i_Node)
    {
        NodeVector nodes;
        for (Node* pChild : i_Node.children())
        {
            if (pChild->getType() == Node::ElementNode)
            {
                nodes.push_back(pChild);
            }
        }
        return nodes;
    }

    TErrorCode evaluateStep(const Place& i_Place, unsigned i_Position, bool i_IsDeepSearch)
    {
        if (!i_Place.pNode || i_Position >= m_Max)
        {
            return 0;
        }
        if (m_Codes[i_Position] != 0)
        {
            return m_Codes[i_Position];
        }
        XPathStep& current = *m_Steps[i_Position];
        if (matches(current, *i_Place.pNode) && !i_Place.isMarked)
        {
            if (const TErrorCode code = evaluateNext(i_Place, i_Position, i_IsDeepSearch); code != 0)
            {
                return code;
            }
        }
        if (!current.isDeep() && !i_IsDeepSearch)
        {
            return 0;
        }
        for (const Place& child : mark(current, elementChildren(*i_Place.pNode), i_Place.isMarked))
        {
            if (const TErrorCode code = evaluateStep(child, i_Position, i_IsDeepSearch); code != 0)
            {
                return code;
            }
        }
        return 0;
    }

    TErrorCode evaluateNext(const Place& i_Place, unsigned i_Position, bool i_IsDeepSearch)
    {
        const unsigned next = i_Position + 1;
        if (m_Codes[next] != 0)
        {
            return m_Codes[next];
        }
        const unsigned axis = m_Steps[i_Position]->axis();
        const unsigned nextAxis = m_Steps[next]->axis();
        if (nextAxis >= 2)
        {
            if (const TErrorCode code = walker(i_Place.pNode, next, nextAxis); code != 0)
            {
                return code;
            }
        }
        else if (((axis >= 1 && axis <= 4) || ((axis == 5 || axis == 6) && i_IsDeepSearch)) && next == m_Max)
        {
            const bool isAllowed = !m_Steps[i_Position]->isDeep() || !i_Place.isParentMarked;
            return isAllowed ? evaluateLeaf(*i_Place.pNode, next) : 0;
        }
        return evaluateChildren(*i_Place.pNode, next);
    }

    TErrorCode evaluateChildren(const Node& i_Node, unsigned i_Position)
    {
        if (i_Position == m_Max)
        {
            return 0; // a leaf has no candidates
        }
        XPathStep& step = *m_Steps[i_Position];
        NodeVector children = elementChildren(i_Node);
        std::vector<Place> places;
        if (step.isDeep())
        {
            places = mark(step, children);
        }
        else
        {
            if (step.hasPredicates())
            {
                if (const TErrorCode code = applyPredicates(step, children); code != 0)
                {
                    return code;
                }
            }
            for (Node* pChild : children)
            {
                places.push_back({pChild, false, false});
            }
        }
        for (const Place& place : places)
        {
            if (const TErrorCode code = evaluateStep(place, i_Position, false); code != 0)
            {
                return code;
            }
        }
        return 0;
    }

    TErrorCode walker(Node* i_pNode, unsigned i_Position, unsigned i_Axis)
    {
        switch (i_Axis)
        {
        case 2:
            for (const Place& child : mark(*m_Steps[i_Position], elementChildren(*i_pNode)))
            {
                evaluateStep(child, i_Position, true);
            }
            return 0;
        case 3:
            return evaluateStep(mark(*m_Steps[i_Position], {i_pNode}).front(), i_Position, false);
        case 4:
            evaluateStep(mark(*m_Steps[i_Position], {i_pNode}).front(), i_Position, true);
            return 0;
        case 5:
        case 6:
            followPrec(i_pNode, i_Position, i_Axis == 5);
            return 0;
        case 9:
        case 10:
            siblings(i_pNode, i_Position, i_Axis == 9);
            return 0;
        default:
            ancestors(i_pNode, i_Position, i_Axis);
            return 0;
        }
    }

    void ancestors(Node* i_pNode, unsigned i_Position, unsigned i_Axis)
    {
        XPathStep& step = *m_Steps[i_Position];
        NodeVector candidates;
        for (Node* pNode = i_Axis == 8 ? i_pNode : i_pNode->getParent(); pNode; pNode = pNode->getParent())
        {
            if (step.name() == L"*" || step.name() == pNode->name())
            {
                candidates.push_back(pNode);
            }
            if (i_Axis == 11)
            {
                break;
            }
        }
        for (const Place& place : mark(step, candidates))
        {
            handOver(place, place.pNode, i_Position);
        }
    }

    static NodeVector siblingsBeside(Node* i_pNode, bool i_IsFollowing)
    {
        NodeVector nodes = elementChildren(*i_pNode->getParent());
        const auto place = std::find(nodes.begin(), nodes.end(), i_pNode);
        if (i_IsFollowing)
        {
            nodes.erase(nodes.begin(), place + 1);
        }
        else
        {
            nodes.erase(place, nodes.end());
        }
        return nodes;
    }

    void siblings(Node* i_pNode, unsigned i_Position, bool i_IsFollowing)
    {
        if (!i_pNode->getParent())
        {
            return;
        }
        for (const Place& place : mark(*m_Steps[i_Position], siblingsBeside(i_pNode, i_IsFollowing)))
        {
            handOver(place, i_pNode->getParent(), i_Position);
        }
    }

    /// The leaf takes a candidate that is not marked; where no leaf follows, the walk goes on at \p i_pOther.
    void handOver(const Place& i_Candidate, Node* i_pOther, unsigned i_Position)
    {
        if (i_Position + 1 != m_Max)
        {
            evaluateStep({i_pOther, i_Candidate.isMarked, false}, i_Position, false);
        }
        else if (!i_Candidate.isMarked && m_Codes[m_Max] == 0)
        {
            evaluateLeaf(*i_Candidate.pNode, m_Max);
        }
    }

    void followPrec(Node* i_pNode, unsigned i_Position, bool i_IsFollowing)
    {
        for (Node* pNode = i_pNode; pNode->getParent(); pNode = pNode->getParent())
        {
            for (const Place& place : mark(*m_Steps[i_Position], siblingsBeside(pNode, i_IsFollowing)))
            {
                evaluateStep(place, i_Position, true);
            }
        }
    }

    // --- Records ---

    TErrorCode evaluateLeaf(const Node& i_Node, unsigned i_Position)
    {
        const XPathStep& leaf = *m_Steps[i_Position];
        String text;
        const Node* pText = nullptr;
        for (const Node* pChild : i_Node.children())
        {
            if (!pText && pChild->getType() == Node::CharacterDataNode)
            {
                pText = pChild;
            }
        }
        if (leaf.axis() == XmlPlugin::ChildAxis && leaf.name() == L"text()")
        {
            if (pText)
            {
                addOnce({static_cast<std::int32_t>(pText->sequence()), pText->name(), pText->name(), &i_Node});
            }
        }
        else if (leaf.axis() != XmlPlugin::AttributeAxis)
        {
            addOnce(
                {static_cast<std::int32_t>(i_Node.sequence()), pText ? pText->name() : String(), String(), &i_Node});
        }
        else if (i_Node.attributes())
        {
            addAttributes(i_Node, leaf.name());
        }
        return 0;
    }

    void addAttributes(const Node& i_Node, const String& i_Name)
    {
        for (int i = 0; i < i_Node.attributes()->count(); ++i)
        {
            String name;
            String value;
            String ordinal;
            i_Node.attributes()->getAt(i, name, value);
            i_Node.attributes()->getByName(name, value, ordinal);
            if (i_Name == L"*")
            {
                m_Records.push_back({static_cast<std::int32_t>(i_Node.sequence()) + i, value, value, &i_Node});
            }
            else if (i_Name == name)
            {
                m_Records.push_back({std::stoi(ordinal.toNarrow()), value, value, &i_Node});
            }
        }
    }

    void addOnce(const Record& i_Record)
    {
        for (const Record& record : m_Records)
        {
            if (record.key == i_Record.key && record.nodeText == i_Record.nodeText)
            {
                return;
            }
        }
        m_Records.push_back(i_Record);
    }

    std::string print() const
    {
        std::map<std::int32_t, const Record*> ordered;
        for (const Record& record : m_Records)
        {
            ordered.emplace(record.key, &record);
        }
        std::string text;
        for (const auto& [key, pRecord] : ordered)
        {
            text += std::to_string(key) + "|" + pRecord->nodeText.toNarrow() + "|" + pRecord->value.toNarrow() + "|" +
                    pRecord->pNode->name().toNarrow() + "\n";
        }
        return text;
    }

    std::pmr::monotonic_buffer_resource m_Memory;
    String m_Text; ///< of the steps
    std::vector<XmlPlugin::XPathStepPointer> m_Steps;
    std::vector<TErrorCode> m_Codes;
    unsigned m_Max = 0;
    std::vector<Record> m_Records;
};
