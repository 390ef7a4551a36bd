#pragma once

#include "base/Export.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

/// Wide text with one UTF-16 code unit per element, on every system.
///
/// `wchar_t` has 16 bits on Windows and 32 on Linux. Lengths and positions must not depend on that: characters above
/// U+FFFF in incoming text are split into surrogate pairs, and UTF-8 output joins them again. An unpaired surrogate
/// becomes U+FFFD in UTF-8. Narrow text is UTF-8; a malformed byte sequence in it becomes U+FFFD.
///
/// Ownership: a value; copies are independent.
/// Threads: like a `std::wstring`.
/// Invariants: no element is above 0xFFFF; a null follows the last element.
/// Tested by: tests/platform/base/StringTest.cpp
class BASE_API String
{
public:
    String() noexcept = default;

    /// Null is the empty text.
    String(const wchar_t* i_Text);
    String(const wchar_t* i_Text, std::size_t i_Length);
    /// UTF-8; null is the empty text.
    String(const char* i_Text);
    String(const char* i_Text, std::size_t i_Length);

    static String fromUtf16(const char16_t* i_Text, std::size_t i_Length);

    /// Compares by code units; returns a negative value, 0 or a positive value. If \p i_IgnoreCase is not 0, compares
    /// as `equalsIgnoreCase` does.
    int compareTo(const String& i_Other, int i_IgnoreCase = 0) const noexcept;
    /// Ignores the case of the letters A to Z and of no others.
    bool equalsIgnoreCase(const String& i_Other) const noexcept;

    bool startsWith(const String& i_Prefix) const noexcept;
    bool endsWith(const String& i_Suffix) const noexcept;

    /// First position of \p i_Text at or after \p i_From, or -1. The empty text is found at \p i_From. A negative
    /// \p i_From counts as 0.
    int indexOf(const String& i_Text, int i_From = 0) const noexcept;
    int indexOf(wchar_t i_Char, int i_From = 0) const noexcept;
    /// Last position of \p i_Text, or -1.
    int lastIndexOf(const String& i_Text) const noexcept;
    int lastIndexOf(wchar_t i_Char) const noexcept;

    /// From \p i_Begin to the end; "" if \p i_Begin is past the last character.
    String substring(int i_Begin) const;
    /// From \p i_Begin to \p i_End, both included. A negative begin counts as 0; an end past the last character counts
    /// as the last character. "" if the end is before the begin, or the begin is past the last character.
    String substring(int i_Begin, int i_End) const;

    int length() const noexcept { return static_cast<int>(m_Text.size()); }
    bool isEmpty() const noexcept { return m_Text.empty(); }
    /// The code unit at \p i_Index, or 0 if there is none.
    wchar_t charAt(int i_Index) const noexcept
    {
        return static_cast<std::size_t>(i_Index) < m_Text.size() ? m_Text[static_cast<std::size_t>(i_Index)] : L'\0';
    }

    /// A copy without spaces, tabs, carriage returns and line feeds at both ends.
    String trim() const;
    /// A new text: this text followed by \p i_Other.
    String concat(const String& i_Other) const;
    String& operator+=(const String& i_Other);
    String& operator+=(wchar_t i_Unit);
    void clear() noexcept { m_Text.clear(); }
    void reserve(std::size_t i_Length) { m_Text.reserve(i_Length); }

    static String valueOf(int i_Value);
    static String valueOf(unsigned i_Value);
    static String valueOf(long i_Value);
    static String valueOf(unsigned long i_Value);
    static String valueOf(long long i_Value);
    static String valueOf(unsigned long long i_Value);

    /// UTF-8; surrogate pairs are joined.
    std::string toNarrow() const;
    /// Null-terminated code units, valid until this text is changed or destroyed.
    const wchar_t* c_str() const noexcept { return m_Text.c_str(); }
    std::wstring_view view() const noexcept { return m_Text; }

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

template <>
struct std::hash<String>
{
    std::size_t operator()(const String& i_Text) const noexcept
    {
        return std::hash<std::wstring_view>{}(i_Text.view());
    }
};
