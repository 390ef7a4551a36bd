#pragma once

#include <cfenv>

#if defined(__SSE2__)
#include <xmmintrin.h>
#endif

namespace XmlPlugin
{

/// As long as it lives, numbers are computed as the language says: rounded to nearest, with subnormal numbers and
/// without traps, whatever the host has set. Then the host's own environment is back, its flags included.
///
/// Threads: each has an environment of its own.
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
    // Not every C library keeps the bits for subnormal numbers in its environment.
    static constexpr unsigned s_DefaultRegister = 0x1F80;
    unsigned m_HostRegister;
#endif
};

} // namespace XmlPlugin
