#pragma once

#include "values/XmlTrace.h"

namespace XmlPlugin
{

/// The only switch between quick code and general code.
///
/// Nearly all expressions have common shapes, for which there is quick code. It gives the same answers as the general
/// code but writes no trace records. So it is allowed unless a sink wants records of the level information, or a test
/// forbids it to compare the two. Code that has both ways asks once, when a text is compiled and when an operand is
/// evaluated, and passes the answer on.
///
/// Threads: as for `Tracer::install`.
/// Tested by: tests/plugins/XmlPlugin/common/values/XPathQuickCodeTest.cpp
class XPathQuickCode
{
public:
    static bool isAllowed() noexcept { return s_IsAllowed && !TRACE_IS_ON(TraceInformation); }

    /// While an object of this class exists, the general code answers.
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
