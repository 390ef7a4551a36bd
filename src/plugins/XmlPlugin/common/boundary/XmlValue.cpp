#include "boundary/XmlValue.h"

#include "base/String.h"
#include "boundary/FloatingPointGuard.h"
#include "boundary/XPathEngine.h"
#include "values/XPathOutputList.h"
#include "values/XPathSmallVector.h"
#include "values/XmlTrace.h"
#include "xmlproxy/XmlErrorCodes.h"
#include "xmlproxy/XmlText.h"

#include <cstdint>
#include <string_view>

XML_TRACE_SOURCE(L"XmlValue")

namespace XmlPlugin
{

namespace
{

constexpr int s_ScalarShape = 0;
constexpr int s_VectorShape = 1;
constexpr std::wstring_view s_True = L"true";
constexpr const wchar_t* s_ValueScope = L"XmlValue::evaluate";
constexpr const wchar_t* s_ValuesScope = L"XmlValues::evaluate";

/// A copy of a property in UTF-16 code units; wider characters are split. It is made as soon as the property is read,
/// because a framework may lend every property in the same buffer.
class PropertyText
{
public:
    /// \p i_Value is null-terminated.
    explicit PropertyText(const wchar_t* i_Value)
    {
        constexpr std::uint32_t lastUnit = 0xFFFF;
        const std::wstring_view value(i_Value);
        std::uint32_t bits = 0;
        for (const wchar_t character : value)
        {
            bits |= static_cast<std::uint32_t>(character);
        }
        if (bits <= lastUnit)
        {
            m_Units.assign(value.data(), value.data() + value.size());
        }
        else
        {
            const String units(i_Value);
            m_Units.assign(viewOf(units).data(), viewOf(units).data() + viewOf(units).size());
        }
    }

    std::wstring_view units() const noexcept { return {m_Units.data(), m_Units.size()}; }

private:
    XPathSmallVector<wchar_t, 128> m_Units;
};

/// Writes the error record of \p i_Code, which this returns. \p i_Scope: the operation that fails.
TErrorCode failed(const wchar_t* i_Scope, TErrorCode i_Code)
{
    const Trace trace(s_Tracer, i_Scope);
    XML_TRACE(trace, TraceError) << String(xmlErrorText(i_Code)) << L", result = " << i_Code;
    return i_Code;
}

/// Runs the query that an expression's properties describe and checks "mustExist".
TErrorCode runQuery(const PluginSDK::Expression& i_Expression, const wchar_t* i_Scope, XPathOutputList& o_Records)
{
    const wchar_t* pFile = i_Expression.getProperty(L"file");
    if (!pFile)
    {
        return failed(i_Scope, XML_PLUGIN_ERROR_FILE_NOT_SET);
    }
    const PropertyText file(pFile);
    const wchar_t* pXPath = i_Expression.getProperty(L"xpath");
    if (!pXPath)
    {
        return failed(i_Scope, XML_PLUGIN_ERROR_XPATH_NOT_SET);
    }
    const PropertyText xpath(pXPath);
    const wchar_t* pMustExist = i_Expression.getProperty(L"mustExist");
    const bool mustExist = pMustExist && pMustExist == s_True;

    const FloatingPointGuard guard;
    const TErrorCode code = XPathEngine().start(xpath.units(), file.units(), o_Records);
    if (code != XML_SUCCESS)
    {
        return code;
    }
    return mustExist && o_Records.empty() ? failed(i_Scope, XML_PLUGIN_ERROR_NO_VALUE) : XML_SUCCESS;
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
    if (const TErrorCode code = runQuery(*this, s_ValueScope, records); code != XML_SUCCESS)
    {
        return code;
    }
    if (records.size() > 1)
    {
        return failed(s_ValueScope, XML_PLUGIN_ERROR_MORE_THAN_ONE_VALUE);
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
    if (const TErrorCode code = runQuery(*this, s_ValuesScope, records); code != XML_SUCCESS)
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
