#include "xmlproxy/XmlExpansionBudget.h"

#include "xmlproxy/XercesText.h"

#include <xercesc/framework/XMLEntityDecl.hpp>
#include <xercesc/internal/ReaderMgr.hpp>
#include <xercesc/internal/XMLReader.hpp>

namespace
{

constexpr std::size_t s_Reference = 16;
constexpr std::size_t s_NestedReference = 128;
constexpr std::size_t s_OpenEntity = 16;
constexpr std::size_t s_Element = 32;
constexpr std::size_t s_Attribute = 16;

} // namespace

void XmlExpansionBudget::look() noexcept
{
    const xercesc::XMLReader* pReader = m_pReaders ? m_pReaders->getCurrentReader() : nullptr;
    if (!pReader || pReader->getReaderNum() <= m_LastReader)
    {
        return;
    }
    m_LastReader = pReader->getReaderNum();
    if (const xercesc::XMLEntityDecl* pEntity = m_pReaders->getCurrentEntity())
    {
        chargeReference(*pEntity);
    }
}

void XmlExpansionBudget::chargeReference(const xercesc::XMLEntityDecl& i_Entity) noexcept
{
    constexpr std::size_t direct = 2; // the document's reader and the entity's
    const std::size_t depth = m_pReaders->getReaderDepth();
    const std::size_t cost = depth <= direct ? s_Reference : s_NestedReference + (depth - direct - 1) * s_OpenEntity;
    charge(cost + (i_Entity.isExternal() ? 0 : i_Entity.getValueLen()), Payer::Entity, i_Entity.getName());
}

void XmlExpansionBudget::chargeExternal(const XMLCh* i_pSystemId, std::size_t i_Bytes)
{
    charge(i_Bytes, Payer::ExternalEntity, i_pSystemId);
    throwIfExceeded();
}

void XmlExpansionBudget::chargeElement(const XMLCh* i_pName, std::size_t i_Attributes, std::size_t i_Defaults,
                                       std::size_t i_DefaultUnits)
{
    const xercesc::XMLEntityDecl* pEntity = m_pReaders ? m_pReaders->getCurrentEntity() : nullptr;
    if (pEntity)
    {
        charge(s_Element + i_Attributes * s_Attribute, Payer::Entity, pEntity->getName());
    }
    if (i_Defaults > 0)
    {
        charge(sum(i_Defaults * s_Attribute, i_DefaultUnits), Payer::Element, i_pName);
    }
    throwIfExceeded();
}

void XmlExpansionBudget::charge(std::size_t i_Bytes, Payer i_Payer, const XMLCh* i_pName) noexcept
{
    m_Spent = sum(m_Spent, i_Bytes);
    if (m_IsExceeded || m_Spent <= limit())
    {
        return;
    }
    m_IsExceeded = true;
    m_Payer = i_Payer;
    for (std::size_t unit = 0; unit < s_NameUnits && i_pName[unit] != 0; ++unit)
    {
        m_Name[unit] = i_pName[unit];
    }
    if (m_pReaders)
    {
        xercesc::ReaderMgr::LastExtEntityInfo place;
        m_pReaders->getLastExtEntityInfo(place);
        m_Line = static_cast<int>(place.lineNumber);
    }
}

String XmlExpansionBudget::message() const
{
    if (!m_IsExceeded)
    {
        return {};
    }
    const String name = fromXercesText(m_Name);
    const String limitText = String::valueOf(static_cast<unsigned long long>(limit()));
    const String who = m_Payer == Payer::Element  ? L"The default values of element '"
                       : m_Payer == Payer::Entity ? L"The entity '"
                                                  : L"The external entity '";
    return who.concat(name)
        .concat(L"': entities and default values may add no more than ")
        .concat(limitText)
        .concat(L" bytes to this document");
}
