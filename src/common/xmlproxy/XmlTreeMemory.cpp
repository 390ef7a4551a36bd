#include "xmlproxy/XmlTreeMemory.h"

#include "xmlproxy/Utf16Text.h"

#include <algorithm>

namespace
{

bool isAscii(std::string_view i_Bytes) noexcept
{
    return std::all_of(i_Bytes.begin(), i_Bytes.end(),
                       [](char i_Byte) { return static_cast<unsigned char>(i_Byte) < 0x80; });
}

} // namespace

template <typename Unit>
XmlTreeMemory::Entry* XmlTreeMemory::find(std::basic_string_view<Unit> i_Text, std::size_t i_Hash) noexcept
{
    const auto isSame = [](wchar_t i_Left, Unit i_Right)
    { return static_cast<char16_t>(i_Left) == static_cast<char16_t>(i_Right); };
    const auto [first, last] = m_ByHash.equal_range(i_Hash);
    for (auto place = first; place != last; ++place)
    {
        const std::wstring_view known = place->second->name().text().view();
        if (std::equal(known.begin(), known.end(), i_Text.begin(), i_Text.end(), isSame))
        {
            return place->second;
        }
    }
    return nullptr;
}

XmlTreeMemory::Entry* XmlTreeMemory::make(const String& i_Text)
{
    Entry& entry = m_Entries.emplace_back(i_Text, this);
    m_ByHash.emplace(entry.name().hash(), &entry);
    return &entry;
}

XmlTreeMemory::Entry* XmlTreeMemory::findOrMake(const String& i_Text)
{
    Entry* pKnown = find(i_Text.view(), XmlName::hashOf(i_Text.view()));
    return pKnown ? pKnown : make(i_Text);
}

XmlTreeMemory::Entry* XmlTreeMemory::follow(Entry* i_pEntry) noexcept
{
    // Documents repeat themselves: the name that followed this one the last time mostly does again.
    if (m_pLast)
    {
        m_pLast->m_pFollower = i_pEntry;
    }
    m_pLast = i_pEntry;
    return i_pEntry;
}

/// The name after the last one in the order of the document.
XmlTreeMemory::Entry* XmlTreeMemory::next(const char16_t* i_pText)
{
    Entry* pGuess = m_pLast ? m_pLast->m_pFollower : nullptr;
    if (!pGuess || !isSameText(pGuess->name().text(), i_pText))
    {
        const std::u16string_view text(i_pText);
        pGuess = find(text, XmlName::hashOf(text));
        if (!pGuess)
        {
            pGuess = make(String::fromUtf16(text.data(), text.size()));
        }
    }
    return follow(pGuess);
}

XmlTreeMemory::Entry* XmlTreeMemory::next(std::string_view i_Bytes)
{
    if (!isAscii(i_Bytes))
    {
        return follow(findOrMake(String(i_Bytes.data(), i_Bytes.size())));
    }
    Entry* pKnown = find(i_Bytes, XmlName::hashOf(i_Bytes));
    return follow(pKnown ? pKnown : make(String(i_Bytes.data(), i_Bytes.size())));
}
