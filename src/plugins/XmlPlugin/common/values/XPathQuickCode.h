#pragma once

#include "trace/Trace.h"

namespace XmlPlugin
{

/// The one switch between quick code and general code.
///
/// Nearly all expressions have common shapes, for which there is quick code: it gives the answers of the general code
/// and writes no trace records. So it may answer unless somebody wants the records of the level information, or
/// forbids it, as tests do that compare the two. Whoever has both asks once, when a text is compiled and when an
/// operand is evaluated, and hands the answer on.
///
/// Threads: as for `Tracer::install`.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathQuickCodeTest.cpp
class XPathQuickCode
{
public:
    static bool isAllowed() noexcept { return s_IsAllowed && !TRACE_IS_ON(TraceInformation); }

    /// While one of these lives, the general code answers.
    class Forbidden
    {
    public:
        Forbidden() noexcept : m_WasAllowed(s_IsAllowed) { s_IsAllowed = false; }
        ~Forbidden() { s_IsAllowed = m_WasAllowed; }
        Forbidden(const Forbidden&) = delete;
        Forbidden& operator=(const Forbidden&) = delete;

    private:
        const bool m_WasAllowed;
    };

private:
    inline static bool s_IsAllowed = true;
};

} // namespace XmlPlugin
