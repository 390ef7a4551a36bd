#include "Output.h"

#include "Console.h"
#include "ErrorReport.h"
#include "Options.h"

#include <nlohmann/json.hpp>

namespace
{

/// One value a line.
class TextOutput final : public Output
{
public:
    TextOutput(bool i_WithNames, char i_End) : m_WithNames(i_WithNames), m_End(i_End) {}

    void beginFile(const std::string& i_Name) override { m_Prefix = m_WithNames ? i_Name + ':' : std::string(); }
    void add(const std::string&, const Outcome& i_Outcome) override
    {
        for (const std::string& value : i_Outcome.values)
        {
            Console::write(m_Prefix + value + m_End);
        }
    }
    void endFile() override {}

private:
    bool m_WithNames;
    char m_End;
    std::string m_Prefix;
};

/// One line a file, unless nothing in it could be evaluated.
class CountOutput final : public Output
{
public:
    CountOutput(bool i_WithNames, char i_End) : m_WithNames(i_WithNames), m_End(i_End) {}

    void beginFile(const std::string& i_Name) override
    {
        m_Prefix = m_WithNames ? i_Name + ':' : std::string();
        m_Count = 0;
        m_HasCount = false;
    }
    void add(const std::string&, const Outcome& i_Outcome) override
    {
        m_Count += i_Outcome.values.size();
        m_HasCount = m_HasCount || i_Outcome.code == 0;
    }
    void endFile() override
    {
        if (m_HasCount)
        {
            Console::write(m_Prefix + std::to_string(m_Count) + m_End);
        }
    }

private:
    bool m_WithNames;
    char m_End;
    std::string m_Prefix;
    std::size_t m_Count = 0;
    bool m_HasCount = false;
};

/// One object a line for each file and expression; errors are objects too.
class JsonOutput final : public Output
{
public:
    JsonOutput(bool i_CountOnly, char i_End) : m_CountOnly(i_CountOnly), m_End(i_End) {}

    void beginFile(const std::string& i_Name) override { m_Name = i_Name; }
    void add(const std::string& i_Expression, const Outcome& i_Outcome) override
    {
        Json object;
        object["file"] = m_Name;
        object["xpath"] = i_Expression;
        if (i_Outcome.code != 0)
        {
            object["error"] = describeError(i_Outcome);
        }
        else if (m_CountOnly)
        {
            object["count"] = i_Outcome.values.size();
        }
        else
        {
            object["values"] = i_Outcome.values;
        }
        // A file name need not be UTF-8; the output is all the same.
        Console::write(object.dump(-1, ' ', false, Json::error_handler_t::replace) + m_End);
    }
    void endFile() override {}

private:
    using Json = nlohmann::ordered_json;

    static Json describeError(const Outcome& i_Outcome)
    {
        Json error;
        error["code"] = i_Outcome.code;
        error["name"] = errorName(i_Outcome.code);
        error["message"] = xmlErrorText(i_Outcome.code);
        if (i_Outcome.recognisedUpTo)
        {
            error["offset"] = *i_Outcome.recognisedUpTo;
        }
        return error;
    }

    bool m_CountOnly;
    char m_End;
    std::string m_Name;
};

class NoOutput final : public Output
{
public:
    void beginFile(const std::string&) override {}
    void add(const std::string&, const Outcome&) override {}
    void endFile() override {}
};

bool wantsNames(const Options& i_Options)
{
    return i_Options.fileNames == FileNames::Always ||
           (i_Options.fileNames == FileNames::WhenSeveral && i_Options.files.size() > 1);
}

} // namespace

std::unique_ptr<Output> makeOutput(const Options& i_Options)
{
    const char end = i_Options.nullEnded ? '\0' : '\n';
    if (i_Options.quiet)
    {
        return std::make_unique<NoOutput>();
    }
    if (i_Options.json)
    {
        return std::make_unique<JsonOutput>(i_Options.count, end);
    }
    if (i_Options.count)
    {
        return std::make_unique<CountOutput>(wantsNames(i_Options), end);
    }
    return std::make_unique<TextOutput>(wantsNames(i_Options), end);
}
