#pragma once

#include "compile/XPathExpressionsParser.h"
#include "trace/Trace.h"
#include "values/XPathEvalContext.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <vector>

/// Support of the tests: what an expression answers at a place of a document, as a value that can
/// be compared and printed.

/// Takes every record and keeps none.
class SwallowedTrace final : public TraceSink
{
public:
    explicit SwallowedTrace(int i_Level = TraceInformation) { Tracer::install(this, i_Level); }
    ~SwallowedTrace() override { Tracer::install(nullptr, TraceOff); }
    SwallowedTrace(const SwallowedTrace&) = delete;
    SwallowedTrace& operator=(const SwallowedTrace&) = delete;

    void write(const TraceRecord& i_Record) override { m_Length += viewOf(i_Record.text).size(); }
    std::size_t length() const noexcept { return m_Length; }

private:
    std::size_t m_Length = 0;
};

struct Value
{
    String m_Value;
    String m_NodeText;
    std::int32_t m_OrderKey;
    const Node* m_pNode;

    friend bool operator==(const Value&, const Value&) = default;
};

struct Answer
{
    TErrorCode m_RunCode = 0;
    TErrorCode m_ValuesCode = 0;
    int m_Type = -1; ///< -1 when there is no result
    std::vector<Value> m_Values;

    friend bool operator==(const Answer&, const Answer&) = default;
    friend std::ostream& operator<<(std::ostream& o_Out, const Answer& i_Answer)
    {
        o_Out << "codes " << i_Answer.m_RunCode << " and " << i_Answer.m_ValuesCode << ", type " << i_Answer.m_Type;
        for (const Value& value : i_Answer.m_Values)
        {
            o_Out << "\n  " << value.m_OrderKey << " \"" << value.m_Value.toNarrow() << '"';
        }
        return o_Out;
    }
};

/// Where an expression is evaluated.
struct Place
{
    Node* m_pNode = nullptr;
    int m_RootPosition = 0;
    XmlPlugin::NodeVector m_List;          ///< the node's element siblings with itself
    XmlPlugin::XPathEvalContext m_Context; ///< without nodes at the root
};

inline Place placeOf(Node* i_pNode, int i_RootPosition)
{
    Place place{i_pNode, i_RootPosition, {}, {}};
    if (!i_pNode->getParent())
    {
        return place;
    }
    for (Node* pSibling : i_pNode->getParent()->children())
    {
        if (pSibling->getType() != Node::ElementNode)
        {
            continue;
        }
        if (pSibling == i_pNode)
        {
            place.m_Context.m_Current = place.m_List.size();
        }
        place.m_List.push_back(pSibling);
    }
    return place;
}

inline Answer read(XmlPlugin::XPathExpressionsParser& io_Parser, TErrorCode i_RunCode)
{
    Answer answer;
    answer.m_RunCode = i_RunCode;
    if (i_RunCode != 0)
    {
        return answer;
    }
    XmlPlugin::XPathOutputList records;
    answer.m_ValuesCode = io_Parser.getValues(records);
    if (answer.m_ValuesCode == 0)
    {
        answer.m_Type = io_Parser.getOutputType();
    }
    for (const XmlPlugin::XPathOutputElement* pRecord : records)
    {
        answer.m_Values.push_back({pRecord->m_Value, pRecord->m_NodeText, pRecord->m_OrderKey, pRecord->m_pNode});
    }
    return answer;
}

inline void prepare(XmlPlugin::XPathExpressionsParser& io_Parser, const Place& i_Place)
{
    if (i_Place.m_Context.m_pNodes)
    {
        io_Parser.setEvalContext(&i_Place.m_Context);
    }
    io_Parser.setRootPosition(i_Place.m_RootPosition);
}

inline Answer evaluateOnce(const String& i_Text, const Place& i_Place)
{
    XmlPlugin::XPathExpressionsParser parser(i_Text);
    prepare(parser, i_Place);
    return read(parser, parser.runParser(i_Place.m_pNode));
}

/// A code that `runParser` or `getValues` may answer.
inline bool isListed(TErrorCode i_Code)
{
    return std::strcmp(xmlErrorText(i_Code), "unknown error") != 0;
}
