#pragma once

#include <cstdint>

using TErrorCode = std::int32_t;
