#pragma once

#include <map>
#include <string>
#include <string_view>

/// What docs/dialect.md says about the query language. The program contains a copy of it.
///
/// Threads: any number may read.
/// Tested by: tests/host/explain/DialectDocumentTest.cpp
class DialectDocument
{
public:
    struct Difference
    {
        std::string title;   ///< its heading, without the number
        std::string summary; ///< its first paragraph as one line; may be empty
    };

    /// Reads \p i_Text, which is Markdown in UTF-8.
    explicit DialectDocument(std::string_view i_Text);
    /// The copy in the program.
    static const DialectDocument& own();

    /// All differences, by number.
    const std::map<int, Difference>& differences() const noexcept { return m_Differences; }

private:
    std::map<int, Difference> m_Differences;
};
