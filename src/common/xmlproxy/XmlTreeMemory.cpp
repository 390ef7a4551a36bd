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
XmlTreeMemory::Entry* XmlTreeMemory::findHashed(std::basic_string_view<Unit> i_Text) noexcept
{
    const auto isSame = [](wchar_t i_Left, Unit i_Right)
    { return static_cast<char16_t>(i_Left) == static_cast<char16_t>(i_Right); };
    const auto [first, last] = m_ByHash.equal_range(XmlName::hashOf(i_Text));
    for (auto place = first; place != last; ++place)
    {
        const std::wstring_view known = viewOf(place->second->name().text());
        if (std::equal(known.begin(), known.end(), i_Text.begin(), i_Text.end(), isSame))
        {
            return place->second;
        }
    }
    return nullptr;
}

XmlTreeMemory::Entry& XmlTreeMemory::insert(const String& i_Text)
{
    Entry& entry = m_Entries.emplace_back(i_Text, this);
    m_ByHash.emplace(entry.name().hash(), &entry);
    return entry;
}

/// The name after the last one in the order of the document.
XmlTreeMemory::Entry* XmlTreeMemory::next(const char16_t* i_pText)
{
    Entry* pGuess = expected();
    if (!pGuess || !isSameText(pGuess->name().text(), i_pText))
    {
        const std::u16string_view text(i_pText);
        pGuess = findHashed(text);
        if (!pGuess)
        {
            pGuess = &insert(fromUtf16(text.data(), text.size()));
        }
    }
    return follow(pGuess);
}

XmlTreeMemory::Entry* XmlTreeMemory::find(std::string_view i_Bytes)
{
    return isAscii(i_Bytes) ? findHashed(i_Bytes) : findHashed(viewOf(String(i_Bytes.data(), i_Bytes.size())));
}

XmlTreeMemory::Entry& XmlTreeMemory::make(std::string_view i_Bytes)
{
    return insert(String(i_Bytes.data(), i_Bytes.size()));
}

const XmlName& XmlTreeMemory::lookUp(const String& i_Text)
{
    Entry* pKnown = findHashed(viewOf(i_Text));
    return (pKnown ? *pKnown : insert(i_Text)).name();
}
