#pragma once

#include "base/ErrorCode.h"
#include "plugin/Hint.h"
#include "plugin/PluginLibrary.h"
#include "plugin/TraceLog.h"

#include <optional>
#include <string>
#include <vector>

/// What came of one expression in one file.
struct Outcome
{
    TErrorCode code = 0;               ///< 0, or the plug-in's negative code
    std::vector<std::string> values;   ///< UTF-8; empty after an error
    std::optional<int> recognisedUpTo; ///< as TraceLog tells it; only for a refused expression
    std::vector<Hint> hints;           ///< why it was refused, where that is known
    std::string reason;                ///< why a document cannot be read, in a few words; may be empty
};

/// Evaluates expressions with a plug-in as a host does.
///
/// Ownership: borrows the plug-in and the trace log.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class Evaluator
{
public:
    struct Settings
    {
        bool one = false;       ///< more than one value is an error
        bool mustExist = false; ///< no value is an error
    };

    /// Throws std::runtime_error when the plug-in does not offer what is needed.
    Evaluator(PluginLibrary& io_Library, TraceLog& io_Trace, Settings i_Settings);

    /// Both texts are UTF-8.
    Outcome evaluate(const std::string& i_Path, const std::string& i_Expression);
    /// The same, without a printed trace record: for what the user has not asked for himself.
    Outcome probe(const std::string& i_Path, const std::string& i_Expression);
    /// Hands every trace record to \p i_pObserver, which lives until it is replaced; null for none.
    void observe(TraceSink* i_pObserver) { m_Trace.observe(i_pObserver); }
    /// Lets the plug-in forget the documents that it has read so far.
    void forgetDocuments();

private:
    PluginLibrary& m_Library;
    TraceLog& m_Trace;
    Settings m_Settings;
};
