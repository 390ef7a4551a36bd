#pragma once

#include "pluginsdk/Expression.h"

namespace XmlPlugin
{

// Both expressions read three properties: "file" (a plain XML file, or a ZIP archive whose first entry is the
// document), "xpath", and "mustExist" (if it is exactly "true", an empty result is an error).
//
// Ownership: created and destroyed by the plug-in. They keep nothing between evaluations.
// Threads: one at a time.
// Tested by: tests/plugins/XmlPlugin/common/boundary/XmlValueTest.cpp

/// The expression "XmlValue": one string.
class XmlValue final : public PluginSDK::ScalarOperand
{
public:
    bool reservedFlagA() const override;
    int getShape() const override;
    bool reservedFlagB() const override;
    void reservedHook() override;
    /// Returns 0 with the only value, or with "" if there is none; -15000 or -15001 if "file" or "xpath" is not set;
    /// -15002 if there is no value but one must exist; -15003 if there are several; otherwise a code of the query. The
    /// result is "" after every failure.
    TErrorCode evaluate(PluginSDK::String& o_Result) override;
};

/// The expression "XmlValues": a list of strings.
class XmlValues final : public PluginSDK::VectorOperand
{
public:
    bool reservedFlagA() const override;
    int getShape() const override;
    bool reservedFlagB() const override;
    void reservedHook() override;
    /// Same as `XmlValue::evaluate`, but with any number of values and without -15003.
    TErrorCode evaluate(PluginSDK::StringVector& o_Result) override;
};

} // namespace XmlPlugin
