#pragma once

#include "plugin/Hint.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// A part of an expression that XPath 1.0 accepts and the dialect does not, with a replacement that the dialect
/// accepts.
struct Suspect
{
    std::size_t begin; ///< in bytes
    std::size_t length;
    std::string replacement;
    Hint hint;
};

/// The parts of \p i_Expression (UTF-8) that may be why it is rejected, from left to right. They do not overlap.
/// Tested by: tests/host/advice/RefusalAdvisorTest.cpp
std::vector<Suspect> findSuspects(std::string_view i_Expression);
