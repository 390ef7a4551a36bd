#pragma once

#include <string>

/// Every function that an expression may call, one per line, in columns, with a heading.
/// Tested by: tests/host/explain/FunctionListTest.cpp
std::string functionList();
