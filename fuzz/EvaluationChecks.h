#pragma once

#include "FuzzTarget.h"

#include "Evaluations.h"
#include "PathSupport.h"
#include "ReferenceWalk.h"
#include "compile/XPathExpressionsParser.h"
#include "values/XPathQuickCode.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

/// What must hold of every expression on every document.

inline std::string printAnswer(const Answer& i_Answer)
{
    std::ostringstream out;
    out << i_Answer;
    return out.str();
}

/// The codes are known ones, a failure has no values, a scalar has one, and the keys of a node set ascend.
inline void checkShape(const Answer& i_Answer)
{
    FUZZ_CHECK(isListed(i_Answer.m_RunCode) && isListed(i_Answer.m_ValuesCode), printAnswer(i_Answer));
    if (i_Answer.m_RunCode != 0 || i_Answer.m_ValuesCode != 0)
    {
        FUZZ_CHECK(i_Answer.m_Values.empty(), printAnswer(i_Answer));
        return;
    }
    FUZZ_CHECK(i_Answer.m_Type >= XmlPlugin::BooleanType && i_Answer.m_Type <= XmlPlugin::NodeSetType,
               printAnswer(i_Answer));
    if (i_Answer.m_Type != XmlPlugin::NodeSetType)
    {
        FUZZ_CHECK(i_Answer.m_Values.size() == 1 && !i_Answer.m_Values[0].m_pNode, printAnswer(i_Answer));
        return;
    }
    for (std::size_t i = 0; i < i_Answer.m_Values.size(); ++i)
    {
        FUZZ_CHECK(i_Answer.m_Values[i].m_pNode, printAnswer(i_Answer));
        FUZZ_CHECK(i == 0 || i_Answer.m_Values[i - 1].m_OrderKey < i_Answer.m_Values[i].m_OrderKey,
                   printAnswer(i_Answer));
    }
}

/// The checks of an evaluation that take turns.
enum EvaluationCheck : unsigned
{
    ReadTwice,
    AskedAgain,
    GeneralCode,
    Traced,
    Operands,
    Walks,
    EvaluationChecks ///< how many there are
};

/// The answer does not depend on how often, with which object, by which code and under which
/// tracing it is asked for.
inline void checkAnswers(const String& i_Text, const Place& i_Place, const Place& i_Elsewhere, CheckChoice i_Choice,
                         bool i_IsTraced)
{
    XmlPlugin::XPathExpressionsParser parser(i_Text);
    prepare(parser, i_Place);
    const Answer first = read(parser, parser.runParser(i_Place.m_pNode));
    checkShape(first);
    if (i_Choice.isDue(ReadTwice))
    {
        FUZZ_CHECK(read(parser, first.m_RunCode) == first, printAnswer(first));
    }
    if (i_Choice.isDue(AskedAgain))
    {
        prepare(parser, i_Elsewhere);
        checkShape(read(parser, parser.runParser(i_Elsewhere.m_pNode)));
        parser.setEvalContext(nullptr);
        prepare(parser, i_Place);
        const Answer again = read(parser, parser.runParser(i_Place.m_pNode));
        FUZZ_CHECK(again == first, printAnswer(first) + "\nthe second time " + printAnswer(again));
        FUZZ_CHECK(evaluateOnce(i_Text, i_Place) == first, printAnswer(first));
    }
    if (i_Choice.isDue(GeneralCode))
    {
        const XmlPlugin::XPathQuickCode::Forbidden general;
        FUZZ_CHECK(evaluateOnce(i_Text, i_Place) == first, printAnswer(first));
    }
    if (i_IsTraced && i_Choice.isDue(Traced))
    {
        const SwallowedTrace trace;
        FUZZ_CHECK(evaluateOnce(i_Text, i_Place) == first, printAnswer(first));
    }
}

/// The texts of the location paths in an expression.
inline std::vector<String> pathsOf(const String& i_Text)
{
    std::vector<String> paths;
    const XmlPlugin::XPathExpressionsParser parser(i_Text);
    if (parser.status() != 0)
    {
        return paths;
    }
    for (const XmlPlugin::XPathExpression* pElement : parser.postfix())
    {
        if (!pElement->isOperator() && pElement->GetDataType() == XmlPlugin::NodeSetType)
        {
            paths.push_back(pElement->text());
        }
    }
    return paths;
}

