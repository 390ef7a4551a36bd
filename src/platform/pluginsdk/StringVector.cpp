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

/// Most lists have one text, which therefore needs no array.
struct StringVector::Impl
{
    bool m_HasFirst = false;
    std::wstring m_First; ///< empty unless `m_HasFirst`
    std::vector<std::wstring> m_Further;
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
    if (m_pImpl == nullptr)
    {
        m_pImpl = new Impl;
    }
    if (!m_pImpl->m_HasFirst)
    {
        m_pImpl->m_First.assign(i_Text);
        m_pImpl->m_HasFirst = true;
        return 0;
    }
    // A copy first: the text may be one of this list's own, which growing moves.
    std::wstring copy(i_Text);
    m_pImpl->m_Further.push_back(std::move(copy));
    return 0;
}

void StringVector::removeAll() noexcept
{
    if (m_pImpl != nullptr)
    {
        m_pImpl->m_HasFirst = false;
        m_pImpl->m_First.clear();
        m_pImpl->m_Further.clear();
    }
}

std::size_t StringVector::count() const noexcept
{
    return m_pImpl == nullptr || !m_pImpl->m_HasFirst ? 0 : m_pImpl->m_Further.size() + 1;
}

const wchar_t* StringVector::get(std::size_t i_Index) const noexcept
{
    if (i_Index >= count())
    {
        return nullptr;
    }
    return i_Index == 0 ? m_pImpl->m_First.c_str() : m_pImpl->m_Further[i_Index - 1].c_str();
}

} // namespace PluginSDK
