#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <memory>
#include <type_traits>
#include <utility>

namespace XmlPlugin
{

/// A vector of plain values that keeps the first \p Inline of them inside the object. Nearly all lists are short and so
/// need no memory from the heap. Used like a `std::vector`.
///
/// Ownership: owns its memory, but not what pointers in it point to.
/// Invariants: `data()` is inside the object as long as the capacity is \p Inline. So a list must not be moved while an
/// iterator of it is in use.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathSmallVectorTest.cpp
template <class Type, std::size_t Inline>
class XPathSmallVector
{
    static_assert(std::is_trivially_copyable_v<Type>);

public:
    using value_type = Type;
    using iterator = Type*;
    using const_iterator = const Type*;

    // m_Inline is neither initialised nor assigned here; it is never read beyond m_Size.
    // cppcheck-suppress uninitMemberVar ; see above
    XPathSmallVector() noexcept = default;
    // cppcheck-suppress uninitMemberVar ; see above
    XPathSmallVector(std::initializer_list<Type> i_Values) { assign(i_Values.begin(), i_Values.end()); }
    // cppcheck-suppress uninitMemberVar ; see above
    XPathSmallVector(const XPathSmallVector& i_Other) { assign(i_Other.begin(), i_Other.end()); }
    // cppcheck-suppress operatorEqVarError ; see above
    XPathSmallVector& operator=(const XPathSmallVector& i_Other)
    {
        if (this != &i_Other)
        {
            assign(i_Other.begin(), i_Other.end());
        }
        return *this;
    }
    /// Leaves the other one empty.
    // cppcheck-suppress uninitMemberVar ; see above
    XPathSmallVector(XPathSmallVector&& io_Other) noexcept { take(io_Other); }
    // cppcheck-suppress operatorEqVarError ; see above
    XPathSmallVector& operator=(XPathSmallVector&& io_Other) noexcept
    {
        if (this != &io_Other)
        {
            take(io_Other);
        }
        return *this;
    }
    ~XPathSmallVector() = default;

    void assign(const Type* i_pBegin, const Type* i_pEnd)
    {
        m_Size = 0;
        reserve(static_cast<std::size_t>(i_pEnd - i_pBegin));
        std::copy(i_pBegin, i_pEnd, data());
        m_Size = static_cast<std::size_t>(i_pEnd - i_pBegin);
    }
    void reserve(std::size_t i_Capacity)
    {
        if (i_Capacity > m_Capacity)
        {
            grow(std::max(i_Capacity, 2 * m_Capacity));
        }
    }
    [[gnu::always_inline]] void push_back(Type i_Value)
    {
        if (m_Size == m_Capacity)
        {
            grow(2 * m_Capacity);
        }
        data()[m_Size++] = i_Value;
    }
    /// Appends the values of a range, which must not be part of this vector.
    template <class Range>
    void append(const Range& i_Values)
    {
        reserve(m_Size + i_Values.size());
        std::copy(i_Values.begin(), i_Values.end(), end());
        m_Size += i_Values.size();
    }
    /// Drops the values from \p i_From on.
    void truncate(const Type* i_pFrom) noexcept { m_Size = static_cast<std::size_t>(i_pFrom - data()); }
    void pop_back() noexcept { --m_Size; }
    /// New values at the end are 0.
    void resize(std::size_t i_Size)
    {
        reserve(i_Size);
        if (i_Size > m_Size)
        {
            std::fill(end(), data() + i_Size, Type());
        }
        m_Size = i_Size;
    }
    void clear() noexcept { m_Size = 0; }

    std::size_t size() const noexcept { return m_Size; }
    bool empty() const noexcept { return m_Size == 0; }
    Type* data() noexcept { return m_pData; }
    const Type* data() const noexcept { return m_pData; }
    Type& operator[](std::size_t i_Index) noexcept { return data()[i_Index]; }
    const Type& operator[](std::size_t i_Index) const noexcept { return data()[i_Index]; }
    Type& front() noexcept { return data()[0]; }
    const Type& front() const noexcept { return data()[0]; }
    Type& back() noexcept { return data()[m_Size - 1]; }
    const Type& back() const noexcept { return data()[m_Size - 1]; }
    iterator begin() noexcept { return data(); }
    iterator end() noexcept { return data() + m_Size; }
    const_iterator begin() const noexcept { return data(); }
    const_iterator end() const noexcept { return data() + m_Size; }

    friend bool operator==(const XPathSmallVector& i_Left, const XPathSmallVector& i_Right)
    {
        return std::equal(i_Left.begin(), i_Left.end(), i_Right.begin(), i_Right.end());
    }

private:
    [[gnu::noinline]] void grow(std::size_t i_Capacity) // out of the way of what nearly never needs it
    {
        std::unique_ptr<Type[]> pHeap(new Type[i_Capacity]);
        std::copy(data(), data() + m_Size, pHeap.get());
        m_pHeap = std::move(pHeap);
        m_pData = m_pHeap.get();
        m_Capacity = i_Capacity;
    }
    void take(XPathSmallVector& io_Other) noexcept
    {
        m_Size = std::exchange(io_Other.m_Size, 0);
        m_Capacity = std::exchange(io_Other.m_Capacity, Inline);
        m_pHeap = std::move(io_Other.m_pHeap);
        m_pData = m_pHeap ? m_pHeap.get() : m_Inline;
        if (!m_pHeap)
        {
            std::copy(io_Other.m_Inline, io_Other.m_Inline + std::min(m_Size, Inline), m_Inline);
        }
        io_Other.m_pData = io_Other.m_Inline;
    }

    Type* m_pData = m_Inline; ///< m_Inline or m_pHeap
    std::size_t m_Size = 0;
    std::size_t m_Capacity = Inline;
    std::unique_ptr<Type[]> m_pHeap; ///< null: the values are in m_Inline
    Type m_Inline[Inline];
};

} // namespace XmlPlugin
