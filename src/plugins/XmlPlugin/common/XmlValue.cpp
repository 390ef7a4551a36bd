#include "XmlValue.h"

#include "XPathEngine.h"
#include "XPathRecords.h"
#include "base/String.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <string>
#include <string_view>

namespace XmlPlugin
{

namespace
{

constexpr int s_ScalarShape = 0;
constexpr int s_VectorShape = 1;

/// Runs the query that an expression's properties describe and checks "mustExist".
TErrorCode runQuery(const PluginSDK::Expression& i_Expression, XPathRecords& o_Records)
{
    const wchar_t* pFile = i_Expression.getProperty(L"file");
    if (!pFile)
        return XML_PLUGIN_ERROR_FILE_NOT_SET;
    const wchar_t* pXPath = i_Expression.getProperty(L"xpath");
    if (!pXPath)
        return XML_PLUGIN_ERROR_XPATH_NOT_SET;
    const wchar_t* pMustExist = i_Expression.getProperty(L"mustExist");
    const bool mustExist = pMustExist && std::wstring_view(pMustExist) == L"true";

    const TErrorCode code = XPathEngine().start(String(pXPath), String(pFile), o_Records.list());
    if (code != XML_SUCCESS)
        return code;
    return mustExist && o_Records.list().empty() ? XML_PLUGIN_ERROR_NO_VALUE : XML_SUCCESS;
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
    XPathRecords records;
    if (const TErrorCode code = runQuery(*this, records); code != XML_SUCCESS)
        return code;
    if (records.list().size() > 1)
        return XML_PLUGIN_ERROR_MORE_THAN_ONE_VALUE;
    if (!records.list().empty())
        o_Result = std::wstring(records.list().front()->m_Value.view()).c_str();
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
    XPathRecords records;
    if (const TErrorCode code = runQuery(*this, records); code != XML_SUCCESS)
        return code;
    try
    {
        std::wstring value; // with the null that the host needs and the tree does not keep
        for (const XPathOutputElement* pRecord : records.list())
        {
            value = pRecord->m_Value.view();
            o_Result.addString(value.c_str());
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
