#pragma once

#include <cstddef>

/// A reference on the parser library, which stays initialised while there is one.
///
/// Every parse holds one while it runs. A reference held for longer saves later parses the library's start and end,
/// which take much longer than a small document.
///
/// Ownership: releases the reference at destruction.
/// Threads: one at a time.
/// Tested by: tests/common/xmlproxy/XercesLibraryTest.cpp
class XercesLibrary
{
public:
    XercesLibrary() noexcept = default;
    ~XercesLibrary();
    XercesLibrary(const XercesLibrary&) = delete;
    XercesLibrary& operator=(const XercesLibrary&) = delete;

    /// Takes the reference, unless it is held already. The library's `XMLException` when it cannot
    /// be initialised; `std::bad_alloc` when memory is exhausted. Then nothing is held.
    void acquire();
    /// Same, but without an exception of the library's own: the next parse meets the fault again and reports it.
    void hold();
    bool isHeld() const noexcept { return m_IsHeld; }

    /// How often the library was initialised from scratch because of a reference; not decreased by its end.
    static std::size_t startCount() noexcept;

private:
    bool m_IsHeld = false;
};
