#include "RandomCases.h"

#include "XPathEvalContext.h"
#include "XPathExpressionsParser.h"
#include "XPathRecords.h"
#include "trace/Trace.h"
#include "xmlproxy/Node.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

// What must hold for every expression on every document, asserted on random ones: the code is one
// of the list; a scalar result is one value; a node set has ascending keys; the answer does not
// depend on how often, with which object and under which tracing it is asked for.

using namespace XmlPlugin;

namespace
{

#if defined(__SANITIZE_ADDRESS__)
constexpr int s_CasesPerTest = 5'000;
#else
constexpr int s_CasesPerTest = 50'000;
#endif
constexpr int s_ExpressionsPerDocument = 20;

/// Takes every record and keeps none.
class SwallowedTrace final : public TraceSink
{
public:
    SwallowedTrace() { Tracer::install(this, TraceInformation); }
    ~SwallowedTrace() override { Tracer::install(nullptr, TraceOff); }
    SwallowedTrace(const SwallowedTrace&) = delete;
    SwallowedTrace& operator=(const SwallowedTrace&) = delete;

    void write(const TraceRecord& i_Record) override { m_Length += i_Record.text.view().size(); }
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
            o_Out << "\n  " << value.m_OrderKey << " \"" << value.m_Value.toNarrow() << '"';
        return o_Out;
    }
};

/// Where an expression is evaluated.
struct Place
{
    Node* m_pNode = nullptr;
    int m_RootPosition = 0;
    NodeVector m_List;          ///< the node's element siblings with itself
    XPathEvalContext m_Context; ///< without nodes at the root
};

Place placeOf(Node* i_pNode, int i_RootPosition)
{
    Place place{i_pNode, i_RootPosition, {}, {}};
    if (!i_pNode->getParent())
        return place;
    for (Node* pSibling : i_pNode->getParent()->children())
    {
        if (pSibling->getType() != Node::ElementNode)
            continue;
        if (pSibling == i_pNode)
            place.m_Context.m_Current = place.m_List.size();
        place.m_List.push_back(pSibling);
    }
    return place;
}

Answer read(XPathExpressionsParser& io_Parser, TErrorCode i_RunCode)
{
    Answer answer;
    answer.m_RunCode = i_RunCode;
    if (i_RunCode != 0)
        return answer;
    XPathRecords records;
    answer.m_ValuesCode = io_Parser.getValues(records.list());
    if (answer.m_ValuesCode == 0)
        answer.m_Type = io_Parser.getOutputType();
    for (const XPathOutputElement* pRecord : records.list())
        answer.m_Values.push_back({pRecord->m_Value, pRecord->m_NodeText, pRecord->m_OrderKey, pRecord->m_pNode});
    return answer;
}

void prepare(XPathExpressionsParser& io_Parser, const Place& i_Place)
{
    if (i_Place.m_Context.m_pNodes)
        io_Parser.setEvalContext(&i_Place.m_Context);
    io_Parser.setRootPosition(i_Place.m_RootPosition);
}

Answer evaluateOnce(const String& i_Text, const Place& i_Place)
{
    XPathExpressionsParser parser(i_Text);
    prepare(parser, i_Place);
    return read(parser, parser.runParser(i_Place.m_pNode));
}

/// A code that `runParser` or `getValues` may answer.
bool isListed(TErrorCode i_Code)
{
    return std::strcmp(xmlErrorText(i_Code), "unknown error") != 0;
}

void checkShape(const Answer& i_Answer)
{
    EXPECT_TRUE(isListed(i_Answer.m_RunCode)) << i_Answer.m_RunCode;
    EXPECT_TRUE(isListed(i_Answer.m_ValuesCode)) << i_Answer.m_ValuesCode;
    if (i_Answer.m_RunCode != 0 || i_Answer.m_ValuesCode != 0)
    {
        EXPECT_TRUE(i_Answer.m_Values.empty()) << i_Answer;
        return;
    }
    ASSERT_GE(i_Answer.m_Type, BooleanType);
    ASSERT_LE(i_Answer.m_Type, NodeSetType);
    if (i_Answer.m_Type != NodeSetType)
    {
        ASSERT_EQ(i_Answer.m_Values.size(), 1U) << i_Answer;
        EXPECT_EQ(i_Answer.m_Values[0].m_pNode, nullptr);
        return;
    }
    for (std::size_t i = 1; i < i_Answer.m_Values.size(); ++i)
        EXPECT_LT(i_Answer.m_Values[i - 1].m_OrderKey, i_Answer.m_Values[i].m_OrderKey) << i_Answer;
}

