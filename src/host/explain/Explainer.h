#pragma once

#include "advice/RefusalAdvisor.h"
#include "explain/ExpressionFacts.h"
#include "plugin/Evaluator.h"
#include "plugin/MinimalDocument.h"

#include <memory>
#include <string>

struct Options;

/// Finds out how the plug-in understands an expression. Evaluates it with all trace records, which makes the plug-in's
/// general code answer; then without any, so that the quick code answers; and compares the two. Then evaluates its
/// location paths and predicates one by one.
///
/// Ownership: borrows the evaluator, which must outlive it. Owns a document.
/// Threads: one at a time.
/// Tested by: tests/host/explain/ExplainTest.cpp, tests/host/explain/DialectTouchesTest.cpp
class Explainer
{
public:
    explicit Explainer(Evaluator& io_Evaluator);

    /// \p i_Path is the document to evaluate on (UTF-8); if it is empty, a document with a single element is used.
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

/// Explains each expression of the options on standard output. Returns the exit status: 0 unless an expression or the
/// document is rejected.
int explainAll(const Options& i_Options, Evaluator& io_Evaluator);
