#pragma once

#include "pluginsdk/Plugin.h"

namespace PluginSDK
{

/// The plug-in: offers the expression types "XmlValue" and "XmlValues". Holds no state; `unload`
/// destroys the process-wide document cache.
///
/// Tested by: tests/plugins/XmlPlugin/common/boundary/XmlPluginTest.cpp
class XmlPlugin final : public Plugin
{
public:
    void reservedHook() override;
    /// 1.1.1.1
    Version& getVersion(Version& o_Version) const override;
    /// "Xml"
    const wchar_t* getName() const override;
    int reservedQuery() const override;
    void registerExpressions() override;
    /// Drops all documents; the parser library stays as it is. Must not run while an expression is evaluated.
    void unload() override;
    /// 0 with the new expression in \p o_Expression (null when memory is exhausted); -101 for a
    /// null argument, \p o_Expression untouched; -10008 with null for an unknown type name.
    TErrorCode createExpression(const wchar_t* i_TypeName, Expression** o_Expression) override;
    /// Always 0.
    TErrorCode destroyExpression(Expression* i_Expression) override;
};

} // namespace PluginSDK