/// All properties of one case. Answers what the expression answered.
Answer check(const String& i_Text, const Place& i_Place, const Place& i_Elsewhere)
{
    XPathExpressionsParser parser(i_Text);
    prepare(parser, i_Place);
    const Answer first = read(parser, parser.runParser(i_Place.m_pNode));
    checkShape(first);
    EXPECT_EQ(read(parser, first.m_RunCode), first) << "values read twice";

    prepare(parser, i_Elsewhere);
    static_cast<void>(read(parser, parser.runParser(i_Elsewhere.m_pNode)));
    parser.setEvalContext(nullptr);
    prepare(parser, i_Place);
    EXPECT_EQ(read(parser, parser.runParser(i_Place.m_pNode)), first) << "second run of the same object";

    const String clone(i_Text.c_str(), i_Text.view().size());
    EXPECT_EQ(evaluateOnce(clone, i_Place), first) << "another object";
    {
        SwallowedTrace trace;
        EXPECT_EQ(evaluateOnce(i_Text, i_Place), first) << "traced";
        EXPECT_GT(trace.length(), 0U);
    }
    return first;
}

enum class TextKind
{
    Grammatical,
    Mutated,
    Garbage
};

/// One share of the cases: texts of one kind, with a seed of their own.
struct Share
{
    TextKind m_Kind;
    std::uint64_t m_Seed;
    int m_LeastAnswered; ///< percentage of cases that must have a value, so that the makers stay of use
};

class PropertyTest : public testing::TestWithParam<Share>
{
protected:
    static std::string text(ExpressionMaker& io_Maker, TextKind i_Kind)
    {
        switch (i_Kind)
        {
        case TextKind::Mutated:
            return io_Maker.mutated();
        case TextKind::Garbage:
            return io_Maker.garbage();
        default:
            return io_Maker.grammatical();
        }
    }

    /// The root in most cases.
    Place somewhere(const DocumentMaker& i_Documents)
    {
        const std::vector<Node*>& elements = i_Documents.elements();
        Node* const pNode = m_Random.chance(70) ? elements[0] : elements[m_Random.below(elements.size())];
        const int position = m_Random.chance(50) ? XPathExpression::OwnPlace : static_cast<int>(m_Random.below(4));
        return placeOf(pNode, pNode == elements[0] ? 0 : position);
    }

    Random m_Random{GetParam().m_Seed};
};

std::string written(const Node& i_Root)
{
    std::ostringstream out;
    i_Root.write(out, 0);
    return out.str();
}

TEST_P(PropertyTest, HoldsForEveryCase)
{
    DocumentMaker documents(m_Random);
    ExpressionMaker expressions(m_Random);
    std::unique_ptr<Node> pRoot;
    int answered = 0;
    std::array<int, NodeSetType + 1> perType{};
    int sets = 0; // node sets of several records
    for (int number = 0; number < s_CasesPerTest; ++number)
    {
        if (number % s_ExpressionsPerDocument == 0)
            pRoot = documents.make();
        const std::string expression = text(expressions, GetParam().m_Kind);
        Place place = somewhere(documents);
        Place elsewhere = somewhere(documents);
        for (Place* pPlace : {&place, &elsewhere})
            pPlace->m_Context.m_pNodes = pPlace->m_List.empty() ? nullptr : &pPlace->m_List;
        const Answer answer = check(String(expression.data(), expression.size()), place, elsewhere);
        if (!answer.m_Values.empty())
        {
            ++answered;
            ++perType[static_cast<std::size_t>(answer.m_Type)];
            sets += answer.m_Values.size() > 1;
        }
        ASSERT_FALSE(HasFailure()) << "case " << number << " of seed " << GetParam().m_Seed << ": " << expression
                                   << "\nstart node " << place.m_pNode->sequence() << " at " << place.m_RootPosition
                                   << " in\n"
                                   << written(*pRoot);
    }
    EXPECT_GE(answered, s_CasesPerTest / 100 * GetParam().m_LeastAnswered);
    if (GetParam().m_Kind == TextKind::Grammatical)
    {
        for (const int count : perType)
            EXPECT_GE(count, s_CasesPerTest / 40);
        EXPECT_GE(sets, s_CasesPerTest / 100);
    }
}

std::vector<Share> shares()
{
    std::vector<Share> all;
    for (std::uint64_t seed = 1; seed <= 8; ++seed)
        all.push_back({TextKind::Grammatical, seed, 50});
    for (std::uint64_t seed = 101; seed <= 103; ++seed)
        all.push_back({TextKind::Mutated, seed, 5});
    for (std::uint64_t seed = 201; seed <= 202; ++seed)
        all.push_back({TextKind::Garbage, seed, 1});
    return all;
}

std::string nameOf(const testing::TestParamInfo<Share>& i_Info)
{
    static constexpr const char* s_Kinds[] = {"Grammatical", "Mutated", "Garbage"};
    return s_Kinds[static_cast<int>(i_Info.param.m_Kind)] + std::to_string(i_Info.param.m_Seed);
}

INSTANTIATE_TEST_SUITE_P(Shares, PropertyTest, testing::ValuesIn(shares()), nameOf);

} // namespace
