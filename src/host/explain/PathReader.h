#pragma once

#include "explain/ExpressionFacts.h"

#include <string>
#include <utility>
#include <vector>

/// Collects what is known about a location path. \p i_Path is its text; \p i_Records has the steps of each branch in
/// order, as text and code. The artificial last step is left out. Empty steps have no record.
/// Tested by: tests/host/explain/ExplainTest.cpp
PathFact readPathFact(const std::string& i_Path,
                      const std::vector<std::vector<std::pair<std::string, TErrorCode>>>& i_Records);
