#pragma once

#include "functions/XPathFunction.h"

namespace XmlPlugin
{

// The functions of nodes and of the list that a predicate filters (the evaluation context). Each
// `evaluate` answers 0, also when there is no result, or -15005 when it misses a parameter.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathContextFunctionsTest.cpp

/// `count(nodes)`: no result for what is no node set.
class XPathFunction_count final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `last()`: 1 at the root and without a start node, else the length of the list; 0 without a list.
class XPathFunction_last final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `position()`: 1 at the root and without a start node, else the start node's place in the list,
/// counted from 1; no result when it is not there.
class XPathFunction_position final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `name(nodes?)`: the name of the first node, no result when there is none. Without an argument
/// the name of the start node, no result outside of a predicate.
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
