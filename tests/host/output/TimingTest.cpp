#include "output/Timing.h"

#include <gtest/gtest.h>

TEST(Timing, DurationsHaveThreeDecimals)
{
    using std::chrono::microseconds;
    EXPECT_EQ(Timing::text(microseconds(0)), "0.000 ms");
    EXPECT_EQ(Timing::text(microseconds(7)), "0.007 ms");
    EXPECT_EQ(Timing::text(microseconds(1234)), "1.234 ms");
    EXPECT_EQ(Timing::text(microseconds(60'000'010)), "60000.010 ms");
}
