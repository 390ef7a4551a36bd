#include "support/FailingAllocator.h"

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <new>
#include <utility>

// A program may also ask for this by a definition of its own.
#if defined(__SANITIZE_ADDRESS__) || !defined(__GLIBC__)
#define FAILING_OPERATOR_NEW
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define FAILING_OPERATOR_NEW
#endif
#endif

namespace
{

bool s_IsPaused = false;
bool s_IsFailing = false; ///< false once what was to fail has failed, or was called off
bool s_HasFailed = false;
bool s_IsLasting = false;
long s_Left = 0; ///< allocations until the first that fails
long s_Live = 0;

bool failsNow() noexcept
{
    if (s_IsPaused || !s_IsFailing || --s_Left > 0)
    {
        return false;
    }
    s_HasFailed = true;
    s_IsFailing = s_IsLasting;
    errno = ENOMEM;
    return true;
}

void count(const void* i_pMemory, long i_Difference) noexcept
{
    s_Live += i_pMemory ? i_Difference : 0;
}

} // namespace

void FailingAllocator::arm(long i_Number, Shortage i_Shortage) noexcept
{
    s_Left = i_Number;
    s_Live = 0;
    s_HasFailed = false;
    s_IsLasting = i_Shortage == Shortage::FromThenOn;
    s_IsFailing = true;
    s_IsPaused = false;
}

bool FailingAllocator::disarm() noexcept
{
    s_IsFailing = false;
    return s_HasFailed;
}

long FailingAllocator::live() noexcept
{
    return s_Live;
}

FailingAllocator::Pause::Pause() noexcept : m_WasPaused(std::exchange(s_IsPaused, true)) {}

FailingAllocator::Pause::~Pause()
{
    s_IsPaused = m_WasPaused;
}

#if defined(FAILING_OPERATOR_NEW)

bool FailingAllocator::hasMalloc() noexcept
{
    return false;
}

namespace
{

void* allocate(std::size_t i_Size) noexcept
{
    void* pMemory = failsNow() ? nullptr : std::malloc(i_Size == 0 ? 1 : i_Size);
    count(pMemory, 1);
    return pMemory;
}

void* allocateOrThrow(std::size_t i_Size)
{
    void* pMemory = allocate(i_Size);
    return pMemory ? pMemory : throw std::bad_alloc();
}

void release(void* i_pMemory) noexcept
{
    count(i_pMemory, -1);
    std::free(i_pMemory);
}

} // namespace

void* operator new(std::size_t i_Size)
{
    return allocateOrThrow(i_Size);
}
void* operator new[](std::size_t i_Size)
{
    return allocateOrThrow(i_Size);
}
void* operator new(std::size_t i_Size, const std::nothrow_t&) noexcept
{
    return allocate(i_Size);
}
void* operator new[](std::size_t i_Size, const std::nothrow_t&) noexcept
{
    return allocate(i_Size);
}
void operator delete(void* i_pMemory) noexcept
{
    release(i_pMemory);
}
void operator delete[](void* i_pMemory) noexcept
{
    release(i_pMemory);
}
void operator delete(void* i_pMemory, std::size_t) noexcept
{
    release(i_pMemory);
}
void operator delete[](void* i_pMemory, std::size_t) noexcept
{
    release(i_pMemory);
}

#else

bool FailingAllocator::hasMalloc() noexcept
{
    return true;
}

// The C library's own, under the names that it keeps for those who take the usual ones.
extern "C"
{
    void* __libc_malloc(std::size_t);
    void* __libc_calloc(std::size_t, std::size_t);
    void* __libc_realloc(void*, std::size_t);
    void __libc_free(void*);

    void* malloc(std::size_t i_Size)
    {
        void* pMemory = failsNow() ? nullptr : __libc_malloc(i_Size);
        count(pMemory, 1);
        return pMemory;
    }

    void* calloc(std::size_t i_Count, std::size_t i_Size)
    {
        void* pMemory = failsNow() ? nullptr : __libc_calloc(i_Count, i_Size);
        count(pMemory, 1);
        return pMemory;
    }

    void* realloc(void* i_pMemory, std::size_t i_Size)
    {
        if (failsNow())
        {
            return nullptr;
        }
        void* pMemory = __libc_realloc(i_pMemory, i_Size);
        if (!i_pMemory)
        {
            count(pMemory, 1);
        }
        else if (i_Size == 0)
        {
            count(i_pMemory, -1);
        }
        return pMemory;
    }

    void free(void* i_pMemory)
    {
        count(i_pMemory, -1);
        __libc_free(i_pMemory);
    }
} // extern "C"

#endif
