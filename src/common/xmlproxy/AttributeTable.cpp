#include "xmlproxy/AttributeTable.h"

#include "xmlproxy/StringVector.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlTreeMemory.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <vector>

static_assert(sizeof(AttributeTable) % alignof(PackedAttributes) == 0);

namespace
{

/// Up to this count a search compares name by name.
constexpr int s_SmallCount = 32;

/// The standard library prints wide numbers through its formatted output, many times slower.
std::wstring decimal(std::uint32_t i_Number)
{
    std::array<wchar_t, std::numeric_limits<std::uint32_t>::digits10 + 1> digits;
    auto* pFirst = digits.data() + digits.size();
    do
    {
        *--pFirst = static_cast<wchar_t>(L'0' + i_Number % 10);
        i_Number /= 10;
    } while (i_Number > 0);
    return {pFirst, digits.data() + digits.size()};
}

} // namespace

/// What `add` has filled.
struct AttributeTable::Texts
{
    /// Open addressing over attribute indices, -1 in an empty slot; the size is a power of two and
    /// at least twice the number of attributes.
    using Slots = std::vector<int>;

    explicit Texts(int i_BlockSize) : names(i_BlockSize), values(i_BlockSize), ordinals(i_BlockSize) {}

    int indexOf(std::wstring_view i_Name) const noexcept;
    TErrorCode add(const String& i_Name, const String& i_Value, const String& i_Ordinal);

    StringVector names;
    StringVector values;
    StringVector ordinals;
    std::unique_ptr<Slots> pSlots; ///< null in a small table

private:
    std::size_t slotOf(std::wstring_view i_Name) const noexcept;
    void reserveSlots(int i_Count);
};

/// The slot that holds the attribute of this name, or the empty one where it belongs.
std::size_t AttributeTable::Texts::slotOf(std::wstring_view i_Name) const noexcept
{
    const Slots& slots = *pSlots;
    const std::size_t mask = slots.size() - 1;
    std::size_t slot = XmlName::hashOf(i_Name) & mask;
    while (slots[slot] >= 0 && names.at(slots[slot]) != i_Name)
    {
        slot = (slot + 1) & mask;
    }
    return slot;
}

/// Makes the index large enough for \p i_Count attributes.
void AttributeTable::Texts::reserveSlots(int i_Count)
{
    const std::size_t wanted = static_cast<std::size_t>(i_Count) * 2;
    if (i_Count <= s_SmallCount || (pSlots && pSlots->size() >= wanted))
    {
        return;
    }
    pSlots = std::make_unique<Slots>(pSlots ? pSlots->size() * 2 : std::size_t{4} * s_SmallCount, -1);
    for (int index = 0; index < names.count(); ++index)
    {
        (*pSlots)[slotOf(names.at(index))] = index;
    }
}

int AttributeTable::Texts::indexOf(std::wstring_view i_Name) const noexcept
{
    if (pSlots)
    {
        return (*pSlots)[slotOf(i_Name)];
    }
    int index = names.count() - 1;
    while (index >= 0 && names.at(index) != i_Name)
    {
        --index;
    }
    return index; // names are unique
}

TErrorCode AttributeTable::Texts::add(const String& i_Name, const String& i_Value, const String& i_Ordinal)
{
    if (indexOf(viewOf(i_Name)) >= 0)
    {
        return XML_ERROR_DUPLICATE;
    }
    // Room is made first: what follows cannot fail half way and leave the vectors different.
    const int index = names.count();
    reserveSlots(index + 1);
    names.reserve(1, viewOf(i_Name).size() + 1);
    values.reserve(1, viewOf(i_Value).size() + 1);
    ordinals.reserve(1, viewOf(i_Ordinal).size() + 1);
    if (pSlots)
    {
        (*pSlots)[slotOf(viewOf(i_Name))] = index;
    }
    names.insert(index, unitsOf(i_Name));
    values.insert(index, unitsOf(i_Value));
    return ordinals.insert(index, unitsOf(i_Ordinal));
}

AttributeTable::AttributeTable(int i_BlockSize)
    : m_BlockSize(i_BlockSize), m_Content(Content::InTexts), m_pTexts(new Texts(i_BlockSize))
{
}

AttributeTable::AttributeTable(const PackedAttributes* i_pPacked) noexcept
    : m_BlockSize(1), m_IsInMemory(true), m_Content(Content::InPacked), m_pPacked(i_pPacked)
{
}

AttributeTable::AttributeTable(XmlTreeMemory* i_pMemory) noexcept
    : m_BlockSize(1), m_IsInMemory(true), m_Content(Content::Empty), m_pMemory(i_pMemory)
{
}

