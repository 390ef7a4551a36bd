#include "xmlproxy/plain/PlainInput.h"

#include "xmlproxy/plain/PlainSource.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>

PlainInput::PlainInput(PlainSource& io_Source, std::size_t i_BlockSize)
    : m_Source(io_Source),
      m_Capacity(i_BlockSize),
      m_pBuffer(new char[i_BlockSize + s_Padding]),
      m_pEnd(m_pBuffer.get())
{
    std::fill_n(m_pEnd, s_Padding, '\0');
}

/// Moves what is kept to the beginning. When that fills the buffer, it gets a larger one.
void PlainInput::makeRoom(const char*& io_pFrom)
{
    const auto kept = static_cast<std::size_t>(m_pEnd - io_pFrom);
    m_Offset = offsetOf(io_pFrom);
    if (kept < m_Capacity)
    {
        std::memmove(m_pBuffer.get(), io_pFrom, kept);
    }
    else
    {
        if (m_Capacity > std::numeric_limits<std::size_t>::max() / 4)
        {
            throw std::bad_alloc();
        }
        std::unique_ptr<char[]> pLarger(new char[m_Capacity * 2 + s_Padding]);
        std::memcpy(pLarger.get(), io_pFrom, kept);
        m_pBuffer = std::move(pLarger);
        m_Capacity *= 2;
    }
    io_pFrom = m_pBuffer.get();
    m_pEnd = m_pBuffer.get() + kept;
}

bool PlainInput::readMore(const char*& io_pFrom)
{
    makeRoom(io_pFrom);
    const char* const pOldEnd = m_pEnd;
    const char* const pLimit = m_pBuffer.get() + m_Capacity;
    while (m_pEnd < pLimit && !m_IsComplete && !m_IsFailed)
    {
        const std::size_t count = m_Source.read(m_pEnd, static_cast<std::size_t>(pLimit - m_pEnd));
        m_IsFailed = count == PlainSource::s_Failed;
        m_IsComplete = count == 0;
        m_pEnd += m_IsFailed ? 0 : count;
    }
    std::fill_n(m_pEnd, s_Padding, '\0');
    return m_pEnd > pOldEnd;
}

bool PlainInput::provideMore(const char*& io_pFrom, std::size_t i_Count)
{
    while (static_cast<std::size_t>(m_pEnd - io_pFrom) < i_Count)
    {
        if (!readMore(io_pFrom))
        {
            return false;
        }
    }
    return true;
}
