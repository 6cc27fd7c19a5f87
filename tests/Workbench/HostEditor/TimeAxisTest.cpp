#include "Workbench/HostEditor/TimeAxis.h"

#include <gtest/gtest.h>

#include <cmath>

namespace workbench {
namespace {

TimeAxis const axis{12, 900, 300, {30000, 1001}};

Pin pinAt(double seconds) {
    return {.id = {}, .start = seconds, .text = {}, .author = {}, .colour = {}};
}

TEST(TimeAxis, FindsTheFrameWhereItPutIt) {
    for (std::int64_t frame = 0; frame < axis.length; ++frame)
        EXPECT_EQ(axis.frameUnder(std::ceil(axis.positionOf(frame))), frame);
}

TEST(TimeAxis, ClampsOutsideOfTheSequence) {
    EXPECT_EQ(axis.frameUnder(-100), 0);
    EXPECT_EQ(axis.frameUnder(11), 0);
    EXPECT_EQ(axis.frameUnder(912), 299);
    EXPECT_EQ(axis.frameUnder(1e9), 299);
}

TEST(TimeAxis, LabelsWholeSecondsAsFarApartAsTheyNeed) {
    EXPECT_EQ(axis.labelStep(108), 60); // 36 frames would fit: the next is two seconds
    EXPECT_EQ(axis.labelStep(80), 30); // one second has 90 pixels
    EXPECT_EQ(axis.labelStep(1000), 450); // fifteen seconds
}

TEST(TimeAxis, LabelsSingleFramesOfAVeryShortSequence) {
    TimeAxis const shortAxis{0, 1000, 10, {25, 1}};
    EXPECT_EQ(shortAxis.labelStep(100), 1);
    EXPECT_EQ(shortAxis.labelStep(150), 2);
}

TEST(TimeAxis, LabelsAVeryLongSequenceOnce) {
    TimeAxis const longAxis{0, 10, 100'000'000, {25, 1}};
    EXPECT_EQ(longAxis.labelStep(108), longAxis.length);
}

TEST(Pins, LieOnTheFrameTheyWereMadeAt) {
    for (std::int64_t frame = 0; frame < axis.length; ++frame)
        EXPECT_EQ(frameOfSeconds(static_cast<double>(frame) * 1001 / 30000, axis), frame);
}

TEST(Pins, AreClampedToTheSequence) {
    EXPECT_EQ(frameOfSeconds(-3, axis), 0);
    EXPECT_EQ(frameOfSeconds(1e300, axis), 299);
    EXPECT_EQ(frameOfSeconds(std::nan(""), axis), 0);
}

TEST(Pins, AreVisitedOneAfterTheOther) {
    auto const pins = {pinAt(5), pinAt(1), pinAt(5), pinAt(8)};
    auto const after = [&](std::int64_t frame) { return nextPin(pins, axis, frame, Direction::On); };
    auto const before = [&](std::int64_t frame) { return nextPin(pins, axis, frame, Direction::Back); };
    EXPECT_EQ(after(0), 30);
    EXPECT_EQ(after(30), 149);
    EXPECT_EQ(after(149), 239);
    EXPECT_EQ(after(239), std::nullopt);
    EXPECT_EQ(before(299), 239);
    EXPECT_EQ(before(150), 149);
    EXPECT_EQ(before(149), 30);
    EXPECT_EQ(before(30), std::nullopt);
    EXPECT_EQ(nextPin({}, axis, 0, Direction::On), std::nullopt);
}

TEST(Pins, ThatLieTogetherFormOneGroup) {
    auto const groups = groupPins({pinAt(5), pinAt(1), pinAt(5.05)}, axis, 12);
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].members, (std::vector<std::size_t>{1}));
    EXPECT_EQ(groups[1].members, (std::vector<std::size_t>{0, 2}));
    EXPECT_EQ(groups[1].frame, frameOfSeconds(5, axis));
}

TEST(Pins, AtOneTimeKeepTheirOrder) {
    auto const groups = groupPins({pinAt(2), pinAt(2), pinAt(2)}, axis, 12);
    ASSERT_EQ(groups.size(), 1U);
    EXPECT_EQ(groups[0].members, (std::vector<std::size_t>{0, 1, 2}));
}

TEST(Pins, NeverMakeMoreGroupsThanThereIsRoomFor) {
    std::vector<Pin> pins;
    for (int index = 0; index < 10'000; ++index)
        pins.push_back(pinAt(index / 1000.0));
    auto const groups = groupPins(pins, axis, 12);
    EXPECT_LE(groups.size(), 900U / 12 + 1);
    for (std::size_t index = 1; index < groups.size(); ++index)
        EXPECT_GE(groups[index].position - groups[index - 1].position, 12);
}

} // namespace
} // namespace workbench
