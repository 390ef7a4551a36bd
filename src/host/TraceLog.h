#pragma once

#include "trace/Trace.h"

#include <optional>

/// Receives the plug-in's trace records while it exists: prints those that are wanted to the
/// standard error and remembers from them how far an expression was recognised.
///
/// Ownership: none; installs itself as the sink of the process, and no sink at its end.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class TraceLog final : public TraceSink
{
public:
    /// Records up to \p i_PrintedLevel are printed, none with `TraceOff`.
    explicit TraceLog(int i_PrintedLevel);
    ~TraceLog() override;
    TraceLog(const TraceLog&) = delete;
    TraceLog& operator=(const TraceLog&) = delete;

    void write(const TraceRecord& i_Record) override;

    /// Forgets what was remembered; to be called before an evaluation.
    void reset() noexcept { m_RecognisedUpTo.reset(); }
    /// Offset into the expression, in UTF-16 code units, beyond which it was not recognised in the
    /// evaluation since `reset`; none when it was, or when the plug-in did not tell.
    std::optional<int> recognisedUpTo() const noexcept { return m_RecognisedUpTo; }

private:
    int m_PrintedLevel;
    std::optional<int> m_RecognisedUpTo;
};
