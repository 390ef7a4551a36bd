#include "Run.h"

#include "base/String.h"
#include "output/ErrorReport.h"
#include "plugin/ErrorFault.h"
#include "system/Console.h"

#include <chrono>

namespace
{

constexpr int s_FoundStatus = 0;
constexpr int s_NothingStatus = 1;
constexpr int s_ErrorStatus = 2;

constexpr const char* s_InputName = "(standard input)";

bool isProgressWanted()
{
    return Console::isErrorTerminal() && !isTerminalDumb() && Console::enableColours();
}

} // namespace

Run::Run(const Options& i_Options, const FileList& i_Files, Evaluator& io_Evaluator)
    : m_Options(i_Options),
      m_Files(i_Files),
      m_Evaluator(io_Evaluator),
      m_pOutput(makeOutput(i_Options, i_Files.files.size())),
      m_ErrorPalette(Palette::choose(i_Options.color, Console::isErrorTerminal())),
      m_Advisor(io_Evaluator)
{
    if (m_Options.time)
    {
        m_TimedDocument.emplace();
        m_Timing.emplace(m_Evaluator, *m_TimedDocument);
    }
}

int Run::execute()
{
    reportProblems();
    {
        Progress progress(m_Files.files.size(), isProgressWanted());
        for (std::size_t i = 0; i < m_Files.files.size() && !isDone(); ++i)
        {
            if (i > 0)
            {
                // All expressions are evaluated on one document before the next. Keeping documents would cost memory,
                // and dropping them costs next to nothing.
                m_Evaluator.forgetDocuments();
            }
            evaluateFile(m_Files.files[i]);
            progress.advance();
        }
    }
    if (m_Timing)
    {
        Console::writeErrorLine(plainMessage(m_Timing->summary()));
    }
    return status();
}

int Run::status() const
{
    if (isDone())
    {
        return s_FoundStatus;
    }
    return m_Failed ? s_ErrorStatus : (m_Found ? s_FoundStatus : s_NothingStatus);
}

void Run::reportProblems()
{
    for (const std::string& problem : m_Files.problems)
    {
        Console::writeErrorLine(plainMessage(problem));
        m_Failed = true;
    }
}

void Run::evaluateFile(const std::string& i_File)
{
    if (i_File == "-")
    {
        evaluateAll(spooledInput(), s_InputName);
    }
    else if (String(i_File.c_str()).toNarrow() != i_File)
    {
        refuseName(i_File);
    }
    else
    {
        evaluateAll(i_File, i_File);
    }
}

void Run::evaluateAll(const std::string& i_Path, const std::string& i_Name)
{
    m_pOutput->beginFile(i_Name);
    if (m_Timing)
    {
        m_Timing->parse(i_Path);
    }
    bool documentReported = false;
    for (const std::string& expression : m_Options.expressions)
    {
        const Outcome outcome = evaluate(i_Path, i_Name, expression, documentReported);
        m_pOutput->add(expression, outcome);
        m_Found = m_Found || !outcome.values.empty();
        if (isDone())
        {
            break;
        }
    }
    m_pOutput->endFile();
}

/// Reports a name that cannot be passed to the plug-in, which takes wide text.
void Run::refuseName(const std::string& i_Name)
{
    Outcome outcome;
    outcome.code = XML_PLUGIN_ERROR_DOCUMENT;
    outcome.reason = i_Name.find('\0') == std::string::npos ? "its name is not valid UTF-8"
                                                            : "its name contains a null character; -0 reads such lists";
    report(outcome, i_Name, "");
    m_pOutput->beginFile(i_Name);
    for (const std::string& expression : m_Options.expressions)
    {
        m_pOutput->add(expression, outcome);
    }
    m_pOutput->endFile();
}

const std::string& Run::spooledInput()
{
    if (!m_Input)
    {
        m_Input.emplace();
        m_InputPath = m_Input->path();
    }
    return m_InputPath;
}

/// An expression that is rejected once is rejected for every file, so it is neither tried nor reported again. A
/// document that cannot be read is reported once.
Outcome Run::evaluate(const std::string& i_Path, const std::string& i_Name, const std::string& i_Expression,
                      bool& io_DocumentReported)
{
    if (const auto refused = m_Refused.find(i_Expression); refused != m_Refused.end())
    {
        return refused->second;
    }
    Outcome outcome = ask(i_Path, i_Expression);
    const bool isDocument = isDocumentError(outcome.code);
    if (outcome.code == XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED)
    {
        outcome.hints = m_Advisor.whyRefused(i_Expression);
        m_Refused.emplace(i_Expression, outcome);
    }
    if (outcome.code != 0 && (!isDocument || !io_DocumentReported))
    {
        report(outcome, i_Name, i_Expression);
    }
    io_DocumentReported = io_DocumentReported || isDocument;
    return outcome;
}

Outcome Run::ask(const std::string& i_Path, const std::string& i_Expression)
{
    if (!m_Timing)
    {
        return m_Evaluator.evaluate(i_Path, i_Expression);
    }
    m_Timing->compile(i_Expression);
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome = m_Evaluator.evaluate(i_Path, i_Expression);
    m_Timing->evaluated(i_Expression, std::chrono::steady_clock::now() - start);
    return outcome;
}

void Run::report(const Outcome& i_Outcome, const std::string& i_Name, const std::string& i_Expression)
{
    m_Failed = true;
    Console::writeErrorLine(errorMessage(i_Outcome, i_Name, i_Expression, m_ErrorPalette));
}
