#pragma once

#include "explain/ExpressionFacts.h"

#include <string>

/// Returns the facts of an accepted expression as a directed graph in the Graphviz language: the tree of operators and
/// operands, and the steps of each location path.
/// Tested by: tests/host/explain/ExplainTest.cpp
std::string printExplanationDot(const ExpressionFacts& i_Facts);
