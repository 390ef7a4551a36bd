#pragma once

#include "base/ErrorCode.h"
#include "plugin/Hint.h"
#include "plugin/PluginLibrary.h"
#include "plugin/TraceLog.h"

#include <optional>
#include <string>
#include <vector>

/// The result of one expression in one file.
struct Outcome
{
    TErrorCode code = 0;               ///< 0, or the plug-in's negative code
    std::vector<std::string> values;   ///< UTF-8; empty after an error
    std::optional<int> recognisedUpTo; ///< as in TraceLog; only for a rejected expression
    std::vector<Hint> hints;           ///< why it was rejected, if that is known
    std::string reason;                ///< why a document cannot be read, in a few words; may be empty
};

/// Evaluates expressions with a plug-in, as any host does.
///
/// Ownership: borrows the plug-in and the trace log, which must outlive it.
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

    /// Throws std::runtime_error if the plug-in does not offer the expression type that is needed.
    Evaluator(PluginLibrary& io_Library, TraceLog& io_Trace, Settings i_Settings);

    /// Evaluates \p i_Expression in the file at \p i_Path; both texts are UTF-8.
    Outcome evaluate(const std::string& i_Path, const std::string& i_Expression);
    /// Same, but prints no trace records: for evaluations that the user did not ask for.
    Outcome probe(const std::string& i_Path, const std::string& i_Expression);
    /// Passes every trace record to \p i_pObserver, which must live until it is replaced; null for none.
    void observe(TraceSink* i_pObserver) { m_Trace.observe(i_pObserver); }
    /// Makes the plug-in drop the documents that it has read so far.
    void forgetDocuments();

private:
    PluginLibrary& m_Library;
    TraceLog& m_Trace;
    Settings m_Settings;
};
