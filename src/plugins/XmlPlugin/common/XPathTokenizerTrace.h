#pragma once

#include "XmlTrace.h"

#include <cstdint>

XML_TRACE_SOURCE(L"XPathTokenizer")

namespace XmlPlugin
{

/// The record of a production: where it was asked, and what it took.
void traceProduction(const wchar_t* i_Scope, std::uint32_t i_Offset, bool i_Consume, std::uint32_t i_Length);

/// Writes the record if somebody listens; \p i_Length unchanged.
inline std::uint32_t traced(const wchar_t* i_Scope, std::uint32_t i_Offset, bool i_Consume, std::uint32_t i_Length)
{
    if (TRACE_IS_ON(TraceInformation)) [[unlikely]]
        traceProduction(i_Scope, i_Offset, i_Consume, i_Length);
    return i_Length;
}

} // namespace XmlPlugin
