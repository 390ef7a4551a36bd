#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

/// For tests of the order of virtual functions, on which a host and a separately built plug-in rely.
#if defined(__x86_64__) && defined(__GNUC__)
#define TEST_VIRTUAL_SLOTS // the tables are known there
#endif

#if defined(TEST_VIRTUAL_SLOTS)

/// The position of a virtual function in the table of its class, counted from 0. A virtual destructor takes two
/// positions.
template <class Operation>
std::size_t placeOf(Operation i_pOperation)
{
    struct
    {
        std::uintptr_t place; // in bytes, and 1
        std::ptrdiff_t adjustment;
    } parts{};
    static_assert(sizeof(parts) == sizeof(i_pOperation));
    std::memcpy(&parts, &i_pOperation, sizeof(parts));
    return (parts.place - 1) / sizeof(void*);
}

/// The slot of a virtual function in a class whose slot 0 is the destructor.
template <class Operation>
std::size_t slotOf(Operation i_pOperation)
{
    return placeOf(i_pOperation) - 1;
}

#endif
