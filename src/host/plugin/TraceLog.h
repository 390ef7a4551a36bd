#pragma once

#include "trace/Trace.h"

#include <fstream>
#include <optional>
#include <string>

/// Receives the plug-in's trace records while it exists: prints those that are wanted to the
/// standard error or a file, remembers from them how far an expression was recognised and what is wrong with a
/// document, and hands them to an observer.
///
/// Ownership: none; installs itself as the sink of the process, and no sink at its end.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp, tests/host/FilesTest.cpp
class TraceLog final : public TraceSink
{
public:
    /// Records up to \p i_PrintedLevel are printed, none with `TraceOff`; to the file at \p i_Path, or, when that is
    /// empty, to the standard error. Throws std::runtime_error when the file cannot be written.
    explicit TraceLog(int i_PrintedLevel, const std::string& i_Path = "");
    ~TraceLog() override;
    TraceLog(const TraceLog&) = delete;
    TraceLog& operator=(const TraceLog&) = delete;

    void write(const TraceRecord& i_Record) override;

    /// Hands every record to \p i_pObserver from now on, which lives until it is replaced; null for none.
    void observe(TraceSink* i_pObserver);
    /// Prints no records from now on, or does so again. While muted, it asks for no more than an observer needs.
    void mute(bool i_IsMuted);
    /// False when a record could not be written to the file.
    bool flush();

    /// Forgets what was remembered; to be called before an evaluation.
    void reset() noexcept;
    /// Offset into the expression, in UTF-16 code units, beyond which it was not recognised in the
    /// evaluation since `reset`; none when it was, or when the plug-in did not tell.
    std::optional<int> recognisedUpTo() const noexcept { return m_RecognisedUpTo; }
    /// The parser's first complaint about a document since `reset`, as `line 3: text`; empty without one.
    const std::string& documentFault() const noexcept { return m_DocumentFault; }

private:
    void install();
    void print(const std::string& i_Line);

    int m_PrintedLevel;
    bool m_IsMuted = false;
    bool m_IsToFile;
    std::ofstream m_File;
    TraceSink* m_pObserver = nullptr;
    std::optional<int> m_RecognisedUpTo;
    std::string m_DocumentFault;
};

/// Keeps a trace log from printing for as long as it lives.
class MutedTrace
{
public:
    explicit MutedTrace(TraceLog& io_Trace) : m_Trace(io_Trace) { m_Trace.mute(true); }
    ~MutedTrace() { m_Trace.mute(false); }
    MutedTrace(const MutedTrace&) = delete;
    MutedTrace& operator=(const MutedTrace&) = delete;

private:
    TraceLog& m_Trace;
};
