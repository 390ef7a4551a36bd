#pragma once

#include "explain/ExpressionFacts.h"

#include <span>

/// A test whether an accepted expression touches a difference of the dialect from XPath 1.0. A rule looks at one
/// expression, or at one predicate, for which `isPredicate` is set. Differences that cause an expression to be rejected
/// have no rule here; `RefusalAdvisor` finds them.
/// Tested by: tests/host/explain/DialectTouchesTest.cpp, with every example of docs/dialect.md
struct DialectRule
{
    int difference;
    bool (*applies)(const ExpressionFacts& i_Facts);
};

/// Rules on how the text is split into tokens and how the tokens are ordered.
std::span<const DialectRule> readingRules();
/// Rules on location paths and predicates.
std::span<const DialectRule> pathRules();
/// Rules on operators and calls that do not depend on values.
std::span<const DialectRule> callRules();
/// Rules on numbers, arithmetic and comparisons, based on the known values.
std::span<const DialectRule> valueRules();
