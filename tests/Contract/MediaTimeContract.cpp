#include <gtest/gtest.h>

#include "Doubles/FakeHost.h"
#include "Platform/Gtk/RationalMediaTime.h"

#include <cmath>
#include <limits>
#include <string>

namespace fcp::test {

namespace {

constexpr auto infinity = std::numeric_limits<double>::infinity();
constexpr auto notANumber = std::numeric_limits<double>::quiet_NaN();

template <typename Arithmetic>
class MediaTimeContract : public testing::Test {
protected:
    Arithmetic const arithmetic{};
};

using Arithmetics = testing::Types<FakeMediaTime, RationalMediaTime>;

TYPED_TEST_SUITE(MediaTimeContract, Arithmetics);

CMTime flagged(std::uint32_t flags) {
    return {.value = 5, .timescale = 1, .flags = flags};
}

} // namespace

TYPED_TEST(MediaTimeContract, SecondsAreTheValueByTheTimescale) {
    EXPECT_DOUBLE_EQ(this->arithmetic.seconds(mediaTime(1001, 30000)), 1001.0 / 30000.0);
    EXPECT_DOUBLE_EQ(this->arithmetic.seconds(mediaTime(-3, 2)), -1.5);
    EXPECT_DOUBLE_EQ(this->arithmetic.seconds(mediaTime(0, 600)), 0.0);
}

TYPED_TEST(MediaTimeContract, AnInvalidTimeIsNoNumber) {
    EXPECT_TRUE(std::isnan(this->arithmetic.seconds(CMTime{})));
    EXPECT_TRUE(std::isnan(this->arithmetic.seconds(flagged(0))));
    EXPECT_TRUE(std::isnan(this->arithmetic.seconds(flagged(CMTime::PositiveInfinity))));
}

TYPED_TEST(MediaTimeContract, InfiniteTimesAreInfinities) {
    EXPECT_EQ(this->arithmetic.seconds(flagged(CMTime::Valid | CMTime::PositiveInfinity)), infinity);
    EXPECT_EQ(this->arithmetic.seconds(flagged(CMTime::Valid | CMTime::NegativeInfinity)), -infinity);
}

TYPED_TEST(MediaTimeContract, ATimeMadeOfSecondsIsThatManyTicks) {
    auto const time = this->arithmetic.makeWithSeconds(12.5, 600);
    EXPECT_EQ(time.value, 7500);
    EXPECT_EQ(time.timescale, 600);
    EXPECT_EQ(time.flags, CMTime::Valid);
    EXPECT_EQ(time.epoch, 0);
}

TYPED_TEST(MediaTimeContract, TheTimescaleIsKeptWhateverTheSeconds) {
    for (double const seconds : {0.0, -1.0, 1e16, 1e300, -1e300, notANumber, infinity, -infinity})
        EXPECT_EQ(this->arithmetic.makeWithSeconds(seconds, 600).timescale, 600) << seconds;
}

TYPED_TEST(MediaTimeContract, SecondsThatAreNoNumberMakeAnInvalidTime) {
    EXPECT_EQ(this->arithmetic.makeWithSeconds(notANumber, 600).flags & CMTime::Valid, 0U);
}

TEST(RationalMediaTime, AnIndefiniteTimeIsNoNumber) {
    RationalMediaTime const arithmetic;
    EXPECT_TRUE(std::isnan(arithmetic.seconds(flagged(CMTime::Valid | CMTime::Indefinite))));
}

TEST(RationalMediaTime, ATimeWithoutATimescaleIsNoNumber) {
    RationalMediaTime const arithmetic;
    EXPECT_TRUE(std::isnan(arithmetic.seconds(mediaTime(5, 0))));
    EXPECT_TRUE(std::isnan(arithmetic.seconds(mediaTime(0, 0))));
}

TEST(RationalMediaTime, ExtremeFieldsAreSafe) {
    RationalMediaTime const arithmetic;
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    constexpr auto lowestScale = std::numeric_limits<std::int32_t>::min();
    EXPECT_DOUBLE_EQ(arithmetic.seconds(mediaTime(lowest, -1)), 9223372036854775808.0);
    EXPECT_DOUBLE_EQ(arithmetic.seconds(mediaTime(lowest, lowestScale)), 4294967296.0);
}

TEST(RationalMediaTime, BetweenTwoTicksTheValueIsCutTowardsZeroAndSaysSo) {
    RationalMediaTime const arithmetic;
    auto const later = arithmetic.makeWithSeconds(1.999 / 600, 600);
    EXPECT_EQ(later.value, 1);
    EXPECT_EQ(later.flags, CMTime::Valid | CMTime::HasBeenRounded);
    auto const earlier = arithmetic.makeWithSeconds(-1.999 / 600, 600);
    EXPECT_EQ(earlier.value, -1);
    EXPECT_EQ(earlier.flags, CMTime::Valid | CMTime::HasBeenRounded);
}

TEST(RationalMediaTime, SecondsBeyondTheValuesRangeGiveItsEnd) {
    RationalMediaTime const arithmetic;
    EXPECT_EQ(arithmetic.makeWithSeconds(1e300, 600).value, std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(arithmetic.makeWithSeconds(-1e300, 600).value, std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(arithmetic.makeWithSeconds(9223372036854775808.0, 1).value,
              std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(arithmetic.makeWithSeconds(-9223372036854775808.0, 1).value,
              std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(arithmetic.makeWithSeconds(1e300, 600).flags, CMTime::Valid | CMTime::HasBeenRounded);
}

TEST(RationalMediaTime, InfiniteSecondsMakeAnInfiniteTime) {
    RationalMediaTime const arithmetic;
    EXPECT_EQ(arithmetic.makeWithSeconds(infinity, 600).flags, CMTime::Valid | CMTime::PositiveInfinity);
    EXPECT_EQ(arithmetic.makeWithSeconds(-infinity, 600).flags, CMTime::Valid | CMTime::NegativeInfinity);
}

TEST(RationalMediaTime, ATimescaleBelowOneMakesAnInvalidTime) {
    RationalMediaTime const arithmetic;
    EXPECT_EQ(arithmetic.makeWithSeconds(1, 0).flags, 0U);
    EXPECT_EQ(arithmetic.makeWithSeconds(1, -600).flags, 0U);
}

} // namespace fcp::test
