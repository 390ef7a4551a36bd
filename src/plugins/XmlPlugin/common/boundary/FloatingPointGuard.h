#pragma once

#include <cfenv>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace XmlPlugin
{

/// While it exists, numbers are computed as the language requires: rounded to nearest, with subnormal numbers and
/// without traps, whatever the host has set. The destructor restores the host's environment, including its flags.
///
/// Threads: each has its own environment.
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XmlValueTest.cpp
class FloatingPointGuard
{
public:
    FloatingPointGuard() noexcept
    {
        std::fegetenv(&m_Host);
#if defined(__SSE2__)
        m_HostRegister = _mm_getcsr();
#endif
        std::fesetenv(FE_DFL_ENV);
#if defined(__SSE2__)
        _mm_setcsr(s_DefaultRegister);
#endif
    }
    ~FloatingPointGuard()
    {
        std::fesetenv(&m_Host);
#if defined(__SSE2__)
        _mm_setcsr(m_HostRegister);
#endif
    }
    FloatingPointGuard(const FloatingPointGuard&) = delete;
    FloatingPointGuard& operator=(const FloatingPointGuard&) = delete;

private:
    std::fenv_t m_Host;
#if defined(__SSE2__)
    // Some C libraries do not include the bits for subnormal numbers in the environment.
    static constexpr unsigned s_DefaultRegister = 0x1F80;
    unsigned m_HostRegister;
#endif
};

} // namespace XmlPlugin
