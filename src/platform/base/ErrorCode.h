#pragma once

#include <cstdint>

/// Result of an operation: 0 is success, every failure is negative.
using TErrorCode = std::int32_t;
