#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"
#include "pluginsdk/String.h"
#include "pluginsdk/StringVector.h"

namespace PluginSDK
{

/// What a host evaluates: an object of one of the types that a plug-in offers, with properties set by the host.
///
/// The order of the virtual functions is part of the binary contract with plug-ins. The contents of the object are
/// hidden, so its size does not depend on a compiler or its library.
///
/// Ownership: created by `Plugin::createExpression` and destroyed by `Plugin::destroyExpression` of the same plug-in,
/// never by the host. Keeps copies of its properties.
/// Threads: one at a time.
/// Tested by: tests/platform/pluginsdk/ExpressionTest.cpp
class PLUGINSDK_API Expression
{
public:
    /// For plug-ins. Throws `std::bad_alloc` if memory is exhausted.
    Expression();
    virtual ~Expression(); // slot 0
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    /// For the host's own use. May be called at any time.
    virtual bool reservedFlagA() const = 0; // slot 1
    /// Returns 0 for one string (a `ScalarExpression`), 1 for a list of strings (a `VectorExpression`). May be called
    /// at any time; always returns the same for an object.
    virtual int getShape() const = 0; // slot 2
    /// For the host's own use. May be called at any time.
    virtual bool reservedFlagB() const = 0; // slot 3
    /// For the host's own use. May be called at any time.
    virtual void reservedHook() = 0; // slot 4

    /// Sets the property \p i_Name to a copy of \p i_Value (both null-terminated), replacing any previous value. A null
    /// value removes the property; a null name is ignored. The value may be one that `getProperty` returned. Must not
    /// be called while the expression is evaluated. Throws `std::bad_alloc` if memory is exhausted; the property is
    /// then unchanged.
    void setProperty(const wchar_t* i_Name, const wchar_t* i_Value);
    /// Returns the value of the property with exactly this name, null-terminated and owned by the expression; null if
    /// it is not set or the name is null. Valid until this property is set or removed, or the expression is destroyed.
    /// May be called at any time.
    const wchar_t* getProperty(const wchar_t* i_Name) const;

private:
    struct Impl;
    Impl* const m_pImpl; ///< owned, never null
};

/// An expression that yields one string.
class PLUGINSDK_API ScalarExpression : public Expression
{
public:
    ~ScalarExpression() override;
    /// Returns 0 with the value in \p o_Result, which is empty if there is none, or a negative code with \p o_Result
    /// empty. The caller owns the result, which need not be empty before. May be called again, with the same or other
    /// properties. Throws `std::bad_alloc` if memory is exhausted.
    virtual TErrorCode evaluate(String& o_Result) = 0; // slot 5
};

/// An expression that yields a list of strings.
class PLUGINSDK_API VectorExpression : public Expression
{
public:
    ~VectorExpression() override;
    /// Returns 0 with the values in \p o_Result, or a negative code with \p o_Result empty. The caller owns the result,
    /// which need not be empty before. May be called again, with the same or other properties. Throws `std::bad_alloc`
    /// if memory is exhausted.
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
