#include "Workbench/ContainerApp/Timecode.h"

#include <gtest/gtest.h>

#include <array>

namespace workbench {

namespace {

constexpr auto Film = FrameRate{24000, 1001};
constexpr auto Ntsc = FrameRate{30000, 1001};
constexpr auto Pal = FrameRate{25, 1};
constexpr auto Fast = FrameRate{60000, 1001};
constexpr std::array Rates{Film,
                           FrameRate{24, 1},
                           Pal,
                           Ntsc,
                           FrameRate{30, 1},
                           FrameRate{48000, 1001},
                           FrameRate{50, 1},
                           Fast,
                           FrameRate{60, 1},
                           FrameRate{120000, 1001},
                           FrameRate{25, 2},
                           FrameRate{1, 1}};

double secondsOf(std::int64_t frame, FrameRate rate) {
    return static_cast<double>(frame * rate.denominator) / static_cast<double>(rate.numerator);
}

std::string dropped(std::int64_t frame) {
    return timecode(frame, {Ntsc, 0, true});
}

} // namespace

TEST(Timecode, FindsTheFrameOfEveryTimeThatIsOne) {
    for (auto const rate : Rates)
        for (auto frame = std::int64_t{0}; frame < 200'000; ++frame)
            ASSERT_EQ(frame, frameAt(secondsOf(frame, rate), rate))
                << rate.numerator << '/' << rate.denominator;
}

TEST(Timecode, FindsTheFrameOfATimeThatWasRoundedDownToTheEditorsTicks) {
    for (auto const rate : Rates)
        for (auto frame = std::int64_t{0}; frame < 200'000; ++frame) {
            auto const ticks = frame * rate.denominator * 600 / rate.numerator;
            ASSERT_EQ(frame, frameAt(static_cast<double>(ticks) / 600, rate))
                << rate.numerator << '/' << rate.denominator;
        }
}

TEST(Timecode, FindsTheFrameThatContainsATime) {
    EXPECT_EQ(1, frameAt(0.06, Pal));
    EXPECT_EQ(0, frameAt(0.03, Pal));
    EXPECT_EQ(0, frameAt(0, Pal));
}

TEST(Timecode, StaysWithinReasonAtAbsurdTimes) {
    EXPECT_GT(frameAt(1e300, Pal), 0);
    EXPECT_EQ(0, frameAt(-5, Pal));
}

TEST(Timecode, CountsFramesInLabels) {
    EXPECT_EQ("00:00:00:00", timecode(0, {Pal}));
    EXPECT_EQ("00:00:00:24", timecode(24, {Pal}));
    EXPECT_EQ("00:00:01:00", timecode(25, {Pal}));
    EXPECT_EQ("00:00:01:00", timecode(24, {Film}));
    EXPECT_EQ("01:00:00:00", timecode(90'000, {Pal}));
    EXPECT_EQ("00:00:01:000", timecode(120, {FrameRate{120000, 1001}}));
}

TEST(Timecode, BeginsAtTheSequencesFirstFrame) {
    EXPECT_EQ("10:00:00:12", timecode(12, {Pal, 900'000, false}));
}

TEST(Timecode, RunsOverAtMidnight) {
    EXPECT_EQ("00:00:00:01", timecode(1, {Pal, 24 * 90'000, false}));
    EXPECT_EQ("23:59:59:24", timecode(0, {Pal, -1, false}));
    EXPECT_EQ("00:00:00;00", timecode(2'589'408, {Ntsc, 0, true}));
}

TEST(Timecode, LeavesOutTwoLabelsInAMinuteButNotInTheTenth) {
    EXPECT_EQ("00:00:59;29", dropped(1799));
    EXPECT_EQ("00:01:00;02", dropped(1800));
    EXPECT_EQ("00:09:59;29", dropped(17981));
    EXPECT_EQ("00:10:00;00", dropped(17982));
    EXPECT_EQ("00:10:59;29", dropped(19781));
    EXPECT_EQ("00:11:00;02", dropped(19782));
    EXPECT_EQ("01:00:00;00", dropped(107'892));
}

TEST(Timecode, LeavesOutFourLabelsAtTwiceTheRate) {
    EXPECT_EQ("00:00:59;59", timecode(3599, {Fast, 0, true}));
    EXPECT_EQ("00:01:00;04", timecode(3600, {Fast, 0, true}));
}

TEST(Timecode, LeavesOutNoLabelsWhereThatIsNotDefined) {
    EXPECT_EQ("00:01:00:00", timecode(1500, {Pal, 0, true}));
    EXPECT_EQ("00:01:15:00", timecode(1800, {Film, 0, true}));
    EXPECT_FALSE(canDropFrames(Film));
    EXPECT_FALSE(canDropFrames({30, 1}));
    EXPECT_TRUE(canDropFrames(Ntsc));
    EXPECT_TRUE(canDropFrames(Fast));
}

TEST(Timecode, ReadsEveryLabelThatItWrites) {
    for (auto const& count :
         {FrameCount{Ntsc, 0, true}, FrameCount{Ntsc, 0, false}, FrameCount{Fast, 0, true}, FrameCount{Pal}})
        for (auto frame = std::int64_t{0}; frame < 120'000; ++frame)
            ASSERT_EQ(frame, frameOfLabel(timecode(frame, count), count)) << timecode(frame, count);
}

TEST(Timecode, ReadsNoLabelThatIsLeftOut) {
    EXPECT_FALSE(frameOfLabel("00:01:00;00", {Ntsc, 0, true}));
    EXPECT_FALSE(frameOfLabel("00:01:00;01", {Ntsc, 0, true}));
    EXPECT_TRUE(frameOfLabel("00:10:00;00", {Ntsc, 0, true}));
    EXPECT_TRUE(frameOfLabel("00:01:00:00", {Ntsc, 0, false}));
}

TEST(Timecode, ReadsNothingElseAsALabel) {
    for (auto const* text :
         {"", "1", "00:00:00", "00:00:00:25", "00:00:60:00", "00:60:00:00", "24:00:00:00", "00:00:00:00 ",
          " 00:00:00:00", "00:00:00:-1", "00-00-00-00", "0000:00:00:00", "a:b:c:d", "00:00:00:00:00", "::::"})
        EXPECT_FALSE(frameOfLabel(text, {Pal})) << text;
    EXPECT_EQ(900'000, frameOfLabel("10:00:00:00", {Pal}));
    EXPECT_EQ(90'061 - 61 + 25 * 61, frameOfLabel("1:1:1:0", {Pal}));
}

TEST(Timecode, KnowsTheRateBehindARoundedNumber) {
    EXPECT_EQ(Film, rateFromRounded(23.98));
    EXPECT_EQ(Ntsc, rateFromRounded(29.97));
    EXPECT_EQ((FrameRate{48000, 1001}), rateFromRounded(47.95));
    EXPECT_EQ(Fast, rateFromRounded(59.94));
    EXPECT_EQ((FrameRate{120000, 1001}), rateFromRounded(119.88));
    EXPECT_EQ((FrameRate{24, 1}), rateFromRounded(24));
    EXPECT_EQ(Pal, rateFromRounded(25));
    EXPECT_EQ((FrameRate{25, 2}), rateFromRounded(12.5));
    EXPECT_EQ((FrameRate{30, 1}), rateFromRounded(30));
}

TEST(Timecode, TakesNoRateFromWhatIsNone) {
    for (auto const number : {0.0, -25.0, 1e9, 0.001, std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(rateFromRounded(number)) << number;
}

} // namespace workbench
