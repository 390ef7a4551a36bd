#include "base/File.h"
#include "base/String.h"
#include "base/ZipFile.h"

#include <algorithm>
#include <cwctype>
#include <fstream>
#include <string_view>

// --- String -------------------------------------------------------------------------------------

namespace
{

constexpr std::wstring_view s_Blanks = L" \t\r\n";

std::wstring_view viewOf(const String& i_Text)
{
    return {static_cast<const wchar_t*>(i_Text), static_cast<std::size_t>(i_Text.length())};
}

String fromView(std::wstring_view i_Text)
{
    return String(i_Text.data(), i_Text.size());
}

int placeOf(std::size_t i_Place)
{
    return i_Place == std::wstring_view::npos ? -1 : static_cast<int>(i_Place);
}

std::wstring folded(const String& i_Text)
{
    std::wstring text(viewOf(i_Text));
    std::transform(text.begin(), text.end(), text.begin(), [](wchar_t i_Unit) { return std::towlower(i_Unit); });
    return text;
}

/// ASCII is all that the test needs.
std::wstring widened(const char* i_Text)
{
    const std::string_view text(i_Text == nullptr ? "" : i_Text);
    return std::wstring(text.begin(), text.end());
}

} // namespace

String::String() : String(L"", 0) {}

String::String(const wchar_t* i_Text) : String(i_Text, i_Text == nullptr ? 0 : std::wstring_view(i_Text).size()) {}

String::String(const wchar_t* i_Text, std::size_t i_Length)
    : m_pUnits(new wchar_t[i_Length + 1]), m_Length(static_cast<int>(i_Length))
{
    std::copy(i_Text, i_Text + i_Length, m_pUnits);
    m_pUnits[i_Length] = L'\0';
}

String::String(const char* i_Text) : String(widened(i_Text).c_str()) {}

String::String(const String& i_Other) : String(i_Other.m_pUnits, static_cast<std::size_t>(i_Other.m_Length)) {}

String& String::operator=(const String& i_Other)
{
    String copy(i_Other);
    std::swap(m_pUnits, copy.m_pUnits);
    std::swap(m_Length, copy.m_Length);
    return *this;
}

String::~String()
{
    delete[] m_pUnits;
}

int String::compareTo(const String& i_Other) const
{
    return viewOf(*this).compare(viewOf(i_Other));
}

bool String::equalsIgnoreCase(const String& i_Other) const
{
    return folded(*this) == folded(i_Other);
}

bool String::startsWith(const String& i_Prefix) const
{
    return viewOf(*this).starts_with(viewOf(i_Prefix));
}

bool String::endsWith(const String& i_Suffix) const
{
    return viewOf(*this).ends_with(viewOf(i_Suffix));
}

int String::indexOf(const String& i_Text, int i_From) const
{
    return placeOf(viewOf(*this).find(viewOf(i_Text), static_cast<std::size_t>(std::max(i_From, 0))));
}

int String::lastIndexOf(const String& i_Text) const
{
    return placeOf(viewOf(*this).rfind(viewOf(i_Text)));
}

String String::substring(int i_Begin) const
{
    return substring(i_Begin, m_Length - 1);
}

String String::substring(int i_Begin, int i_End) const
{
    const int begin = std::max(i_Begin, 0);
    const int end = std::min(i_End, m_Length - 1);
    return end < begin ? String() : String(m_pUnits + begin, static_cast<std::size_t>(end - begin + 1));
}

int String::length() const
{
    return m_Length;
}

wchar_t String::charAt(int i_Index) const
{
    return i_Index >= 0 && i_Index < m_Length ? m_pUnits[i_Index] : L'\0';
}

String String::trim() const
{
    const std::wstring_view text = viewOf(*this);
    const std::size_t begin = std::min(text.find_first_not_of(s_Blanks), text.size());
    return fromView(text.substr(begin, text.find_last_not_of(s_Blanks) + 1 - begin));
}

String String::concat(const String& i_Other) const
{
    return fromView(std::wstring(viewOf(*this)).append(viewOf(i_Other)));
}

String String::valueOf(int i_Value)
{
    return fromView(std::to_wstring(i_Value));
}

String String::valueOf(unsigned i_Value)
{
    return fromView(std::to_wstring(i_Value));
}

String String::valueOf(long i_Value)
{
    return fromView(std::to_wstring(i_Value));
}

String String::valueOf(unsigned long i_Value)
{
    return fromView(std::to_wstring(i_Value));
}

String String::valueOf(long long i_Value)
{
    return fromView(std::to_wstring(i_Value));
}

String String::valueOf(unsigned long long i_Value)
{
    return fromView(std::to_wstring(i_Value));
}

std::string String::toNarrow() const
{
    std::string text;
    for (const wchar_t unit : viewOf(*this))
    {
        text += unit < 0x80 ? static_cast<char>(unit) : '?';
    }
    return text;
}

String::operator const wchar_t*() const
{
    return m_pUnits;
}

// --- Files and archives -------------------------------------------------------------------------

namespace
{

class FileStream final : public InputStream
{
public:
    explicit FileStream(const String& i_Path) : m_File(i_Path.toNarrow(), std::ios::binary) {}

    std::int32_t read(void* o_Buffer, std::int32_t i_Count) override
    {
        m_File.read(static_cast<char*>(o_Buffer), i_Count);
        return static_cast<std::int32_t>(m_File.gcount());
    }

    std::int32_t size() const override { return 0; }
    void close() override { m_File.close(); }

private:
    std::ifstream m_File;
};

} // namespace

File::File(const String& i_Path) : m_Path(i_Path) {}

int File::exists() const
{
    return std::ifstream(m_Path.toNarrow()).good() ? 1 : 0;
}

InputStream::~InputStream() = default;

ZipFile::ZipFile(const String& i_Path) : m_Path(i_Path) {}

int ZipFile::isValid(const String& i_Path)
{
    return i_Path.endsWith(L".zip") ? 0 : 1;
}

ZipEntry* ZipFile::getEntry(int i_Index)
{
    return i_Index == 0 ? &m_Entry : nullptr;
}

InputStream* ZipFile::getEntryStream(ZipEntry* i_Entry)
{
    return i_Entry == nullptr ? nullptr : new FileStream(m_Path);
}
