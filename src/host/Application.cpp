#include "Application.h"

#include "Run.h"
#include "explain/Explainer.h"
#include "explain/FunctionList.h"
#include "input/FileList.h"
#include "input/Options.h"
#include "output/ErrorReport.h"
#include "plugin/Evaluator.h"
#include "plugin/PluginLibrary.h"
#include "plugin/TraceLog.h"
#include "system/Console.h"

#include <exception>
#include <new>

namespace
{

constexpr int s_Success = 0;
constexpr int s_Error = 2;

int fail(const std::string& i_Text)
{
    Console::writeErrorLine(plainMessage(i_Text));
    return s_Error;
}

int evaluateAll(const Options& i_Options)
{
    const FileList files = collectFiles(i_Options);
    TraceLog trace(i_Options.traceLevel, i_Options.traceFile);
    int status = s_Success;
    {
        PluginLibrary library(i_Options.pluginPath);
        Evaluator evaluator(library, trace, {i_Options.one, i_Options.mustExist});
        status = callPlugin(
            [&]
            {
                return i_Options.explain != ExplainForm::None ? explainAll(i_Options, evaluator)
                                                              : Run(i_Options, files, evaluator).execute();
            });
    }
    return trace.flush() ? status : fail("cannot write the trace file " + i_Options.traceFile);
}

int printVersion(const Options& i_Options)
{
    Console::write("xmlvalue " XMLVALUE_VERSION "\n");
    const PluginLibrary library(i_Options.pluginPath);
    Console::write(callPlugin([&] { return library.description(); }) + '\n');
    return s_Success;
}

int print(const std::string& i_Text)
{
    Console::write(i_Text);
    return s_Success;
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
    case CommandLine::Action::ListFunctions:
        return print(functionList());
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
