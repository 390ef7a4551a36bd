#include "xmlproxy/StringVector.h"

#include "xmlproxy/XmlAssert.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlText.h"

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <limits>
#include <new>

namespace
{

constexpr std::size_t s_MaxCharacters = std::numeric_limits<std::int32_t>::max();

} // namespace

StringVector::StringVector(int i_BlockSize) : m_BlockSize(i_BlockSize)
{
    if (m_BlockSize <= 0)
    {
        wideAssert(L"m_BlockSize > 0", L"./../../../src/common/xmlproxy/StringVector", 31);
    }
}

int StringVector::blocks() const noexcept
{
    const auto used = static_cast<std::int64_t>(m_Used);
    return static_cast<int>((used + m_BlockSize - 1) / m_BlockSize);
}

int StringVector::freeCharacters() const noexcept
{
    return static_cast<int>(static_cast<std::int64_t>(blocks()) * m_BlockSize - static_cast<std::int64_t>(m_Used));
}

std::uint32_t StringVector::startAt(int i_Index) const noexcept
{
    std::uint32_t start = 0;
    const std::size_t place = m_Capacity - (static_cast<std::size_t>(i_Index) + 1) * s_StartUnits;
    std::memcpy(&start, m_pBuffer.get() + place, sizeof(start));
    return start;
}

void StringVector::setStart(int i_Index, std::uint32_t i_Start) noexcept
{
    const std::size_t place = m_Capacity - (static_cast<std::size_t>(i_Index) + 1) * s_StartUnits;
    std::memcpy(m_pBuffer.get() + place, &i_Start, sizeof(i_Start));
}

std::wstring_view StringVector::textAt(int i_Index) const noexcept
{
    const std::uint32_t start = startAt(i_Index);
    return {m_pBuffer.get() + start, startOrEnd(i_Index + 1) - start - 1};
}

void StringVector::grow(std::size_t i_Units)
{
    std::size_t capacity = std::max(i_Units, std::size_t{m_Capacity} * 2);
    capacity = std::min<std::size_t>(capacity, std::numeric_limits<std::uint32_t>::max() - s_StartUnits);
    if (capacity < i_Units)
    {
        throw std::bad_alloc();
    }
    auto pBuffer = std::make_unique_for_overwrite<wchar_t[]>(capacity);
    const std::size_t startUnits = static_cast<std::size_t>(m_Count) * s_StartUnits;
    if (m_pBuffer)
    {
        std::wmemcpy(pBuffer.get(), m_pBuffer.get(), m_Used);
        std::wmemcpy(pBuffer.get() + capacity - startUnits, m_pBuffer.get() + m_Capacity - startUnits, startUnits);
    }
    m_pBuffer = std::move(pBuffer);
    m_Capacity = static_cast<std::uint32_t>(capacity);
}

void StringVector::reserve(int i_Count, std::size_t i_Characters)
{
    if (i_Characters > s_MaxCharacters - m_Used || i_Count > std::numeric_limits<int>::max() - m_Count)
    {
        throw std::bad_alloc();
    }
    const std::size_t units =
        m_Used + i_Characters + (static_cast<std::size_t>(m_Count) + static_cast<std::size_t>(i_Count)) * s_StartUnits;
    if (units > m_Capacity)
    {
        grow(units);
    }
}

TErrorCode StringVector::insert(int i_Index, const wchar_t* i_Text)
{
    if (!i_Text)
    {
        return XML_ERROR_NULL_TEXT;
    }
    if (i_Index < 0 || i_Index > m_Count)
    {
        return XML_ERROR_INDEX_RANGE;
    }
    const std::size_t needed = std::wcslen(i_Text) + 1;
    reserve(1, needed);

    const std::uint32_t start = startOrEnd(i_Index);
    wchar_t* pStart = m_pBuffer.get() + start;
    std::wmemmove(pStart + needed, pStart, m_Used - start);
    std::wmemcpy(pStart, i_Text, needed);
    for (int index = m_Count; index > i_Index; --index)
    {
        setStart(index, startAt(index - 1) + static_cast<std::uint32_t>(needed));
    }
    setStart(i_Index, start);
    m_Used += static_cast<std::uint32_t>(needed);
    ++m_Count;
    return XML_SUCCESS;
}

TErrorCode StringVector::get(int i_Index, String& o_Text) const
{
    const int index = std::max(i_Index, 0);
    if (index >= m_Count)
    {
        return XML_ERROR_INDEX_RANGE;
    }
    const std::wstring_view text = textAt(index);
    o_Text = String(text.data(), text.size());
    return XML_SUCCESS;
}

TErrorCode StringVector::find(const String& i_Text, int& o_Index) const
{
    const std::wstring_view wanted = viewOf(i_Text);
    for (int index = 0; index < m_Count; ++index)
    {
        if (textAt(index) == wanted)
        {
            o_Index = index;
            return XML_SUCCESS;
        }
    }
    return XML_ERROR_NOT_FOUND;
}

TErrorCode StringVector::remove(int i_Index)
{
    if (i_Index < 0 || i_Index >= m_Count)
    {
        return XML_ERROR_INDEX_RANGE;
    }
    if (m_Count == 1)
    {
        clear();
        return XML_SUCCESS;
    }
    const std::uint32_t start = startAt(i_Index);
    const std::uint32_t end = startOrEnd(i_Index + 1);
    std::wmemmove(m_pBuffer.get() + start, m_pBuffer.get() + end, m_Used - end);
    for (int index = i_Index; index + 1 < m_Count; ++index)
    {
        setStart(index, startAt(index + 1) - (end - start));
    }
    m_Used -= end - start;
    --m_Count;
    return XML_SUCCESS;
}

void StringVector::clear() noexcept
{
    m_pBuffer.reset();
    m_Capacity = 0;
    m_Used = 0;
    m_Count = 0;
}
