#pragma once

/// The allocator of a test program that links FailingAllocator.cpp. A test can make it fail.
///
/// Where the C library allows it and no sanitizer replaces them already, `malloc`, `calloc` and `realloc` fail, so that
/// libraries written in C are tested too. Elsewhere only `operator new` fails.
///
/// Threads: one at a time.
class FailingAllocator
{
public:
    enum class Shortage
    {
        Once,      ///< one allocation fails, later ones succeed
        FromThenOn ///< one allocation and all later ones fail
    };

    /// Whether the C functions fail too.
    static bool hasMalloc() noexcept;
    /// Makes allocation number \p i_Number fail, counted from 1 from this call on.
    static void arm(long i_Number, Shortage i_Shortage = Shortage::Once) noexcept;
    /// Makes no further allocation fail. Returns true if one has failed since `arm`. May be called more than once.
    static bool disarm() noexcept;
    /// Number of allocations minus number of releases since `arm`.
    static long live() noexcept;

    /// While one of these objects lives, no allocation fails and none is counted.
    class Pause
    {
    public:
        Pause() noexcept;
        ~Pause();
        Pause(const Pause&) = delete;
        Pause& operator=(const Pause&) = delete;

    private:
        bool m_WasPaused;
    };
};
