#include "pluginsdk/String.h"

#include <string>
#include <utility>

namespace PluginSDK
{

struct String::Impl
{
    std::wstring text;
};

String::String() noexcept : m_pImpl(nullptr) {}

String::String(const String& i_Other) : m_pImpl(i_Other.m_pImpl == nullptr ? nullptr : new Impl(*i_Other.m_pImpl)) {}

String::String(String&& io_Other) noexcept : m_pImpl(std::exchange(io_Other.m_pImpl, nullptr)) {}

String::~String()
{
    delete m_pImpl;
}

String& String::operator=(const String& i_Other)
{
    return *this = String(i_Other);
}

String& String::operator=(String&& io_Other) noexcept
{
    std::swap(m_pImpl, io_Other.m_pImpl);
    if (this != &io_Other)
    {
        delete std::exchange(io_Other.m_pImpl, nullptr);
    }
    return *this;
}

String& String::operator=(const wchar_t* i_Text)
{
    if (m_pImpl != nullptr && i_Text != nullptr)
    {
        m_pImpl->text.assign(i_Text);
    }
    else if (m_pImpl != nullptr)
    {
        m_pImpl->text.clear();
    }
    else if (i_Text != nullptr && *i_Text != L'\0')
    {
        m_pImpl = new Impl{i_Text};
    }
    return *this;
}

const wchar_t* String::c_str() const noexcept
{
    return m_pImpl == nullptr ? L"" : m_pImpl->text.c_str();
}

std::size_t String::length() const noexcept
{
    return m_pImpl == nullptr ? 0 : m_pImpl->text.size();
}

} // namespace PluginSDK
