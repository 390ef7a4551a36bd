#pragma once

#include "explain/ExpressionFacts.h"
#include "trace/Trace.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

/// Collects from the plug-in's trace records how one expression is read and evaluated.
///
/// Threads: one at a time.
/// Tested by: tests/host/explain/ExplainTest.cpp
class TraceReader final : public TraceSink
{
public:
    void write(const TraceRecord& i_Record) override;

    /// The expression itself: tokens, tree and conversions.
    ExpressionFacts& expression() { return m_Expression; }
    /// The facts from the first evaluation of each predicate, by its text; empty for predicates that were never
    /// evaluated.
    std::map<std::string, ExpressionFacts>& predicates() { return m_Predicates; }
    /// The first location path that was evaluated; its text is empty if there was none.
    PathFact path() const;

private:
    /// An evaluation in progress.
    struct Frame
    {
        ExpressionFacts* pFacts = nullptr; ///< null if this is not the first evaluation
        std::size_t token = 0;             ///< where the search for the next operand begins
        std::vector<std::size_t> stack;
        std::vector<std::size_t> operators; ///< the operators that have begun: at most one
        std::size_t argumentsSeen = 0;
        std::vector<std::size_t> taken;
        std::string lastCreated;
        std::string conversion;
        std::size_t converted = 0;            ///< number of the operator's arguments converted so far
        std::size_t firstConversion = 0;      ///< index of the operator's first conversion among all
        std::optional<std::size_t> evaluated; ///< the operand whose path is walked
    };

    struct StepRecord
    {
        std::string text;
        TErrorCode code;
    };

    void readTokenizer(const std::string& i_Text);
    void readDump(const std::string& i_Text);
    void readToken(const std::string& i_Text);
    void readPredicate(const std::string& i_Text);
    void readEvaluation(const std::string& i_Text);
    void readConversion(const std::string& i_Text);
    void readCreated(const std::string& i_Text);
    void readPath(const std::string& i_Text);
    void readSplit(const std::string& i_Text);
    void readStep(const std::string& i_Text);
    void readPathEnd(const std::string& i_Text);

    ExpressionFacts* factsToFill(bool& o_IsKnown);
    void beginEvaluation();
    void endEvaluation();
    void addNode(const std::string& i_Text);
    static void addConversion(Frame& io_Frame, const std::string& i_Told);
    void setOperandType();
    void beginOperator(const std::string& i_Text);
    void endOperator();
    void setResult(const std::string& i_Text);
    void setType(const std::string& i_Text);

    ExpressionFacts m_Expression;
    std::map<std::string, ExpressionFacts> m_Predicates;
    std::map<std::string, std::vector<TokenFact>> m_Tokens; ///< by the text that was split into them
    std::string m_Tokenized;
    std::vector<std::string> m_PredicateTexts; ///< of the predicates in progress
    std::vector<Frame> m_Frames;
    bool m_IsDone = false; ///< the expression has been evaluated once
    std::string m_PathText;
    bool m_IsPathOpen = false;
    std::vector<std::vector<StepRecord>> m_Branches;
};
