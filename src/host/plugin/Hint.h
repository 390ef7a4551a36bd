#pragma once

#include <string>

/// A hint about an expression.
struct Hint
{
    int difference = 0; ///< number of the difference from XPath 1.0, as in docs/dialect.md
    std::string text;   ///< one line of English without a final full stop, UTF-8
};

/// The name of a difference as the documents write it, such as `D-07`.
inline std::string differenceName(int i_Number)
{
    return (i_Number < 10 ? "D-0" : "D-") + std::to_string(i_Number);
}
