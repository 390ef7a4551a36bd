#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"

#include <cstddef>
#include <cstdint>

namespace PluginSDK
{

class Expression;

/// The version of a plug-in.
struct Version
{
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t patch;
    std::uint32_t build;
};

/// What a plug-in library offers to a host.
///
/// A library exports two functions with C linkage: `Plugin* createPlugin()`, which returns null if memory is exhausted,
/// and `void destroyPlugin(Plugin*)`, which accepts null. A host calls, in this order:
///
/// 1. `createPlugin`;
/// 2. `getVersion`, `getName`, `reservedQuery` and `registerExpressions`, in any order;
/// 3. pairs of `createExpression` and `destroyExpression`, as many as it wants, with evaluations between them;
/// 4. `unload`, when no expression is being evaluated;
/// 5. `destroyPlugin`, when every expression is destroyed.
///
/// The order of the virtual functions is part of the binary contract with plug-ins. The contents of the object are
/// hidden, so its size does not depend on a compiler or its library.
///
/// Ownership: created by `createPlugin` and destroyed by `destroyPlugin` of the same library, never by the host.
/// Threads: one at a time, including all expressions of the plug-in.
/// Tested by: tests/platform/pluginsdk/PluginTest.cpp
class PLUGINSDK_API Plugin
{
public:
    /// For plug-ins. Throws `std::bad_alloc` if memory is exhausted.
    Plugin();
    virtual ~Plugin(); // slot 0
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    /// For the host's own use. May be called at any time.
    virtual void reservedHook() = 0; // slot 1
    /// Fills the caller's record and returns it. May be called at any time.
    virtual Version& getVersion(Version& o_Version) const = 0; // slot 2
    /// Null-terminated, never null, valid until the library is released. May be called at any time.
    virtual const wchar_t* getName() const = 0; // slot 3
    /// For the host's own use. May be called at any time.
    virtual int reservedQuery() const = 0; // slot 4
    /// Calls `addExpression` for each type that the plug-in offers. The host calls it once; `createExpression` does not
    /// need it. Throws `std::bad_alloc` if memory is exhausted.
    virtual void registerExpressions() = 0; // slot 5
    /// Releases what the plug-in keeps between evaluations. Must not be called while an expression is evaluated.
    /// Expressions remain usable. May be called again.
    virtual void unload() = 0; // slot 6
    /// Creates an expression of the type \p i_TypeName. Returns 0 with the expression in \p o_Expression, or with null
    /// in it if memory is exhausted. Returns a negative code for a null argument (\p o_Expression is unchanged) and for
    /// a type that the plug-in does not offer (\p o_Expression is null). The caller must pass the expression to
    /// `destroyExpression` of this plug-in.
    virtual TErrorCode createExpression(const wchar_t* i_TypeName, Expression** o_Expression) = 0; // slot 7
    /// Destroys an expression that this plug-in created and that is not being evaluated. Null is allowed. Returns 0.
    virtual TErrorCode destroyExpression(Expression* i_Expression) = 0; // slot 8

    /// The number of types passed to `addExpression`; 0 before `registerExpressions`.
    std::size_t expressionCount() const noexcept;
    /// Type name number \p i_Index, counted from 0 in the order of `addExpression`, null-terminated; null if the index
    /// is not less than `expressionCount()`. Valid until the plug-in is destroyed.
    const wchar_t* expressionName(std::size_t i_Index) const noexcept;

protected:
    /// For `registerExpressions`. Appends a copy of \p i_TypeName to the list of types; null is ignored. Throws
    /// `std::bad_alloc` if memory is exhausted.
    void addExpression(const wchar_t* i_TypeName);

private:
    struct Impl;
    Impl* const m_pImpl; ///< owned, never null
};

} // namespace PluginSDK
