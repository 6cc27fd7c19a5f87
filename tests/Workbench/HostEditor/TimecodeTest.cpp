#include "Workbench/HostEditor/Timecode.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

TEST(Timecode, CountsEveryFrame) {
    EXPECT_EQ(timecode(0, {25, 1}), "00:00:00:00");
    EXPECT_EQ(timecode(24, {25, 1}), "00:00:00:24");
    EXPECT_EQ(timecode(25, {25, 1}), "00:00:01:00");
    EXPECT_EQ(timecode(25 * 3661 + 3, {25, 1}), "01:01:01:03");
}

TEST(Timecode, LeavesNoLabelOutAtTheSlowRates) {
    EXPECT_EQ(timecode(1799, {30000, 1001}), "00:00:59:29");
    EXPECT_EQ(timecode(1800, {30000, 1001}), "00:01:00:00");
    EXPECT_EQ(timecode(24, {24000, 1001}), "00:00:01:00");
    EXPECT_EQ(timecode(60, {60000, 1001}), "00:00:01:00");
}

TEST(Timecode, GivesFastRatesThreeDigits) {
    EXPECT_EQ(timecode(119, {120, 1}), "00:00:00:119");
    EXPECT_EQ(timecode(120, {120, 1}), "00:00:01:000");
    EXPECT_EQ(timecode(99, {100, 1}), "00:00:00:99");
}

TEST(Timecode, WritesRatesAsPeopleDo) {
    EXPECT_EQ(rateText({25, 1}), "25 fps");
    EXPECT_EQ(rateText({24000, 1001}), "23.98 fps");
    EXPECT_EQ(rateText({30000, 1001}), "29.97 fps");
    EXPECT_EQ(rateText({60000, 1001}), "59.94 fps");
    EXPECT_EQ(rateText({25, 2}), "12.50 fps");
}

} // namespace
} // namespace workbench
