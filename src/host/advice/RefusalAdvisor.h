#pragma once

#include "plugin/Evaluator.h"
#include "plugin/Hint.h"
#include "plugin/MinimalDocument.h"

#include <memory>
#include <string>
#include <vector>

/// Finds out which differences of the dialect from XPath 1.0 cause an expression to be rejected.
///
/// It does not guess. It replaces each suspicious part of the expression with something similar that the dialect
/// accepts, and asks the plug-in again. A part is a cause if the expression is accepted with all parts replaced, and
/// rejected with all but this part replaced.
///
/// Ownership: borrows the evaluator, which must outlive it. Owns a document, which it creates when needed.
/// Threads: one at a time.
/// Tested by: tests/host/advice/RefusalAdvisorTest.cpp
class RefusalAdvisor
{
public:
    explicit RefusalAdvisor(Evaluator& io_Evaluator) : m_Evaluator(io_Evaluator) {}

    /// Returns one hint per difference, in the order of the parts; none if no difference is the cause.
    std::vector<Hint> whyRefused(const std::string& i_Expression);

private:
    std::vector<Hint> askThePlugin(const std::string& i_Expression);
    bool isRecognised(const std::string& i_Expression);

    Evaluator& m_Evaluator;
    std::unique_ptr<MinimalDocument> m_pDocument;
};
