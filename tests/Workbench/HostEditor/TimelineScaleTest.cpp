#include "Workbench/HostEditor/TimelineScale.h"

#include <gtest/gtest.h>

#include <limits>

namespace workbench {
namespace {

class Scale : public testing::Test {
protected:
    Scale() {
        scale.setRoom(900);
        scale.setSequence(3000, {25, 1});
    }

    // Of a frame, from the left of the room.
    [[nodiscard]] double place(std::int64_t frame) const { return scale.axis(0).positionOf(frame); }

    TimelineScale scale;
};

TEST_F(Scale, ShowsAllAtFirst) {
    EXPECT_EQ(place(0), 0);
    EXPECT_EQ(place(3000), 900);
    EXPECT_EQ(scale.axis(12).positionOf(0), 12);
}

TEST_F(Scale, KeepsWhatLiesUnderThePointerWhenMagnified) {
    scale.magnify(4, 300);
    EXPECT_DOUBLE_EQ(place(1000), 300);
    EXPECT_NEAR(place(1001) - place(1000), 1.2, 1e-9);
    scale.magnify(0.5, 300);
    EXPECT_DOUBLE_EQ(place(1000), 300);
    EXPECT_EQ(scale.axis(0).frameUnder(300.1), 1000);
}

TEST_F(Scale, NeverShowsBeyondTheSequence) {
    scale.magnify(4, 0);
    scale.scrollBy(-100);
    EXPECT_EQ(scale.offset(), 0);
    scale.scrollBy(1e9);
    EXPECT_DOUBLE_EQ(place(3000), 900);
    scale.magnify(0.001, 450);
    EXPECT_EQ(scale.magnification(), 1);
    EXPECT_EQ(scale.offset(), 0);
}

TEST_F(Scale, GoesNoFurtherThanSingleFrames) {
    scale.magnify(1e12, 450);
    EXPECT_NEAR(place(1) - place(0), TimelineScale::MostPixels, 1e-6);
    scale.setMagnification(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(scale.magnification(), 1);
    scale.setSequence(5, {25, 1});
    scale.magnify(100, 0);
    EXPECT_EQ(scale.magnification(), 1); // five frames have more room than that anyway
}

TEST_F(Scale, TurnsThePageForAFrameOutOfSight) {
    scale.setMagnification(4);
    EXPECT_FALSE(scale.reveal(749));
    EXPECT_EQ(scale.offset(), 0);
    EXPECT_TRUE(scale.reveal(800));
    EXPECT_DOUBLE_EQ(place(800), 90);
    EXPECT_TRUE(scale.reveal(700));
    EXPECT_DOUBLE_EQ(place(700), 810);
    EXPECT_TRUE(scale.reveal(2999));
    EXPECT_LE(place(2999), 900);
    EXPECT_TRUE(scale.reveal(0));
    EXPECT_EQ(scale.offset(), 0);
}

TEST_F(Scale, KeepsItsStretchWhenTheRoomChanges) {
    scale.setMagnification(4);
    scale.scrollTo(1800);
    auto const first = scale.axis(0).frameUnder(0);
    scale.setRoom(450);
    EXPECT_EQ(scale.axis(0).frameUnder(0), first);
    EXPECT_EQ(scale.magnification(), 4);
}

TEST_F(Scale, KeepsItsMagnificationForTheNextSequence) {
    scale.setMagnification(4);
    scale.scrollTo(1800);
    scale.setSequence(6000, {25, 1});
    EXPECT_EQ(scale.magnification(), 4);
    EXPECT_EQ(scale.offset(), 0);
}

} // namespace
} // namespace workbench
