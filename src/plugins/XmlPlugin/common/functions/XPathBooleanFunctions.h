#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

// The boolean functions. Each `evaluate` returns 0, or -15005 if a parameter is missing. A truth value is the number 1
// or 0.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathBooleanFunctionsTest.cpp

/// `boolean(value)`
class XPathFunction_boolean final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;

    /// Returns 1 or 0; for a boolean, the number that it stores.
    static double convert(const XPathExpression& i_Value);
};

/// `true()`
class XPathFunction_true final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `false()`
class XPathFunction_false final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `not(value)`
class XPathFunction_not final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

} // namespace XmlPlugin
