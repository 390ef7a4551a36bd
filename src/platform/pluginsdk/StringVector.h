#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"

#include <cstddef>

namespace PluginSDK
{

/// The list of wide texts in which a host receives values, in their order.
///
/// The contents of the object are hidden, so its size does not depend on a compiler or its library.
/// Ownership: a value that owns its texts; copies are independent.
/// Threads: one at a time, or any number of readers.
/// Errors: functions that need memory throw `std::bad_alloc` if there is none, and leave the list unchanged.
/// Tested by: tests/platform/pluginsdk/StringVectorTest.cpp
class PLUGINSDK_API StringVector
{
public:
    /// The empty list; takes no memory.
    StringVector() noexcept;
    StringVector(const StringVector& i_Other);
    /// Leaves \p io_Other empty.
    StringVector(StringVector&& io_Other) noexcept;
    ~StringVector();
    StringVector& operator=(const StringVector& i_Other);
    /// Leaves \p io_Other empty.
    StringVector& operator=(StringVector&& io_Other) noexcept;

    /// Appends a copy of \p i_Text up to its terminating null. It may be a text of this list. Returns 0, or -101 for
    /// null.
    TErrorCode addString(const wchar_t* i_Text);
    /// Removes all texts. May be called on an empty list.
    void removeAll() noexcept;

    /// The number of texts.
    std::size_t count() const noexcept;
    /// Text number \p i_Index, counted from 0, null-terminated; null if the index is not less than `count()`. Valid
    /// until the list is changed, moved from or destroyed.
    const wchar_t* get(std::size_t i_Index) const noexcept;

private:
    struct Impl;
    Impl* m_pImpl; ///< owned; null until a text is added
};

} // namespace PluginSDK
