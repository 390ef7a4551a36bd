#include "xmlproxy/AttributeTable.h"

#include "xmlproxy/XmlErrorCodes.h"

#include <functional>

namespace
{

/// Up to this count a search compares name by name.
constexpr int s_SmallCount = 32;

} // namespace

AttributeTable::AttributeTable(int i_BlockSize)
    : m_Names(i_BlockSize), m_Values(i_BlockSize), m_Ordinals(i_BlockSize), m_BlockSize(i_BlockSize)
{
}

/// The slot that holds the attribute of this name, or the empty one where it belongs.
std::size_t AttributeTable::slotOf(std::wstring_view i_Name) const noexcept
{
    const Slots& slots = *m_pSlots;
    const std::size_t mask = slots.size() - 1;
    std::size_t slot = std::hash<std::wstring_view>{}(i_Name)&mask;
    while (slots[slot] >= 0 && m_Names.at(slots[slot]) != i_Name)
    {
        slot = (slot + 1) & mask;
    }
    return slot;
}

/// Makes the index large enough for \p i_Count attributes.
void AttributeTable::reserveSlots(int i_Count)
{
    const std::size_t wanted = static_cast<std::size_t>(i_Count) * 2;
    if (i_Count <= s_SmallCount || (m_pSlots && m_pSlots->size() >= wanted))
    {
        return;
    }
    std::size_t size = m_pSlots ? m_pSlots->size() : std::size_t{4} * s_SmallCount;
    while (size < wanted)
    {
        size *= 2;
    }
    m_pSlots = std::make_unique<Slots>(size, -1);
    for (int index = 0; index < count(); ++index)
    {
        (*m_pSlots)[slotOf(m_Names.at(index))] = index;
    }
}

int AttributeTable::indexOf(const String& i_Name) const noexcept
{
    if (m_pSlots)
    {
        return (*m_pSlots)[slotOf(i_Name.view())];
    }
    int index = -1;
    return m_Names.find(i_Name, index) == XML_SUCCESS ? index : -1;
}

TErrorCode AttributeTable::add(const String& i_Name, const String& i_Value, const String& i_Ordinal)
{
    if (indexOf(i_Name) >= 0)
    {
        return XML_ERROR_DUPLICATE;
    }
    // Room is made first: what follows cannot fail half way and leave the vectors different.
    const int index = count();
    reserveSlots(index + 1);
    m_Names.reserve(1, i_Name.view().size() + 1);
    m_Values.reserve(1, i_Value.view().size() + 1);
    m_Ordinals.reserve(1, i_Ordinal.view().size() + 1);
    if (m_pSlots)
    {
        (*m_pSlots)[slotOf(i_Name.view())] = index;
    }
    m_Names.insert(index, i_Name.c_str());
    m_Values.insert(index, i_Value.c_str());
    return m_Ordinals.insert(index, i_Ordinal.c_str());
}

void AttributeTable::getAt(int i_Index, String& o_Name, String& o_Value) const
{
    if (i_Index < count())
    {
        m_Names.get(i_Index, o_Name);
        m_Values.get(i_Index, o_Value);
    }
}

TErrorCode AttributeTable::getByName(const String& i_Name, String& o_Value, String& o_Ordinal) const
{
    const int index = indexOf(i_Name);
    if (index < 0)
    {
        return XML_ERROR_NOT_FOUND;
    }
    m_Values.get(index, o_Value);
    return m_Ordinals.get(index, o_Ordinal);
}

void AttributeTable::reserve(int i_Count, std::size_t i_NameCharacters, std::size_t i_ValueCharacters,
                             std::size_t i_OrdinalCharacters)
{
    const auto nulls = static_cast<std::size_t>(i_Count);
    reserveSlots(count() + i_Count);
    m_Names.reserve(i_Count, i_NameCharacters + nulls);
    m_Values.reserve(i_Count, i_ValueCharacters + nulls);
    m_Ordinals.reserve(i_Count, i_OrdinalCharacters + nulls);
}
