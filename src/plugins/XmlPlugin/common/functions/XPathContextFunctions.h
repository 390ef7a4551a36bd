#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

// The functions for nodes and for the list that a predicate filters (the evaluation context). Each `evaluate` returns
// 0, even without a result, or -15005 if a parameter is missing.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathContextFunctionsTest.cpp

/// `count(nodes)`: no result for anything but a node set.
class XPathFunction_count final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `last()`: 1 at the root and without a start node, otherwise the length of the list; 0 without a list.
class XPathFunction_last final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `position()`: 1 at the root and without a start node, otherwise the position of the start node in the list, counted
/// from 1; no result if it is not in the list.
class XPathFunction_position final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `name(nodes?)`: the name of the first node, or no result if there is none. Without an argument: the name of the
/// start node, or no result outside a predicate.
class XPathFunction_name final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `local-name(nodes?)`: not implemented, always -102.
class XPathFunction_localname final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

} // namespace XmlPlugin
