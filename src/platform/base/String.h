#pragma once

#include "base/Export.h"

#include <compare>
#include <cstddef>
#include <string>

/// Wide text: one UTF-16 code unit per element, on every system.
///
/// `wchar_t` has 16 bits on Windows and 32 on Linux. Lengths and positions do not depend on that: a character above
/// U+FFFF that comes in is split into a surrogate pair, and UTF-8 output joins the pair again. An unpaired surrogate
/// becomes U+FFFD in UTF-8. Narrow text is UTF-8; each malformed sequence of bytes becomes U+FFFD.
///
/// Lengths and positions are numbers of code units, counted from 0.
///
/// Ownership: a value; copies are independent.
/// Threads: one at a time, or any number of readers.
/// Invariants: no element is above 0xFFFF; a null element follows the last one. Elements may be null, too.
/// Errors: whatever takes memory throws `std::bad_alloc` when there is none, and leaves the text as it was.
/// Tested by: tests/platform/base/StringTest.cpp
class BASE_API String
{
public:
    // --- What plug-ins rely on; the README of the platform has the same list -----------------------------------------

    String() noexcept = default;
    /// Null-terminated; null is the empty text.
    String(const wchar_t* i_Text);
    /// \p i_Length elements; \p i_Text may be null when that is 0.
    String(const wchar_t* i_Text, std::size_t i_Length);
    /// UTF-8, null-terminated; null is the empty text.
    String(const char* i_Text);
    /// UTF-8, \p i_Length bytes.
    String(const char* i_Text, std::size_t i_Length);

    /// Negative, 0 or positive, by the code units. With \p i_IgnoreCase other than 0 the letters A to Z are compared as
    /// a to z.
    int compareTo(const String& i_Other, int i_IgnoreCase = 0) const noexcept;
    /// Only the letters A to Z and a to z have two cases.
    bool equalsIgnoreCase(const String& i_Other) const noexcept;

    bool startsWith(const String& i_Prefix) const noexcept;
    bool endsWith(const String& i_Suffix) const noexcept;

    /// The first position of \p i_Text at or after \p i_From, or -1. The empty text is found at \p i_From, up to the
    /// length. A negative \p i_From counts as 0.
    int indexOf(const String& i_Text, int i_From = 0) const noexcept;
    int indexOf(wchar_t i_Char, int i_From = 0) const noexcept;
    /// The last position of \p i_Text, or -1.
    int lastIndexOf(const String& i_Text) const noexcept;
    int lastIndexOf(wchar_t i_Char) const noexcept;

    /// From \p i_Begin to the end; "" when \p i_Begin is past the last unit. A negative begin counts as 0.
    String substring(int i_Begin) const;
    /// From \p i_Begin to \p i_End, both included. "" when the end is before the begin or the begin is past the last
    /// unit; an end past the last unit counts as the last unit. A negative begin counts as 0.
    String substring(int i_Begin, int i_End) const;

    int length() const noexcept { return static_cast<int>(m_Text.size()); }
    /// The code unit at \p i_Index, or 0 when there is none.
    wchar_t charAt(int i_Index) const noexcept
    {
        return static_cast<std::size_t>(i_Index) < m_Text.size() ? m_Text[static_cast<std::size_t>(i_Index)] : L'\0';
    }

    /// A copy without the spaces, tabs, carriage returns and line feeds at both ends.
    String trim() const;
    /// This text followed by \p i_Other, as a new text.
    String concat(const String& i_Other) const;

    /// In decimal.
    static String valueOf(int i_Value);
    static String valueOf(unsigned i_Value);
    static String valueOf(long i_Value);
    static String valueOf(unsigned long i_Value);
    static String valueOf(long long i_Value);
    static String valueOf(unsigned long long i_Value);

    /// UTF-8.
    std::string toNarrow() const;
    /// The code units, null-terminated; never null. Valid until this text is changed or destroyed.
    explicit operator const wchar_t*() const noexcept { return m_Text.c_str(); }

    // --- For hosts ---------------------------------------------------------------------------------------------------

    /// Same as the conversion to `const wchar_t*`.
    const wchar_t* c_str() const noexcept { return m_Text.c_str(); }
    bool isEmpty() const noexcept { return m_Text.empty(); }
    String& operator+=(const String& i_Other);
    String& operator+=(wchar_t i_Unit);

    friend bool operator==(const String& i_Left, const String& i_Right) noexcept
    {
        return i_Left.m_Text == i_Right.m_Text;
    }
    friend std::strong_ordering operator<=>(const String& i_Left, const String& i_Right) noexcept
    {
        return i_Left.compareTo(i_Right, 0) <=> 0;
    }
    friend String operator+(const String& i_Left, const String& i_Right) { return i_Left.concat(i_Right); }

private:
    std::wstring m_Text;
};
