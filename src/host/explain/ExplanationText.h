#pragma once

#include "explain/ExpressionFacts.h"

#include <string>

/// Returns the facts of an accepted expression as several lines of text: tokens, postfix list, tree, location paths,
/// predicates, conversions, differences from XPath 1.0, and the answer.
/// Tested by: tests/host/explain/ExplainTest.cpp
std::string printExplanation(const ExpressionFacts& i_Facts);

/// One line, without an end, about the other answer that the expression has when it is not traced. There is one.
std::string describeUnobserved(const ExpressionFacts& i_Facts);
