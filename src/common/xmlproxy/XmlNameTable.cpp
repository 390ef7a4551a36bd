#include "xmlproxy/XmlNameTable.h"

std::shared_ptr<const XmlName> XmlNameTable::intern(const String& i_Text)
{
    const auto pKnown = m_Names.find(i_Text.view());
    if (pKnown != m_Names.end())
    {
        return pKnown->second;
    }
    auto pName = std::make_shared<const XmlName>(i_Text);
    m_Names.emplace(pName->text().view(), pName);
    return pName;
}
