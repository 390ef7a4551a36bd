#include "xmlproxy/UTF8XMLEncoding.h"

#include "xmlproxy/XmlAssert.h"
#include "xmlproxy/XmlText.h"

#include <cstring>
#include <new>
#include <ostream>
#include <utility>

#ifdef _WIN32
#include <windows.h>
#endif

namespace
{

constexpr unsigned s_AssertLine = 62;

/// What stands for \p i_Unit in escaped text: null for itself, "" for nothing.
const wchar_t* replacementOf(wchar_t i_Unit) noexcept
{
    switch (i_Unit)
    {
    case L'\t':
        return L"&#9;";
    case L'\n':
        return L"&#10;";
    case L'\r':
        return L"&#13;";
    case L'"':
        return L"&quot;";
    case L'&':
        return L"&amp;";
    case L'\'':
        return L"&apos;";
    case L'<':
        return L"&lt;";
    case L'>':
        return L"&gt;";
    default:
        return static_cast<unsigned long>(i_Unit) < 32 ? L"" : nullptr;
    }
}

String escape(const String& i_Text)
{
    std::wstring escaped;
    escaped.reserve(viewOf(i_Text).size());
    for (const wchar_t unit : viewOf(i_Text))
    {
        if (const wchar_t* replacement = replacementOf(unit))
        {
            escaped += replacement;
        }
        else
        {
            escaped += unit;
        }
    }
    return copyOf(escaped);
}

#ifdef _WIN32
std::string toUtf8(const String& i_Text)
{
    const int length = i_Text.length();
    if (length == 0)
    {
        return {};
    }
    const int size = WideCharToMultiByte(CP_UTF8, 0, unitsOf(i_Text), length, nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, unitsOf(i_Text), length, bytes.data(), size, nullptr, nullptr);
    return bytes;
}
#else
std::string toUtf8(const String& i_Text)
{
    return i_Text.toNarrow();
}
#endif

} // namespace

UTF8XMLEncoding::UTF8XMLEncoding(String i_Text, bool i_Escape, bool i_Strict)
    : m_Text(i_Escape ? escape(i_Text) : std::move(i_Text)), m_Strict(i_Strict)
{
    try
    {
        m_UTF8 = toUtf8(m_Text);
    }
    catch (const std::bad_alloc&)
    {
        wideAssert(L"m_UTF8", L"./../../../src/common/xmlproxy/UTF8XMLEncoding", s_AssertLine);
    }
}

UTF8XMLEncoding::UTF8XMLEncoding(const String& i_Text) : UTF8XMLEncoding(String(i_Text), true, false) {}

UTF8XMLEncoding::UTF8XMLEncoding(const char* i_Text) : UTF8XMLEncoding(String(i_Text), true, false) {}

UTF8XMLEncoding::UTF8XMLEncoding(const wchar_t* i_Text) : UTF8XMLEncoding(i_Text, true, false) {}

UTF8XMLEncoding::UTF8XMLEncoding(const wchar_t* i_Text, bool i_Escape, bool i_Strict)
    : UTF8XMLEncoding(String(i_Text), i_Escape, i_Strict)
{
}

UTF8XMLEncoding::~UTF8XMLEncoding() = default;

std::ostream& operator<<(std::ostream& o_Out, const UTF8XMLEncoding& i_Encoding)
{
    const std::string& bytes = i_Encoding.m_UTF8;
    return o_Out.write(bytes.data(), static_cast<std::streamsize>(std::strlen(bytes.c_str())));
}