AttributeTable::~AttributeTable()
{
    if (m_Content == Content::InTexts)
    {
        delete m_pTexts;
    }
}

AttributeTable* AttributeTable::create(XmlTreeMemory& io_Memory, std::span<const PackedAttributes::Source> i_Attributes,
                                       std::uint32_t i_FirstOrdinal)
{
    if (i_Attributes.empty())
    {
        return new (io_Memory.allocateTable(sizeof(AttributeTable))) AttributeTable(&io_Memory);
    }
    const std::size_t bytes = sizeof(AttributeTable) + PackedAttributes::bytesFor(i_Attributes);
    auto* pPlace = static_cast<AttributeTable*>(io_Memory.allocateTable(bytes));
    return new (pPlace) AttributeTable(PackedAttributes::make(pPlace + 1, i_Attributes, i_FirstOrdinal));
}

void* AttributeTable::operator new(std::size_t i_Bytes)
{
    return ::operator new(i_Bytes);
}

void AttributeTable::operator delete(void* i_pTable) noexcept
{
    ::operator delete(i_pTable);
}

void AttributeTable::operator delete(AttributeTable* i_pTable, std::destroying_delete_t) noexcept
{
    const bool isInMemory = i_pTable->m_IsInMemory;
    i_pTable->~AttributeTable();
    if (!isInMemory)
    {
        ::operator delete(static_cast<void*>(i_pTable));
    }
}

/// Turns a table that `create` has made into one that can be added to.
void AttributeTable::unpack()
{
    auto pTexts = std::make_unique<Texts>(m_BlockSize);
    XmlTreeMemory* pMemory = isPacked() ? packed().nameAt(0).memory() : m_pMemory;
    for (int index = 0; index < count(); ++index)
    {
        const std::wstring_view value = packed().valueAt(index);
        pTexts->add(packed().nameAt(index).text(), String(value.data(), value.size()),
                    String::valueOf(packed().ordinalAt(index)));
    }
    pMemory->setHasOthers();
    m_pTexts = pTexts.release();
    m_Content = Content::InTexts;
}

TErrorCode AttributeTable::add(const String& i_Name, const String& i_Value, const String& i_Ordinal)
{
    if (m_Content != Content::InTexts)
    {
        unpack();
    }
    return m_pTexts->add(i_Name, i_Value, i_Ordinal);
}

void AttributeTable::getAt(int i_Index, String& o_Name, String& o_Value) const
{
    // A negative index stands for the first, as it does in a string vector.
    const int index = std::max(i_Index, 0);
    if (index < count())
    {
        const std::wstring_view name = nameAt(index);
        const std::wstring_view value = valueAt(index);
        o_Name = String(name.data(), name.size());
        o_Value = String(value.data(), value.size());
    }
}

TErrorCode AttributeTable::getByName(const String& i_Name, String& o_Value, String& o_Ordinal) const
{
    const int index = indexOf(i_Name);
    if (index < 0)
    {
        return XML_ERROR_NOT_FOUND;
    }
    const std::wstring_view value = valueAt(index);
    const std::wstring ordinal = ordinalAt(index);
    o_Value = String(value.data(), value.size());
    o_Ordinal = String(ordinal.data(), ordinal.size());
    return XML_SUCCESS;
}

std::wstring AttributeTable::ordinalAt(int i_Index) const
{
    return isInPacked(i_Index) ? decimal(packed().ordinalAt(i_Index)) : std::wstring(textOrdinalAt(i_Index));
}

int AttributeTable::textCount() const noexcept
{
    return m_Content == Content::InTexts ? m_pTexts->names.count() : 0;
}

int AttributeTable::textIndexOf(std::wstring_view i_Name) const noexcept
{
    return m_Content == Content::InTexts ? m_pTexts->indexOf(i_Name) : -1;
}

std::wstring_view AttributeTable::textNameAt(int i_Index) const noexcept
{
    return m_Content == Content::InTexts ? m_pTexts->names.at(i_Index) : std::wstring_view();
}

std::wstring_view AttributeTable::textValueAt(int i_Index) const noexcept
{
    return m_Content == Content::InTexts ? m_pTexts->values.at(i_Index) : std::wstring_view();
}

std::wstring_view AttributeTable::textOrdinalAt(int i_Index) const noexcept
{
    return m_Content == Content::InTexts ? m_pTexts->ordinals.at(i_Index) : std::wstring_view();
}

std::uint32_t AttributeTable::textOrderAt(int i_Index) const noexcept
{
    std::uint32_t order = 0;
    for (const wchar_t digit : textOrdinalAt(i_Index))
    {
        order = order * 10 + static_cast<std::uint32_t>(digit - L'0');
    }
    return order;
}
