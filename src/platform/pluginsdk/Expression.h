#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"
#include "pluginsdk/String.h"
#include "pluginsdk/StringVector.h"

namespace PluginSDK
{

/// What a host evaluates: an object of one of the types that a plug-in offers, with the properties that the host sets.
///
/// The order of the virtual operations is part of the binary contract with plug-ins. What the object holds is hidden,
/// so its size does not depend on a compiler or its library.
///
/// Ownership: made by `Plugin::createExpression` and destroyed by `Plugin::destroyExpression` of the same plug-in,
/// never by the host. Keeps copies of its properties.
/// Threads: one at a time.
/// Tested by: tests/platform/pluginsdk/ExpressionTest.cpp
class PLUGINSDK_API Expression
{
public:
    /// For plug-ins. `std::bad_alloc` when memory is exhausted.
    Expression();
    virtual ~Expression(); // slot 0
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    /// For the host's own use. May be called at any time.
    virtual bool reservedFlagA() const = 0; // slot 1
    /// 0 for one string (a `ScalarExpression`), 1 for a list of strings (a `VectorExpression`). May be called at any
    /// time; always the same for one object.
    virtual int getShape() const = 0; // slot 2
    /// For the host's own use. May be called at any time.
    virtual bool reservedFlagB() const = 0; // slot 3
    /// For the host's own use. May be called at any time.
    virtual void reservedHook() = 0; // slot 4

    /// Sets the property \p i_Name to a copy of \p i_Value (both null-terminated), in place of the value that it had.
    /// A null value removes the property; a null name is ignored. The value may be one that `getProperty` returned.
    /// Must not be called while the expression is evaluated. `std::bad_alloc` when memory is exhausted; the property is
    /// then as it was.
    void setProperty(const wchar_t* i_Name, const wchar_t* i_Value);
    /// The value of the property of exactly this name, null-terminated and owned by the expression; null when it is not
    /// set or the name is null. Valid until this property is set or removed, or the expression destroyed. May be called
    /// at any time.
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
    /// Returns 0 with the value in \p o_Result, which is empty when there is none, or a negative code with
    /// \p o_Result empty. The result is the caller's and need not be empty. May be called again, also with other
    /// properties. `std::bad_alloc` when memory is exhausted.
    virtual TErrorCode evaluate(String& o_Result) = 0; // slot 5
};

/// An expression that yields a list of strings.
class PLUGINSDK_API VectorExpression : public Expression
{
public:
    ~VectorExpression() override;
    /// Returns 0 with the values in \p o_Result, or a negative code with \p o_Result empty. The result is the caller's
    /// and need not be empty. May be called again, also with other properties. `std::bad_alloc` when memory is
    /// exhausted.
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
