#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// What docs/dialect.md, of which the program has a copy, says about the query language.
///
/// Threads: any number may read.
/// Tested by: tests/host/explain/DialectDocumentTest.cpp
class DialectDocument
{
public:
    struct Difference
    {
        std::string title;   ///< of its heading, without the number
        std::string summary; ///< its first paragraph, in one line; may be empty
    };

    struct Function
    {
        std::string call; ///< name and parameters, such as `count(nodes)`
        std::string arguments;
        std::string priority; ///< empty for one that is not supported
        std::string answer;
    };

    /// Reads \p i_Text, which is Markdown.
    explicit DialectDocument(std::string_view i_Text);
    /// The document of the program.
    static const DialectDocument& own();

    /// By number.
    const std::map<int, Difference>& differences() const noexcept { return m_Differences; }
    /// Those that have a priority, in the order of the table: all that an expression may call.
    const std::vector<Function>& functions() const noexcept { return m_Functions; }

    /// One function a line, in columns, with a heading.
    std::string functionList() const;

private:
    void readTableRow(std::string_view i_Line);

    std::map<int, Difference> m_Differences;
    std::vector<Function> m_Functions;
};
