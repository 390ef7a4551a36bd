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

std::string_view takeLine(std::string_view& io_Text)
{
    const std::size_t end = std::min(io_Text.find('\n'), io_Text.size());
    const std::string_view line = io_Text.substr(0, end);
    io_Text.remove_prefix(std::min(end + 1, io_Text.size()));
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
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

/// The first paragraph, as one line.
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

} // namespace

DialectDocument::DialectDocument(std::string_view i_Text)
{
    while (!i_Text.empty())
    {
        const std::string_view line = takeLine(i_Text);
        if (line.starts_with(s_DifferenceMark))
        {
            Heading heading = readHeading(line);
            m_Differences[heading.number] = {std::move(heading.title), readParagraph(i_Text)};
        }
    }
}

const DialectDocument& DialectDocument::own()
{
    static const DialectDocument s_Document(
        std::string_view(reinterpret_cast<const char*>(g_DialectText), g_DialectTextSize));
    return s_Document;
}
