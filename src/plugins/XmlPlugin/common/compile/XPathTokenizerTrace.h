#pragma once

#include "values/XmlTrace.h"

#include <cstdint>

XML_TRACE_SOURCE(L"XPathTokenizer")

namespace XmlPlugin
{

/// The records of a production: where it is asked, and what it took.
void traceOpening(const wchar_t* i_Scope, std::uint32_t i_Offset, bool i_Consume);
void traceResult(const wchar_t* i_Scope, std::uint32_t i_Length);

/// Runs a production, between its records if somebody listens; returns what it took.
template <class Production>
std::uint32_t traced(const wchar_t* i_Scope, std::uint32_t i_Offset, bool i_Consume, const Production& i_Production)
{
    if (TRACE_IS_ON(TraceInformation)) [[unlikely]]
    {
        traceOpening(i_Scope, i_Offset, i_Consume);
    }
    const std::uint32_t length = i_Production();
    if (TRACE_IS_ON(TraceInformation)) [[unlikely]]
    {
        traceResult(i_Scope, length);
    }
    return length;
}

} // namespace XmlPlugin
