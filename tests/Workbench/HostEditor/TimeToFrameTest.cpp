#include "Workbench/HostEditor/TimeToFrame.h"

#include "Workbench/HostEditor/EveryFrame.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace workbench {
namespace {

using fcp::CMTime;

constexpr FrameRate Pal{25, 1};
constexpr FrameRate Ntsc{30000, 1001};

CMTime time(std::int64_t value, std::int32_t timescale, std::uint32_t flags = CMTime::Valid) {
    return {.value = value, .timescale = timescale, .flags = flags};
}

TEST(TimeToFrame, FindsEveryFrameOfTwoHoursAtAllRatesFromSixHundredths) {
    for (auto const rate : allRates)
        expectEveryFrameFound(rate, 2);
}

TEST(TimeToFrame, GivesTheFrameThatContainsATimeInTheMiddleOfIt) {
    EXPECT_EQ(frameAt(time(35, 600), Pal, 100), 1); // 0.058 s: the second frame ends at 0.080
    EXPECT_EQ(frameAt(time(46, 600), Pal, 100), 1);
    EXPECT_EQ(frameAt(time(48, 600), Pal, 100), 2);
}

TEST(TimeToFrame, AllowsOneTickBeforeAFrameBeginsAndNoMore) {
    EXPECT_EQ(frameAt(time(23, 600), Pal, 100), 1); // 24 would be exact
    EXPECT_EQ(frameAt(time(22, 600), Pal, 100), 0);
}

TEST(TimeToFrame, ClampsToBothEnds) {
    EXPECT_EQ(frameAt(time(-1, 600), Pal, 100), 0);
    EXPECT_EQ(frameAt(time(-600'000, 600), Pal, 100), 0);
    EXPECT_EQ(frameAt(time(2400, 600), Pal, 100), 99);
    EXPECT_EQ(frameAt(time(std::numeric_limits<std::int64_t>::max(), 1), Ntsc, 100), 99);
    EXPECT_EQ(frameAt(time(std::numeric_limits<std::int64_t>::min(), 1), Ntsc, 100), 0);
}

TEST(TimeToFrame, KeepsAllDigitsOfHugeTimes) {
    // 2^62 units of 1/600 s: a product in 64 bits would have run over long before.
    constexpr auto huge = std::int64_t{1} << 62;
    auto const frame = frameAt(time(huge, 600), Ntsc, std::numeric_limits<std::int64_t>::max());
    __extension__ using Wide = __int128;
    EXPECT_EQ(frame, static_cast<std::int64_t>((Wide{huge} + 1) * 30000 / (Wide{600} * 1001)));
}

TEST(TimeToFrame, KnowsTimesThatAreNoNumberOfSeconds) {
    EXPECT_FALSE(frameAt(time(10, 600, 0), Pal, 100));
    EXPECT_FALSE(frameAt(time(10, 600, CMTime::Valid | CMTime::PositiveInfinity), Pal, 100));
    EXPECT_FALSE(frameAt(time(10, 600, CMTime::Valid | CMTime::NegativeInfinity), Pal, 100));
    EXPECT_FALSE(frameAt(time(10, 600, CMTime::Valid | CMTime::Indefinite), Pal, 100));
    EXPECT_FALSE(frameAt(time(10, 0), Pal, 100));
    EXPECT_FALSE(frameAt(time(10, -600), Pal, 100));
    EXPECT_FALSE(frameAt(CMTime{}, Pal, 100));
}

TEST(TimeToFrame, TakesARoundedTimeForWhatItIs) {
    EXPECT_EQ(frameAt(time(48, 600, CMTime::Valid | CMTime::HasBeenRounded), Pal, 100), 2);
}

TEST(TimeToFrame, HasNoFrameInAnEmptySequence) {
    EXPECT_FALSE(frameAt(time(10, 600), Pal, 0));
}

TEST(TimeToFrame, TellsTheMomentOfAFrameExactly) {
    auto const moment = timeOfFrame(299, Ntsc);
    EXPECT_EQ(moment.value, 299 * 1001);
    EXPECT_EQ(moment.timescale, 30000);
    EXPECT_EQ(moment.flags, CMTime::Valid);
    EXPECT_EQ(moment.epoch, 0);
}

TEST(TimeToFrame, MakesNoTimeFromWhatIsNotFinite) {
    for (auto const seconds : {std::nan(""), HUGE_VAL, -HUGE_VAL})
        EXPECT_EQ(timeOfSeconds(seconds).flags & CMTime::Valid, 0U) << seconds;
}

TEST(TimeToFrame, StopsAtTheLargestTimeThatThereIs) {
    EXPECT_EQ(timeOfSeconds(1e300).value, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(timeOfSeconds(-1e300).value, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(timeOfSeconds(1.5).value, 900);
}

} // namespace
} // namespace workbench
