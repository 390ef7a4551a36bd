#pragma once

#include <chrono>
#include <cstddef>
#include <string>

/// The progress line on the terminal: files done, rate, time left. It appears after one second of work, and disappears
/// with the object.
///
/// Threads: one at a time.
/// Tested by: tests/host/output/ProgressTest.cpp, tests/host/TerminalTest.cpp
class Progress
{
public:
    /// Shows nothing if \p i_IsShown is false. \p i_Total is the number of files.
    Progress(std::size_t i_Total, bool i_IsShown);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Counts one more file as done.
    void advance();

    /// The text of the line after \p i_Done of \p i_Total files in \p i_Elapsed, at most 79 columns wide.
    static std::string line(std::size_t i_Done, std::size_t i_Total, std::chrono::milliseconds i_Elapsed);

private:
    using Clock = std::chrono::steady_clock;

    std::size_t m_Total;
    std::size_t m_Done = 0;
    bool m_IsShown;
    Clock::time_point m_Start = Clock::now();
    Clock::time_point m_Next = m_Start + std::chrono::seconds(1);
};
