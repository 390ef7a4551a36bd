#include "base/File.h"
#include "base/String.h"
#include "base/ZipFile.h"

#include <algorithm>
#include <fstream>
#include <string_view>

// --- String -------------------------------------------------------------------------------------

namespace
{

std::wstring_view viewOf(const String& i_Text)
{
    return {static_cast<const wchar_t*>(i_Text), static_cast<std::size_t>(i_Text.length())};
}

String fromView(std::wstring_view i_Text)
{
    return String(i_Text.data(), i_Text.size());
}

/// ASCII is all that the test needs.
std::wstring widened(std::string_view i_Text)
{
    return std::wstring(i_Text.begin(), i_Text.end());
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

String::String(const char* i_Text) : String(widened(i_Text == nullptr ? "" : i_Text).c_str()) {}

String::String(const char* i_Text, std::size_t i_Length) : String(widened({i_Text, i_Length}).c_str(), i_Length) {}

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

int String::length() const
{
    return m_Length;
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
    return viewOf(i_Path).ends_with(L".zip") ? 0 : 1;
}

ZipEntry* ZipFile::getEntry(int i_Index)
{
    return i_Index == 0 ? &m_Entry : nullptr;
}

InputStream* ZipFile::getEntryStream(ZipEntry* i_Entry)
{
    return i_Entry == nullptr ? nullptr : new FileStream(m_Path);
}
