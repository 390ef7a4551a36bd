#pragma once

#include "explain/ExpressionFacts.h"

#include <string>

/// The facts of an accepted expression as a directed graph in the language of Graphviz: the tree of operators and
/// operands, with the steps of each location path beside it.
/// Tested by: tests/host/explain/ExplainTest.cpp
std::string printExplanationDot(const ExpressionFacts& i_Facts);
