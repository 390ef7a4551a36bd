#include "values/XPathNumberText.h"

#include "values/XPathQuickCode.h"
#include "values/XPathText.h"
#include "values/XmlTrace.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cwctype>
#include <iterator>
#include <limits>
#include <string>
#include <system_error>

XML_TRACE_SOURCE(L"XPathArgument")

namespace XmlPlugin
{

namespace
{

constexpr int s_Precision = 6; // significant digits of a printed number

bool isDigit(wchar_t i_Char)
{
    constexpr wchar_t firstBeyondAscii = 0x80;
    return i_Char < firstBeyondAscii ? isPlainDigit(i_Char) : std::iswdigit(static_cast<wint_t>(i_Char)) != 0;
}

/// Characters of ASCII that most operands begin with which are no number.
bool isLetterOrSeparator(wchar_t i_Char) noexcept
{
    return isPlainLetter(i_Char) || i_Char == L'/' || i_Char == L'@';
}

/// So many digits are always a number that a double holds exactly.
constexpr std::size_t s_ExactDigits = 15;
/// Integers below this one print all their digits.
constexpr double s_PrintedWhole = 1e6;

/// Of a text without blanks at its ends.
bool areNumberDigits(std::wstring_view i_Operand)
{
    const bool isNegative = i_Operand.starts_with(L'-');
    bool hasStop = false;
    if (i_Operand.empty())
    {
        return false;
    }
    // D-82: "." and "-" alone are numbers, and so is a minus sign with spaces: "- 5". XPath 1.0 knows none of
    // them.
    for (const wchar_t character : i_Operand.substr(isNegative ? 1 : 0))
    {
        if (character == L'.' && !hasStop)
        {
            hasStop = true;
        }
        else if (!(character == L' ' && isNegative) && !isDigit(character))
        {
            return false;
        }
    }
    return true;
}

bool isFewDigits(std::wstring_view i_Text) noexcept
{
    return i_Text.size() <= s_ExactDigits && std::all_of(i_Text.begin(), i_Text.end(), isPlainDigit);
}

double readFewDigits(std::wstring_view i_Text) noexcept
{
    std::int64_t number = 0;
    for (const wchar_t digit : i_Text)
    {
        number = 10 * number + (digit - L'0');
    }
    return static_cast<double>(number);
}

bool isShortWhole(double i_Number) noexcept
{
    return i_Number > -s_PrintedWhole && i_Number < s_PrintedWhole && i_Number == std::trunc(i_Number) &&
           !(i_Number == 0.0 && std::signbit(i_Number));
}

/// Reads \p i_Text up to its first character that no number has.
double readDigits(const std::string& i_Text)
{
    const char* pBegin = i_Text.data();
    const char* pEnd = pBegin + i_Text.size();
    double number = 0.0;
    const std::from_chars_result read = std::from_chars(pBegin, pEnd, number, std::chars_format::fixed);
    if (read.ec != std::errc::result_out_of_range)
    {
        return number;
    }
    // Too large or too small to be a double: the digits in front of the full stop tell which.
    const bool isNegative = *pBegin == '-';
    const std::string_view digits(pBegin, static_cast<std::size_t>(read.ptr - pBegin));
    const std::size_t firstDigit = digits.find_first_of("123456789");
    if (firstDigit > digits.find('.'))
    {
        return isNegative ? -0.0 : 0.0;
    }
    return isNegative ? -std::numeric_limits<double>::max() : std::numeric_limits<double>::max();
}

} // namespace

bool XPathNumberText::isNumber(std::wstring_view i_Text)
{
    const bool mayBe = !i_Text.empty() && !isLetterOrSeparator(i_Text.front());
    const bool result = mayBe && areNumberDigits(trimmed(i_Text));
    XML_TRACE_VALUE(L"PathArgument::isNumber(const String & operand)", L" isNumber result ", result);
    return result;
}

double XPathNumberText::read(std::wstring_view i_Text)
{
    if (isFewDigits(i_Text))
    {
        return readFewDigits(i_Text);
    }
    std::string narrow; // short numbers need no allocation
    for (const wchar_t character : i_Text)
    {
        const bool isSign = character == L'-' && narrow.empty();
        if (!isSign && character != L'.' && (character < L'0' || character > L'9'))
        {
            break;
        }
        narrow.push_back(static_cast<char>(character));
    }
    return narrow.empty() ? 0.0 : readDigits(narrow);
}

double XPathNumberText::numberOf(std::wstring_view i_Text)
{
    return read(trimmed(removeQuotes(i_Text)));
}

bool XPathNumberText::readOperand(std::wstring_view i_Text, double& o_Number)
{
    // Most operands are read once for each node of a list; those that leave no question are read at once.
    const bool isPlain = !i_Text.empty() && isFewDigits(i_Text) && XPathQuickCode::isAllowed();
    if (!isPlain && !isNumber(removeQuotes(i_Text)))
    {
        return false;
    }
    o_Number = isPlain ? readFewDigits(i_Text) : numberOf(i_Text);
    return true;
}

String XPathNumberText::print(double i_Number)
{
    if (std::isnan(i_Number))
    {
        return String(L"nan"); // never "-nan", whatever the sign bit says
    }
    char narrow[32];
    // D-77: six significant digits and an exponent: 1234567 + 0 is "1.23457e+06". XPath 1.0 prints all digits.
    const std::to_chars_result printed =
        isShortWhole(i_Number)
            ? std::to_chars(std::begin(narrow), std::end(narrow), static_cast<int>(i_Number))
            : std::to_chars(std::begin(narrow), std::end(narrow), i_Number, std::chars_format::general, s_Precision);
    wchar_t wide[std::size(narrow)];
    const wchar_t* pEnd = std::copy(std::begin(narrow), printed.ptr, std::begin(wide));
    return String(wide, static_cast<std::size_t>(pEnd - wide));
}

} // namespace XmlPlugin
