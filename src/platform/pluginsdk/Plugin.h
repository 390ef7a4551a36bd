#pragma once

#include "base/ErrorCode.h"
#include "pluginsdk/Export.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace PluginSDK
{

class Expression;

/// Version of a plug-in.
struct Version
{
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t patch;
    std::uint32_t build;
};

/// What a plug-in library offers to a host.
///
/// Life of a plug-in, in this order: `createPlugin` (exported by the library), then
/// `getVersion`, `getName`, `reservedQuery` and `registerExpressions` in any order, then any
/// number of `createExpression` / `destroyExpression` pairs with evaluations between them, then
/// `unload`, then `destroyPlugin` (exported by the library).
///
/// The order of the virtual operations is part of the binary contract with plug-ins.
/// Threads: one at a time.
class PLUGINSDK_API Plugin
{
public:
    Plugin();
    virtual ~Plugin(); // slot 0
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    virtual void reservedHook() = 0; // slot 1
    /// Fills the caller's record and returns it.
    virtual Version& getVersion(Version& o_Version) const = 0; // slot 2
    /// Constant text, never null.
    virtual const wchar_t* getName() const = 0; // slot 3
    virtual int reservedQuery() const = 0;      // slot 4
    /// Calls `addExpression` for every type that the plug-in offers.
    virtual void registerExpressions() = 0; // slot 5
    /// Releases what the plug-in keeps between evaluations. May be called again.
    virtual void unload() = 0; // slot 6
    /// Makes an expression of a registered type; the plug-in must destroy it again.
    virtual TErrorCode createExpression(const wchar_t* i_TypeName, Expression** o_Expression) = 0; // slot 7
    /// Null is allowed.
    virtual TErrorCode destroyExpression(Expression* i_Expression) = 0; // slot 8

    /// Names given to `addExpression`, in their order; null when \p i_Index is past the last.
    std::size_t expressionCount() const noexcept;
    const wchar_t* expressionName(std::size_t i_Index) const noexcept;

protected:
    void addExpression(const wchar_t* i_TypeName);

private:
    struct Impl;
    std::unique_ptr<Impl> m_pImpl;
};

} // namespace PluginSDK
