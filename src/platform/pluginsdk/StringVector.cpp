#include "pluginsdk/StringVector.h"

#include <string>
#include <utility>
#include <vector>

namespace PluginSDK
{

namespace
{

constexpr TErrorCode s_NullArgument = -101;

} // namespace

struct StringVector::Impl
{
    std::vector<std::wstring> texts;
};

StringVector::StringVector() noexcept : m_pImpl(nullptr) {}

StringVector::StringVector(const StringVector& i_Other)
    : m_pImpl(i_Other.m_pImpl == nullptr ? nullptr : new Impl(*i_Other.m_pImpl))
{
}

StringVector::StringVector(StringVector&& io_Other) noexcept : m_pImpl(std::exchange(io_Other.m_pImpl, nullptr)) {}

StringVector::~StringVector()
{
    delete m_pImpl;
}

StringVector& StringVector::operator=(const StringVector& i_Other)
{
    return *this = StringVector(i_Other);
}

StringVector& StringVector::operator=(StringVector&& io_Other) noexcept
{
    std::swap(m_pImpl, io_Other.m_pImpl);
    if (this != &io_Other)
    {
        delete std::exchange(io_Other.m_pImpl, nullptr);
    }
    return *this;
}

TErrorCode StringVector::addString(const wchar_t* i_Text)
{
    if (i_Text == nullptr)
    {
        return s_NullArgument;
    }
    // A copy first: the text may be one of this list's own, which growing moves.
    std::wstring copy(i_Text);
    if (m_pImpl == nullptr)
    {
        m_pImpl = new Impl;
    }
    m_pImpl->texts.push_back(std::move(copy));
    return 0;
}

void StringVector::removeAll() noexcept
{
    if (m_pImpl != nullptr)
    {
        m_pImpl->texts.clear();
    }
}

std::size_t StringVector::count() const noexcept
{
    return m_pImpl == nullptr ? 0 : m_pImpl->texts.size();
}

const wchar_t* StringVector::get(std::size_t i_Index) const noexcept
{
    return i_Index < count() ? m_pImpl->texts[i_Index].c_str() : nullptr;
}

} // namespace PluginSDK
