#pragma once

#include "support/TemporaryFolder.h"

#include <map>
#include <string>
#include <vector>

/// One example of a document: an expression, where it is asked, and the whole answer.
struct DocumentExample
{
    int m_Line = 0;         ///< of the expression, counted from 1
    std::string m_Heading;  ///< text of the heading above, without its number signs
    std::string m_Document; ///< as written; "not set" for no document
    std::string m_Type;     ///< "XmlValue" or another type name; empty: the query engine itself
    bool m_MustExist = false;
    std::string m_Expression; ///< with tabs in place of \t; "not set" in parentheses for no expression
    std::string m_Answer;     ///< one value a line, a line feed behind each
    std::string m_Standard;   ///< what XPath 1.0 answers; empty where nothing is said
};

/// The examples of one Markdown file of docs/.
///
/// Fenced blocks marked "xpath" hold examples, those marked "xml NAME" the documents that examples
/// name. Other fenced blocks are passed over.
///
/// Ownership: owns its text, its examples, and a folder with the documents.
/// Threads: one at a time.
/// Invariants: with `problems()` empty every example has a document, an expression and an answer.
/// Tested by: tests/docs/DialectTest.cpp (the malformed blocks)
class DocumentExamples
{
public:
    /// \p i_Text is the whole Markdown text.
    explicit DocumentExamples(std::string i_Text);
    /// Reads docs/NAME of the source tree.
    static DocumentExamples ofFile(const std::string& i_Name);

    const std::vector<DocumentExample>& examples() const noexcept { return m_Examples; }
    /// Texts of all headings, in order.
    const std::vector<std::string>& headings() const noexcept { return m_Headings; }
    /// What is malformed, one line each, with line numbers.
    const std::vector<std::string>& problems() const noexcept { return m_Problems; }
    const std::string& text() const noexcept { return m_Text; }

    /// What the system answers to \p i_Example, in the form of `m_Answer`.
    std::string run(const DocumentExample& i_Example) const;
    /// The file that an example asks; empty when it names none.
    std::string path(const DocumentExample& i_Example) const { return pathOf(i_Example.m_Document); }

private:
    void readLines();
    void readBlock(const std::string& i_Mark, const std::vector<std::string>& i_Lines, int i_FirstLine);
    void readExamples(const std::vector<std::string>& i_Lines, int i_FirstLine);
    void readExpression(DocumentExample& io_Example, const std::string& i_Line, int i_LineNumber);
    void checkLast();
    void addProblem(int i_Line, const std::string& i_Text);
    std::string pathOf(const std::string& i_Document) const;

    std::string m_Text;
    std::vector<DocumentExample> m_Examples;
    std::vector<std::string> m_Headings;
    std::vector<std::string> m_Problems;
    std::map<std::string, std::string> m_Documents; ///< path by name
    TemporaryFolder m_Folder;
};
