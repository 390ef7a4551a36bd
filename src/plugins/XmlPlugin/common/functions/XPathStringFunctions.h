#pragma once

#include "functions/XPathFunction.h"

class Node;

namespace XmlPlugin
{

// The string functions. Unless stated otherwise, each `evaluate` returns 0, or -15005 if a parameter is missing. Texts
// are UTF-16 code units; positions count from 1.
//
// Tested by: tests/plugins/XmlPlugin/common/functions/XPathStringFunctionsTest.cpp

/// `string(value?)`: the text of a value; without one, the text of the start node.
class XPathFunction_string final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;

    /// The text of a value; for a node set, the text of its first node, or "" if there is none.
    static String convert(const XPathExpression& i_Value);
    /// The text of one record: its value or, if that is empty, the text of its source node.
    static String textOf(const XPathOutputElement& i_Record);
    /// Appends the text nodes at and below \p i_pNode (may be null), in document order.
    static void getTextFromNode(const Node* i_pNode, String& o_Output);
};

/// `concat(text, text, ...)`
class XPathFunction_concat final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `starts-with(text, prefix)`
class XPathFunction_startsWith final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `contains(text, part)`
class XPathFunction_contains final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `substring-before(text, part)`
class XPathFunction_substringBefore final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `substring-after(text, part)`
class XPathFunction_substringAfter final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `substring(text, start, length?)`
class XPathFunction_substring final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `string-length(text)`
class XPathFunction_stringlength final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `normalize-space(text?)`: without an argument, applies to the start node's own text nodes.
class XPathFunction_normalizespace final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

/// `translate(text, from, to)`: not implemented, always -102.
class XPathFunction_translate final : public XPathNamedFunction
{
public:
    using XPathNamedFunction::XPathNamedFunction;
    TErrorCode evaluate() override;
};

} // namespace XmlPlugin
