#pragma once

#include "pluginsdk/Export.h"

#include <cstddef>

namespace PluginSDK
{

/// The wide text in which a host receives one value, with exactly the units that were assigned.
///
/// The contents of the object are hidden, so its size does not depend on a compiler or its library.
/// Ownership: a value; copies are independent.
/// Threads: one at a time, or any number of readers.
/// Errors: functions that need memory throw `std::bad_alloc` if there is none, and leave the text unchanged.
/// Tested by: tests/platform/pluginsdk/StringTest.cpp
class PLUGINSDK_API String
{
public:
    /// The empty text; takes no memory.
    String() noexcept;
    String(const String& i_Other);
    /// Leaves \p io_Other empty.
    String(String&& io_Other) noexcept;
    ~String();
    String& operator=(const String& i_Other);
    /// Leaves \p io_Other empty.
    String& operator=(String&& io_Other) noexcept;

    /// Copies \p i_Text up to its terminating null. It may be part of this text. A null pointer gives the empty text.
    String& operator=(const wchar_t* i_Text);

    /// Never null. Null-terminated; valid until this text is assigned to, moved from or destroyed.
    const wchar_t* c_str() const noexcept;
    /// The number of `wchar_t` elements, without the terminating null.
    std::size_t length() const noexcept;

private:
    struct Impl;
    Impl* m_pImpl; ///< owned; null until a text is assigned
};

} // namespace PluginSDK
