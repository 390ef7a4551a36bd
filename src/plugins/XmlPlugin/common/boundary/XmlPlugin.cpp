#include "boundary/XmlPlugin.h"

#include "boundary/XmlCache.h"
#include "boundary/XmlValue.h"
#include "xmlproxy/XmlErrorCodes.h"

#include <new>
#include <string_view>

namespace PluginSDK
{

namespace
{

constexpr std::wstring_view s_ScalarType = L"XmlValue";
constexpr std::wstring_view s_VectorType = L"XmlValues";

/// Null when memory is exhausted. What else the host's framework may throw passes.
template <class Type>
Expression* make()
{
    try
    {
        return new Type;
    }
    catch (const std::bad_alloc&)
    {
        return nullptr;
    }
}

} // namespace

void XmlPlugin::reservedHook() {}

Version& XmlPlugin::getVersion(Version& o_Version) const
{
    o_Version = {1, 1, 1, 1};
    return o_Version;
}

const wchar_t* XmlPlugin::getName() const
{
    return L"Xml";
}

int XmlPlugin::reservedQuery() const
{
    return 0;
}

void XmlPlugin::registerExpressions()
{
    addExpression(s_ScalarType.data());
    addExpression(s_VectorType.data());
}

void XmlPlugin::unload()
{
    ::XmlPlugin::XmlCache::destroyInstance();
}

TErrorCode XmlPlugin::createExpression(const wchar_t* i_TypeName, Expression** o_Expression)
{
    if (!i_TypeName || !o_Expression)
    {
        return XML_ERROR_NULL_ARGUMENT;
    }
    const std::wstring_view typeName(i_TypeName);
    if (typeName == s_ScalarType)
    {
        *o_Expression = make<::XmlPlugin::XmlValue>();
    }
    else if (typeName == s_VectorType)
    {
        *o_Expression = make<::XmlPlugin::XmlValues>();
    }
    else
    {
        *o_Expression = nullptr;
        return XML_ERROR_UNKNOWN_EXPRESSION_TYPE;
    }
    return XML_SUCCESS;
}

TErrorCode XmlPlugin::destroyExpression(Expression* i_Expression)
{
    delete i_Expression;
    return XML_SUCCESS;
}

} // namespace PluginSDK
