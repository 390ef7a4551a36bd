#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"
#include "pluginsdk/String.h"
#include "pluginsdk/StringVector.h"

#include <memory>

namespace PluginSDK
{

/// What a host evaluates. Made and destroyed by the plug-in that offers its type.
///
/// The order of the virtual operations is part of the binary contract with plug-ins.
/// Threads: one at a time.
class PLUGINSDK_API Expression
{
public:
    Expression();
    virtual ~Expression();                    // slot 0
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    virtual bool reservedFlagA() const = 0;   // slot 1: for the host's own use
    virtual int getShape() const = 0;         // slot 2: 0 one string, 1 a list
    virtual bool reservedFlagB() const = 0;   // slot 3: for the host's own use
    virtual void reservedHook() = 0;          // slot 4: for the host's own use

    /// Sets a property; null removes it.
    void setProperty(const wchar_t* i_Name, const wchar_t* i_Value);
    /// The property's value, valid until the property is set again; null when it is not set.
    const wchar_t* getProperty(const wchar_t* i_Name) const;

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

/// An expression that yields one string.
class PLUGINSDK_API ScalarExpression : public Expression
{
public:
    ~ScalarExpression() override;
    /// 0 with the value in \p o_Result, or a negative code with \p o_Result empty.
    virtual TErrorCode evaluate(String& o_Result) = 0; // slot 5
};

/// An expression that yields a list of strings.
class PLUGINSDK_API VectorExpression : public Expression
{
public:
    ~VectorExpression() override;
    /// 0 with the values in \p o_Result, or a negative code with \p o_Result empty.
    virtual TErrorCode evaluate(StringVector& o_Result) = 0; // slot 5
};

/// A scalar expression without operands of its own.
class PLUGINSDK_API ScalarOperand : public ScalarExpression
{
public:
    ~ScalarOperand() override;
};

/// A vector expression without operands of its own.
class PLUGINSDK_API VectorOperand : public VectorExpression
{
public:
    ~VectorOperand() override;
};

} // namespace PluginSDK
