#include "Application.h"

#include "Console.h"
#include "ErrorReport.h"
#include "Evaluator.h"
#include "FileSystem.h"
#include "Options.h"
#include "Output.h"
#include "PluginLibrary.h"
#include "SpooledInput.h"
#include "TraceLog.h"
#include "base/String.h"

#include <exception>
#include <map>
#include <new>
#include <optional>
#include <stdexcept>

namespace
{

constexpr int s_Found = 0;
constexpr int s_NothingFound = 1;
constexpr int s_Error = 2;

constexpr const char* s_InputName = "(standard input)";

int fail(const std::string& i_Text)
{
    Console::writeErrorLine(plainMessage(i_Text));
    return s_Error;
}

/// One run over all files and expressions.
class Run
{
public:
    Run(const Options& i_Options, Evaluator& io_Evaluator)
        : m_Options(i_Options), m_Evaluator(io_Evaluator), m_pOutput(makeOutput(i_Options))
    {
    }

    int execute()
    {
        for (std::size_t i = 0; i < m_Options.files.size() && !isDone(); ++i)
        {
            if (i > 0)
            {
                // A document is asked once for everything, so keeping many would only cost memory.
                m_Evaluator.forgetDocuments();
            }
            evaluateFile(m_Options.files[i]);
        }
        return status();
    }

private:
    bool isDone() const { return m_Options.quiet && m_Found; }

    int status() const
    {
        if (isDone())
        {
            return s_Found;
        }
        return m_Failed ? s_Error : (m_Found ? s_Found : s_NothingFound);
    }

    void evaluateFile(const std::string& i_File)
    {
        const std::string name = i_File == "-" ? s_InputName : i_File;
        std::string path;
        if (!findPath(i_File, path))
        {
            return;
        }
        m_pOutput->beginFile(name);
        bool documentReported = false;
        for (const std::string& expression : m_Options.expressions)
        {
            const Outcome outcome = evaluate(path, name, expression, documentReported);
            m_pOutput->add(expression, outcome);
            m_Found = m_Found || !outcome.values.empty();
            if (isDone())
            {
                break;
            }
        }
        m_pOutput->endFile();
    }

    /// The path that the plug-in is given for an argument. False, with the error told, when there is none.
    bool findPath(const std::string& i_File, std::string& o_Path)
    {
        o_Path = i_File;
        if (i_File == "-")
        {
            o_Path = spooledInput();
        }
        else if (String(i_File.c_str()).toNarrow() != i_File)
        {
            fail("cannot read " + i_File + ": its name is not valid UTF-8");
            m_Failed = true;
            return false;
        }
        return true;
    }

    std::string spooledInput()
    {
        if (!m_Input)
        {
            m_Input.emplace();
        }
        return m_Input->path();
    }

    /// An expression that was refused once is refused by every file: it is neither tried nor
    /// reported again. A document that cannot be read is reported once.
    Outcome evaluate(const std::string& i_Path, const std::string& i_Name, const std::string& i_Expression,
                     bool& io_DocumentReported)
    {
        if (const auto refused = m_Refused.find(i_Expression); refused != m_Refused.end())
        {
            return refused->second;
        }
        Outcome outcome = m_Evaluator.evaluate(i_Path, i_Expression);
        if (outcome.code != 0)
        {
            m_Failed = true;
            const bool isDocument = isDocumentError(outcome.code);
            if (!isDocument || !io_DocumentReported)
            {
                const std::string note = isDocument ? FileSystem::whyUnreadable(i_Path) : std::string();
                Console::writeErrorLine(errorMessage(outcome, i_Name, i_Expression, note));
            }
            io_DocumentReported = io_DocumentReported || isDocument;
        }
        if (outcome.code == XML_PLUGIN_ERROR_XPATH_NOT_RECOGNISED)
        {
            m_Refused.emplace(i_Expression, outcome);
        }
        return outcome;
    }

    const Options& m_Options;
    Evaluator& m_Evaluator;
    std::unique_ptr<Output> m_pOutput;
    std::optional<SpooledInput> m_Input;
    std::map<std::string, Outcome> m_Refused;
    bool m_Found = false;
    bool m_Failed = false;
};

int evaluateAll(const Options& i_Options)
{
    TraceLog trace(i_Options.traceLevel);
    PluginLibrary library(i_Options.pluginPath);
    Evaluator evaluator(library, trace, {i_Options.one, i_Options.mustExist});
    return callPlugin([&] { return Run(i_Options, evaluator).execute(); });
}

int printVersion(const Options& i_Options)
{
    Console::write("xmlvalue " XMLVALUE_VERSION "\n");
    const PluginLibrary library(i_Options.pluginPath);
    Console::write(callPlugin([&] { return library.description(); }) + '\n');
    return s_Found;
}

int print(const std::string& i_Text)
{
    Console::write(i_Text);
    return s_Found;
}

int perform(const CommandLine& i_CommandLine)
{
    switch (i_CommandLine.action)
    {
    case CommandLine::Action::PrintText:
        return print(i_CommandLine.text);
    case CommandLine::Action::PrintVersion:
        return printVersion(i_CommandLine.options);
    case CommandLine::Action::ListErrors:
        return print(errorList());
    case CommandLine::Action::Refuse:
        fail(i_CommandLine.text);
        Console::writeErrorLine("Try 'xmlvalue --help' for more information.");
        return s_Error;
    case CommandLine::Action::Evaluate:
        break;
    }
    return evaluateAll(i_CommandLine.options);
}

int performSafely(const std::vector<std::string>& i_Arguments)
{
    try
    {
        return perform(parseCommandLine(i_Arguments));
    }
    catch (const std::bad_alloc&)
    {
        return fail("out of memory");
    }
    catch (const std::exception& error)
    {
        return fail(error.what());
    }
}

} // namespace

int runApplication(const std::vector<std::string>& i_Arguments) noexcept
{
    Console::prepare();
    const int status = performSafely(i_Arguments);
    return Console::flush() ? status : fail("cannot write the output");
}
