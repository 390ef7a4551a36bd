#include "FuzzTarget.h"

#include <xercesc/util/PlatformUtils.hpp>

#include <cstddef>
#include <cstdint>

/// Keeps the parser library initialised: to do that for each document takes most of the time.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    xercesc::XMLPlatformUtils::Initialize();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* i_pData, std::size_t i_Size)
{
    fuzzOne({reinterpret_cast<const char*>(i_pData), i_Size});
    return 0;
}
