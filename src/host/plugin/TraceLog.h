#pragma once

#include "trace/Trace.h"

#include <fstream>
#include <optional>
#include <string>

/// Receives the plug-in's trace records as long as it exists. Prints the wanted records to standard error or a file,
/// remembers how far an expression was recognised and what is wrong with a document, and passes all records on to an
/// observer.
///
/// Ownership: installs itself as the sink of the process, and removes itself when it is destroyed. Does not own the
/// observer.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp, tests/host/FilesTest.cpp
class TraceLog final : public TraceSink
{
public:
    /// Prints records up to \p i_PrintedLevel (none with `TraceOff`) to the file at \p i_Path, or to standard error if
    /// that is empty. Throws std::runtime_error if the file cannot be written.
    explicit TraceLog(int i_PrintedLevel, const std::string& i_Path = "");
    ~TraceLog() override;
    TraceLog(const TraceLog&) = delete;
    TraceLog& operator=(const TraceLog&) = delete;

    void write(const TraceRecord& i_Record) override;

    /// From now on, passes every record to \p i_pObserver, which must live until it is replaced; null for none.
    void observe(TraceSink* i_pObserver);
    /// Stops printing records, or resumes it. While muted, it asks only for the records that the observer needs.
    void mute(bool i_IsMuted);
    /// False if a record could not be written to the file.
    bool flush();

    /// Forgets what was remembered. Must be called before each evaluation.
    void reset() noexcept;
    /// Offset into the expression, in UTF-16 code units, up to which it was recognised in the evaluation since `reset`.
    /// Empty if it was recognised as a whole, or if the plug-in did not report an offset.
    std::optional<int> recognisedUpTo() const noexcept { return m_RecognisedUpTo; }
    /// The parser's first message about a document since `reset`, as `line 3: text`; empty if there was none.
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

/// Keeps a trace log from printing as long as it lives.
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
