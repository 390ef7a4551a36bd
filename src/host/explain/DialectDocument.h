#pragma once

#include <map>
#include <string>
#include <string_view>

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

    /// Reads \p i_Text, which is Markdown.
    explicit DialectDocument(std::string_view i_Text);
    /// The document of the program.
    static const DialectDocument& own();

    /// By number.
    const std::map<int, Difference>& differences() const noexcept { return m_Differences; }

private:
    std::map<int, Difference> m_Differences;
};
