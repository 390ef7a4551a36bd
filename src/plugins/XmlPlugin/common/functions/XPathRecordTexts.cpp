#include "functions/XPathRecordTexts.h"

#include "functions/XPathStringFunctions.h"
#include "values/XPathNumberText.h"
#include "xmlproxy/Node.h"

#include <algorithm>
#include <deque>
#include <unordered_set>

namespace XmlPlugin
{

namespace
{

/// The texts of records, one after the other: the value, or when that is empty the text of the
/// source node.
///
/// Nodes below a node without text have none either, and are not walked again: records come in
/// document order, and nodes that nest deeply would otherwise be walked once for each of them.
class RecordTexts
{
public:
    /// Valid until the next call.
    std::wstring_view next(const XPathOutputElement& i_Record)
    {
        if (!i_Record.m_Value.isEmpty())
        {
            return i_Record.m_Value.view();
        }
        m_Text = String();
        if (!isKnownToBeEmpty(i_Record.m_pNode))
        {
            XPathFunction_string::getTextFromNode(i_Record.m_pNode, m_Text);
            if (m_Text.length() == 0)
            {
                remember(*i_Record.m_pNode);
            }
        }
        return viewOf(m_Text);
    }

private:
    bool isKnownToBeEmpty(const Node* i_pNode) const noexcept
    {
        return !i_pNode || !i_pNode->mayHaveText() || (i_pNode->sequence() > m_First && i_pNode->sequence() <= m_Last);
    }

    void remember(const Node& i_Node) noexcept
    {
        const Node* pLast = &i_Node;
        while (!pLast->children().empty())
        {
            pLast = pLast->children().back();
        }
        m_First = i_Node.sequence();
        m_Last = m_First > 0 ? pLast->sequence() : 0; // nodes of a copy have no place in a document
    }

    String m_Text;
    unsigned m_First = 0; ///< places in document order: of a node without text, which is not included,
    unsigned m_Last = 0;  ///< and of its last descendant, which is
};

} // namespace

bool hasText(const XPathOutputList& i_Records, std::wstring_view i_Text)
{
    RecordTexts texts;
    return std::any_of(i_Records.begin(), i_Records.end(),
                       [&](const XPathOutputElement* i_pRecord) { return texts.next(*i_pRecord) == i_Text; });
}

bool hasOtherText(const XPathOutputList& i_Records, std::wstring_view i_Text)
{
    RecordTexts texts;
    return std::any_of(i_Records.begin(), i_Records.end(),
                       [&](const XPathOutputElement* i_pRecord) { return texts.next(*i_pRecord) != i_Text; });
}

bool haveCommonText(const XPathOutputList& i_Left, const XPathOutputList& i_Right)
{
    const bool isLeftShorter = i_Left.size() <= i_Right.size();
    const XPathOutputList& shorter = isLeftShorter ? i_Left : i_Right;
    const XPathOutputList& longer = isLeftShorter ? i_Right : i_Left;
    std::unordered_set<std::wstring_view> known;
    std::deque<String> nodeTexts; // what views in the set look at
    RecordTexts texts;
    for (const XPathOutputElement* pRecord : shorter)
    {
        std::wstring_view text = texts.next(*pRecord);
        if (pRecord->m_Value.isEmpty() && !text.empty())
        {
            text = viewOf(nodeTexts.emplace_back(text.data(), text.size()));
        }
        known.insert(text.empty() ? std::wstring_view() : text);
    }
    RecordTexts others;
    return std::any_of(longer.begin(), longer.end(),
                       [&](const XPathOutputElement* i_pRecord) { return known.contains(others.next(*i_pRecord)); });
}

bool haveDifferentTexts(const XPathOutputList& i_Left, const XPathOutputList& i_Right)
{
    if (i_Left.empty() || i_Right.empty())
    {
        return false;
    }
    RecordTexts texts;
    const std::wstring_view first = texts.next(*i_Left.front());
    return hasOtherText(i_Right, first) || hasOtherText(i_Left, first);
}

NumberRange numberRangeOf(const XPathOutputList& i_Records)
{
    NumberRange range;
    RecordTexts texts;
    for (const XPathOutputElement* pRecord : i_Records)
    {
        double number = 0.0;
        if (!XPathNumberText::readOperand(texts.next(*pRecord), number))
        {
            continue;
        }
        if (!(number >= range.m_Smallest))
        {
            range.m_Smallest = number;
        }
        if (!(number <= range.m_Largest))
        {
            range.m_Largest = number;
        }
    }
    return range;
}

} // namespace XmlPlugin
