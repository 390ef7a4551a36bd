#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

class Evaluator;
class MinimalDocument;

/// How long the plug-in works: at reading documents, at compiling expressions, and at walking the trees.
///
/// The plug-in is asked through its interface only, so a document is asked for something trivial first, which leaves
/// the reading behind; an expression's compiling is what it takes on a document of one element; the rest is the walk.
///
/// Ownership: borrows the evaluator and the document.
/// Threads: one at a time.
/// Tested by: tests/host/output/TimingTest.cpp, tests/host/FilesTest.cpp
class Timing
{
public:
    using Duration = std::chrono::steady_clock::duration;

    Timing(Evaluator& io_Evaluator, const MinimalDocument& i_Document)
        : m_Evaluator(io_Evaluator), m_Document(i_Document)
    {
    }

    /// Lets the plug-in read the document at \p i_Path.
    void parse(const std::string& i_Path);
    /// Measures how long \p i_Expression takes to compile, the first time that it is named.
    void compile(const std::string& i_Expression);
    /// Counts the time that the evaluation of \p i_Expression on a document that was read took.
    void evaluated(const std::string& i_Expression, Duration i_Time);

    /// All in one line.
    std::string summary() const;

    /// A duration in milliseconds with three decimals; the decimal sign is always a full stop.
    static std::string text(Duration i_Time);

private:
    Evaluator& m_Evaluator;
    const MinimalDocument& m_Document;
    std::map<std::string, Duration> m_Compile; ///< by expression
    Duration m_Parse{};
    Duration m_Walk{};
    std::size_t m_Files = 0;
};
