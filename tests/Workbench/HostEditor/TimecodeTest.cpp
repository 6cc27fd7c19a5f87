#include "Workbench/HostEditor/Timecode.h"

#include "Workbench/HostEditor/EveryFrame.h"
#include "Workbench/HostEditor/EveryLabel.h"

#include <gtest/gtest.h>

namespace workbench {
namespace {

constexpr FrameRate slow{30000, 1001};

TEST(Timecode, CountsEveryFrame) {
    EXPECT_EQ(timecode(0, {25, 1}), "00:00:00:00");
    EXPECT_EQ(timecode(24, {25, 1}), "00:00:00:24");
    EXPECT_EQ(timecode(25, {25, 1}), "00:00:01:00");
    EXPECT_EQ(timecode(25 * 3661 + 3, {25, 1}), "01:01:01:03");
}

TEST(Timecode, LeavesLabelsOutToKeepStepWithTheClock) {
    EXPECT_EQ(timecode(1799, slow), "00:00:59;29");
    EXPECT_EQ(timecode(1800, slow), "00:01:00;02");
    EXPECT_EQ(timecode(17981, slow), "00:09:59;29");
    EXPECT_EQ(timecode(17982, slow), "00:10:00;00");
    EXPECT_EQ(timecode(107892, slow), "01:00:00;00");
    EXPECT_EQ(timecode(3599, {60000, 1001}), "00:00:59;59");
    EXPECT_EQ(timecode(3600, {60000, 1001}), "00:01:00;04");
    EXPECT_EQ(timecode(215784, {60000, 1001}), "01:00:00;00");
}

TEST(Timecode, LeavesNoneOutWhereThatIsNotDefined) {
    EXPECT_EQ(timecode(1440, {24000, 1001}), "00:01:00:00");
    EXPECT_EQ(timecode(1800, {30, 1}), "00:01:00:00");
    EXPECT_EQ(timecode(2880, {48000, 1001}), "00:01:00:00");
    EXPECT_EQ(timecode(179'820, {2997, 100}), "01:39:54:00");
    for (auto const rate : {FrameRate{24000, 1001}, FrameRate{25, 1}, FrameRate{30, 1}, FrameRate{60, 1}})
        EXPECT_FALSE(leavesOutLabels(rate));
    EXPECT_TRUE(leavesOutLabels(slow));
    EXPECT_TRUE(leavesOutLabels({60000, 1001}));
}

TEST(Timecode, LabelsEveryFrameOfAnHourAtAllRates) {
    for (auto const rate : allRates)
        expectEveryLabelRight(rate, 1);
}

TEST(Timecode, FindsNoFrameForALabelThatIsLeftOut) {
    for (auto const label : {1800, 1801, 3600, 3601})
        EXPECT_FALSE(frameOfLabel(label, slow)) << label;
    EXPECT_EQ(frameOfLabel(1802, slow), 1800);
    EXPECT_EQ(frameOfLabel(18000, slow), 17982);
    EXPECT_FALSE(frameOfLabel(-1, slow));
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
