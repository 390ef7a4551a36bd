#pragma once

#include <cstdint>

/// The result of an operation: 0 for success, a negative code for each failure.
using TErrorCode = std::int32_t;
