#pragma once

#include "advice/RefusalAdvisor.h"
#include "input/FileList.h"
#include "input/Options.h"
#include "input/SpooledInput.h"
#include "output/Output.h"
#include "output/Palette.h"
#include "output/Progress.h"
#include "output/Timing.h"
#include "plugin/Evaluator.h"
#include "plugin/MinimalDocument.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

/// One run over all files and expressions.
///
/// Ownership: borrows the options, the files and the evaluator, which must outlive it.
/// Threads: one at a time.
/// Tested by: tests/host/HostTest.cpp
class Run
{
public:
    Run(const Options& i_Options, const FileList& i_Files, Evaluator& io_Evaluator);

    /// Evaluates every expression in every file, prints the values and reports the errors. Returns the exit status.
    int execute();

private:
    bool isDone() const { return m_Options.quiet && m_Found; }
    int status() const;
    void reportProblems();
    void evaluateFile(const std::string& i_File);
    void evaluateAll(const std::string& i_Path, const std::string& i_Name);
    void refuseName(const std::string& i_Name);
    const std::string& spooledInput();
    Outcome evaluate(const std::string& i_Path, const std::string& i_Name, const std::string& i_Expression,
                     bool& io_DocumentReported);
    Outcome ask(const std::string& i_Path, const std::string& i_Expression);
    void report(const Outcome& i_Outcome, const std::string& i_Name, const std::string& i_Expression);

    const Options& m_Options;
    const FileList& m_Files;
    Evaluator& m_Evaluator;
    std::unique_ptr<Output> m_pOutput;
    Palette m_ErrorPalette;
    std::optional<SpooledInput> m_Input;
    std::string m_InputPath;
    std::optional<MinimalDocument> m_TimedDocument;
    std::optional<Timing> m_Timing;
    RefusalAdvisor m_Advisor;
    std::map<std::string, Outcome> m_Refused; ///< by expression
    bool m_Found = false;
    bool m_Failed = false;
};
