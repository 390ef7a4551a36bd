#pragma once

#include <cstddef>

/// A reference to the parser library, which stays initialised as long as there is one.
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

    /// Takes the reference, unless it is already held. Throws the library's `XMLException` if the library cannot be
    /// initialised, and `std::bad_alloc` if memory runs out; nothing is held then.
    void acquire();
    /// Same, but never throws the library's own exceptions: the next parse runs into the same failure and reports it.
    void hold();
    bool isHeld() const noexcept { return m_IsHeld; }

    /// How often a reference has initialised the library from scratch. Never decreases.
    static std::size_t startCount() noexcept;

private:
    bool m_IsHeld = false;
};
