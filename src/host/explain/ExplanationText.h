#pragma once

#include "explain/ExpressionFacts.h"

#include <string>

/// Returns the facts of an accepted expression as several lines of text: tokens, postfix list, tree, location paths,
/// predicates, conversions, differences from XPath 1.0, and the answer.
/// Tested by: tests/host/explain/ExplainTest.cpp
std::string printExplanation(const ExpressionFacts& i_Facts);
