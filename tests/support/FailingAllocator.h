#pragma once

/// The allocator of a test program that links FailingAllocator.cpp: it can be told to fail.
///
/// Where the C library allows it, and no sanitizer stands there already, all of `malloc`, `calloc`
/// and `realloc` fail, so that libraries written in C are met too; elsewhere `operator new` fails.
///
/// Threads: one at a time.
class FailingAllocator
{
public:
    enum class Shortage
    {
        Once,      ///< one allocation fails, those behind it do not
        FromThenOn ///< one allocation fails and all behind it
    };

    /// Whether the C functions fail too.
    static bool hasMalloc() noexcept;
    /// From here on allocation number \p i_Number, counted from 1, fails.
    static void arm(long i_Number, Shortage i_Shortage = Shortage::Once) noexcept;
    /// No allocation fails any more. True when one has failed since `arm`. May be called again.
    static bool disarm() noexcept;
    /// Allocations since `arm` less releases since `arm`.
    static long live() noexcept;

    /// While one of these lives, no allocation fails and none is numbered.
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
