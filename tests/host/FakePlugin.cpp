#include "base/File.h"
#include "base/String.h"
#include "pluginsdk/Expression.h"
#include "pluginsdk/Plugin.h"
#include "trace/Trace.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#if defined(_WIN32)
#define FAKE_EXPORT extern "C" __declspec(dllexport)
#else
#define FAKE_EXPORT extern "C" __attribute__((visibility("default")))
#endif

/// A plug-in that answers what the expression asks it to answer, so that the host can be tested
/// without the engine:
///
///   none                no value
///   values:A,B          these values; `values:` is one empty value
///   many:N              N values
///   odd                 a pair of surrogates, and half of one
///   file                the property "file"; the file need not exist
///   content             the bytes of the file
///   code:N              this code
///   refused, refused:N  -15105, with the place in the trace when there is one
///   traced              one record of each level
///   two-faced:A,B       A with the records of an accepted expression to those who want all records, to others B;
///                       "none" for no value, a number for a code
///   slow:N              one value, after N milliseconds
///   throw               an exception
///
/// FAKE_KIND chooses what is wrong with the plug-in as a whole.
#define FAKE_SOUND 0
#define FAKE_CREATES_NOTHING 1
#define FAKE_OFFERS_NOTHING 2
#define FAKE_MAKES_ANOTHER_SHAPE 3

