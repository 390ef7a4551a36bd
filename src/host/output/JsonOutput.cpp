#include "output/JsonOutput.h"

#include "output/ErrorReport.h"
#include "system/Console.h"

#include <nlohmann/json.hpp>

namespace
{

using Json = nlohmann::ordered_json;

Json describeHint(const Hint& i_Hint)
{
    Json hint;
    hint["difference"] = differenceName(i_Hint.difference);
    hint["text"] = i_Hint.text;
    return hint;
}

Json describeError(const Outcome& i_Outcome)
{
    Json error;
    error["code"] = i_Outcome.code;
    error["name"] = errorName(i_Outcome.code);
    error["message"] = xmlErrorText(i_Outcome.code);
    if (!i_Outcome.reason.empty())
    {
        error["reason"] = i_Outcome.reason;
    }
    if (i_Outcome.recognisedUpTo)
    {
        error["offset"] = *i_Outcome.recognisedUpTo;
    }
    for (const Hint& hint : i_Outcome.hints)
    {
        error["hints"].push_back(describeHint(hint));
    }
    return error;
}

} // namespace

void JsonOutput::add(const std::string& i_Expression, const Outcome& i_Outcome)
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
    Console::write(object.dump(-1, ' ', false, Json::error_handler_t::replace) + m_End);
}
