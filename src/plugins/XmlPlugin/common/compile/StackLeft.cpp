#include "compile/StackLeft.h"

#include <cstdint>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace XmlPlugin
{

namespace
{

/// For one level, what it calls, and its records.
constexpr std::uintptr_t s_Reserve = std::uintptr_t{24} * 1024;

/// The lowest address of the calling thread's stack; 0 when it is not known.
std::uintptr_t lowestAddress() noexcept
{
#ifdef _WIN32
    ULONG_PTR low = 0;
    ULONG_PTR high = 0;
    GetCurrentThreadStackLimits(&low, &high);
    return static_cast<std::uintptr_t>(low);
#else
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) != 0)
    {
        return 0;
    }
    void* pLow = nullptr;
    std::size_t size = 0;
    const bool isKnown = pthread_attr_getstack(&attributes, &pLow, &size) == 0;
    pthread_attr_destroy(&attributes);
    return isKnown ? reinterpret_cast<std::uintptr_t>(pLow) : 0;
#endif
}

} // namespace

bool hasStackLeft() noexcept
{
    static thread_local const std::uintptr_t lowest = lowestAddress();
    const auto here = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
    return lowest == 0 || here < lowest || here - lowest > s_Reserve;
}

} // namespace XmlPlugin
