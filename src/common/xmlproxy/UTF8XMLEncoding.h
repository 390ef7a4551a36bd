#pragma once

#include "base/String.h"

#include <iosfwd>
#include <string>

/// One piece of wide text as UTF-8, escaped for XML on request.
///
/// Escaping replaces `" & ' < >` with the five predefined entities, and tab, line feed and carriage return with numeric
/// references. It drops the other characters below 32. An unpaired surrogate becomes U+FFFD.
///
/// Ownership: keeps copies of its texts.
/// Threads: any number of readers.
/// Tested by: tests/common/xmlproxy/UTF8XMLEncodingTest.cpp
class UTF8XMLEncoding
{
public:
    /// Escaped, not strict. Pointers are null-terminated; null is the empty text.
    explicit UTF8XMLEncoding(const String& i_Text);
    explicit UTF8XMLEncoding(const char* i_Text);
    explicit UTF8XMLEncoding(const wchar_t* i_Text);
    /// \p i_Strict is stored but does not affect the output.
    UTF8XMLEncoding(const wchar_t* i_Text, bool i_Escape, bool i_Strict);
    virtual ~UTF8XMLEncoding();

    /// The text after escaping, before encoding.
    const String& text() const noexcept { return m_Text; }
    bool strict() const noexcept { return m_Strict; }

    /// Writes the bytes before the first null character; nothing for an empty text.
    friend std::ostream& operator<<(std::ostream& o_Out, const UTF8XMLEncoding& i_Encoding);

private:
    UTF8XMLEncoding(String i_Text, bool i_Escape, bool i_Strict);

    String m_Text;
    std::string m_UTF8;
    bool m_Strict;
};
