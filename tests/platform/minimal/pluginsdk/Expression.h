#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/String.h"
#include "pluginsdk/StringVector.h"

#include <map>
#include <string>

namespace PluginSDK
{

class MINIMAL_API Expression
{
public:
    Expression();
    virtual ~Expression();
    virtual bool reservedFlagA() const = 0;
    virtual int getShape() const = 0;
    virtual bool reservedFlagB() const = 0;
    virtual void reservedHook() = 0;

    void setProperty(const wchar_t* i_Name, const wchar_t* i_Value);
    /// Every value is lent in the same buffer: valid until the next call, of any expression. Null when not set.
    const wchar_t* getProperty(const wchar_t* i_Name) const;

private:
    std::map<std::wstring, std::wstring> m_Properties;
};

class MINIMAL_API ScalarExpression : public Expression
{
public:
    virtual TErrorCode evaluate(String& o_Result) = 0;
};

class MINIMAL_API VectorExpression : public Expression
{
public:
    virtual TErrorCode evaluate(StringVector& o_Result) = 0;
};

class MINIMAL_API ScalarOperand : public ScalarExpression
{
};

class MINIMAL_API VectorOperand : public VectorExpression
{
};

} // namespace PluginSDK
