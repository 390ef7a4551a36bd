#include "xmlproxy/XmlTreeMemory.h"

#include "xmlproxy/XercesText.h"

#include <algorithm>

template <typename Unit>
XmlTreeMemory::Record* XmlTreeMemory::find(std::basic_string_view<Unit> i_Text, std::size_t i_Hash) noexcept
{
    const auto isSame = [](wchar_t i_Left, Unit i_Right)
    { return static_cast<char16_t>(i_Left) == static_cast<char16_t>(i_Right); };
    const auto [first, last] = m_ByHash.equal_range(i_Hash);
    for (auto place = first; place != last; ++place)
    {
        const std::wstring_view known = place->second->name.text().view();
        if (std::equal(known.begin(), known.end(), i_Text.begin(), i_Text.end(), isSame))
        {
            return place->second;
        }
    }
    return nullptr;
}

XmlTreeMemory::Record* XmlTreeMemory::add(const String& i_Text)
{
    Record& record = m_Records.emplace_back(i_Text, this);
    m_ByHash.emplace(record.name.hash(), &record);
    return &record;
}

/// The name behind the last one in the order of the document.
XmlTreeMemory::Record* XmlTreeMemory::next(const char16_t* i_pText)
{
    Record* pGuess = m_pLast ? m_pLast->pFollower : nullptr;
    if (!pGuess || !isSameText(pGuess->name.text(), i_pText))
    {
        const std::u16string_view text(i_pText);
        pGuess = find(text, XmlName::hashOf(text));
        if (!pGuess)
        {
            pGuess = add(String::fromUtf16(text.data(), text.size()));
        }
        if (m_pLast)
        {
            m_pLast->pFollower = pGuess;
        }
    }
    m_pLast = pGuess;
    return pGuess;
}

const XmlName& XmlTreeMemory::startTag(const char16_t* i_pText)
{
    m_pTag = next(i_pText);
    ++m_Tags;
    return m_pTag->name;
}

const XmlName* XmlTreeMemory::addAttribute(const char16_t* i_pText)
{
    Record* pRecord = next(i_pText);
    if (pRecord->tag == m_Tags)
    {
        return nullptr;
    }
    pRecord->tag = m_Tags;
    return &pRecord->name;
}

const XmlName& XmlTreeMemory::nameOf(const String& i_Text)
{
    if (m_pTag && &m_pTag->name.text() == &i_Text)
    {
        return m_pTag->name;
    }
    Record* pKnown = find(i_Text.view(), XmlName::hashOf(i_Text.view()));
    return (pKnown ? pKnown : add(i_Text))->name;
}
