#pragma once

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <vector>

/// Processor time that this process has used, in nanoseconds. The load of other programs does not count.
inline double processorTime()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
}

/// The median; 0 without values.
inline double median(std::vector<double> i_Values)
{
    if (i_Values.empty())
    {
        return 0;
    }
    const auto middle = i_Values.begin() + static_cast<std::ptrdiff_t>(i_Values.size() / 2);
    std::nth_element(i_Values.begin(), middle, i_Values.end());
    return *middle;
}
