#include "output/Progress.h"

#include "system/Console.h"

#include <algorithm>
#include <cstdint>

namespace
{

constexpr std::chrono::milliseconds s_Interval(200);

std::string twoDigits(std::uint64_t i_Number)
{
    return (i_Number < 10 ? "0" : "") + std::to_string(i_Number);
}

/// The duration in its two largest units.
std::string duration(std::uint64_t i_Seconds)
{
    constexpr std::uint64_t hour = 3600;
    if (i_Seconds < 60)
    {
        return std::to_string(i_Seconds) + " s";
    }
    if (i_Seconds < hour)
    {
        return std::to_string(i_Seconds / 60) + " min " + twoDigits(i_Seconds % 60) + " s";
    }
    return std::to_string(i_Seconds / hour) + " h " + twoDigits(i_Seconds % hour / 60) + " min";
}

} // namespace

Progress::Progress(std::size_t i_Total, bool i_IsShown) : m_Total(i_Total), m_IsShown(i_IsShown) {}

Progress::~Progress()
{
    if (m_IsShown)
    {
        Console::showStatus("");
    }
}

void Progress::advance()
{
    ++m_Done;
    const Clock::time_point now = Clock::now();
    if (m_IsShown && now >= m_Next)
    {
        Console::showStatus(
            line(m_Done, m_Total, std::chrono::duration_cast<std::chrono::milliseconds>(now - m_Start)));
        m_Next = now + s_Interval;
    }
}

std::string Progress::line(std::size_t i_Done, std::size_t i_Total, std::chrono::milliseconds i_Elapsed)
{
    const auto elapsed = static_cast<double>(std::max<std::int64_t>(i_Elapsed.count(), 1)) / 1000;
    const double rate = static_cast<double>(i_Done) / elapsed;
    const auto left = static_cast<std::uint64_t>(static_cast<double>(i_Total - i_Done) / std::max(rate, 1e-9));
    return std::to_string(i_Done) + " of " + std::to_string(i_Total) + " files, " +
           std::to_string(static_cast<std::uint64_t>(rate)) + " a second, " + duration(left) + " left";
}
