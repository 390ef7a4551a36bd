#include "explain/Explainer.h"

#include "advice/ExpressionText.h"
#include "explain/DialectDocument.h"
#include "explain/DialectRules.h"
#include "explain/ExplanationDot.h"
#include "explain/ExplanationText.h"
#include "explain/FactQueries.h"
#include "explain/TraceReader.h"
#include "input/Options.h"
#include "input/SpooledInput.h"
#include "output/ErrorReport.h"
#include "plugin/ErrorFault.h"
#include "system/Console.h"

#include <algorithm>
#include <optional>
#include <set>

namespace
{

/// Bounds for expressions that programs have written: anything beyond them is left out.
constexpr std::size_t s_MaximumPaths = 64;
constexpr std::size_t s_MaximumPredicates = 64;
constexpr std::size_t s_MaximumValues = 16;

constexpr int s_ErrorStatus = 2;

/// Passes the records of one evaluation to a reader.
class Observation
{
public:
    Observation(Evaluator& io_Evaluator, TraceSink& io_Reader) : m_Evaluator(io_Evaluator)
    {
        m_Evaluator.observe(&io_Reader);
    }
    ~Observation() { m_Evaluator.observe(nullptr); }
    Observation(const Observation&) = delete;
    Observation& operator=(const Observation&) = delete;

private:
    Evaluator& m_Evaluator;
};

std::vector<std::string> predicateTexts(const ExpressionFacts& i_Facts)
{
    std::vector<std::string> texts;
    FactQueries::anyStep(i_Facts,
                         [&](const BranchFact&, const StepFact& i_Step, std::size_t)
                         {
                             texts.insert(texts.end(), i_Step.predicates.begin(), i_Step.predicates.end());
                             return false;
                         });
    return texts;
}

/// Facts from the evaluation of the predicate in its path take precedence over those from evaluating it alone.
void merge(const ExpressionFacts& i_Own, ExpressionFacts& io_Facts)
{
    io_Facts.codes = i_Own.codes;
    if (!i_Own.nodes.empty())
    {
        io_Facts.nodes = i_Own.nodes;
        io_Facts.stack = i_Own.stack;
        io_Facts.conversions = i_Own.conversions;
        io_Facts.hasDocument = true;
    }
}

void collectDifferences(const ExpressionFacts& i_Facts, std::set<int>& io_Numbers)
{
    for (const auto& rules : {readingRules(), pathRules(), callRules(), valueRules()})
    {
        for (const DialectRule& rule : rules)
        {
            if (rule.applies(i_Facts))
            {
                io_Numbers.insert(rule.difference);
            }
        }
    }
}

} // namespace

Explainer::Explainer(Evaluator& io_Evaluator) : m_Evaluator(io_Evaluator), m_Advisor(io_Evaluator) {}

ExpressionFacts Explainer::explain(const std::string& i_Expression, const std::string& i_Path)
{
    std::map<std::string, ExpressionFacts> predicates;
    const std::string& document = i_Path.empty() ? m_Document.path() : i_Path;
    ExpressionFacts facts = read(i_Expression, document, predicates);
    compareUnobserved(facts, document);
    facts.hasDocument = !i_Path.empty();
    if (facts.isRefused())
    {
        facts.differences = isDocumentError(facts.code) ? std::vector<Hint>() : m_Advisor.whyRefused(i_Expression);
        return facts;
    }
    addPaths(facts);
    addPredicates(facts, predicates);
    if (facts.hasDocument)
    {
        askForValues(facts, i_Path);
    }
    addDifferences(facts);
    return facts;
}

ExpressionFacts Explainer::read(const std::string& i_Expression, const std::string& i_Path,
                                std::map<std::string, ExpressionFacts>& o_Predicates)
{
    TraceReader reader;
    const Observation observation(m_Evaluator, reader);
    const Outcome outcome = m_Evaluator.probe(i_Path, i_Expression);
    ExpressionFacts facts = std::move(reader.expression());
    facts.text = i_Expression;
    facts.code = outcome.code;
    facts.recognisedUpTo = outcome.recognisedUpTo;
    facts.reason = outcome.reason;
    facts.values = outcome.values;
    o_Predicates = std::move(reader.predicates());
    FactQueries::markConstants(facts);
    for (auto& [text, predicate] : o_Predicates)
    {
        FactQueries::markConstants(predicate);
    }
    return facts;
}

void Explainer::compareUnobserved(ExpressionFacts& io_Facts, const std::string& i_Path)
{
    Outcome outcome = m_Evaluator.probe(i_Path, io_Facts.text);
    if (outcome.code != io_Facts.code || outcome.values != io_Facts.values)
    {
        io_Facts.unobserved = AnswerFact{outcome.code, std::move(outcome.values)};
    }
}

