#include "Workbench/ContainerApp/Timecode.h"

#include <gtest/gtest.h>

#include <array>

namespace workbench {

namespace {

constexpr auto film = FrameRate{24000, 1001};
constexpr auto ntsc = FrameRate{30000, 1001};
constexpr auto pal = FrameRate{25, 1};
constexpr auto fast = FrameRate{60000, 1001};
constexpr std::array rates{film,
                           FrameRate{24, 1},
                           pal,
                           ntsc,
                           FrameRate{30, 1},
                           FrameRate{48000, 1001},
                           FrameRate{50, 1},
                           fast,
                           FrameRate{60, 1},
                           FrameRate{120000, 1001},
                           FrameRate{25, 2},
                           FrameRate{1, 1}};

std::string dropped(std::int64_t frame) {
    return timecode(frame, {ntsc, 0, true});
}

} // namespace

TEST(Timecode, TellsWhenAFrameBegins) {
    EXPECT_EQ(0, secondsOf(0, ntsc));
    EXPECT_EQ(1001, secondsOf(30'000, ntsc));
    EXPECT_EQ(0.04, secondsOf(1, FrameRate{25, 1}));
}

TEST(Timecode, FindsTheFrameOfEveryTimeThatIsOne) {
    for (auto const rate : rates)
        for (auto frame = std::int64_t{0}; frame < 200'000; ++frame)
            ASSERT_EQ(frame, frameAt(secondsOf(frame, rate), rate))
                << rate.numerator << '/' << rate.denominator;
}

TEST(Timecode, FindsTheFrameOfATimeThatWasRoundedDownToTheEditorsTicks) {
    for (auto const rate : rates)
        for (auto frame = std::int64_t{0}; frame < 200'000; ++frame) {
            auto const ticks = frame * rate.denominator * 600 / rate.numerator;
            ASSERT_EQ(frame, frameAt(static_cast<double>(ticks) / 600, rate))
                << rate.numerator << '/' << rate.denominator;
        }
}

TEST(Timecode, FindsTheFrameThatContainsATime) {
    EXPECT_EQ(1, frameAt(0.06, pal));
    EXPECT_EQ(0, frameAt(0.03, pal));
    EXPECT_EQ(0, frameAt(0, pal));
}

TEST(Timecode, StaysWithinReasonAtAbsurdTimes) {
    EXPECT_GT(frameAt(1e300, pal), 0);
    EXPECT_EQ(0, frameAt(-5, pal));
}

TEST(Timecode, CountsFramesInLabels) {
    EXPECT_EQ("00:00:00:00", timecode(0, {pal}));
    EXPECT_EQ("00:00:00:24", timecode(24, {pal}));
    EXPECT_EQ("00:00:01:00", timecode(25, {pal}));
    EXPECT_EQ("00:00:01:00", timecode(24, {film}));
    EXPECT_EQ("01:00:00:00", timecode(90'000, {pal}));
    EXPECT_EQ("00:00:01:000", timecode(120, {FrameRate{120000, 1001}}));
}

TEST(Timecode, BeginsAtTheSequencesFirstFrame) {
    EXPECT_EQ("10:00:00:12", timecode(12, {pal, 900'000, false}));
}

TEST(Timecode, RunsOverAtMidnight) {
    EXPECT_EQ("00:00:00:01", timecode(1, {pal, std::int64_t{24} * 90'000, false}));
    EXPECT_EQ("23:59:59:24", timecode(0, {pal, -1, false}));
    EXPECT_EQ("00:00:00;00", timecode(2'589'408, {ntsc, 0, true}));
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
    EXPECT_EQ("00:00:59;59", timecode(3599, {fast, 0, true}));
    EXPECT_EQ("00:01:00;04", timecode(3600, {fast, 0, true}));
}

TEST(Timecode, LeavesOutNoLabelsWhereThatIsNotDefined) {
    EXPECT_EQ("00:01:00:00", timecode(1500, {pal, 0, true}));
    EXPECT_EQ("00:01:15:00", timecode(1800, {film, 0, true}));
    EXPECT_FALSE(canDropFrames(film));
    EXPECT_FALSE(canDropFrames({30, 1}));
    EXPECT_TRUE(canDropFrames(ntsc));
    EXPECT_TRUE(canDropFrames(fast));
}

TEST(Timecode, ShowsTheFirstMillisecondOfAFrameOnTheClock) {
    EXPECT_EQ("00:00:00.000", clockTime(0, film));
    EXPECT_EQ("00:00:00.042", clockTime(1, film));
    EXPECT_EQ("00:00:00.040", clockTime(1, pal));
    EXPECT_EQ("00:00:01.001", clockTime(30, ntsc));
    EXPECT_EQ("01:00:00.000", clockTime(90'000, pal));
    EXPECT_EQ("100:00:00.000", clockTime(9'000'000, pal));
    EXPECT_EQ("00:01:00.000", clockTime(599'995, {10'000, 1}));
}

TEST(Timecode, ShowsNoFrameOnTheClockOfAnother) {
    for (auto const rate : rates)
        for (auto frame = std::int64_t{0}; frame < 20'000; ++frame) {
            auto const text = clockTime(frame, rate);
            auto const milliseconds =
                ((std::stoll(text.substr(0, 2)) * 60 + std::stoll(text.substr(3, 2))) * 60 +
                 std::stoll(text.substr(6, 2))) *
                    1000 +
                std::stoll(text.substr(9));
            ASSERT_EQ(frame, milliseconds * rate.numerator / (rate.denominator * 1000)) << text;
        }
}

TEST(Timecode, ReadsEveryLabelThatItWrites) {
    for (auto const& count :
         {FrameCount{ntsc, 0, true}, FrameCount{ntsc, 0, false}, FrameCount{fast, 0, true}, FrameCount{pal}})
        for (auto frame = std::int64_t{0}; frame < 120'000; ++frame)
            ASSERT_EQ(frame, frameOfLabel(timecode(frame, count), count)) << timecode(frame, count);
}

TEST(Timecode, ReadsNoLabelThatIsLeftOut) {
    EXPECT_FALSE(frameOfLabel("00:01:00;00", {ntsc, 0, true}));
    EXPECT_FALSE(frameOfLabel("00:01:00;01", {ntsc, 0, true}));
    EXPECT_TRUE(frameOfLabel("00:10:00;00", {ntsc, 0, true}));
    EXPECT_TRUE(frameOfLabel("00:01:00:00", {ntsc, 0, false}));
}

TEST(Timecode, ReadsNothingElseAsALabel) {
    for (auto const* text :
         {"", "1", "00:00:00", "00:00:00:25", "00:00:60:00", "00:60:00:00", "24:00:00:00", "00:00:00:00 ",
          " 00:00:00:00", "00:00:00:-1", "00-00-00-00", "0000:00:00:00", "a:b:c:d", "00:00:00:00:00", "::::"})
        EXPECT_FALSE(frameOfLabel(text, {pal})) << text;
    EXPECT_EQ(900'000, frameOfLabel("10:00:00:00", {pal}));
    EXPECT_EQ(90'061 - 61 + 25 * 61, frameOfLabel("1:1:1:0", {pal}));
}

TEST(Timecode, KnowsTheRateBehindARoundedNumber) {
    EXPECT_EQ(film, rateFromRounded(23.98));
    EXPECT_EQ(ntsc, rateFromRounded(29.97));
    EXPECT_EQ((FrameRate{48000, 1001}), rateFromRounded(47.95));
    EXPECT_EQ(fast, rateFromRounded(59.94));
    EXPECT_EQ((FrameRate{120000, 1001}), rateFromRounded(119.88));
    EXPECT_EQ((FrameRate{24, 1}), rateFromRounded(24));
    EXPECT_EQ(pal, rateFromRounded(25));
    EXPECT_EQ((FrameRate{25, 2}), rateFromRounded(12.5));
    EXPECT_EQ((FrameRate{30, 1}), rateFromRounded(30));
}

TEST(Timecode, TakesNoRateFromWhatIsNone) {
    for (auto const number : {0.0, -25.0, 1e9, 0.001, std::numeric_limits<double>::quiet_NaN(),
                              std::numeric_limits<double>::infinity()})
        EXPECT_FALSE(rateFromRounded(number)) << number;
}

} // namespace workbench
