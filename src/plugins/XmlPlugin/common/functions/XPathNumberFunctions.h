#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

// The number functions. Each `evaluate` returns 0, or -15005 if a parameter is missing. Not-a-number is a value, not a
// failure.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathNumberFunctionsTest.cpp

/// `number(value?)`: not a number without a value.
class XPathFunction_number final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;

    /// Converts a value to a number; a special number of `NaNType` if it is not a number.
    static XPathNumber convert(const XPathExpression& i_Value);
};

/// `sum(nodes)`: for a value that is not a node set, its number.
class XPathFunction_sum final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `floor(number)`
class XPathFunction_floor final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `ceiling(number)`
class XPathFunction_ceiling final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `round(number)`
class XPathFunction_round final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;

    /// Rounds halves up; never returns a negative zero. A number beyond 64 bits has no fraction and does not change.
    static XPathNumber round(const XPathNumber& i_Number) noexcept;
};

} // namespace XmlPlugin
