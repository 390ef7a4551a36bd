#pragma once

#include "plugin/Evaluator.h"
#include "plugin/Hint.h"
#include "plugin/MinimalDocument.h"

#include <memory>
#include <string>
#include <vector>

/// Tells which of the dialect's differences from XPath 1.0 are why an expression is refused.
///
/// Nothing is guessed: each part of the expression that may be the cause is replaced by something like it that the
/// dialect accepts, and the plug-in is asked again. A part is a cause when the expression is accepted with all parts
/// replaced and refused with all but this one.
///
/// Ownership: borrows the evaluator; makes a document of its own when it needs one.
/// Threads: one at a time.
/// Tested by: tests/host/advice/RefusalAdvisorTest.cpp
class RefusalAdvisor
{
public:
    explicit RefusalAdvisor(Evaluator& io_Evaluator) : m_Evaluator(io_Evaluator) {}

    /// One hint for each difference, in the order of their places; none where no difference is the cause.
    std::vector<Hint> whyRefused(const std::string& i_Expression);

private:
    std::vector<Hint> askThePlugin(const std::string& i_Expression);
    bool isRecognised(const std::string& i_Expression);

    Evaluator& m_Evaluator;
    std::unique_ptr<MinimalDocument> m_pDocument;
};
