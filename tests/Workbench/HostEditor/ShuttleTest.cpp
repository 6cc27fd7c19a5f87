#include "Workbench/HostEditor/Shuttle.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST(Shuttle, GoesTwiceAsFastWithEachPressUpToEight) {
    double speed = 0;
    for (auto const expected : {1.0, 2.0, 4.0, 8.0, 8.0}) {
        speed = nextShuttleSpeed(speed, Direction::On);
        EXPECT_EQ(speed, expected);
    }
    speed = 0;
    for (auto const expected : {-1.0, -2.0, -4.0, -8.0, -8.0}) {
        speed = nextShuttleSpeed(speed, Direction::Back);
        EXPECT_EQ(speed, expected);
    }
}

TEST(Shuttle, TurnsAtSingleSpeed) {
    EXPECT_EQ(nextShuttleSpeed(8, Direction::Back), -1);
    EXPECT_EQ(nextShuttleSpeed(-4, Direction::On), 1);
}

} // namespace
} // namespace workbench
