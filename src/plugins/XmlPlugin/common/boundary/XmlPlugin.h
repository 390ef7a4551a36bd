#pragma once

#include "pluginsdk/Plugin.h"

namespace PluginSDK
{

/// The plug-in, which offers the expression types "XmlValue" and "XmlValues". Has no state; `unload` destroys the
/// document cache of the process.
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
    /// Drops all documents and leaves the parser library as it is. Must not be called while an expression is evaluated.
    void unload() override;
    /// Returns 0 with the new expression in \p o_Expression (null if memory is exhausted); -101 for a null argument,
    /// with \p o_Expression unchanged; -10008 with null for an unknown type name.
    TErrorCode createExpression(const wchar_t* i_TypeName, Expression** o_Expression) override;
    /// Always returns 0.
    TErrorCode destroyExpression(Expression* i_Expression) override;
};

} // namespace PluginSDK
