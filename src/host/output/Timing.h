#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>

class Evaluator;
class MinimalDocument;

/// Measures how long the plug-in takes to read documents, to compile expressions and to walk the trees.
///
/// It uses only the interface of the plug-in. A trivial expression on each document measures the reading. The time of
/// an expression on a document with one element counts as compiling. The rest of an evaluation is the walk.
///
/// Ownership: borrows the evaluator and the document, which must outlive it.
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

    /// Makes the plug-in read the document at \p i_Path (UTF-8), and measures the time.
    void parse(const std::string& i_Path);
    /// Measures how long \p i_Expression takes to compile, on the first call with it.
    void compile(const std::string& i_Expression);
    /// Adds the time that the evaluation of \p i_Expression took on a document that was already read.
    void evaluated(const std::string& i_Expression, Duration i_Time);

    /// All times in one line.
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