namespace
{

constexpr Tracer s_Tracer = Tracer::getInstance(5);
constexpr const wchar_t* s_Source = L"FakePlugin";

/// A type that is gone with the module.
class FakeError final : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

void note(const wchar_t* i_Text)
{
    const Trace trace(s_Tracer, L"Fake");
    trace << TraceInformation << Trace::pos(s_Source, 1) << i_Text;
}

std::string readFile(const std::string& i_Path)
{
    std::ifstream stream(std::filesystem::path(std::u8string(i_Path.begin(), i_Path.end())), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

std::vector<String> split(const std::string& i_List)
{
    std::vector<String> result;
    std::size_t begin = 0;
    for (std::size_t end = i_List.find(','); end != std::string::npos; end = i_List.find(',', begin))
    {
        result.emplace_back(i_List.substr(begin, end - begin).c_str());
        begin = end + 1;
    }
    result.emplace_back(i_List.substr(begin).c_str());
    return result;
}

TErrorCode refuse(const std::string& i_Place)
{
    const Trace trace(s_Tracer, L" XPathTokenizer::start()");
    if (!i_Place.empty())
    {
        trace << TraceError << Trace::pos(s_Source, 2) << L" Recognised up to offset = " << std::atoi(i_Place.c_str());
    }
    return -15105;
}

void traceAllLevels()
{
    const Trace trace(s_Tracer, L"Scope::name()");
    trace << TraceError << Trace::pos(L"./folder/Source", 11) << L" an error " << 1;
    trace << TraceWarning << Trace::pos(L"./folder/Source", 22) << L"a warning \U0001F600";
    trace << TraceInformation << Trace::pos(L"./folder/Source", 33) << L"information";
}

/// What an engine that accepts `'text'` and evaluates it tells of it.
void traceAccepted()
{
    struct Row
    {
        const wchar_t* scope;
        const wchar_t* text;
    };
    constexpr const wchar_t* compiled = L"XPathExpressionsParser::XPathExpressionsParser(const String & i_XPath)";
    constexpr const wchar_t* evaluated = L"XPathExpressionsParser::doParse()";
    for (const Row& row :
         {Row{L"XPathTokenizer::XPathTokenizer(String xpath)", L" xpath to XPathTokenizer 'text'"},
          {compiled, L" Parsed Expr = ('text',0,1)|"},
          {L" XPathExpressionsParser::stackExpression", L"Expression 'text' pushed to expressionVector"},
          {compiled, L"Expr transformed =('text',0,1)|"},
          {evaluated, L" m_XPathExpressionsVector.size()1"},
          {evaluated, L"pExpression ='text'Start Node = 0 RootPosition = 0"},
          {evaluated, L"isOperator = false. Expression pushed on localstack"},
          {evaluated, L"Argument to evaluate 'text'"},
          {evaluated, L"result =0"}})
    {
        const Trace trace(s_Tracer, row.scope);
        trace << TraceInformation << Trace::pos(s_Source, 3) << row.text;
    }
}

TErrorCode answerTwoFaced(const std::vector<String>& i_Answers, std::vector<String>& o_Values)
{
    const bool isTraced = Trace::isEnabled(TraceInformation);
    if (isTraced)
    {
        traceAccepted();
    }
    const std::string chosen = i_Answers.at(isTraced ? 0 : 1).toNarrow();
    if (const int code = std::atoi(chosen.c_str()); code != 0)
    {
        return code;
    }
    if (chosen != "none")
    {
        o_Values.emplace_back(chosen.c_str());
    }
    return 0;
}

/// The command in front of the colon, and what stands behind it.
struct Request
{
    std::string command;
    std::string argument;
};

Request parse(const std::string& i_Expression)
{
    const std::size_t colon = i_Expression.find(':');
    if (colon == std::string::npos)
    {
        return {i_Expression, ""};
    }
    return {i_Expression.substr(0, colon), i_Expression.substr(colon + 1)};
}

TErrorCode answer(const Request& i_Request, const std::string& i_File, std::vector<String>& o_Values)
{
    const auto& [command, argument] = i_Request;
    if (command == "file")
    {
        o_Values.emplace_back(i_File.c_str());
    }
    else if (!File(String(i_File.c_str())).exists())
    {
        return -15103;
    }
    else if (command == "values")
    {
        o_Values = split(argument);
    }
    else if (command == "many")
    {
        o_Values.assign(static_cast<std::size_t>(std::atoi(argument.c_str())), String(L"value"));
    }
    else if (command == "odd")
    {
        const wchar_t half[] = {static_cast<wchar_t>(0xD83D), L'\0'};
        o_Values = {String(L"\U0001F600"), String(half)};
    }
    else if (command == "content")
    {
        const std::string content = readFile(i_File);
        o_Values.emplace_back(content.data(), content.size());
    }
    else if (command == "code")
    {
        return std::atoi(argument.c_str());
    }
    else if (command == "refused")
    {
        return refuse(argument);
    }
    else if (command == "traced")
    {
        traceAllLevels();
    }
    else if (command == "two-faced")
    {
        return answerTwoFaced(split(argument), o_Values);
    }
    else if (command == "slow")
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(std::atoi(argument.c_str())));
        o_Values.emplace_back(L"value");
    }
    else if (command == "throw")
    {
        throw FakeError("thrown by the plug-in");
    }
    return 0;
}

TErrorCode evaluateProperties(const PluginSDK::Expression& i_Expression, std::vector<String>& o_Values)
{
    note(L"evaluate");
    const std::string file = String(i_Expression.getProperty(L"file")).toNarrow();
    const std::string expression = String(i_Expression.getProperty(L"xpath")).toNarrow();
    const bool mustExist = String(i_Expression.getProperty(L"mustExist")) == String(L"true");
    const TErrorCode code = answer(parse(expression), file, o_Values);
    return code == 0 && mustExist && o_Values.empty() ? -15002 : code;
}

class FakeValue final : public PluginSDK::ScalarOperand
{
public:
    bool reservedFlagA() const override { return false; }
    int getShape() const override { return FAKE_KIND == FAKE_MAKES_ANOTHER_SHAPE ? 1 : 0; }
    bool reservedFlagB() const override { return true; }
    void reservedHook() override {}
    TErrorCode evaluate(PluginSDK::String& o_Result) override
    {
        std::vector<String> values;
        const TErrorCode code = evaluateProperties(*this, values);
        if (code != 0 || values.size() > 1)
        {
            return code != 0 ? code : -15003;
        }
        o_Result = values.empty() ? L"" : values.front().c_str();
        return 0;
    }
};

class FakeValues final : public PluginSDK::VectorOperand
{
public:
    bool reservedFlagA() const override { return false; }
    int getShape() const override { return FAKE_KIND == FAKE_MAKES_ANOTHER_SHAPE ? 0 : 1; }
    bool reservedFlagB() const override { return true; }
    void reservedHook() override {}
    TErrorCode evaluate(PluginSDK::StringVector& o_Result) override
    {
        std::vector<String> values;
        const TErrorCode code = evaluateProperties(*this, values);
        for (const String& value : values)
        {
            o_Result.addString(value.c_str());
        }
        return code;
    }
};

class FakePlugin final : public PluginSDK::Plugin
{
public:
    void reservedHook() override {}
    PluginSDK::Version& getVersion(PluginSDK::Version& o_Version) const override
    {
        o_Version = {9, 8, 7, 6};
        return o_Version;
    }
    const wchar_t* getName() const override { return L"Fake \u00E9"; }
    int reservedQuery() const override { return 0; }
    void registerExpressions() override
    {
        note(L"registerExpressions");
        if (FAKE_KIND != FAKE_OFFERS_NOTHING)
        {
            addExpression(L"XmlValue");
            addExpression(L"XmlValues");
        }
    }
    void unload() override { note(L"unload"); }
    TErrorCode createExpression(const wchar_t* i_TypeName, PluginSDK::Expression** o_Expression) override
    {
        note((L"createExpression " + std::wstring(i_TypeName)).c_str());
        *o_Expression = std::wstring_view(i_TypeName) == L"XmlValue"
                            ? static_cast<PluginSDK::Expression*>(new FakeValue)
                            : static_cast<PluginSDK::Expression*>(new FakeValues);
        return 0;
    }
    TErrorCode destroyExpression(PluginSDK::Expression* i_Expression) override
    {
        note(L"destroyExpression");
        delete i_Expression;
        return 0;
    }
};

} // namespace

FAKE_EXPORT PluginSDK::Plugin* createPlugin()
{
    note(L"createPlugin");
    return FAKE_KIND == FAKE_CREATES_NOTHING ? nullptr : new FakePlugin;
}

FAKE_EXPORT void destroyPlugin(PluginSDK::Plugin* i_Plugin)
{
    note(L"destroyPlugin");
    delete i_Plugin;
}
