#pragma once

#include "PluginLibrary.h"
#include "TraceLog.h"
#include "base/ErrorCode.h"

#include <optional>
#include <string>
#include <vector>

/// What came of one expression in one file.
struct Outcome
{
    TErrorCode code = 0;               ///< 0, or the plug-in's negative code
    std::vector<std::string> values;   ///< UTF-8; empty after an error
    std::optional<int> recognisedUpTo; ///< as TraceLog tells it; only for a refused expression
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
    /// Lets the plug-in forget the documents that it has read so far.
    void forgetDocuments();

private:
    PluginLibrary& m_Library;
    TraceLog& m_Trace;
    Settings m_Settings;
};
