#include "output/ErrorReport.h"

#include "base/String.h"
#include "plugin/ErrorFault.h"
#include "system/Console.h"

#include <algorithm>

namespace
{

std::string culprit(TErrorCode i_Code, const std::string& i_FileName, const std::string& i_Expression)
{
    switch (faultOf(i_Code))
    {
    case Fault::File:
        return i_FileName;
    case Fault::Expression:
        return i_Expression;
    default:
        return i_Expression + " in " + i_FileName;
    }
}

/// Number of characters before the UTF-16 code unit at \p i_Offset. An offset inside a surrogate pair counts as its
/// start.
std::size_t columnOf(const String& i_Text, int i_Offset)
{
    const int end = std::min(i_Offset, i_Text.length());
    std::size_t column = 0;
    for (int i = 0; i < end; ++i)
    {
        const auto unit = static_cast<std::uint32_t>(i_Text.charAt(i));
        const auto next = static_cast<std::uint32_t>(i_Text.charAt(i + 1));
        const bool isPair = unit >= 0xD800 && unit <= 0xDBFF && next >= 0xDC00 && next <= 0xDFFF;
        if (isPair && i + 1 == end)
        {
            break;
        }
        i += isPair ? 1 : 0;
        ++column;
    }
    return column;
}

} // namespace

const char* errorName(TErrorCode i_Code) noexcept
{
    switch (i_Code)
    {
#define XML_ERROR_CASE(value, name, text)                                                                              \
    case value:                                                                                                        \
        return #name;
        XML_ERROR_CODES(XML_ERROR_CASE)
#undef XML_ERROR_CASE
    default:
        return "UNKNOWN";
    }
}

std::string errorList()
{
    std::string list;
    const auto add = [&list](TErrorCode i_Code, std::string i_Name, const char* i_Text)
    {
        constexpr std::size_t codeWidth = 6;
        constexpr std::size_t nameWidth = 48;
        const std::string code = std::to_string(i_Code);
        i_Name.resize(std::max(nameWidth, i_Name.size()), ' ');
        list.append(codeWidth - std::min(codeWidth, code.size()), ' ').append(code);
        list.append("  ").append(i_Name).append("  ").append(i_Text).append("\n");
    };
#define XML_ERROR_ROW(value, name, text) add(value, #name, text);
    XML_ERROR_CODES(XML_ERROR_ROW)
#undef XML_ERROR_ROW
    return list;
}

std::string plainMessage(const std::string& i_Text)
{
    return Console::onOneLine("xmlvalue: " + i_Text);
}

std::string errorMessage(const Outcome& i_Outcome, const std::string& i_FileName, const std::string& i_Expression,
                         const Palette& i_Palette)
{
    std::string message = "error " + std::to_string(i_Outcome.code) + ": " + xmlErrorText(i_Outcome.code) + ": " +
                          culprit(i_Outcome.code, i_FileName, i_Expression);
    if (!i_Outcome.reason.empty())
    {
        message += " (" + i_Outcome.reason + ')';
    }
    message = plainMessage(message);
    if (i_Outcome.recognisedUpTo)
    {
        message += '\n' + placeMark(i_Expression, *i_Outcome.recognisedUpTo, i_Palette);
    }
    for (const Hint& hint : i_Outcome.hints)
    {
        message += '\n' + hintLine(hint, i_Palette);
    }
    return message;
}

std::string placeMark(const std::string& i_Expression, int i_Place, const Palette& i_Palette)
{
    const std::size_t column = columnOf(String(i_Expression.c_str()), i_Place);
    return Console::onOneLine(i_Expression) + '\n' + std::string(column, ' ') + i_Palette.error("^");
}

std::string hintLine(const Hint& i_Hint, const Palette& i_Palette)
{
    return i_Palette.hint("hint:") + ' ' + differenceName(i_Hint.difference) + ": " + Console::onOneLine(i_Hint.text);
}
