#pragma once

#include "advice/RefusalAdvisor.h"
#include "explain/ExpressionFacts.h"
#include "plugin/Evaluator.h"
#include "plugin/MinimalDocument.h"

#include <memory>
#include <string>

struct Options;

/// Finds out how the plug-in understands an expression: evaluates it with all trace records, which the plug-in's
/// general code writes, once more without any, so that its quick code answers, and compares the two. Then asks for its
/// location paths and predicates one by one.
///
/// Ownership: borrows the evaluator; has a document of its own.
/// Threads: one at a time.
/// Tested by: tests/host/explain/ExplainTest.cpp, tests/host/explain/DialectTouchesTest.cpp
class Explainer
{
public:
    explicit Explainer(Evaluator& io_Evaluator);

    /// \p i_Path names the document to ask; empty: one of a single element.
    ExpressionFacts explain(const std::string& i_Expression, const std::string& i_Path);

private:
    ExpressionFacts read(const std::string& i_Expression, const std::string& i_Path,
                         std::map<std::string, ExpressionFacts>& o_Predicates);
    void addPaths(ExpressionFacts& io_Facts);
    PathFact readPath(const std::string& i_Path);
    void compareUnobserved(ExpressionFacts& io_Facts, const std::string& i_Path);
    void addPredicates(ExpressionFacts& io_Facts, std::map<std::string, ExpressionFacts>& io_Known);
    void askForValues(ExpressionFacts& io_Facts, const std::string& i_Path);
    void addDifferences(ExpressionFacts& io_Facts);

    Evaluator& m_Evaluator;
    MinimalDocument m_Document;
    RefusalAdvisor m_Advisor;
};

/// Explains each expression of the options to the standard output. Result: the exit status, 0 unless an expression or
/// the document is refused.
int explainAll(const Options& i_Options, Evaluator& io_Evaluator);