/// An operand evaluated from a node selects what its path selects with the steps to the node before it.
inline void checkOperand(const String& i_Path, const std::vector<Node*>& i_Nodes)
{
    const XmlPlugin::XPathExpressionsParser parser(i_Path);
    if (parser.postfix().size() != 1 || parser.postfix().front()->GetDataType() != XmlPlugin::NodeSetType)
    {
        return;
    }
    XmlPlugin::XPathExpression& operand = *parser.postfix().front();
    for (Node* pNode : i_Nodes)
    {
        operand.setStartNode(pNode);
        operand.setRootPosition(XmlPlugin::XPathExpression::OwnPlace);
        operand.EvaluateXPath();
        const std::string text = ::printRecords(operand.takeNodes());
        const XmlPlugin::XPathQuickCode::Forbidden general;
        const std::string expected = selectWithPrefix(pNode, operand.GetExpressionString());
        FUZZ_CHECK(text == expected, i_Path.toNarrow() + " at " + pNode->name().toNarrow() + "\n" + text +
                                         "with the steps to the node:\n" + expected);
    }
}

/// How many steps of the path may each visit the whole document; the reference walk takes that
/// many times the size of the document.
inline std::size_t wideSteps(const String& i_Path)
{
    const std::wstring_view path = viewOf(i_Path);
    std::size_t count = 0;
    for (const std::wstring_view mark : {L"//", L"::", L".."})
    {
        for (std::size_t place = path.find(mark); place != std::wstring_view::npos; place = path.find(mark, place + 1))
        {
            ++count;
        }
    }
    return count;
}

/// The walk selects what plain recursion selects.
inline void checkWalk(const String& i_Path, Node* i_pRoot)
{
    constexpr std::size_t mostWideSteps = 3;
    if (wideSteps(i_Path) > mostWideSteps)
    {
        return;
    }
    const std::string expected = ReferenceWalk::select(i_pRoot, i_Path);
    const std::string found = selectRecords(i_pRoot, i_Path);
    FUZZ_CHECK(found == expected, i_Path.toNarrow() + "\n" + found + "by the reference:\n" + expected);
}

/// The elements of a tree in document order, at most \p i_Most of them.
inline std::vector<Node*> elementsOf(Node* i_pRoot, std::size_t i_Most = std::numeric_limits<std::size_t>::max())
{
    std::vector<Node*> elements;
    for (Node* pNode = i_pRoot; pNode && elements.size() < i_Most;)
    {
        if (pNode->getType() == Node::ElementNode)
        {
            elements.push_back(pNode);
        }
        Node* pNext = pNode->children().front();
        while (!pNext && pNode != i_pRoot)
        {
            pNext = pNode->nextSibling();
            if (!pNext)
            {
                pNode = pNode->getParent();
            }
        }
        pNode = pNext;
    }
    return elements;
}

/// All of the above, as the choices want it, from the root (place 0) and from another node of a small tree (place 1).
inline void checkEvaluation(const String& i_Text, const std::vector<Node*>& i_Elements, CheckChoice i_Choice,
                            CheckChoice i_Place, bool i_IsTraced)
{
    Place root = placeOf(i_Elements.front(), 0);
    Place other = placeOf(i_Elements[i_Elements.size() / 2], XmlPlugin::XPathExpression::OwnPlace);
    other.m_Context.m_pNodes = other.m_List.empty() ? nullptr : &other.m_List;
    if (i_Place.isDue(0))
    {
        checkAnswers(i_Text, root, other, i_Choice, i_IsTraced);
    }
    if (i_Place.isDue(1))
    {
        checkAnswers(i_Text, other, root, i_Choice, false);
    }
    if (!i_Choice.isDue(Operands) && !i_Choice.isDue(Walks))
    {
        return;
    }
    for (const String& path : pathsOf(i_Text))
    {
        if (i_Choice.isDue(Operands))
        {
            checkOperand(path, i_Elements);
        }
        if (i_Choice.isDue(Walks))
        {
            checkWalk(path, i_Elements.front());
        }
    }
}
