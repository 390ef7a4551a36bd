#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

// The number functions. Each `evaluate` answers 0, or -15005 when it misses a parameter; a
// not-a-number is a value, not a failure.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathNumberFunctionsTest.cpp

/// `number(value?)`: not a number without a value.
class XPathFunction_number final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;

    /// The number that a value reads as; special `NaNType` when it reads as none.
    static XPathNumber convert(const XPathExpression& i_Value);
};

/// `sum(nodes)`: of a value that is no node set, its number.
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

    /// Halves go up; never a negative zero. A number beyond 64 bits has no fraction and stays.
    static XPathNumber round(const XPathNumber& i_Number) noexcept;
};

} // namespace XmlPlugin
