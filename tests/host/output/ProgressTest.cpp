#include "output/Progress.h"

#include <gtest/gtest.h>

#include <ostream>

namespace
{

struct LineRow
{
    const char* name;
    std::size_t done;
    std::size_t total;
    int milliseconds;
    const char* expected;
};

void PrintTo(const LineRow& i_Row, std::ostream* io_pStream)
{
    *io_pStream << i_Row.name;
}

class ProgressLine : public testing::TestWithParam<LineRow>
{
};

} // namespace

TEST_P(ProgressLine, Tells)
{
    const std::string line =
        Progress::line(GetParam().done, GetParam().total, std::chrono::milliseconds(GetParam().milliseconds));
    EXPECT_EQ(line, GetParam().expected);
    EXPECT_LT(line.size(), 80U);
}

INSTANTIATE_TEST_SUITE_P(
    All, ProgressLine,
    testing::Values(LineRow{"half", 50, 100, 2000, "50 of 100 files, 25 a second, 2 s left"},
                    LineRow{"minutes", 10, 1000, 1000, "10 of 1000 files, 10 a second, 1 min 39 s left"},
                    LineRow{"minutes_with_zero", 1, 66, 1000, "1 of 66 files, 1 a second, 1 min 05 s left"},
                    LineRow{"hours", 1, 4000, 1000, "1 of 4000 files, 1 a second, 1 h 06 min left"},
                    LineRow{"slow", 1, 3, 4000, "1 of 3 files, 0 a second, 8 s left"},
                    LineRow{"done", 3, 3, 4000, "3 of 3 files, 0 a second, 0 s left"},
                    LineRow{"no_time", 5, 10, 0, "5 of 10 files, 5000 a second, 0 s left"},
                    LineRow{"much", 1, 1'000'000'000, 2'000'000,
                            "1 of 1000000000 files, 0 a second, 555555555 h 00 min left"}),
    [](const auto& i_Info) { return std::string(i_Info.param.name); });
