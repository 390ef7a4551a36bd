#pragma once

#include "base/String.h"

#include <cstdint>

class MINIMAL_API InputStream
{
public:
    virtual ~InputStream();
    virtual std::int32_t read(void* o_Buffer, std::int32_t i_Count) = 0;
    virtual std::int32_t size() const = 0;
    virtual void close() = 0;
};
