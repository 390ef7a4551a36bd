#include "explain/DialectDocument.h"

#include "advice/ExpressionText.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

extern const unsigned char g_DialectText[];
extern const std::size_t g_DialectTextSize;

namespace
{

constexpr std::string_view s_DifferenceMark = "#### D-";
constexpr std::string_view s_FunctionsMark = "## Functions";

std::string_view takeLine(std::string_view& io_Text)
{
    const std::size_t end = std::min(io_Text.find('\n'), io_Text.size());
    const std::string_view line = io_Text.substr(0, end);
    io_Text.remove_prefix(std::min(end + 1, io_Text.size()));
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
}

/// Without the marks of code.
std::string plain(std::string_view i_Text)
{
    std::string result;
    for (const char byte : ExpressionText::trim(i_Text))
    {
        if (byte != '`')
        {
            result += byte;
        }
    }
    return result;
}

std::vector<std::string_view> cellsOf(std::string_view i_Row)
{
    std::vector<std::string_view> cells;
    i_Row.remove_prefix(1);
    while (!i_Row.empty())
    {
        const std::size_t end = std::min(i_Row.find('|'), i_Row.size());
        cells.push_back(i_Row.substr(0, end));
        i_Row.remove_prefix(std::min(end + 1, i_Row.size()));
    }
    return cells;
}

struct Heading
{
    int number = 0;
    std::string title;
};

Heading readHeading(std::string_view i_Line)
{
    const std::string_view text = i_Line.substr(s_DifferenceMark.size());
    Heading heading;
    const auto [pEnd, error] = std::from_chars(text.data(), text.data() + text.size(), heading.number);
    heading.title = ExpressionText::trim(text.substr(static_cast<std::size_t>(pEnd - text.data())));
    return heading;
}

/// The paragraph at the start, in one line.
std::string readParagraph(std::string_view i_Text)
{
    std::string paragraph;
    while (!i_Text.empty() && ExpressionText::trim(i_Text.substr(0, i_Text.find('\n'))).empty())
    {
        takeLine(i_Text);
    }
    while (!i_Text.empty())
    {
        const std::string_view line = takeLine(i_Text);
        if (line.empty() || line.starts_with("```"))
        {
            break;
        }
        paragraph += paragraph.empty() ? "" : " ";
        paragraph += line;
    }
    return paragraph;
}

void appendColumn(std::string& io_Line, const std::string& i_Text, std::size_t i_Width)
{
    io_Line += i_Text;
    io_Line.append(i_Width - std::min(i_Width, i_Text.size()) + 2, ' ');
}

} // namespace

DialectDocument::DialectDocument(std::string_view i_Text)
{
    bool isInFunctions = false;
    while (!i_Text.empty())
    {
        const std::string_view line = takeLine(i_Text);
        if (line.starts_with(s_DifferenceMark))
        {
            Heading heading = readHeading(line);
            m_Differences[heading.number] = {std::move(heading.title), readParagraph(i_Text)};
        }
        if (line.starts_with("## "))
        {
            isInFunctions = line == s_FunctionsMark;
        }
        else if (isInFunctions && line.starts_with("| `"))
        {
            readTableRow(line);
        }
    }
}

void DialectDocument::readTableRow(std::string_view i_Line)
{
    const std::vector<std::string_view> cells = cellsOf(i_Line);
    // The row of functions that are missing has no priority.
    if (cells.size() >= 4 && !ExpressionText::trim(cells[2]).empty())
    {
        m_Functions.push_back({plain(cells[0]), plain(cells[1]), plain(cells[2]), plain(cells[3])});
    }
}

const DialectDocument& DialectDocument::own()
{
    static const DialectDocument s_Document(
        std::string_view(reinterpret_cast<const char*>(g_DialectText), g_DialectTextSize));
    return s_Document;
}

std::string DialectDocument::functionList() const
{
    const Function heading{"FUNCTION", "ARGUMENTS", "PRIORITY", "ANSWER"};
    std::vector<const Function*> rows{&heading};
    std::size_t callWidth = heading.call.size();
    std::size_t argumentsWidth = heading.arguments.size();
    for (const Function& function : m_Functions)
    {
        rows.push_back(&function);
        callWidth = std::max(callWidth, function.call.size());
        argumentsWidth = std::max(argumentsWidth, function.arguments.size());
    }
    std::string list;
    for (const Function* pRow : rows)
    {
        appendColumn(list, pRow->call, callWidth);
        appendColumn(list, pRow->arguments, argumentsWidth);
        appendColumn(list, pRow->priority, heading.priority.size());
        list += pRow->answer + '\n';
    }
    return list;
}
