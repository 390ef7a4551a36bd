#pragma once

#include "pluginsdk/Expression.h"

namespace XmlPlugin
{

// Both expressions read three properties: "file" (a plain XML file, or a ZIP archive whose first
// entry is the document), "xpath", and "mustExist" (an error for an empty result; true only when
// it is exactly "true").
//
// Ownership: made and destroyed by the plug-in. They keep nothing between evaluations.
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
    /// 0 with the one value, or with "" when there is none; -15000 / -15001 when "file" / "xpath"
    /// is not set; -15002 for no value where one must exist; -15003 for more than one; else a
    /// code of the query. The result is "" after every failure.
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
    /// As `XmlValue::evaluate`, with any number of values, and without -15003.
    TErrorCode evaluate(PluginSDK::StringVector& o_Result) override;
};

} // namespace XmlPlugin