/// Evaluates each operand that is a path by itself, so that paths which no operator reaches are shown too.
void Explainer::addPaths(ExpressionFacts& io_Facts)
{
    std::set<std::string> seen;
    for (const TreeNode& node : io_Facts.nodes)
    {
        const std::string text(ExpressionText::trim(node.text));
        if (FactQueries::isPath(node) && seen.size() < s_MaximumPaths && seen.insert(text).second)
        {
            io_Facts.paths.push_back(readPath(text));
        }
    }
}

PathFact Explainer::readPath(const std::string& i_Path)
{
    TraceReader reader;
    const Observation observation(m_Evaluator, reader);
    m_Evaluator.probe(m_Document.path(), i_Path);
    PathFact path = reader.path();
    path.text = i_Path;
    return path;
}

void Explainer::addPredicates(ExpressionFacts& io_Facts, std::map<std::string, ExpressionFacts>& io_Known)
{
    std::vector<std::string> pending = predicateTexts(io_Facts);
    std::set<std::string> seen;
    for (std::size_t i = 0; i < pending.size() && seen.size() < s_MaximumPredicates; ++i)
    {
        const std::string text = pending[i];
        if (!seen.insert(text).second)
        {
            continue;
        }
        std::map<std::string, ExpressionFacts> ignored;
        ExpressionFacts facts = read(text, m_Document.path(), ignored);
        facts.isPredicate = true;
        merge(io_Known[text], facts);
        addPaths(facts);
        const std::vector<std::string> inner = predicateTexts(facts);
        pending.insert(pending.end(), inner.begin(), inner.end());
        io_Facts.predicates.push_back(std::move(facts));
    }
}

/// Finds out the values of paths that a rule needs, and whether the document has a default namespace.
void Explainer::askForValues(ExpressionFacts& io_Facts, const std::string& i_Path)
{
    std::size_t count = 0;
    for (TreeNode& node : io_Facts.nodes)
    {
        if (FactQueries::isPath(node) && count++ < s_MaximumValues)
        {
            const Outcome outcome = m_Evaluator.probe(i_Path, node.text);
            node.first = outcome.values.empty() ? std::nullopt : std::optional(outcome.values.front());
        }
    }
    io_Facts.hasDefaultNamespace = !m_Evaluator.probe(i_Path, "*/@xmlns | //*/@xmlns").values.empty();
}

void Explainer::addDifferences(ExpressionFacts& io_Facts)
{
    std::set<int> numbers;
    collectDifferences(io_Facts, numbers);
    for (const ExpressionFacts& predicate : io_Facts.predicates)
    {
        collectDifferences(predicate, numbers);
    }
    const auto& known = DialectDocument::own().differences();
    for (const int number : numbers)
    {
        const auto found = known.find(number);
        io_Facts.differences.push_back({number, found == known.end() ? "" : found->second.title});
    }
}

// --- The tool's answer --------------------------------------------------------------------------

namespace
{

int explainOne(Explainer& io_Explainer, const std::string& i_Expression, const std::string& i_Path,
               const std::string& i_Name, const Options& i_Options, const char* i_pGap)
{
    const ExpressionFacts facts = io_Explainer.explain(i_Expression, i_Path);
    if (facts.isRefused())
    {
        Outcome outcome;
        outcome.code = facts.code;
        outcome.recognisedUpTo = facts.recognisedUpTo;
        outcome.hints = facts.differences;
        outcome.reason = facts.reason;
        const Palette palette = Palette::choose(i_Options.color, Console::isErrorTerminal());
        Console::writeErrorLine(errorMessage(outcome, i_Name, i_Expression, palette));
        if (facts.unobserved)
        {
            Console::writeErrorLine(describeUnobserved(facts));
        }
        return s_ErrorStatus;
    }
    Console::write(i_pGap);
    Console::write(i_Options.explain == ExplainForm::Dot ? printExplanationDot(facts) : printExplanation(facts));
    return 0;
}

} // namespace

int explainAll(const Options& i_Options, Evaluator& io_Evaluator)
{
    const std::string name = i_Options.files.empty() ? std::string() : i_Options.files.front();
    std::optional<SpooledInput> input;
    std::string path = name;
    if (name == "-")
    {
        input.emplace();
        path = input->path();
    }
    Explainer explainer(io_Evaluator);
    int status = 0;
    bool isFirst = true;
    for (const std::string& expression : i_Options.expressions)
    {
        const bool wantsGap = !isFirst && i_Options.explain == ExplainForm::Text;
        const int answer = explainOne(explainer, expression, path, name == "-" ? "(standard input)" : name, i_Options,
                                      wantsGap ? "\n" : "");
        isFirst = isFirst && answer != 0;
        status = std::max(status, answer);
    }
    return status;
}
