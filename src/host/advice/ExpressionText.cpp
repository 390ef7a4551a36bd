#include "advice/ExpressionText.h"

#include "xpathlanguage/XPathAxisTable.h"

#include <algorithm>

namespace ExpressionText
{

std::string withoutLiterals(std::string_view i_Text)
{
    std::string result(i_Text);
    char quote = 0;
    for (char& byte : result)
    {
        if (quote != 0 && byte != quote)
        {
            byte = '.';
        }
        else if (quote != 0)
        {
            quote = 0;
        }
        else if (byte == '\'' || byte == '"')
        {
            quote = byte;
        }
    }
    return result;
}

bool isNameStart(char i_Byte) noexcept
{
    return (i_Byte >= 'a' && i_Byte <= 'z') || (i_Byte >= 'A' && i_Byte <= 'Z') || i_Byte == '_' ||
           static_cast<unsigned char>(i_Byte) >= 0x80;
}

bool isDigit(char i_Byte) noexcept
{
    return i_Byte >= '0' && i_Byte <= '9';
}

bool isNameByte(char i_Byte) noexcept
{
    return isNameStart(i_Byte) || isDigit(i_Byte) || i_Byte == '-' || i_Byte == '.';
}

std::size_t nameEnd(std::string_view i_Text, std::size_t i_Begin) noexcept
{
    std::size_t end = i_Begin;
    if (end < i_Text.size() && isNameStart(i_Text[end]))
    {
        while (end < i_Text.size() && isNameByte(i_Text[end]))
        {
            ++end;
        }
    }
    return end;
}

std::size_t skipSpaces(std::string_view i_Text, std::size_t i_Begin) noexcept
{
    return std::min(i_Text.find_first_not_of(' ', i_Begin), i_Text.size());
}

std::size_t closingOf(std::string_view i_Text, std::size_t i_Open) noexcept
{
    const char open = i_Text[i_Open];
    const char close = open == '(' ? ')' : ']';
    std::size_t depth = 0;
    for (std::size_t i = i_Open; i < i_Text.size(); ++i)
    {
        depth += i_Text[i] == open ? 1U : 0U;
        if (i_Text[i] == close && --depth == 0)
        {
            return i;
        }
    }
    return std::string_view::npos;
}

std::string_view leadingAxis(std::string_view i_Name) noexcept
{
    std::string_view longest;
    for (const XPathLanguage::Axis& known : XPathLanguage::s_Axes)
    {
        const std::string_view axis = known.name.text();
        const bool isWhole = i_Name.size() == axis.size();
        const bool leads =
            i_Name.starts_with(axis) && (isWhole || i_Name[axis.size()] == '-' || i_Name[axis.size()] == '.');
        if (leads && axis.size() > longest.size())
        {
            longest = axis;
        }
    }
    return longest;
}

bool isLiteral(std::string_view i_Text) noexcept
{
    return i_Text.size() >= 2 && (i_Text.front() == '\'' || i_Text.front() == '"') && i_Text.back() == i_Text.front();
}

std::string_view withoutQuotes(std::string_view i_Text) noexcept
{
    return isLiteral(i_Text) ? i_Text.substr(1, i_Text.size() - 2) : i_Text;
}

std::string_view trim(std::string_view i_Text) noexcept
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t begin = i_Text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : i_Text.substr(begin, i_Text.find_last_not_of(blanks) - begin + 1);
}

bool isNumber(std::string_view i_Text) noexcept
{
    std::string_view text = trim(i_Text);
    if (text.starts_with('-'))
    {
        text = trim(text.substr(1));
    }
    const auto stops = std::count(text.begin(), text.end(), '.');
    return !text.empty() && stops <= 1 && text.find_first_not_of("0123456789.") == std::string_view::npos &&
           text.find_first_of("0123456789") != std::string_view::npos;
}

} // namespace ExpressionText
