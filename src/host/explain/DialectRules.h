#pragma once

#include "explain/ExpressionFacts.h"

#include <span>

/// When an accepted expression touches a difference of the dialect from XPath 1.0. A rule looks at one expression, or
/// at one predicate with `isPredicate` set. The differences that make an expression refused have no rule here
/// (RefusalAdvisor tells them).
/// Tested by: tests/host/explain/DialectTouchesTest.cpp, with every example of docs/dialect.md
struct DialectRule
{
    int difference;
    bool (*applies)(const ExpressionFacts& i_Facts);
};

/// How the text is cut into tokens and the tokens put in order.
std::span<const DialectRule> readingRules();
/// Location paths and predicates.
std::span<const DialectRule> pathRules();
/// Operators and calls, whatever their values.
std::span<const DialectRule> callRules();
/// Numbers, arithmetic and comparisons, by the values that are known.
std::span<const DialectRule> valueRules();
