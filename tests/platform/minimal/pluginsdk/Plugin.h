#pragma once

#include "base/ErrorCode.h"
#include "base/String.h"

#include <cstdint>

namespace PluginSDK
{

class Expression;

struct Version
{
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t patch;
    std::uint32_t build;
};

class MINIMAL_API Plugin
{
public:
    Plugin();
    virtual ~Plugin();
    virtual void reservedHook() = 0;
    virtual Version& getVersion(Version& o_Version) const = 0;
    virtual const wchar_t* getName() const = 0;
    virtual int reservedQuery() const = 0;
    virtual void registerExpressions() = 0;
    virtual void unload() = 0;
    virtual TErrorCode createExpression(const wchar_t* i_TypeName, Expression** o_Expression) = 0;
    virtual TErrorCode destroyExpression(Expression* i_Expression) = 0;

    /// The names so far, each followed by a blank.
    const ::String& names() const;

protected:
    void addExpression(const wchar_t* i_TypeName);

private:
    ::String m_Names;
};

} // namespace PluginSDK
