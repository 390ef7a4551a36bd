#include "Evaluations.h"
#include "RandomCases.h"

#include "CaseScale.h"
#include "values/XPathQuickCode.h"
#include "xmlproxy/Node.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

// What must hold for every expression on every document, asserted on random ones: the code is one
// of the list; a scalar result is one value; a node set has ascending keys; the answer does not
// depend on how often, with which object, by which code and under which tracing it is asked for.

using namespace XmlPlugin;

namespace
{

#if defined(__SANITIZE_ADDRESS__)
const int s_CasesPerTest = 5'000 * scale();
#else
const int s_CasesPerTest = 50'000 * scale();
#endif
constexpr int s_ExpressionsPerDocument = 20;

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
    {
        EXPECT_LT(i_Answer.m_Values[i - 1].m_OrderKey, i_Answer.m_Values[i].m_OrderKey) << i_Answer;
    }
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

    const String clone(i_Text.c_str(), viewOf(i_Text).size());
    EXPECT_EQ(evaluateOnce(clone, i_Place), first) << "another object";
    {
        const XPathQuickCode::Forbidden general;
        EXPECT_EQ(evaluateOnce(i_Text, i_Place), first) << "by the general code";
    }
    {
        SwallowedTrace trace;
        EXPECT_EQ(evaluateOnce(i_Text, i_Place), first) << "traced";
        EXPECT_GT(trace.length(), 0U);
    }
    {
        const SwallowedTrace errors(TraceError);
        EXPECT_EQ(evaluateOnce(i_Text, i_Place), first) << "only errors traced";
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
        {
            pRoot = documents.make();
        }
        const std::string expression = text(expressions, GetParam().m_Kind);
        Place place = somewhere(documents);
        Place elsewhere = somewhere(documents);
        for (Place* pPlace : {&place, &elsewhere})
        {
            pPlace->m_Context.m_pNodes = pPlace->m_List.empty() ? nullptr : &pPlace->m_List;
        }
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
        {
            EXPECT_GE(count, s_CasesPerTest / 40);
        }
        EXPECT_GE(sets, s_CasesPerTest / 100);
    }
}

std::vector<Share> shares()
{
    std::vector<Share> all;
    for (std::uint64_t seed = 1; seed <= 8; ++seed)
    {
        all.push_back({TextKind::Grammatical, seed, 50});
    }
    for (std::uint64_t seed = 101; seed <= 103; ++seed)
    {
        all.push_back({TextKind::Mutated, seed, 5});
    }
    for (std::uint64_t seed = 201; seed <= 202; ++seed)
    {
        all.push_back({TextKind::Garbage, seed, 1});
    }
    return all;
}

std::string nameOf(const testing::TestParamInfo<Share>& i_Info)
{
    static constexpr const char* s_Kinds[] = {"Grammatical", "Mutated", "Garbage"};
    return s_Kinds[static_cast<int>(i_Info.param.m_Kind)] + std::to_string(i_Info.param.m_Seed);
}

INSTANTIATE_TEST_SUITE_P(Shares, PropertyTest, testing::ValuesIn(shares()), nameOf);

} // namespace
