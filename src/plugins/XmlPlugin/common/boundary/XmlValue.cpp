#include "boundary/XmlValue.h"

#include "base/String.h"
#include "boundary/XPathEngine.h"
#include "values/XPathOutputList.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <cstdint>
#include <string_view>

namespace XmlPlugin
{

namespace
{

constexpr int s_ScalarShape = 0;
constexpr int s_VectorShape = 1;
constexpr std::wstring_view s_True = L"true";

/// A host's text as UTF-16 code units: as it stands, or a copy where it has wider characters.
class HostText
{
public:
    explicit HostText(const wchar_t* i_Text) : m_Units(i_Text)
    {
        constexpr std::uint32_t lastUnit = 0xFFFF;
        std::uint32_t bits = 0;
        for (const wchar_t character : m_Units)
        {
            bits |= static_cast<std::uint32_t>(character);
        }
        if (bits > lastUnit)
        {
            m_Copy = String(i_Text);
            m_Units = m_Copy.view();
        }
    }
    HostText(const HostText&) = delete;
    HostText& operator=(const HostText&) = delete;

    std::wstring_view units() const noexcept { return m_Units; }

private:
    String m_Copy;
    std::wstring_view m_Units;
};

/// Runs the query that an expression's properties describe and checks "mustExist".
TErrorCode runQuery(const PluginSDK::Expression& i_Expression, XPathOutputList& o_Records)
{
    const wchar_t* pFile = i_Expression.getProperty(L"file");
    if (!pFile)
    {
        return XML_PLUGIN_ERROR_FILE_NOT_SET;
    }
    const wchar_t* pXPath = i_Expression.getProperty(L"xpath");
    if (!pXPath)
    {
        return XML_PLUGIN_ERROR_XPATH_NOT_SET;
    }
    const wchar_t* pMustExist = i_Expression.getProperty(L"mustExist");
    const bool mustExist = pMustExist && pMustExist == s_True;

    const TErrorCode code = XPathEngine().start(HostText(pXPath).units(), HostText(pFile).units(), o_Records);
    if (code != XML_SUCCESS)
    {
        return code;
    }
    return mustExist && o_Records.empty() ? XML_PLUGIN_ERROR_NO_VALUE : XML_SUCCESS;
}

} // namespace

// --- XmlValue -----------------------------------------------------------------------------------

bool XmlValue::reservedFlagA() const
{
    return false;
}

int XmlValue::getShape() const
{
    return s_ScalarShape;
}

bool XmlValue::reservedFlagB() const
{
    return true;
}

void XmlValue::reservedHook() {}

TErrorCode XmlValue::evaluate(PluginSDK::String& o_Result)
{
    o_Result = L"";
    XPathOutputList records;
    if (const TErrorCode code = runQuery(*this, records); code != XML_SUCCESS)
    {
        return code;
    }
    if (records.size() > 1)
    {
        return XML_PLUGIN_ERROR_MORE_THAN_ONE_VALUE;
    }
    if (!records.empty())
    {
        o_Result = records.front()->m_Value.c_str();
    }
    return XML_SUCCESS;
}

// --- XmlValues ----------------------------------------------------------------------------------

bool XmlValues::reservedFlagA() const
{
    return false;
}

int XmlValues::getShape() const
{
    return s_VectorShape;
}

bool XmlValues::reservedFlagB() const
{
    return true;
}

void XmlValues::reservedHook() {}

TErrorCode XmlValues::evaluate(PluginSDK::StringVector& o_Result)
{
    o_Result.removeAll();
    XPathOutputList records;
    if (const TErrorCode code = runQuery(*this, records); code != XML_SUCCESS)
    {
        return code;
    }
    try
    {
        for (const XPathOutputElement* pRecord : records)
        {
            o_Result.addString(pRecord->m_Value.c_str());
        }
    }
    catch (...) // memory is exhausted: no part of a list is handed over
    {
        o_Result.removeAll();
        throw;
    }
    return XML_SUCCESS;
}

} // namespace XmlPlugin
