#pragma once

#include "explain/ExpressionFacts.h"

#include <string>
#include <utility>
#include <vector>

/// Puts together what is known of a location path: its text, and for each branch the steps that were cut, as text and
/// code, in their order. An artificial last step is left out. Steps without a record are those that are empty.
/// Tested by: tests/host/explain/ExplainTest.cpp
PathFact readPathFact(const std::string& i_Path,
                      const std::vector<std::vector<std::pair<std::string, TErrorCode>>>& i_Records);
